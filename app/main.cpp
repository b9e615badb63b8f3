// tarnwick: the window program.
#include "frmMain.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarnwick"));
    frmMain window;
    window.show();
    return QApplication::exec();
}

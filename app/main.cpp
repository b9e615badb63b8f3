// tarnwick: the window program.
#include "AppFont.h"
#include "frmMain.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarnwick"));
    AppFont::install();
    frmMain window;
    window.show();
    // A configuration named on the command line is opened at once.
    const QStringList args = QApplication::arguments();
    if (args.size() > 1 && !args.at(1).isEmpty())
        window.loadFile(args.at(1));
    return QApplication::exec();
}

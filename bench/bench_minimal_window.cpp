// bench_minimal_window: the reference for bench_startup — the least a Qt Widgets program does to show a window
// as large as Tarnwick's (10425 x 7500 twips, 15 twips a pixel), then end as soon as it is on the screen and the
// event loop has nothing left to do, as Tarnwick does with TARNWICK_QUIT_WHEN_IDLE=1.
#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <QWindow>

namespace {

void quitOnceShown(QMainWindow *window)
{
    QTimer::singleShot(0, window, [window] {
        const QWindow *handle = window->windowHandle();
        if (handle && handle->isExposed())
            QCoreApplication::exit(0);
        else
            quitOnceShown(window);
    });
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QMainWindow window;
    window.resize(10425 / 15, 7500 / 15);
    window.show();
    quitOnceShown(&window);
    return QApplication::exec();
}

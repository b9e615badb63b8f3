#include "StartUp.h"

#include "CommandLineRouter.h"
#include "FileAssociations.h"
#include "WindowSettings.h"
#include "frmMain.h"

#include <QApplication>
#include <QTimer>
#include <QWindow>

namespace StartUp {

bool quitWhenIdle()
{
    return qEnvironmentVariable("TARNWICK_QUIT_WHEN_IDLE") == u"1";
}

namespace {

    // Checks again each time the event loop has nothing left to do; quits once the window is on the screen.
    void quitOnceShown(frmMain *window)
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

QString prepare(frmMain &window, QWidget *splash, const QString &settingsFile, const QString &executable)
{
    window.settings().load(settingsFile);
    const QString registration = FileAssociations::registerAll(executable);
    // A timed start asks nothing: it only measures the way to the window.
    if (!quitWhenIdle())
        window.settings().locateGameFolder(splash, QStringLiteral("can not locate Quake3.exe"));
    return registration;
}

void finish(frmMain &window, QWidget *splash, const QString &commandLine, const QString &registration)
{
    window.show();
    if (splash)
        splash->close();
    // The greeting first: what opening the command line's file has to say replaces it.
    if (registration.isEmpty())
        window.SetText(QStringLiteral("Welcome to Tarnwick."), MsgType::Information);
    else
        window.SetText(registration, MsgType::Caution);
    window.commandLine().HandleCommandLine(commandLine);
    if (quitWhenIdle())
        quitOnceShown(&window);
}

} // namespace StartUp

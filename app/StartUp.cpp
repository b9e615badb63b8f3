#include "StartUp.h"

#include "CommandLineRouter.h"
#include "FileAssociations.h"
#include "WindowSettings.h"
#include "frmMain.h"

namespace StartUp {

QString prepare(frmMain &window, QWidget *splash, const QString &settingsFile, const QString &executable)
{
    window.settings().load(settingsFile);
    const QString registration = FileAssociations::registerAll(executable);
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
}

} // namespace StartUp

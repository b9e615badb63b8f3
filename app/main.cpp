// tarnwick: the window program. One copy runs per user: a later copy hands its command line to the first
// and ends without a window.
#include "AppFont.h"
#include "AppIcon.h"
#include "CommandLine.h"
#include "CommandLineRouter.h"
#include "LazyStandardIcons.h"
#include "ProgramSettings.h"
#include "SingleInstance.h"
#include "StartUp.h"
#include "frmLoad.h"
#include "frmMain.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>

#include <algorithm>

#include <csignal>

int main(int argc, char **argv)
{
    // The local zone looked up once, not again for every archive entry's time (see tarnwick-cli).
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
#ifdef SIGXFSZ
    // A write over the file size limit fails and is said, as a full disk is, rather than ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tarnwick"));
    QApplication::setWindowIcon(AppIcon::icon());
    const QString commandLine = CommandLine::joinArguments(QApplication::arguments());

    SingleInstance instance;
    if (!instance.IsFirstInstance()) {
        const bool handedOver = instance.sendToFirst(commandLine);
        qCInfo(lcShell) << (handedOver ? "handed over to the first copy" : "no first copy answered");
        return 0;
    }
    qCInfo(lcShell) << "first copy";
    AppFont::install();
    QApplication::setStyle(new LazyStandardIcons);
    // A bare X session has no icon theme of its own (Qt names hicolor, the theme all others inherit): the PK3 list,
    // the menus and the toolbar borrow a common one. As the theme, not only as the fallback: a name is then found
    // in its cache at once, where hicolor first would look for it in each of hundreds of folders of the home's
    // icons, which no cache covers.
    const QString borrowed = QStringLiteral("Adwaita");
    QIcon::setFallbackThemeName(borrowed);
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == u"hicolor") {
        const QStringList places = QIcon::themeSearchPaths();
        if (std::any_of(places.cbegin(), places.cend(), [&](const QString &place) {
                return QFileInfo::exists(place + u'/' + borrowed + QStringLiteral("/index.theme"));
            }))
            QIcon::setThemeName(borrowed);
    }

    frmLoad splash;
    splash.showStartUp();
    frmMain window;
    const QString registration = StartUp::prepare(window, &splash,
        settingsFilePath(QCoreApplication::applicationDirPath()), QCoreApplication::applicationFilePath());
    QObject::connect(
        &instance, &SingleInstance::commandLineReceived, &window.commandLine(), [&window](const QString &text) {
            qCInfo(lcShell) << "handed over:" << text;
            window.commandLine().handOver(text);
        });
    StartUp::finish(window, &splash, commandLine, registration);
    return QApplication::exec();
}

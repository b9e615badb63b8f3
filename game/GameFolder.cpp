#include "GameFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace GameFolder {

const QStringList &executableNames()
{
    static const QStringList names {
        QStringLiteral("quake3.exe"),
        // ioquake3's builds for Windows, Linux and macOS
        QStringLiteral("ioquake3.x86_64.exe"),
        QStringLiteral("ioquake3.x86.exe"),
        QStringLiteral("ioquake3.exe"),
        QStringLiteral("ioquake3.x86_64"),
        QStringLiteral("ioquake3.aarch64"),
        QStringLiteral("ioquake3.x86"),
        QStringLiteral("ioquake3"),
        // Quake3e's builds
        QStringLiteral("quake3e.x64.exe"),
        QStringLiteral("quake3e.exe"),
        QStringLiteral("quake3e-vulkan.x64.exe"),
        QStringLiteral("quake3e.x64"),
        QStringLiteral("quake3e.aarch64"),
        QStringLiteral("quake3e-vulkan.x64"),
        QStringLiteral("quake3e"),
        // OpenArena's builds
        QStringLiteral("openarena.exe"),
        QStringLiteral("openarena.x86_64"),
        QStringLiteral("openarena.i386"),
        QStringLiteral("openarena"),
        // the original Linux build
        QStringLiteral("quake3.x86"),
    };
    return names;
}

QString executableIn(const QString &folder)
{
    for (const QString &name : executableNames()) {
        const QString candidate = folder + u'/' + name;
        if (QFileInfo(candidate).isFile())
            return candidate;
    }
    return QString();
}

bool isValid(const QString &folder)
{
    return !executableIn(folder).isEmpty();
}

QString dataFolder(const QString &folder)
{
    return folder + QStringLiteral("/baseq3");
}

QString demoFolder(const QString &folder)
{
    return folder + QStringLiteral("/baseq3/demos");
}

QString playerModels(const QString &folder)
{
    return folder + QStringLiteral("/baseq3/models/players/");
}

QStringList usualPlaces()
{
    QStringList places;
    const auto add = [&places](const QString &folder) {
        if (QFileInfo(folder).isDir() && !places.contains(folder))
            places.append(folder);
    };
    const auto addWithSubfolders = [&add](const QString &folder) {
        add(folder);
        const QDir::Filters dirs = QDir::Dirs | QDir::NoDotAndDotDot;
        for (const QFileInfo &sub : QDir(folder).entryInfoList(dirs, QDir::Name | QDir::IgnoreCase))
            add(sub.filePath());
    };
    for (const QString &name : executableNames()) {
        // Packages link their engine onto PATH; the game lies beside the program the link leads to.
        const QString found = QStandardPaths::findExecutable(name);
        if (!found.isEmpty())
            add(QFileInfo(QFileInfo(found).canonicalFilePath()).path());
    }
    addWithSubfolders(QStringLiteral("/opt"));
    addWithSubfolders(QStringLiteral("/usr/local/games"));
    const QString home = QDir::homePath();
    add(home + QStringLiteral("/ioquake3"));
    add(home + QStringLiteral("/Quake3e"));
    for (const char *steam : { "/.steam/steam", "/.local/share/Steam" })
        add(home + QLatin1String(steam) + QStringLiteral("/steamapps/common/Quake 3 Arena"));
    const QString prefix = qEnvironmentVariable("WINEPREFIX", home + QStringLiteral("/.wine"));
    const QDir drive(prefix + QStringLiteral("/drive_c"));
    for (const QString &programs : drive.entryList({ QStringLiteral("Program Files*") }, QDir::Dirs, QDir::Name))
        add(drive.filePath(programs) + QStringLiteral("/Quake III Arena"));
    return places;
}

QString firstInstallation()
{
    for (const QString &place : usualPlaces()) {
        if (isValid(place))
            return place;
    }
    return QString();
}

} // namespace GameFolder

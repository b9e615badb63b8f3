#include "GameFolder.h"

#include <QFileInfo>

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

} // namespace GameFolder

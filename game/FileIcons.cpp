#include "FileIcons.h"

#include <QApplication>
#include <QHash>
#include <QMimeDatabase>
#include <QStyle>
#include <algorithm>

namespace FileIcons {

namespace {

    // Quake III's own formats, which the MIME database files under application/octet-stream.
    struct GameFormat
    {
        const char *extension; // upper case, with the dot
        const char *typeName;
        const char *themeIcon;
    };

    constexpr GameFormat gameFormats[] = {
        { ".MD3", "Quake 3 Model", "x-office-drawing" },
        { ".BSP", "Quake 3 Map", "application-x-generic" },
        { ".SHADER", "Shader Script", "text-x-script" },
        { ".SKIN", "Player Skin", "text-x-generic" },
        { ".ARENA", "Arena Definition", "text-x-generic" },
        { ".BOT", "Bot Definition", "text-x-generic" },
        { ".CFG", "Configuration File", "text-x-generic" },
        { ".MENU", "Menu Definition", "text-x-generic" },
        { ".ROQ", "RoQ Video", "video-x-generic" },
    };
    constexpr GameFormat demoFormat { ".DM_", "Quake 3 Demo", "video-x-generic" };

    // ".DM_68", ".DM_3": a demo of any protocol version.
    bool isDemo(const QString &extension)
    {
        if (extension.size() < 5 || !extension.startsWith(QLatin1String(demoFormat.extension)))
            return false;
        return std::all_of(extension.begin() + 4, extension.end(), [](QChar c) { return c.isDigit(); });
    }

    const GameFormat *gameFormat(const QString &extension)
    {
        for (const GameFormat &format : gameFormats) {
            if (extension == QLatin1String(format.extension))
                return &format;
        }
        return isDemo(extension) ? &demoFormat : nullptr;
    }

    // ".TGA" for "levelshots/q3dm17.tga"; empty for a name without an extension or one ending in a dot.
    QString extensionOf(const QString &fileName)
    {
        const qsizetype dot = fileName.lastIndexOf(u'.');
        if (dot < 0 || dot == fileName.size() - 1)
            return QString();
        return fileName.mid(dot).toUpper();
    }

    // Looked up by extension alone, so every name with one extension gets the same answer.
    QMimeType mimeTypeOf(const QString &extension)
    {
        static const QMimeDatabase database;
        return database.mimeTypeForFile(QLatin1Char('x') + extension.toLower(), QMimeDatabase::MatchExtension);
    }

    QIcon themeIcon(const QString &extension)
    {
        const QMimeType mime = mimeTypeOf(extension);
        if (mime.isDefault()) {
            if (const GameFormat *format = gameFormat(extension)) {
                const QIcon icon = QIcon::fromTheme(QLatin1String(format->themeIcon));
                if (!icon.isNull())
                    return icon;
            }
        }
        return QIcon::fromTheme(mime.iconName(), QIcon::fromTheme(mime.genericIconName()));
    }

    QHash<QString, QIcon> &icons()
    {
        static QHash<QString, QIcon> cache = [] {
            const QStyle *style = QApplication::style();
            const QIcon document = style->standardIcon(QStyle::SP_FileIcon);
            return QHash<QString, QIcon> {
                { QString(DefaultKey), document },
                { QStringLiteral(".EXE"),
                    QIcon::fromTheme(
                        QStringLiteral("application-x-executable"), style->standardIcon(QStyle::SP_ComputerIcon)) },
            };
        }();
        return cache;
    }

} // namespace

QString iconKey(const QString &fileName, const QString &defaultKey)
{
    const QString extension = extensionOf(fileName);
    if (extension.isEmpty())
        return defaultKey;
    QHash<QString, QIcon> &cache = icons();
    if (!cache.contains(extension)) {
        const QIcon icon = themeIcon(extension);
        cache.insert(extension, icon.isNull() ? cache.value(QString(DefaultKey)) : icon);
    }
    return extension;
}

QIcon icon(const QString &key)
{
    return icons().value(key);
}

int iconCount()
{
    return int(icons().size());
}

QString typeName(const QString &fileName)
{
    const QString extension = extensionOf(fileName);
    if (extension.isEmpty())
        return QStringLiteral("File");
    static QHash<QString, QString> cache;
    auto found = cache.constFind(extension);
    if (found != cache.constEnd())
        return *found;
    QString name;
    const QMimeType mime = mimeTypeOf(extension);
    if (!mime.isDefault())
        name = mime.comment();
    if (!name.isEmpty())
        name[0] = name[0].toUpper(); // "plain text document" reads as a heading in the column
    else if (const GameFormat *format = gameFormat(extension))
        name = QLatin1String(format->typeName);
    if (name.isEmpty())
        name = extension.mid(1) + QStringLiteral(" File");
    cache.insert(extension, name);
    return name;
}

} // namespace FileIcons

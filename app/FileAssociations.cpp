#include "FileAssociations.h"

#include "WholeFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QXmlStreamWriter>

#include <algorithm>

#ifdef Q_OS_WIN
#include <QSettings>
#endif

namespace {

const QString desktopId = QStringLiteral("tarnwick.desktop");
const QString appIcon = QStringLiteral("tarnwick");
const int pngSizes[] = { 16, 32, 48, 64, 128, 256 };

// The theme's name for a type's icon: the type with "-" for "/", the name desktops look for when the package
// names none.
QString iconNameOf(const FileAssociations::FileType &type)
{
    return QString(type.mimeType).replace(u'/', u'-');
}

// Writes `bytes` to `path` unless it already holds exactly them; "" or what went wrong.
QString writeIfChanged(const QString &path, const QByteArray &bytes)
{
    QFile existing(path);
    if (existing.open(QIODevice::ReadOnly) && existing.readAll() == bytes)
        return QString();
    existing.close();
    const QString shown = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return QStringLiteral("Could not write \"%1\": its folder could not be created").arg(shown);
    QString error;
    WriteWholeFile(path, bytes, &error);
    return error;
}

QByteArray mimePackage()
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("mime-info"));
    xml.writeDefaultNamespace(QStringLiteral("http://www.freedesktop.org/standards/shared-mime-info"));
    for (const FileAssociations::FileType &type : FileAssociations::types()) {
        xml.writeStartElement(QStringLiteral("mime-type"));
        xml.writeAttribute(QStringLiteral("type"), type.mimeType);
        xml.writeTextElement(QStringLiteral("comment"), type.description);
        xml.writeEmptyElement(QStringLiteral("sub-class-of"));
        xml.writeAttribute(QStringLiteral("type"), QStringLiteral("text/plain"));
        xml.writeEmptyElement(QStringLiteral("icon"));
        xml.writeAttribute(QStringLiteral("name"), iconNameOf(type));
        xml.writeEmptyElement(QStringLiteral("generic-icon"));
        xml.writeAttribute(QStringLiteral("name"), QStringLiteral("text-x-generic"));
        xml.writeEmptyElement(QStringLiteral("glob"));
        xml.writeAttribute(QStringLiteral("pattern"), QStringLiteral("*.") + type.extension.toLower());
        // Other programs read *.cfg files too: a type of theirs for them (weight 50) wins over ours.
        if (!type.partial)
            xml.writeAttribute(QStringLiteral("weight"), QStringLiteral("30"));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return bytes;
}

// The program as one Exec argument: quoted for the command line where it holds a character the line reserves, then
// escaped as a string value, with literal percent signs doubled so they are not taken for field codes.
QString execArgument(const QString &program)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    const bool quote = program.isEmpty()
        || std::any_of(program.cbegin(), program.cend(), [](QChar c) { return reserved.contains(c); });
    QString arg;
    for (QChar c : program) {
        if (quote && (c == u'"' || c == u'`' || c == u'$' || c == u'\\'))
            arg += u'\\';
        arg += c;
    }
    if (quote)
        arg = u'"' + arg + u'"';
    arg.replace(u'\\', QStringLiteral("\\\\"));
    arg.replace(u'\n', QStringLiteral("\\n"));
    arg.replace(u'\t', QStringLiteral("\\t"));
    arg.replace(u'\r', QStringLiteral("\\r"));
    arg.replace(u'%', QStringLiteral("%%"));
    return arg;
}

// The desktop entry that runs `program`, named as the Exec line names it (a full path, or a name PATH finds).
QByteArray desktopEntry(const QString &program)
{
    QStringList mimeTypes;
    for (const FileAssociations::FileType &type : FileAssociations::types())
        mimeTypes.append(type.mimeType);
    const QStringList lines {
        QStringLiteral("[Desktop Entry]"),
        QStringLiteral("Type=Application"),
        QStringLiteral("Name=Tarnwick"),
        QStringLiteral("GenericName=Game Configuration Editor"),
        QStringLiteral("Comment=Edit Quake III Arena configuration files"),
        QStringLiteral("Exec=") + execArgument(program) + QStringLiteral(" %f"),
        QStringLiteral("Icon=") + appIcon,
        QStringLiteral("Terminal=false"),
        QStringLiteral("Categories=Game;"),
        QStringLiteral("MimeType=") + mimeTypes.join(u';') + u';',
    };
    return (lines.join(u'\n') + u'\n').toUtf8();
}

// A square PNG of `size` pixels drawn from `svg`, through Qt's SVG image plugin: loaded only when icons are
// written, not at every start. Empty when the plugin is missing.
QByteArray pngOf(const QByteArray &svg, int size)
{
    QBuffer source;
    source.setData(svg);
    QImageReader reader(&source, "svg");
    reader.setScaledSize(QSize(size, size));
    const QImage image = reader.read();
    if (image.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// Whether `path` holds exactly `bytes`.
bool holds(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() == bytes.size() && file.readAll() == bytes;
}

// Whether the file `relative` needs no copy in `dataFolder`: there is none there yet and one of `systemData` holds
// one of `forms`. A copy of the user's own is kept up to date instead: it hides the system's.
bool heldBySystem(
    const QString &dataFolder, const QString &relative, const QList<QByteArray> &forms, const QStringList &systemData)
{
    if (QFileInfo::exists(dataFolder + u'/' + relative))
        return false;
    return std::any_of(systemData.cbegin(), systemData.cend(), [&](const QString &folder) {
        return std::any_of(forms.cbegin(), forms.cend(),
            [&](const QByteArray &bytes) { return holds(folder + u'/' + relative, bytes); });
    });
}

// The picture `picture` as the icon `name` of `context` ("apps", "mimetypes") in the hicolor theme under
// `dataFolder`: a PNG drawn from the SVG in each usual size, then the SVG as it is. The SVG goes last, so while
// it is unchanged and every PNG is there, the PNGs were drawn from it and are not drawn again; the same holds for a
// theme in `systemData`, which then makes a copy unnecessary. "" or what went wrong.
QString installIcon(const QString &dataFolder, const QString &context, const QString &name, const QString &picture,
    const QStringList &systemData)
{
    QFile source(QStringLiteral(":/icons/") + picture + QStringLiteral(".svg"));
    if (!source.open(QIODevice::ReadOnly))
        return QStringLiteral("The icon \"%1\" is missing from the program").arg(picture);
    const QByteArray svgBytes = source.readAll();
    const QString svgPath = QStringLiteral("icons/hicolor/scalable/%1/%2.svg").arg(context, name);
    QStringList pngPaths;
    for (const int size : pngSizes)
        pngPaths.append(QStringLiteral("icons/hicolor/%1x%1/%2/%3.png").arg(size).arg(context, name));
    const auto complete = [&](const QString &folder) {
        return holds(folder + u'/' + svgPath, svgBytes)
            && std::all_of(pngPaths.cbegin(), pngPaths.cend(),
                [&](const QString &png) { return QFile::exists(folder + u'/' + png); });
    };
    if (complete(dataFolder)
        || (!QFileInfo::exists(dataFolder + u'/' + svgPath)
            && std::any_of(systemData.cbegin(), systemData.cend(), complete)))
        return QString();
    for (qsizetype i = 0; i < pngPaths.size(); ++i) {
        const QByteArray png = pngOf(svgBytes, pngSizes[i]);
        if (png.isEmpty())
            return QStringLiteral("Qt's SVG image plugin is missing: the icon \"%1\" could not be drawn").arg(picture);
        const QString error = writeIfChanged(dataFolder + u'/' + pngPaths[i], png);
        if (!error.isEmpty())
            return error;
    }
    return writeIfChanged(dataFolder + u'/' + svgPath, svgBytes);
}

// The [Default Applications] entries of a mimeapps.list (type in lower case -> value), and where new ones go: after
// the last entry of the first such section; -1 when there is none.
struct DefaultsSection
{
    QHash<QByteArray, QByteArray> entries;
    qsizetype insertAt = -1;
};

DefaultsSection defaultsIn(const QByteArray &list)
{
    const QByteArray header = "[Default Applications]";
    DefaultsSection section;
    bool inDefaults = false;
    bool inFirstDefaults = false;
    for (qsizetype pos = 0; pos < list.size();) {
        const qsizetype newline = list.indexOf('\n', pos);
        const qsizetype end = newline < 0 ? list.size() : newline + 1;
        const QByteArray line = list.mid(pos, end - pos).trimmed();
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[')) {
            inDefaults = line == header;
            inFirstDefaults = inDefaults && section.insertAt < 0;
            if (inFirstDefaults)
                section.insertAt = end;
        } else if (inDefaults && !line.startsWith('#') && equals > 0) {
            section.entries.insert(line.left(equals).trimmed().toLower(), line.mid(equals + 1).trimmed());
            if (inFirstDefaults)
                section.insertAt = end;
        }
        pos = end;
    }
    return section;
}

using Defaults = QList<QPair<QByteArray, QByteArray>>; // type, desktop ids

// What the user's list should gain, given the contents of every list that names defaults, most important first:
// Tarnwick for each partial type, and for the configuration types the applications that open text/plain (GLib would
// otherwise prefer Tarnwick, which lists the exact type, over the user's text editor). Where no list names a
// text/plain default, the configuration types get none. A type any list names a default for gets nothing.
Defaults defaultsToAdd(const QList<QByteArray> &lists)
{
    QSet<QByteArray> present;
    QByteArrayList textApps; // every list's text/plain default in turn, as GLib tries them
    for (const QByteArray &list : lists) {
        const QHash<QByteArray, QByteArray> entries = defaultsIn(list).entries;
        for (auto it = entries.cbegin(); it != entries.cend(); ++it)
            present.insert(it.key());
        for (const QByteArray &id : entries.value("text/plain").split(';')) {
            if (!id.trimmed().isEmpty() && !textApps.contains(id.trimmed()))
                textApps.append(id.trimmed());
        }
    }
    Defaults added;
    for (const FileAssociations::FileType &type : FileAssociations::types()) {
        const QByteArray key = type.mimeType.toUtf8();
        if (present.contains(key.toLower()) || (!type.partial && textApps.isEmpty()))
            continue;
        added.append({ key, type.partial ? desktopId.toUtf8() : textApps.join(';') });
    }
    return added;
}

// `original` with a line added to its first [Default Applications] section for each of `defaults`. Every byte already
// there stays; the section is created at the end when missing.
QByteArray withDefaults(const QByteArray &original, const Defaults &defaults)
{
    const qsizetype insertAt = defaultsIn(original).insertAt;
    const bool crlf = insertAt > 1 && original.at(insertAt - 1) == '\n' && original.at(insertAt - 2) == '\r';
    const QByteArray eol = crlf ? "\r\n" : "\n";
    QByteArray added;
    for (const auto &[type, ids] : defaults)
        added += type + '=' + ids + eol;
    if (added.isEmpty())
        return original;

    QByteArray result = original;
    if (insertAt < 0) {
        if (!result.isEmpty() && !result.endsWith('\n'))
            result += '\n';
        if (!result.isEmpty() && !result.endsWith("\n\n"))
            result += '\n';
        return result + "[Default Applications]\n" + added;
    }
    if (original.at(insertAt - 1) != '\n')
        added.prepend('\n'); // the last line of the file had no line end
    return result.insert(insertAt, added);
}

// Starts `tool` on `folder` in the background when `source` is there and `cache` is missing or older than it.
void refreshCache(const QString &tool, const QString &folder, const QString &cache, const QString &source)
{
    const QFileInfo cacheInfo(folder + u'/' + cache);
    const QFileInfo sourceInfo(source);
    if (!sourceInfo.exists() || (cacheInfo.exists() && cacheInfo.lastModified() >= sourceInfo.lastModified()))
        return;
    const QString program = QStandardPaths::findExecutable(tool);
    if (program.isEmpty())
        return;
    QProcess process;
    process.setProgram(program);
    process.setArguments({ folder });
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.startDetached();
}

} // namespace

namespace FileAssociations {

const QList<FileType> &types()
{
    static const QList<FileType> list {
        { QStringLiteral("CFG"), QStringLiteral("Tarnwick.CFGFile"), QStringLiteral("Tarnwick Configuration File"), 0,
            QStringLiteral("application/x-tarnwick-cfg"), QStringLiteral("configuration"), false },
        { QStringLiteral("CONFIG"), QStringLiteral("Tarnwick.CONFIGFile"),
            QStringLiteral("Tarnwick Configuration File"), 0, QStringLiteral("application/x-tarnwick-config"),
            QStringLiteral("configuration"), false },
        { QStringLiteral("CTR"), QStringLiteral("Tarnwick.CTRFile"), QStringLiteral("Tarnwick Controls File"), 1,
            QStringLiteral("application/x-tarnwick-controls"), QStringLiteral("controls"), true },
        { QStringLiteral("RNR"), QStringLiteral("Tarnwick.RNRFile"), QStringLiteral("Tarnwick Renderer File"), 2,
            QStringLiteral("application/x-tarnwick-renderer"), QStringLiteral("renderer"), true },
        { QStringLiteral("HUD"), QStringLiteral("Tarnwick.HUDFile"), QStringLiteral("Tarnwick HUD File"), 3,
            QStringLiteral("application/x-tarnwick-hud"), QStringLiteral("hud"), true },
        { QStringLiteral("RLG"), QStringLiteral("Tarnwick.RLGFile"), QStringLiteral("Tarnwick Railgun File"), 4,
            QStringLiteral("application/x-tarnwick-railgun"), QStringLiteral("railgun"), true },
    };
    return list;
}

QString quoted(const QString &path)
{
    const QString trimmed = path.trimmed();
    if (trimmed.size() >= 2 && trimmed.startsWith(u'"') && trimmed.endsWith(u'"'))
        return trimmed;
    return u'"' + trimmed + u'"';
}

QList<QPair<QString, QString>> CreateEXEAssociation(const QString &exePath, const QString &iconPath,
    const QString &progId, const QString &description, const QString &extension, const QString &openCaption,
    bool allowEdit, const QString &editor, const QString &editCaption, int iconIndex)
{
    const QString fileArgument = QStringLiteral(" \"%1\"");
    QList<QPair<QString, QString>> entries {
        { extension.startsWith(u'.') ? extension : u'.' + extension, progId },
        { progId, description },
        { progId + QStringLiteral("\\shell\\open"), openCaption.isEmpty() ? QStringLiteral("&Open") : openCaption },
        { progId + QStringLiteral("\\shell\\open\\command"), quoted(exePath) + fileArgument },
    };
    if (allowEdit) {
        entries.append({ progId + QStringLiteral("\\shell\\edit"),
            editCaption.isEmpty() ? QStringLiteral("&Edit") : editCaption });
        entries.append({ progId + QStringLiteral("\\shell\\edit\\command"),
            quoted(editor.isEmpty() ? QStringLiteral("write.exe") : editor) + fileArgument });
    }
    if (iconIndex > -1)
        entries.append(
            { progId + QStringLiteral("\\DefaultIcon"), quoted(iconPath) + u',' + QString::number(iconIndex) });
    return entries;
}

QString registerAll(const QString &exePath)
{
#ifdef Q_OS_WIN
    // The icons live in icons.dll beside the program when it was installed with it; else the program's own icon
    // serves every type.
    const QFileInfo exe(exePath);
    const QString iconLibrary = exe.absolutePath() + QStringLiteral("/icons.dll");
    const bool haveLibrary = QFileInfo::exists(iconLibrary);
    const QString program = QDir::toNativeSeparators(exe.absoluteFilePath());
    const QString iconPath = haveLibrary ? QDir::toNativeSeparators(iconLibrary) : program;

    QSettings user(QStringLiteral("HKEY_CURRENT_USER\\Software\\Classes"), QSettings::NativeFormat);
    QSettings machine(QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes"), QSettings::NativeFormat);
    const bool machineToo = machine.isWritable();
    for (const FileType &type : types()) {
        const auto entries = CreateEXEAssociation(program, iconPath, type.progId, type.description, type.extension,
            QStringLiteral("&Open"), true, QStringLiteral("write.exe"), QStringLiteral("&Edit"),
            haveLibrary ? type.iconIndex : 0);
        for (const auto &[key, value] : entries) {
            // A key's own (default) value is named "Default" under it.
            user.setValue(key + QStringLiteral("\\Default"), value);
            if (machineToo)
                machine.setValue(key + QStringLiteral("\\Default"), value);
        }
    }
    user.sync();
    if (user.status() != QSettings::NoError)
        return QStringLiteral("Could not register Tarnwick's file types under HKEY_CURRENT_USER\\Software\\Classes");
    if (machineToo) {
        machine.sync();
        if (machine.status() != QSettings::NoError)
            return QStringLiteral(
                "Could not register Tarnwick's file types under HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes");
    }
    return QString();
#else
    // The lists in GLib's order: each config folder, then each data folder's applications, the current desktops'
    // own lists first in each; data folders also hold the older defaults.list.
    QStringList names;
    for (const QString &desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts))
        names.append(desktop.toLower() + QStringLiteral("-mimeapps.list"));
    names.append(QStringLiteral("mimeapps.list"));
    QStringList lists;
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)) {
        for (const QString &name : names)
            lists.append(folder + u'/' + name);
    }
    names.append(QStringLiteral("defaults.list"));
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        for (const QString &name : names)
            lists.append(folder + QStringLiteral("/applications/") + name);
    }
    // The other data folders (XDG_DATA_DIRS) hold what a package installed.
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QStringList systemData = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    systemData.removeAll(dataHome);
    return registerFreedesktop(
        exePath, dataHome, QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), lists, systemData);
#endif
}

QString installDataFiles(const QStringList &programs, const QString &dataFolder, const QStringList &systemData)
{
    const QString package = QStringLiteral("mime/packages/tarnwick.xml");
    const QByteArray packageBytes = mimePackage();
    QString error;
    if (!heldBySystem(dataFolder, package, { packageBytes }, systemData))
        error = writeIfChanged(dataFolder + u'/' + package, packageBytes);
    if (error.isEmpty())
        error = installIcon(dataFolder, QStringLiteral("apps"), appIcon, appIcon, systemData);
    for (const FileType &type : types()) {
        if (error.isEmpty())
            error = installIcon(dataFolder, QStringLiteral("mimetypes"), iconNameOf(type), type.picture, systemData);
    }
    const QString entry = QStringLiteral("applications/") + desktopId;
    QList<QByteArray> entries;
    for (const QString &program : programs)
        entries.append(desktopEntry(program));
    if (error.isEmpty() && !entries.isEmpty() && !heldBySystem(dataFolder, entry, entries, systemData))
        error = writeIfChanged(dataFolder + u'/' + entry, entries.first());
    return error;
}

QString registerFreedesktop(const QString &exePath, const QString &dataHome, const QString &configHome,
    const QStringList &defaultLists, const QStringList &systemData)
{
    // An entry the system installed names the program as PATH finds it; where that is this very program, it runs
    // the same.
    const QFileInfo exe(exePath);
    QStringList programs { exe.absoluteFilePath() };
    const QString found = QStandardPaths::findExecutable(exe.fileName());
    if (!found.isEmpty() && QFileInfo(found).canonicalFilePath() == exe.canonicalFilePath())
        programs.append(exe.fileName());
    const QString error = installDataFiles(programs, dataHome, systemData);
    if (!error.isEmpty())
        return error;

    const QString listPath = configHome + QStringLiteral("/mimeapps.list");
    QFile list(listPath);
    QByteArray original;
    if (list.exists()) {
        if (!list.open(QIODevice::ReadOnly)) {
            return QStringLiteral("Could not read \"%1\": %2")
                .arg(QDir::toNativeSeparators(QFileInfo(listPath).absoluteFilePath()), list.errorString());
        }
        original = list.readAll();
        list.close();
    }
    QStringList paths = defaultLists;
    if (!paths.contains(listPath))
        paths.prepend(listPath);
    QList<QByteArray> lists;
    for (const QString &path : paths) {
        QFile other(path);
        if (path == listPath)
            lists.append(original);
        else if (other.open(QIODevice::ReadOnly))
            lists.append(other.readAll()); // a list that can't be read names no default
    }
    const QString listError = writeIfChanged(listPath, withDefaults(original, defaultsToAdd(lists)));
    if (!listError.isEmpty())
        return listError;

    const QString mimeFolder = dataHome + QStringLiteral("/mime");
    const QString applicationsFolder = dataHome + QStringLiteral("/applications");
    refreshCache(QStringLiteral("update-mime-database"), mimeFolder, QStringLiteral("mime.cache"),
        mimeFolder + QStringLiteral("/packages/tarnwick.xml"));
    refreshCache(QStringLiteral("update-desktop-database"), applicationsFolder, QStringLiteral("mimeinfo.cache"),
        applicationsFolder + u'/' + desktopId);
    return QString();
}

} // namespace FileAssociations

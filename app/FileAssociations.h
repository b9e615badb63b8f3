// FileAssociations: the file types Tarnwick registers with the desktop at every start, so configuration files and
// partial settings files open in it.
#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace FileAssociations {

struct FileType
{
    QString extension; // without the dot, upper case: "CFG"
    QString progId;
    QString description;
    int iconIndex;
    QString mimeType; // Tarnwick's own freedesktop type for the extension
    QString picture; // the files' icon, ":/icons/" + picture + ".svg"
    bool partial; // a partial settings file: Tarnwick becomes its default where the user has none
};

/// CFG, CONFIG, CTR, RNR, HUD, RLG, in that order.
const QList<FileType> &types();

/// Trims `path` and puts it in double quotes unless it already starts and ends with one.
QString quoted(const QString &path);

/// Windows: the registry entries of one type as (key path under the classes root, default value) pairs, in write order:
///  "." + ext -> progId; progId -> description; progId\shell\open -> openCaption or "&Open" when empty;
///  progId\shell\open\command -> quoted(exePath) + " \"%1\""; when allowEdit: progId\shell\edit -> editCaption or
///  "&Edit", progId\shell\edit\command -> quoted(editor or "write.exe" when empty) + " \"%1\""; when iconIndex > -1:
///  progId\DefaultIcon -> quoted(iconPath) + "," + iconIndex.
QList<QPair<QString, QString>> CreateEXEAssociation(const QString &exePath, const QString &iconPath,
    const QString &progId, const QString &description, const QString &extension, const QString &openCaption,
    bool allowEdit, const QString &editor, const QString &editCaption, int iconIndex);

/// Registers all six types for the running program at `exePath`; returns "" on success, else one line saying what
/// failed. Windows: the classes of the current user (and of the machine when that is writable); elsewhere:
/// registerFreedesktop() in the user's data and config folders.
QString registerAll(const QString &exePath);

/// The freedesktop way, in the user's data folder `dataHome` (normally ~/.local/share) and config folder `configHome`
/// (normally ~/.config):
///  - installDataFiles() in `dataHome`, for the program at `exePath` (an entry naming it by its file name counts
///    when PATH finds this very program there), skipping what one of `systemData` (the desktop's other data folders)
///    already holds;
///  - `configHome`/mimeapps.list makes Tarnwick the default for the four partial types, and the applications that
///    open text/plain the default for the two configuration types, so a .cfg keeps opening where it did (none when
///    no list names a text/plain default); only for types no list names a default for yet, leaving everything else
///    in it as it was. `defaultLists` are the mimeapps.list files whose defaults count, most important first; the
///    user's own counts first unless placed among them;
///  - the desktop's caches of `dataHome` are refreshed in the background when they are older than the files there and
///    the tools exist.
/// A file is written only when its content changes. Stops at the first file that can't be written and returns one
/// line naming it; "" on success.
QString registerFreedesktop(const QString &exePath, const QString &dataHome, const QString &configHome,
    const QStringList &defaultLists = {}, const QStringList &systemData = {});

/// The data files of the registration under `dataFolder`:
///  - mime/packages/tarnwick.xml declares a type of Tarnwick's own for each extension, a sub-class of text/plain with
///    its icon; the configuration files' globs weigh less than the usual 50, so another program's type for *.cfg
///    still wins;
///  - icons/hicolor holds the program's icon and the types' icons, as SVG and as PNG in the usual sizes;
///  - applications/tarnwick.desktop opens the six types (never text/plain) in `programs`' first, as its Exec line.
/// A file `dataFolder` has no copy of yet is not written when one of `systemData` holds it as it would be written
/// (the desktop entry for any of `programs`); a copy `dataFolder` has is kept up to date, as it hides the other.
/// A file is written only when its content changes. "" on success, else one line naming the file not written.
QString installDataFiles(const QStringList &programs, const QString &dataFolder, const QStringList &systemData = {});

} // namespace FileAssociations

// FileIcons: the small icon and the type name the PK3 Explorer shows for an archive entry, both by the
// file name's extension. Icons come from the desktop's icon theme through the MIME database and are made
// once per extension for the whole run; Quake III's own formats, which the database doesn't know, get
// names and icons from a short table of ours.
#pragma once

#include <QIcon>
#include <QString>

namespace FileIcons {

/// The key of the preloaded plain document icon.
inline constexpr QLatin1String DefaultKey { "DEFAULT" };

/// The cache key for the name's icon: its extension with the dot, upper case (".TGA"); `defaultKey` for a
/// name without an extension. The extension's icon is made and cached on its first use.
QString iconKey(const QString &fileName, const QString &defaultKey);
/// The cached icon for a key iconKey returned (or ".EXE", "DEFAULT"); a null icon for any other key.
QIcon icon(const QString &key);
/// How many icons the cache holds.
int iconCount();
/// What kind of file the name is, as a file manager words it: the MIME type's description with a capital
/// first letter ("Plain text document"), ours for Quake III's formats ("Quake 3 Model"), else "<EXT> File";
/// "File" for a name without an extension.
QString typeName(const QString &fileName);

} // namespace FileIcons

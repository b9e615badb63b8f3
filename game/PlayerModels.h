// PlayerModels: the player models and skins the installed game offers, found by the skin icons each model
// carries (models/players/MODEL/icon_SKIN.tga), as the model browser's tree shows them.
#pragma once

#include "cUnzip.h"

#include "TgaImage.h"
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace PlayerModels {

struct Skin
{
    QString label; // "Red" for icon_red.tga: word capitalised
    QString icon; // where the icon is: a file's full path, or the entry's path inside `archive`
    QString archive; // the PK3 holding the icon; empty for a file on disk
};

struct Model
{
    QString label; // "Sarge" for the folder sarge
    QList<Skin> skins; // in label order without regard to case
};

/// The models in label order without regard to case, and the archives that could not be read.
struct ModelTree
{
    QList<Model> models;
    QStringList unreadable; // full paths
};

/// Each word (blank-separated) with its first letter upper case and the rest lower case; ASCII letters only.
QString wordCapitalised(const QString &name);
/// The browser's key of a model node ("MDL|SARGE") or of a skin node ("MDL|SARGE_RED").
QString nodeKey(const Model &model, const Skin *skin = nullptr);
/// The `model` setting a choice gives: "sarge/red", or "sarge" for a model alone (empty skin).
QString modelValue(const Model &model, const Skin *skin = nullptr);

/// Scans each of GameLaunch::dataFolders: the icon files under models/players/ on disk, then the PK3 archives
/// in name order without regard to case. "models/players/" matches in any letter case; a file on disk counts
/// when its name starts with "icon_" and ends with ".tga", an archive entry whatever its extension; the skin
/// is the name without "icon_" and the last four characters, and a name with nothing left is skipped. Links
/// to folders are not followed. A model or skin found again in any letter case merges into the first found,
/// which gives its label. `betweenArchives` runs after each archive, so a window can repaint.
ModelTree ScanPlayerModels(const QString &gameFolder, const std::function<void()> &betweenArchives = {});

/// Reads skin icons from disk or from the archive that holds them. The archive last listed is kept for the
/// next icon, since a model's skins sit in one archive.
class IconReader
{
public:
    /// The skin's icon; a null picture when it can't be read or is no picture TgaImage decodes.
    TgaImage::Picture icon(const Skin &skin);

private:
    cUnzip m_archive;
};

} // namespace PlayerModels

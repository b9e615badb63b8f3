// PartialFiles: settings files that hold one area only (.ctr, .rnr, .hud, .rlg).
#pragma once

#include "ConfigDocument.h"
#include "SettingCatalog.h"

#include <QString>
#include <optional>

enum class PartialKind { Controls = 0, Renderer = 1, HudDisplay = 2, Railgun = 3 };

namespace PartialFiles {

FileScope scopeOf(PartialKind kind);
/// ".ctr", ".rnr", ".hud", ".rlg"
QString extension(PartialKind kind);
QString exportFilter(PartialKind kind);
QString importFilter(PartialKind kind);
/// "CTR", "RNR", "HUD", "RLG"
QString defaultExtension(PartialKind kind);
/// A kind named controls, renderer, hud or railgun (any case), or by its code 0 to 3.
std::optional<PartialKind> kindFromName(const QString &name);

} // namespace PartialFiles

/// Writes the kind's area to `path`; the document's modified flag stays as it was.
bool ExportFile(ConfigDocument &doc, const QString &path, PartialKind kind, QString *error = nullptr);
/// Reads the kind's area from `path` (any configuration file will do); the document is modified afterwards.
bool ImportFile(ConfigDocument &doc, const QString &path, PartialKind kind, QString *error = nullptr);

// ConfigWriter: writes the document as a game configuration file, whole or for one area.
#pragma once

#include "ConfigDocument.h"
#include "SettingCatalog.h"

#include <QByteArray>
#include <QStringList>

namespace ConfigWriter {

QString header();
/// The file's bytes: the header, the kept lines (whole file only), then the output lines; CR LF ends.
QByteArray fileBytes(const ConfigDocument &doc, FileScope scope);

} // namespace ConfigWriter

/// The binding and setting lines of the scope, in the writer's order.
QStringList BuildCfgLines(const ConfigDocument &doc, FileScope scope);
/// Writes the document to `path` for the scope, replacing the file only once it is complete. A whole-file
/// write then takes the snapshot. On failure nothing at `path` changes and `error` says why.
bool WriteCfgFile(ConfigDocument &doc, const QString &path, FileScope scope, QString *error = nullptr);
/// Save As: a whole-file write after which the document belongs to `path`.
bool SaveCfgFileAs(ConfigDocument &doc, const QString &path, QString *error = nullptr);

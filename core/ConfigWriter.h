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
/// Before a save writes over `path`: when the file there was not written by Tarnwick and holds lines a save
/// does not keep (see DroppedLines), its bytes are first copied to `path` + ".orig", whole or not at all. That
/// happens once: an existing ".orig" is never replaced. True when nothing was needed or the copy was made
/// (`keptAs` then names it); false, with `error` saying why, when the copy could not be made.
bool KeepOriginal(const QString &path, QString *keptAs, QString *error);

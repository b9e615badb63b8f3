// ConfigReader: reads a game configuration file into the open document, whole or for one area.
#pragma once

#include "ConfigDocument.h"
#include "SettingCatalog.h"

#include <QByteArray>
#include <QString>

namespace ConfigReader {

/// The message shown when a file can't be read or its working copy can't be made.
QString backupFailedMessage();
/// The working copy's content: an empty first line, then the file's lines with CR LF ends,
/// each cut at its first "//" except the file's last physical line.
QByteArray workingCopy(const QByteArray &fileBytes);
/// Applies the lines of a working copy to the document, as a read of `scope` does after the copy is made.
void applyWorkingCopy(ConfigDocument &doc, const QByteArray &copy, FileScope scope);

} // namespace ConfigReader

/// The value a setting line gives `name` after the read rule, or "" when the line doesn't set `name`.
QString GetSetaValue(const QString &line, const QString &name, const ReadRule &rule = {});
/// The number that follows `key` (such as "a1\") in an info string, as text; "0" when the key is absent.
QString InfoValue(const QString &info, const QString &key);
/// Reads the file into the document for the scope. On failure the document is unchanged and `error`
/// holds the message to show.
bool ReadCfgFile(ConfigDocument &doc, const QString &path, FileScope scope, QString *error = nullptr);
/// Opens a configuration as the document: a whole-file read, then the document belongs to the file.
bool OpenCfgFile(ConfigDocument &doc, const QString &path, QString *error = nullptr);

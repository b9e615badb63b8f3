// ConfigReader: reads a game configuration file into the open document, whole or for one area.
#pragma once

#include "ConfigDocument.h"
#include "SettingCatalog.h"

#include <QByteArray>
#include <QString>

/// The lines of a file that a whole read does not carry into the document, comments and blank lines aside:
/// console commands (exec, vstr, unbindall ...), variables given without set or seta, lines that start with
/// blanks, bind lines that bind no action. A save does not write them back.
struct DroppedLines
{
    /// How many of the lines to hold (-1: all); set before a read.
    qsizetype examples = 5;
    qsizetype count = 0;
    /// The first of them: the line's number (1 for the file's first line) and the line as read.
    QList<std::pair<qsizetype, QByteArray>> lines;
    /// Their first words ("exec", "vstr" ...), each once, three at most.
    QStringList commands;
    /// Whether the file begins with the line the writer puts first.
    bool writtenByTarnwick = false;
};

namespace ConfigReader {

/// The message shown when a file can't be read or its working copy can't be made.
QString backupFailedMessage();
/// The working copy's content: an empty first line, then the file's lines with CR LF ends,
/// each cut at its first "//" except the file's last physical line.
QByteArray workingCopy(const QByteArray &fileBytes);
/// Applies the lines of a working copy to the document, as a read of `scope` does after the copy is made.
void applyWorkingCopy(ConfigDocument &doc, const QByteArray &copy, FileScope scope);
/// The dropped lines of a working copy, with `examples` of them at most (-1: all).
DroppedLines droppedLines(const QByteArray &copy, qsizetype examples);
/// Why a dropped line is not carried: it starts with a blank, binds a key to no action, gives a variable
/// without set or seta, or is a console command.
QString dropReason(QByteArrayView line);
/// Whether a file's bytes begin with the line the writer puts first (Tarnwick wrote the file).
bool writtenByTarnwick(QByteArrayView fileBytes);

} // namespace ConfigReader

/// The value a setting line gives `name` after the read rule, or "" when the line doesn't set `name`.
QString GetSetaValue(const QString &line, const QString &name, const ReadRule &rule = {});
/// The number that follows `key` (such as "a1\") in an info string, as text; "0" when the key is absent.
QString InfoValue(const QString &info, const QString &key);
/// Reads the file into the document for the scope. On failure the document is unchanged and `error`
/// holds the message to show. With `dropped`, a whole read also reports what it does not carry.
bool ReadCfgFile(ConfigDocument &doc, const QString &path, FileScope scope, QString *error = nullptr,
    DroppedLines *dropped = nullptr);
/// Opens a configuration as the document: a whole-file read, then the document belongs to the file.
bool OpenCfgFile(ConfigDocument &doc, const QString &path, QString *error = nullptr);

// WholeFile: writes a file whole or not at all — the old file stays as it was until the new one is complete
// and on disk, then the new one takes its place in one step. A save killed half-way leaves the old file. On
// Linux its new bytes had no name yet, so nothing is left of them; on Unix file systems without such files they
// sit in NAME.tarnwick-XXXXXX, which the next save of NAME removes. Elsewhere QSaveFile does the work.
#pragma once

#include <QByteArray>
#include <QString>

namespace WholeFile {

enum class Existing { Replace, Keep };

/// Writes `bytes` to `path` (through its symbolic links, which stay), replacing a file there, or with
/// Existing::Keep failing when one is there. Empty when written; else why not ("Permission denied",
/// "File too large" ...), and nothing at `path` changed.
QString write(const QString &path, const QByteArray &bytes, Existing existing = Existing::Replace);
/// Whether `name` is what a save of the file `fileName` leaves beside it when it is killed half-way.
bool isLeftover(const QString &name, const QString &fileName);
/// Whether writes may use files without a name (Linux): true by default. Where the file system has none, writes
/// go the other way on their own; tests turn them off to try that way.
void setUnnamedFiles(bool allowed);

} // namespace WholeFile

/// False, with "Could not write "<absolute path>": <reason>" in *error, when the file could not be written.
bool WriteWholeFile(const QString &path, const QByteArray &bytes, QString *error = nullptr);

// WholeFile: writes a file whole or not at all — the old file stays as it was until the new one is
// complete (a temporary file beside it replaces it at the end).
#pragma once

#include <QByteArray>
#include <QString>

/// False, with "Could not write "<absolute path>": <reason>" in *error, when the file could not be written.
bool WriteWholeFile(const QString &path, const QByteArray &bytes, QString *error = nullptr);

// FuzzTargets: what each fuzz target does with one input. The libFuzzer programs (fuzz/) and the test that replays
// the inputs kept under tests/data/fuzz run the very same checks.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <span>

namespace FuzzTargets {

/// What the input broke, empty when every property held. A crash or a sanitizer report ends the process instead.
using Check = QString (*)(QByteArrayView input);

struct Target
{
    const char *name; // also the folder of its inputs under tests/data/fuzz
    Check check;
};

std::span<const Target> all();
/// The target of that name; nullptr when there is none.
const Target *find(QStringView name);

/// The configuration reader on one area: the first byte picks the scope (byte % 5), the rest is the file.
QString reader(QByteArrayView input);
/// tarnwick-cli rewrite three times over: the file read whole and saved, through real files.
QString rewrite(QByteArrayView input);
/// The bind lines of the input, one a line (LF), offered to the actions.
QString bindLines(QByteArrayView input);
/// The input as tarnwick.ini: loaded, saved and loaded again.
QString settingsFile(QByteArrayView input);
/// The input (UTF-8) as the command line of a start; a NUL parts the arguments.
QString commandLine(QByteArrayView input);
/// The input as what a later copy sends to the first.
QString handOver(QByteArrayView input);
/// The input as a PK3 archive: listed, then each entry read.
QString pk3(QByteArrayView input);
/// The input as a skin icon.
QString tga(QByteArrayView input);

/// A folder of this process's own for the files the checks write: on a memory file system when there is one
/// (/dev/shm) unless TMPDIR names a folder, else in the temporary folder. Removed when the process ends normally.
QString scratchFolder();
/// Writes `bytes` to `name` in the scratch folder, replacing what was there; the file's path.
QString scratchFile(const QString &name, QByteArrayView bytes);
/// The whole content of a file; empty when it can't be read.
QByteArray fileContent(const QString &path);

} // namespace FuzzTargets

// CommandLine: what the text Tarnwick is started with (or that a later copy hands over) asks for — open a
// configuration, import a partial settings file, show the Open dialog, or nothing.
#pragma once

#include "PartialFiles.h"

#include <QString>
#include <optional>

namespace CommandLine {

enum class Action { Nothing, OpenDialog, OpenConfig, Import };

struct Request
{
    Action action = Action::Nothing;
    QString path;
    std::optional<PartialKind> kind; // the kind of an import
};

/// Blanks are trimmed and one leading and one trailing double quote dropped. A text ending in "\OPEN" (or
/// "/OPEN") shows the Open dialog. One ending in "CFG" opens as it is, without looking for the file; one
/// ending in "CONFIG", "CTR" or "RNR" only when a normal file matches it (hidden files and folders don't;
/// wildcards may match); one ending in "HUD" or "RLG" when a file of that path exists, hidden or not.
/// Case plays no part in the endings.
Request classify(const QString &text);

/// The command line of this start: the arguments after the program's name, joined by blanks.
QString joinArguments(const QStringList &arguments);

} // namespace CommandLine

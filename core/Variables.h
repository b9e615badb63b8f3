// Variables: every variable a document holds, by name — the catalogued settings and the kept set/seta lines
// of all others — and the rules for changing one, shared by the All Variables page and tarnwick-cli.
#pragma once

#include "ConfigDocument.h"

#include <QString>
#include <QStringView>

namespace Variables {

/// A kept line read as a variable: its keyword as written ("seta", "set" ...), the name and the value as the
/// reader takes a value (quotes removed, tabs made blanks, trimmed).
struct KeptVariable
{
    QString keyword;
    QString name;
    QString value;
};
KeptVariable parseKeptLine(QStringView line);

/// The line a kept line becomes with a new value: `seta NAME "VALUE"`, with set, sets or setu kept where the
/// line used one of them.
QString rewrittenLine(const KeptVariable &variable, const QString &value);

/// Why `name` can't be a variable's name; empty when it can.
QString nameProblem(const QString &name);
/// Why `value` can't stand between the quotes of a kept line; empty when it can.
QString valueProblem(const QString &value);
/// Why setVariable would refuse `name` with `value`: the name's problem, then for a name without a control
/// the value's; empty when it would take them.
QString problem(const QString &name, const QString &value);

/// A catalogued setting takes `value` as a file line `seta NAME VALUE` gives it: through its read rule and
/// conversion into its controls. A value the setting can't take leaves them as they are.
void setSetting(ConfigDocument &doc, int row, const QString &value);
/// Kept line `index` takes `value`, rewritten in its place; nothing changes when the value is the one it holds.
/// False, with `error` saying why, when the value can't be written.
bool setKeptValue(ConfigDocument &doc, int index, const QString &value, QString *error);

/// The last kept line that sets `name` (compared without regard to case): the one the game takes. -1 when none.
int lastKeptLineOf(const ConfigDocument &doc, QStringView name);

enum class Change { Refused, Setting, Rewritten, Appended };
/// A catalogued name goes to its setting (setSetting); any other name rewrites its last kept line, or appends
/// `seta NAME "VALUE"` when it has none. Refused, with `error` saying why, for a name or value that can't be.
Change setVariable(ConfigDocument &doc, const QString &name, const QString &value, QString *error);
/// Removes every kept line of `name`. False, with `error` saying why, for a catalogued name (the writer always
/// writes it) or a name no kept line sets.
bool unsetVariable(ConfigDocument &doc, const QString &name, QString *error);

} // namespace Variables

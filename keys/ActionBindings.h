// ActionBindings: the two keys of each of the 37 actions, and their bind lines in and out.
#pragma once

#include "ActionTable.h"

#include <QString>
#include <QStringList>
#include <array>
#include <optional>

struct ActionBinding
{
    QString firstKey;
    QString secondKey;

    bool operator==(const ActionBinding &) const = default;
};

enum class KeySlot { First, Second };

/// The key a bind line gives the action of `command` (lower case, no quotes); nothing when the
/// line is not a bind line ending in that command, or when its key part is empty.
std::optional<QString> ParseBindLine(const QString &line, const QString &command);

class ActionBindings
{
public:
    const ActionBinding &at(int action) const { return m_bindings.at(action); }
    QString key(int action, KeySlot slot) const;
    void setKey(int action, KeySlot slot, const QString &key);

    /// Offers a bind line to every action in index order; each action whose command ends the line
    /// takes its key into the first free slot, or over the second.
    void ApplyBindLine(const QString &line);
    /// The same for a line already examined (quotes removed, tabs made blanks).
    void applyExaminedBindLine(const QString &examined);
    /// Whether an examined bind line binds one of the actions (a line that binds none is not kept).
    static bool bindsAnAction(const QString &examined);
    /// The lines the writer emits for one action: first key's line, then second key's line.
    QStringList BindLinesFor(int action) const;
    /// Takes `key` away from whatever slot holds it, then stores it in the given slot.
    void DefineKey(int action, KeySlot slot, const QString &key);
    void DeleteKey(int action, KeySlot slot) { setKey(action, slot, QString()); }
    void ClearAllBindings();

    bool operator==(const ActionBindings &) const = default;

private:
    std::array<ActionBinding, ActionTable::Count> m_bindings;
};

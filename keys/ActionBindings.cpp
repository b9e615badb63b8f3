#include "ActionBindings.h"

#include "CfgText.h"

namespace {

// The key of a prepared bind line (quotes gone, tabs as blanks, trimmed) whose text ends with
// `command`: what stands between "bind " and the blank before the command.
std::optional<QString> keyBefore(QStringView trimmed, QStringView command)
{
    // The command must end the line exactly as written: a command in capitals matches nothing.
    if (trimmed.isEmpty() || trimmed.back() != command.back() || !trimmed.endsWith(command, Qt::CaseSensitive))
        return std::nullopt;
    const qsizetype length = trimmed.size() - command.size() - 6;
    if (length <= 0)
        return std::nullopt;
    QString key = CfgText::asciiUpper(CfgText::trimBlanks(trimmed.mid(5, length)));
    if (key.isEmpty())
        return std::nullopt;
    return key;
}

// The prepared form of an examined bind line, or nothing when the line is not one.
std::optional<QString> preparedBindLine(const QString &examined)
{
    if (!CfgText::startsWithNoCase(examined, u"bind"))
        return std::nullopt;
    return CfgText::trimBlanks(examined);
}

const std::array<QString, ActionTable::Count> &commands()
{
    static const std::array<QString, ActionTable::Count> table = [] {
        std::array<QString, ActionTable::Count> t;
        for (int i = 0; i < ActionTable::Count; ++i)
            t[i] = ActionTable::command(i);
        return t;
    }();
    return table;
}

} // namespace

std::optional<QString> ParseBindLine(const QString &line, const QString &command)
{
    const std::optional<QString> prepared = preparedBindLine(CfgText::examined(line));
    if (!prepared)
        return std::nullopt;
    return keyBefore(*prepared, CfgText::asciiLower(command));
}

QString ActionBindings::key(int action, KeySlot slot) const
{
    const ActionBinding &b = m_bindings.at(action);
    return slot == KeySlot::First ? b.firstKey : b.secondKey;
}

void ActionBindings::setKey(int action, KeySlot slot, const QString &key)
{
    ActionBinding &b = m_bindings.at(action);
    (slot == KeySlot::First ? b.firstKey : b.secondKey) = key;
}

void ActionBindings::ApplyBindLine(const QString &line)
{
    applyExaminedBindLine(CfgText::examined(line));
}

void ActionBindings::applyExaminedBindLine(const QString &examined)
{
    const std::optional<QString> prepared = preparedBindLine(examined);
    if (!prepared)
        return;
    const auto &table = commands();
    for (int i = 0; i < ActionTable::Count; ++i) {
        const std::optional<QString> key = keyBefore(*prepared, table[i]);
        if (!key)
            continue;
        ActionBinding &b = m_bindings[i];
        (b.firstKey.isEmpty() ? b.firstKey : b.secondKey) = *key;
    }
}

bool ActionBindings::bindsAnAction(const QString &examined)
{
    const std::optional<QString> prepared = preparedBindLine(examined);
    if (!prepared)
        return false;
    for (const QString &command : commands()) {
        if (keyBefore(*prepared, command))
            return true;
    }
    return false;
}

QStringList ActionBindings::BindLinesFor(int action) const
{
    QStringList lines;
    const ActionBinding &b = m_bindings.at(action);
    for (const QString &key : { b.firstKey, b.secondKey }) {
        if (key.isEmpty())
            continue;
        // One-character names are written as the game writes them, in lower case (W becomes w).
        const QString written = key.size() == 1 ? CfgText::asciiLower(key) : key;
        lines.append(QStringLiteral("bind ") + written + u' ' + ActionTable::quotedCommand(action));
    }
    return lines;
}

void ActionBindings::DefineKey(int action, KeySlot slot, const QString &key)
{
    for (ActionBinding &b : m_bindings) {
        if (b.firstKey == key)
            b.firstKey.clear();
        else if (b.secondKey == key)
            b.secondKey.clear();
    }
    setKey(action, slot, key);
}

void ActionBindings::ClearAllBindings()
{
    m_bindings.fill(ActionBinding {});
}

#include "ActionBindings.h"

#include "CfgText.h"

std::optional<QString> ParseBindLine(const QString &line, const QString &command)
{
    const QString wanted = CfgText::asciiLower(command);
    const QString text = CfgText::examined(line);
    if (!CfgText::startsWithNoCase(text, u"bind"))
        return std::nullopt;
    const QString trimmed = CfgText::trimBlanks(text);
    // The command must end the line exactly as written: a command in capitals matches nothing.
    if (!trimmed.endsWith(wanted, Qt::CaseSensitive))
        return std::nullopt;
    // The key sits between "bind " and the blank before the command.
    const qsizetype length = trimmed.size() - wanted.size() - 6;
    if (length <= 0)
        return std::nullopt;
    QString key = CfgText::asciiUpper(CfgText::trimBlanks(QStringView(trimmed).mid(5, length)));
    if (key.isEmpty())
        return std::nullopt;
    return key;
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
    for (int i = 0; i < ActionTable::Count; ++i) {
        const std::optional<QString> key = ParseBindLine(line, ActionTable::command(i));
        if (!key)
            continue;
        ActionBinding &b = m_bindings[i];
        (b.firstKey.isEmpty() ? b.firstKey : b.secondKey) = *key;
    }
}

QStringList ActionBindings::BindLinesFor(int action) const
{
    QStringList lines;
    const ActionBinding &b = m_bindings.at(action);
    for (const QString &key : {b.firstKey, b.secondKey}) {
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
    m_bindings.fill(ActionBinding{});
}

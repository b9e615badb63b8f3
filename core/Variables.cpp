#include "Variables.h"

#include "CfgText.h"
#include "ConfigReader.h"
#include "SettingMapping.h"

namespace {

// The next word of `text` from `pos` on, blanks before it skipped; `pos` ends after it.
QStringView nextWord(QStringView text, qsizetype &pos)
{
    while (pos < text.size() && text[pos] == u' ')
        ++pos;
    const qsizetype start = pos;
    while (pos < text.size() && text[pos] != u' ')
        ++pos;
    return text.mid(start, pos - start);
}

bool isControl(QChar c)
{
    return c.unicode() < 0x20 || c.unicode() == 0x7F;
}

} // namespace

namespace Variables {

KeptVariable parseKeptLine(QStringView line)
{
    const QString examined = CfgText::examined(line);
    qsizetype pos = 0;
    KeptVariable v;
    v.keyword = nextWord(examined, pos).toString();
    v.name = nextWord(examined, pos).toString();
    v.value = CfgText::trimBlanks(QStringView(examined).mid(pos));
    return v;
}

QString rewrittenLine(const KeptVariable &variable, const QString &value)
{
    QString keyword = CfgText::asciiLower(variable.keyword);
    if (keyword != u"set" && keyword != u"sets" && keyword != u"setu")
        keyword = QStringLiteral("seta");
    return keyword + u' ' + variable.name + QStringLiteral(" \"") + value + u'"';
}

QString nameProblem(const QString &name)
{
    if (name.isEmpty())
        return QStringLiteral("A variable needs a name.");
    const bool oneWord = std::none_of(name.cbegin(), name.cend(),
        [](QChar c) { return c == u' ' || c == u'"' || c == u';' || isControl(c) || c.unicode() > 0xFF; });
    if (!oneWord || name.contains(QLatin1StringView("//")))
        return QStringLiteral("\"%1\" can't be a variable's name: a name is one word, without blanks, double "
                              "quotes, semicolons or \"//\".")
            .arg(name);
    return QString();
}

QString valueProblem(const QString &value)
{
    if (value.contains(u'"'))
        return QStringLiteral("A value can't hold a double quote: the game's files have no way to write one.");
    if (value.contains(QLatin1StringView("//")))
        return QStringLiteral("A value can't hold \"//\": the game takes the rest of the line for a comment.");
    if (std::any_of(value.cbegin(), value.cend(), isControl))
        return QStringLiteral("A value can't hold tabs, line breaks or other control characters.");
    for (QChar c : value) {
        if (c.unicode() > 0xFF)
            return QStringLiteral("A value can't hold \"%1\": the game's files hold one byte a character.").arg(c);
    }
    return QString();
}

QString problem(const QString &name, const QString &value)
{
    if (QString why = nameProblem(name); !why.isEmpty())
        return why;
    return SettingCatalog::instance().indexOfSetting(name) >= 0 ? QString() : valueProblem(value);
}

void setSetting(ConfigDocument &doc, int row, const QString &value)
{
    const SettingRow &r = SettingCatalog::instance().row(row);
    // The value goes the way of a file line: the read rule, then the snapshot's conversion, then the
    // controls; a value the setting can't take leaves the controls as they are.
    const QString taken = GetSetaValue(QStringLiteral("seta ") + r.name + u' ' + value, r.name, r.rule);
    QList<SlotValue> controls = doc.values().mid(r.firstSlot, r.count);
    QList<SlotValue> held(r.count);
    SettingMapping::controlToSnapshot(r, controls.data(), held.data());
    if (!taken.isEmpty() && SettingMapping::readIntoSnapshot(r, taken, held.data()))
        SettingMapping::snapshotToControl(r, held.data(), controls.data());
    for (int k = 0; k < r.count; ++k) {
        if (r.isText())
            doc.setText(row, k, controls[k].text);
        else
            doc.setState(row, k, int(controls[k].number));
    }
}

bool setKeptValue(ConfigDocument &doc, int index, const QString &value, QString *error)
{
    const KeptVariable v = parseKeptLine(doc.keptLines().at(index));
    if (v.value == value)
        return true;
    QString why
        = v.name.isEmpty() ? QStringLiteral("This line names no variable to give a value.") : valueProblem(value);
    if (!why.isEmpty()) {
        if (error)
            *error = why;
        return false;
    }
    doc.replaceKeptLine(index, rewrittenLine(v, value));
    return true;
}

int lastKeptLineOf(const ConfigDocument &doc, QStringView name)
{
    const QStringList &kept = doc.keptLines();
    for (qsizetype i = kept.size() - 1; i >= 0; --i) {
        if (CfgText::equalsNoCase(parseKeptLine(kept[i]).name, name))
            return int(i);
    }
    return -1;
}

Change setVariable(ConfigDocument &doc, const QString &name, const QString &value, QString *error)
{
    if (const QString why = problem(name, value); !why.isEmpty()) {
        if (error)
            *error = why;
        return Change::Refused;
    }
    if (const int row = SettingCatalog::instance().indexOfSetting(name); row >= 0) {
        setSetting(doc, row, value);
        return Change::Setting;
    }
    if (const int index = lastKeptLineOf(doc, name); index >= 0) {
        setKeptValue(doc, index, value, error);
        return Change::Rewritten;
    }
    doc.appendKeptLine(QStringLiteral("seta ") + name + QStringLiteral(" \"") + value + u'"');
    return Change::Appended;
}

bool unsetVariable(ConfigDocument &doc, const QString &name, QString *error)
{
    const auto fail = [error](const QString &why) {
        if (error)
            *error = why;
        return false;
    };
    if (SettingCatalog::instance().indexOfSetting(name) >= 0)
        return fail(QStringLiteral("\"%1\" is a setting Tarnwick always writes: it can't be removed.").arg(name));
    bool removed = false;
    for (qsizetype i = doc.keptLines().size() - 1; i >= 0; --i) {
        if (CfgText::equalsNoCase(parseKeptLine(doc.keptLines()[i]).name, name)) {
            doc.removeKeptLine(int(i));
            removed = true;
        }
    }
    return removed || fail(QStringLiteral("No line of the configuration sets \"%1\".").arg(name));
}

} // namespace Variables

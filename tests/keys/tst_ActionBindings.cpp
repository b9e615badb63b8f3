// The two keys of each action: bind lines read and written, keys defined over other actions' keys.
#include "ActionBindings.h"

#include <QTest>

namespace {

// Bindings as text: "action=first|second" entries separated by blanks, actions without keys left out,
// e.g. "1=W|MOUSE2 10=|MOUSE1".
ActionBindings bindingsFrom(const QString &text)
{
    ActionBindings bindings;
    for (const QString &entry : text.split(u' ', Qt::SkipEmptyParts)) {
        const qsizetype equals = entry.indexOf(u'=');
        const qsizetype bar = entry.indexOf(u'|', equals + 1);
        const int action = entry.left(equals).toInt();
        bindings.setKey(action, KeySlot::First, entry.mid(equals + 1, bar - equals - 1));
        bindings.setKey(action, KeySlot::Second, entry.mid(bar + 1));
    }
    return bindings;
}

QString describe(const ActionBindings &bindings)
{
    QStringList entries;
    for (int i = 0; i < ActionTable::Count; ++i) {
        if (bindings.at(i) != ActionBinding {})
            entries << QString::number(i) + u'=' + bindings.at(i).firstKey + u'|' + bindings.at(i).secondKey;
    }
    return entries.join(u' ');
}

enum : int { Forward = 1, Back = 2, Jump = 5 };

} // namespace

class tst_ActionBindings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parseBindLine_data();
    void parseBindLine();
    void applyBindLines_data();
    void applyBindLines();
    void eachCommandReachesOnlyItsAction();
    void writtenLinesReadBack_data();
    void writtenLinesReadBack();
    void defineKey_data();
    void defineKey();
};

void tst_ActionBindings::parseBindLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("key"); // empty: the line gives this command nothing

    const auto row = [](const char *tag, const char *line, const char *command, const char *key) {
        QTest::newRow(tag) << QString::fromLatin1(line) << QString::fromLatin1(command) << QString::fromLatin1(key);
    };
    row("key upper-cased", "bind w \"+forward\"", "+forward", "W");
    row("tabs, no quotes", "bind\tmouse1\t+attack", "+attack", "MOUSE1");
    row("keyword in capitals", "BIND w \"+forward\"", "+forward", "W");
    row("quoted key", "bind \"w\" \"+forward\"", "+forward", "W");
    row("extra blanks", "bind   w   \"+forward\"  \t", "+forward", "W");
    row("two-word command", "bind t \"toggle cg_thirdperson\"", "toggle cg_thirdperson", "T");
    row("command asked in capitals", "bind w \"+forward\"", "+FORWARD", "W");
    // The command must end the line exactly as written.
    row("command written in capitals", "bind w \"+FORWARD\"", "+forward", "");
    row("weapon 10 for weapon 10", "bind x \"weapon 10\"", "weapon 10", "X");
    row("weapon 10 not for weapon 1", "bind x \"weapon 10\"", "weapon 1", "");
    // Whatever stands between "bind " and the command is the key.
    row("words before command", "bind x say go \"+forward\"", "+forward", "X SAY GO");
    // Nothing (or less) between "bind" and the command: ignored.
    row("bind and command only", "bind \"+forward\"", "+forward", "");
    row("bind and command, no blank", "bind+forward", "+forward", "");
    row("empty key part", "bind  +forward", "+forward", "");
    row("not a bind line", "echo bind w \"+forward\"", "+forward", "");
    row("leading blank", " bind w \"+forward\"", "+forward", "");
    row("empty line", "", "+forward", "");
}

void tst_ActionBindings::parseBindLine()
{
    QFETCH(QString, line);
    QFETCH(QString, command);
    QFETCH(QString, key);
    QCOMPARE(ParseBindLine(line, command).value_or(QString()), key);
}

void tst_ActionBindings::applyBindLines_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("after");

    const auto row = [](const char *tag, const char *before, const QStringList &lines, const char *after) {
        QTest::newRow(tag) << QString::fromLatin1(before) << lines << QString::fromLatin1(after);
    };
    row("first key", "", { "bind w \"+forward\"" }, "1=W|");
    row("second key", "1=W|", { "bind UPARROW \"+forward\"" }, "1=W|UPARROW");
    row("third replaces second", "1=W|UPARROW", { "bind x \"+forward\"" }, "1=W|X");
    row("empty first taken again", "1=|UPARROW", { "bind w \"+forward\"" }, "1=W|UPARROW");
    row("same key twice", "1=W|", { "bind w \"+forward\"" }, "1=W|W");
    row("key stays with other action", "1=W|", { "bind w \"+back\"" }, "1=W| 2=W|");
    row("unknown command", "1=W|", { "bind x \"+klook\"" }, "1=W|");
    row("malformed lines stop nothing", "",
        { "bind w \"+forward\"", "bind \"+forward\"", "bind", "bind \"+attack\"", "bind UPARROW \"+forward\"",
            "bind mouse1 +attack" },
        "1=W|UPARROW 10=MOUSE1|");
}

void tst_ActionBindings::applyBindLines()
{
    QFETCH(QString, before);
    QFETCH(QStringList, lines);
    QFETCH(QString, after);
    ActionBindings bindings = bindingsFrom(before);
    for (const QString &line : lines)
        bindings.ApplyBindLine(line);
    QCOMPARE(describe(bindings), after);
}

void tst_ActionBindings::eachCommandReachesOnlyItsAction()
{
    for (int i = 0; i < ActionTable::Count; ++i) {
        ActionBindings bindings;
        bindings.ApplyBindLine(QStringLiteral("bind k ") + ActionTable::quotedCommand(i));
        QCOMPARE(describe(bindings), QString::number(i) + QStringLiteral("=K|"));
    }
}

void tst_ActionBindings::writtenLinesReadBack_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QStringList>("lines"); // empty: not looked at
    QTest::addColumn<QString>("read");

    const auto row = [](const char *tag, const char *written, const QStringList &lines, const char *read = nullptr) {
        QTest::newRow(tag) << QString::fromUtf8(written) << lines << QString::fromUtf8(read ? read : written);
    };
    // One-character names are written in lower case, longer ones as stored.
    row("first then second", "1=W|MOUSE2", { "bind w \"+forward\"", "bind MOUSE2 \"+forward\"" });
    row("backslash, two-word command", "22=\\| 35=T|", { "bind \\ \"weapon 10\"", "bind t \"toggle cg_thirdperson\"" });
    // A lone second key is written as the only line, which a read puts first.
    row("second only comes back first", "1=|UPARROW", { "bind UPARROW \"+forward\"" }, "1=UPARROW|");
    // Reading upper-cases every name, the scroll lock name included.
    row("0x00 comes back upper-cased", "10=0x00|", { "bind 0x00 \"+attack\"" }, "10=0X00|");
    row("punctuation", "7=\\|' 8==|- 30=SEMICOLON|` 36=~|", {});
    row("one key on several actions", "1=W|W 2=W| 35=F1|KP_ENTER", {});
    row("non-ASCII one-character name", "1=\u00C9|", {});
}

void tst_ActionBindings::writtenLinesReadBack()
{
    QFETCH(QString, written);
    QFETCH(QStringList, lines);
    QFETCH(QString, read);
    const ActionBindings original = bindingsFrom(written);
    QStringList all;
    for (int i = 0; i < ActionTable::Count; ++i)
        all += original.BindLinesFor(i);
    if (!lines.isEmpty())
        QCOMPARE(all, lines);
    ActionBindings reread = bindingsFrom(QStringLiteral("1=X|Y"));
    reread.ClearAllBindings();
    for (const QString &line : all)
        reread.ApplyBindLine(line);
    QCOMPARE(describe(reread), read);
}

void tst_ActionBindings::defineKey_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("action");
    QTest::addColumn<bool>("second");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("after");

    const auto row
        = [](const char *tag, const char *before, int action, bool second, const char *key, const char *after) {
              QTest::newRow(tag) << QString::fromLatin1(before) << action << second << QString::fromLatin1(key)
                                 << QString::fromLatin1(after);
          };
    row("into empty bindings", "", Forward, false, "W", "1=W|");
    row("taken from first of another", "1=W|MOUSE2", Back, false, "W", "1=|MOUSE2 2=W|");
    row("taken from second of another", "1=UPARROW|W", Back, true, "W", "1=UPARROW| 2=|W");
    row("only one slot cleared per action", "1=W|W", Back, false, "W", "1=|W 2=W|");
    row("taken from every action", "1=W| 2=|W 10=W|MOUSE1", Jump, true, "W", "5=|W 10=|MOUSE1");
    row("moved to second of the same action", "1=W|", Forward, true, "W", "1=|W");
    row("moved to first of the same action", "1=X|W", Forward, false, "W", "1=W|");
    row("same slot again", "1=W|MOUSE2", Forward, false, "W", "1=W|MOUSE2");
    row("replaces the slot's key", "1=W|MOUSE2", Forward, true, "X", "1=W|X");
    row("names compare exactly", "1=0X00|", Back, false, "0x00", "1=0X00| 2=0x00|");
}

void tst_ActionBindings::defineKey()
{
    QFETCH(QString, before);
    QFETCH(int, action);
    QFETCH(bool, second);
    QFETCH(QString, key);
    QFETCH(QString, after);
    ActionBindings bindings = bindingsFrom(before);
    bindings.DefineKey(action, second ? KeySlot::Second : KeySlot::First, key);
    QCOMPARE(describe(bindings), after);
}

QTEST_GUILESS_MAIN(tst_ActionBindings)
#include "tst_ActionBindings.moc"

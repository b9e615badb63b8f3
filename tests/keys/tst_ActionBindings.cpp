// The names the game knows keys and mouse buttons by (and the virtual-key codes Qt's keys map onto), and the two
// keys of each action: bind lines read and written, keys defined over other actions' keys.
#include "ActionBindings.h"
#include "KeyNames.h"
#include "VirtualKeys.h"

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
    // The key a bind line gives a command; empty: the line gives this command nothing.
    void parseBindLine()
    {
        const std::tuple<const char *, const char *, const char *> rows[] = {
            { "bind w \"+forward\"", "+forward", "W" }, // the key upper-cased
            { "bind\tmouse1\t+attack", "+attack", "MOUSE1" }, // tabs, no quotes
            { "BIND w \"+forward\"", "+forward", "W" },
            { "bind \"w\" \"+forward\"", "+forward", "W" },
            { "bind   w   \"+forward\"  \t", "+forward", "W" },
            { "bind t \"toggle cg_thirdperson\"", "toggle cg_thirdperson", "T" },
            { "bind w \"+forward\"", "+FORWARD", "W" }, // the command asked for in capitals
            // The command must end the line exactly as written.
            { "bind w \"+FORWARD\"", "+forward", "" },
            { "bind x \"weapon 10\"", "weapon 10", "X" },
            { "bind x \"weapon 10\"", "weapon 1", "" },
            // Whatever stands between "bind " and the command is the key; nothing (or less) there: ignored.
            { "bind x say go \"+forward\"", "+forward", "X SAY GO" },
            { "bind \"+forward\"", "+forward", "" },
            { "bind+forward", "+forward", "" },
            { "bind  +forward", "+forward", "" },
            { "echo bind w \"+forward\"", "+forward", "" },
            { " bind w \"+forward\"", "+forward", "" },
            { "", "+forward", "" },
        };
        for (const auto &[line, command, key] : rows)
            QVERIFY2(ParseBindLine(QString::fromLatin1(line), QString::fromLatin1(command)).value_or(QString())
                    == QLatin1String(key),
                line);
    }

    // Bind lines applied in turn to bindings that hold `before`.
    void applyBindLines()
    {
        const std::tuple<const char *, QStringList, const char *> rows[] = {
            { "", { "bind w \"+forward\"" }, "1=W|" }, { "1=W|", { "bind UPARROW \"+forward\"" }, "1=W|UPARROW" },
            { "1=W|UPARROW", { "bind x \"+forward\"" }, "1=W|X" }, // a third key replaces the second
            { "1=|UPARROW", { "bind w \"+forward\"" }, "1=W|UPARROW" }, // an empty first is taken again
            { "1=W|", { "bind w \"+forward\"" }, "1=W|W" },
            { "1=W|", { "bind w \"+back\"" }, "1=W| 2=W|" }, // the key stays with the other action
            { "1=W|", { "bind x \"+klook\"" }, "1=W|" }, // an unknown command
            { "",
                { "bind w \"+forward\"", "bind \"+forward\"", "bind", "bind \"+attack\"", "bind UPARROW \"+forward\"",
                    "bind mouse1 +attack" },
                "1=W|UPARROW 10=MOUSE1|" }, // malformed lines stop nothing
        };
        for (const auto &[before, lines, after] : rows) {
            ActionBindings bindings = bindingsFrom(QString::fromLatin1(before));
            for (const QString &line : lines)
                bindings.ApplyBindLine(line);
            QCOMPARE(describe(bindings), QString::fromLatin1(after));
        }
    }

    void eachCommandReachesOnlyItsAction()
    {
        for (int i = 0; i < ActionTable::Count; ++i) {
            ActionBindings bindings;
            bindings.ApplyBindLine(QStringLiteral("bind k ") + ActionTable::quotedCommand(i));
            QCOMPARE(describe(bindings), QString::number(i) + QStringLiteral("=K|"));
        }
    }

    // Bindings written as bind lines and read back. (Punctuation keys, a key on
    // several actions and a name beyond ASCII go round through the fuzz replay's bind lines.)
    void writtenLinesReadBack()
    {
        const std::tuple<const char *, QStringList, const char *> rows[] = {
            // One-character names are written in lower case, longer ones as stored.
            { "1=W|MOUSE2", { "bind w \"+forward\"", "bind MOUSE2 \"+forward\"" }, nullptr },
            { "22=\\| 35=T|", { "bind \\ \"weapon 10\"", "bind t \"toggle cg_thirdperson\"" }, nullptr },
            // A lone second key is written as the only line, which a read puts first.
            { "1=|UPARROW", { "bind UPARROW \"+forward\"" }, "1=UPARROW|" },
            // Reading upper-cases every name, the scroll lock name included.
            { "10=0x00|", { "bind 0x00 \"+attack\"" }, "10=0X00|" },
        };
        for (const auto &[written, lines, read] : rows) {
            const ActionBindings original = bindingsFrom(QString::fromUtf8(written));
            QStringList all;
            for (int i = 0; i < ActionTable::Count; ++i)
                all += original.BindLinesFor(i);
            QCOMPARE(all, lines);
            ActionBindings reread = bindingsFrom(QStringLiteral("1=X|Y"));
            reread.ClearAllBindings();
            for (const QString &line : all)
                reread.ApplyBindLine(line);
            QCOMPARE(describe(reread), QString::fromUtf8(read ? read : written));
        }
    }

    // A key defined into a slot leaves every other slot that held it.
    void defineKey()
    {
        const std::tuple<const char *, int, KeySlot, const char *, const char *> rows[] = {
            { "", Forward, KeySlot::First, "W", "1=W|" }, { "1=W|MOUSE2", Back, KeySlot::First, "W", "1=|MOUSE2 2=W|" },
            { "1=UPARROW|W", Back, KeySlot::Second, "W", "1=UPARROW| 2=|W" },
            { "1=W|W", Back, KeySlot::First, "W", "1=|W 2=W|" }, // one slot cleared per action
            { "1=W| 2=|W 10=W|MOUSE1", Jump, KeySlot::Second, "W", "5=|W 10=|MOUSE1" },
            { "1=W|", Forward, KeySlot::Second, "W", "1=|W" }, // moved within the action
            { "1=X|W", Forward, KeySlot::First, "W", "1=W|" },
            { "1=W|MOUSE2", Forward, KeySlot::First, "W", "1=W|MOUSE2" }, // the same slot again
            { "1=W|MOUSE2", Forward, KeySlot::Second, "X", "1=W|X" },
            { "1=0X00|", Back, KeySlot::First, "0x00", "1=0X00| 2=0x00|" }, // names compare exactly
        };
        for (const auto &[before, action, slot, key, after] : rows) {
            ActionBindings bindings = bindingsFrom(QString::fromLatin1(before));
            bindings.DefineKey(action, slot, QString::fromLatin1(key));
            QCOMPARE(describe(bindings), QString::fromLatin1(after));
        }
    }

    void qtKeyGivesCodeAndName_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("code"); // -1: the key has none, the capture ignores it
        QTest::addColumn<QString>("name");

        const auto row
            = [](const char *tag, int key, int code, const char *name, Qt::KeyboardModifiers modifiers = {}) {
                  QTest::newRow(tag) << key << modifiers << code << QString::fromLatin1(name);
              };
        const auto pad = [&row](const char *tag, int key, int code, const char *name) {
            row(tag, key, code, name, Qt::KeypadModifier);
        };
        // The paths through the code, not every entry of the key tables: letters and modifiers, a shifted symbol
        // (the key it sits on), the function keys' range, keys without a code, the names the game lacks, Esc.
        row("letter", Qt::Key_Q, 81, "Q");
        row("Ctrl+Alt+letter", Qt::Key_W, 87, "W", Qt::ControlModifier | Qt::AltModifier);
        row("Shift+8 is not keypad star", Qt::Key_Asterisk, 56, "8");
        row("semicolon is spelled out", Qt::Key_Semicolon, 186, "SEMICOLON");
        row("F16", Qt::Key_F16, 127, "F16");
        row("F25", Qt::Key_F25, -1, "");
        row("letter outside A-Z", Qt::Key_Adiaeresis, -1, "");
        row("Scroll Lock has no name the game knows", Qt::Key_ScrollLock, 145, "0x00");
        row("Esc cancels", Qt::Key_Escape, 27, "");
        // The keypad: Num Lock on gives the keypad codes, off (or a key without one) the main keys' codes.
        pad("keypad Enter", Qt::Key_Enter, 13, "ENTER");
        pad("keypad 1 Num Lock on", Qt::Key_1, 97, "KP_END");
        pad("keypad 5 Num Lock off", Qt::Key_Clear, 12, "KP_5");
        pad("keypad star", Qt::Key_Asterisk, 106, "*");
        pad("keypad comma is the decimal key", Qt::Key_Comma, 110, ".");
        pad("keypad plus", Qt::Key_Plus, 107, "KP_PLUS");
    }

    void qtKeyGivesCodeAndName()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(int, code);
        QCOMPARE(VirtualKeys::fromQtKey(key, modifiers), code);
#ifndef Q_OS_WIN
        // An X11 keysym or a macOS key code in the native field is no Windows code.
        QCOMPARE(VirtualKeys::fromQtKey(key, modifiers, 0xff0d), code);
#endif
        if (code >= 0)
            QTEST(KeyNameFromKeyCode(quint16(code)).value_or(QString()), "name");
    }

    // Codes only Windows sends: any code without a name of its own names the character with that code.
    void codeWithoutQtKey()
    {
        QCOMPARE(KeyNameFromKeyCode(44), std::optional<QString>(QStringLiteral(","))); // Print Screen
        QCOMPARE(KeyNameFromKeyCode(226), std::optional<QString>(QString(QChar(0xE2)))); // the extra European key
        QCOMPARE(KeyNameFromKeyCode(256), std::optional<QString>(QStringLiteral("0x00")));
    }
};

QTEST_GUILESS_MAIN(tst_ActionBindings)
#include "tst_ActionBindings.moc"

// The names the game knows keys and mouse buttons by, and the virtual-key codes Qt's keys map onto.
#include "KeyNames.h"
#include "VirtualKeys.h"

#include <QTest>

class tst_KeyNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        row("letter", Qt::Key_Q, 81, "Q");
        row("Ctrl+Alt+letter", Qt::Key_W, 87, "W", Qt::ControlModifier | Qt::AltModifier);
        // A shifted symbol is the key it sits on.
        row("Shift+1", Qt::Key_Exclam, 49, "1", Qt::ShiftModifier);
        row("Shift+8 is not keypad star", Qt::Key_Asterisk, 56, "8");
        row("Shift alone", Qt::Key_Shift, 16, "SHIFT");
        row("Shift+Tab", Qt::Key_Backtab, 9, "TAB");
        row("main Enter", Qt::Key_Return, 13, "ENTER");
        // The semicolon key is spelled out; the other punctuation keys give their character.
        row("semicolon", Qt::Key_Semicolon, 186, "SEMICOLON");
        row("main plus is the equals key", Qt::Key_Plus, 187, "=");
        row("dead grave is the back-quote key", Qt::Key_Dead_Grave, 192, "`");
        row("F16", Qt::Key_F16, 127, "F16");
        row("F25", Qt::Key_F25, -1, "");
        row("Print Screen", Qt::Key_Print, -1, "");
        row("letter outside A-Z", Qt::Key_Adiaeresis, -1, "");
        // The Windows and Scroll Lock keys have no name the game knows.
        row("right Windows key", Qt::Key_Super_R, 92, "0x00");
        row("Scroll Lock", Qt::Key_ScrollLock, 145, "0x00");
        row("Esc cancels", Qt::Key_Escape, 27, "");
        // The keypad: Num Lock on gives the keypad codes, off the navigation keys' codes.
        pad("keypad Enter", Qt::Key_Enter, 13, "ENTER");
        pad("keypad 1 Num Lock on", Qt::Key_1, 97, "KP_END");
        pad("keypad 1 Num Lock off", Qt::Key_End, 35, "END");
        pad("keypad 5 Num Lock on", Qt::Key_5, 101, "KP_5");
        pad("keypad 5 Num Lock off", Qt::Key_Clear, 12, "KP_5");
        // The keypad star and point share the main keys' names.
        pad("keypad star", Qt::Key_Asterisk, 106, "*");
        pad("keypad point", Qt::Key_Period, 110, ".");
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

    // Left, right and middle alone have names; none, two at once, a fourth button and nonsense have none.
    void mouseButtonGivesGameName()
    {
        const std::pair<int, const char *> rows[]
            = { { 1, "MOUSE1" }, { 2, "MOUSE2" }, { 4, "MOUSE3" }, { 0, "" }, { 3, "" }, { 8, "" }, { -1, "" } };
        for (const auto &[button, name] : rows)
            QCOMPARE(KeyNameFromMouseButton(button).value_or(QString()), QString::fromLatin1(name));
    }
};

QTEST_GUILESS_MAIN(tst_KeyNames)
#include "tst_KeyNames.moc"

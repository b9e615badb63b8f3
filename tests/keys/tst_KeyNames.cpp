// The names the game knows keys and mouse buttons by, and the virtual-key codes Qt's keys map onto.
#include "KeyNames.h"
#include "VirtualKeys.h"

#include <QTest>

class tst_KeyNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void qtKeyGivesCodeAndName_data();
    void qtKeyGivesCodeAndName();
    void codeWithoutQtKey_data();
    void codeWithoutQtKey();
    void mouseButtonGivesGameName_data();
    void mouseButtonGivesGameName();
};

void tst_KeyNames::qtKeyGivesCodeAndName_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<int>("code"); // -1: the key has none, the capture ignores it
    QTest::addColumn<QString>("name");

    const auto main = [](const char *tag, int key, int code, const char *name) {
        QTest::newRow(tag) << key << Qt::KeyboardModifiers() << code << QString::fromLatin1(name);
    };
    const auto pad = [](const char *tag, int key, int code, const char *name) {
        QTest::newRow(tag) << key << Qt::KeyboardModifiers(Qt::KeypadModifier) << code << QString::fromLatin1(name);
    };
    main("letter", Qt::Key_Q, 81, "Q");
    QTest::newRow("Ctrl+Alt+letter") << int(Qt::Key_W) << (Qt::ControlModifier | Qt::AltModifier) << 87 << "W";
    // A shifted symbol is the key it sits on.
    QTest::newRow("Shift+1") << int(Qt::Key_Exclam) << Qt::KeyboardModifiers(Qt::ShiftModifier) << 49 << "1";
    main("Shift+8 is not keypad star", Qt::Key_Asterisk, 56, "8");
    main("Shift alone", Qt::Key_Shift, 16, "SHIFT");
    main("Alt alone", Qt::Key_Alt, 18, "ALT");
    main("Shift+Tab", Qt::Key_Backtab, 9, "TAB");
    main("main Enter", Qt::Key_Return, 13, "ENTER");
    // The semicolon key is spelled out; the other punctuation keys give their character.
    main("semicolon", Qt::Key_Semicolon, 186, "SEMICOLON");
    main("main plus is the equals key", Qt::Key_Plus, 187, "=");
    main("dead grave is the back-quote key", Qt::Key_Dead_Grave, 192, "`");
    main("F16", Qt::Key_F16, 127, "F16");
    main("F25", Qt::Key_F25, -1, "");
    main("Print Screen", Qt::Key_Print, -1, "");
    main("letter outside A-Z", Qt::Key_Adiaeresis, -1, "");
    // The Windows and Scroll Lock keys have no name the game knows.
    main("right Windows key", Qt::Key_Super_R, 92, "0x00");
    main("Scroll Lock", Qt::Key_ScrollLock, 145, "0x00");
    main("Esc cancels", Qt::Key_Escape, 27, "");
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

void tst_KeyNames::qtKeyGivesCodeAndName()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(int, code);
    QFETCH(QString, name);

    QCOMPARE(VirtualKeys::fromQtKey(key, modifiers), code);
#ifndef Q_OS_WIN
    // An X11 keysym or a macOS key code in the native field is no Windows code.
    QCOMPARE(VirtualKeys::fromQtKey(key, modifiers, 0xff0d), code);
#endif
    if (code >= 0)
        QCOMPARE(KeyNameFromKeyCode(quint16(code)).value_or(QString()), name);
}

// Codes only Windows sends: any code without a name of its own names the character with that code.
void tst_KeyNames::codeWithoutQtKey_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::newRow("print screen is a comma") << 44 << QStringLiteral(",");
    QTest::newRow("extra European key") << 226 << QString(QChar(0xE2));
    QTest::newRow("beyond 8 bits") << 256 << QStringLiteral("0x00");
}

void tst_KeyNames::codeWithoutQtKey()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QCOMPARE(KeyNameFromKeyCode(quint16(code)), std::optional<QString>(name));
}

void tst_KeyNames::mouseButtonGivesGameName_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("name"); // empty: the button can't be captured

    QTest::newRow("left") << 1 << QStringLiteral("MOUSE1");
    QTest::newRow("right") << 2 << QStringLiteral("MOUSE2");
    QTest::newRow("middle") << 4 << QStringLiteral("MOUSE3");
    QTest::newRow("none") << 0 << QString();
    QTest::newRow("left and right together") << 3 << QString();
    QTest::newRow("fourth button") << 8 << QString();
    QTest::newRow("negative") << -1 << QString();
}

void tst_KeyNames::mouseButtonGivesGameName()
{
    QFETCH(int, button);
    QFETCH(QString, name);
    QCOMPARE(KeyNameFromMouseButton(button).value_or(QString()), name);
}

QTEST_GUILESS_MAIN(tst_KeyNames)
#include "tst_KeyNames.moc"

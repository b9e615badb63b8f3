#include "KeyNames.h"

#include <QTest>

class tst_KeyNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyCodeGivesGameName_data();
    void keyCodeGivesGameName();
    void escapeCancelsCapture();
    void mouseButtonGivesGameName_data();
    void mouseButtonGivesGameName();
};

void tst_KeyNames::keyCodeGivesGameName_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");

    // Runs of consecutive key codes, each name in turn from the first code on.
    const auto run = [](int firstCode, const QStringList &names) {
        for (int i = 0; i < names.size(); ++i)
            QTest::addRow("%d %s", firstCode + i, qPrintable(names[i])) << firstCode + i << names[i];
    };
    run(8, { "BACKSPACE", "TAB" });
    run(12, { "KP_5", "ENTER" });
    run(16, { "SHIFT", "CTRL", "ALT", "PAUSE", "CAPSLOCK" });
    run(32, { "SPACE", "PGUP", "PGDN", "END", "HOME", "LEFTARROW", "UPARROW", "RIGHTARROW", "DOWNARROW" });
    run(45, { "INS", "DEL" });
    // The keypad star, slash and point keys share the plain names.
    run(96,
        { "KP_INS", "KP_END", "KP_DOWNARROW", "KP_PGDN", "KP_LEFTARROW", "KP_5", "KP_RIGHTARROW", "KP_HOME",
            "KP_UPARROW", "KP_PGUP", "*", "KP_PLUS", "KP_ENTER", "KP_MINUS", ".", "/" });
    run(144, { "KP_NUMLOCK" });
    // The semicolon key is spelled out; the other punctuation keys give their character.
    run(186, { "SEMICOLON", "=", ",", "-", ".", "/", "`" });
    run(219, { "[", "\\", "]", "'" });
    // Scroll Lock and the Windows and menu keys have no name the game knows.
    run(91, { "0x00", "0x00", "0x00" });
    run(145, { "0x00" });

    for (int digit = 0; digit <= 9; ++digit)
        QTest::addRow("digit %d", digit) << 48 + digit << QString::number(digit);
    for (char letter = 'A'; letter <= 'Z'; ++letter)
        QTest::addRow("letter %c", letter) << int(letter) << QString(QLatin1Char(letter));
    for (int f = 1; f <= 16; ++f)
        QTest::addRow("F%d", f) << 111 + f << QStringLiteral("F%1").arg(f);

    // Any other code names the character with that code.
    QTest::newRow("print screen is a comma") << 44 << QStringLiteral(",");
    QTest::newRow("extra European key") << 226 << QString(QChar(0xE2));
}

void tst_KeyNames::keyCodeGivesGameName()
{
    QFETCH(int, code);
    QFETCH(QString, name);

    const std::optional<QString> result = KeyNameFromKeyCode(quint16(code));
    QVERIFY(result.has_value());
    QCOMPARE(*result, name);
}

void tst_KeyNames::escapeCancelsCapture()
{
    QVERIFY(!KeyNameFromKeyCode(27).has_value());
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
    QTest::newRow("fifth button") << 16 << QString();
    QTest::newRow("negative") << -1 << QString();
}

void tst_KeyNames::mouseButtonGivesGameName()
{
    QFETCH(int, button);
    QFETCH(QString, name);

    const std::optional<QString> result = KeyNameFromMouseButton(button);
    QCOMPARE(result.value_or(QString()), name);
    QCOMPARE(result.has_value(), !name.isEmpty());
}

QTEST_GUILESS_MAIN(tst_KeyNames)

#include "tst_KeyNames.moc"

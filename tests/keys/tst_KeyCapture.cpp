#include "VirtualKeys.h"
#include "frmKey.h"

#include <QApplication>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

class tst_KeyCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keyGivesName_data();
    void keyGivesName();
    void keyWithoutCodeIsIgnored();
    void shortcutDoesNotTakeKey();
    void mouseRelease_data();
    void mouseRelease();
    void wheelIsIgnored();
    void closingCancels_data();
    void closingCancels();
    void captureKeyReusesOneDialog();
    void virtualKeyCode_data();
    void virtualKeyCode();

private:
    void sendKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void sendMouse(QEvent::Type type, Qt::MouseButton button, QPoint pos);

    std::unique_ptr<frmKey> m_dialog;
};

void tst_KeyCapture::init()
{
    m_dialog = std::make_unique<frmKey>(nullptr);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void tst_KeyCapture::cleanup()
{
    m_dialog.reset();
}

void tst_KeyCapture::sendKey(int key, Qt::KeyboardModifiers modifiers)
{
    // Sent directly: QTest::keyPress would press Shift, Ctrl and Alt as keys of their own first.
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(m_dialog.get(), &event);
}

void tst_KeyCapture::sendMouse(QEvent::Type type, Qt::MouseButton button, QPoint pos)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::MouseButtons(button) : Qt::NoButton;
    QMouseEvent event(type, pos, m_dialog->mapToGlobal(pos), button, held, Qt::NoModifier);
    QApplication::sendEvent(m_dialog.get(), &event);
}

void tst_KeyCapture::keyGivesName_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("name"); // empty: the capture is cancelled

    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers keypad = Qt::KeypadModifier;
    QTest::newRow("Esc") << int(Qt::Key_Escape) << none << QString();
    QTest::newRow("letter") << int(Qt::Key_Q) << none << "Q";
    QTest::newRow("Shift+letter") << int(Qt::Key_Q) << Qt::KeyboardModifiers(Qt::ShiftModifier) << "Q";
    QTest::newRow("Ctrl+Alt+letter") << int(Qt::Key_W) << (Qt::ControlModifier | Qt::AltModifier) << "W";
    QTest::newRow("Shift+1") << int(Qt::Key_Exclam) << Qt::KeyboardModifiers(Qt::ShiftModifier) << "1";
    QTest::newRow("Shift alone") << int(Qt::Key_Shift) << Qt::KeyboardModifiers(Qt::ShiftModifier) << "SHIFT";
    QTest::newRow("Ctrl") << int(Qt::Key_Control) << Qt::KeyboardModifiers(Qt::ControlModifier) << "CTRL";
    QTest::newRow("Alt") << int(Qt::Key_Alt) << Qt::KeyboardModifiers(Qt::AltModifier) << "ALT";
    QTest::newRow("semicolon") << int(Qt::Key_Semicolon) << none << "SEMICOLON";
    QTest::newRow("equals") << int(Qt::Key_Equal) << none << "=";
    QTest::newRow("back-quote") << int(Qt::Key_QuoteLeft) << none << "`";
    QTest::newRow("Tab") << int(Qt::Key_Tab) << none << "TAB";
    QTest::newRow("Shift+Tab") << int(Qt::Key_Backtab) << Qt::KeyboardModifiers(Qt::ShiftModifier) << "TAB";
    QTest::newRow("main Enter") << int(Qt::Key_Return) << none << "ENTER";
    QTest::newRow("keypad Enter") << int(Qt::Key_Enter) << keypad << "ENTER";
    QTest::newRow("keypad 1 Num Lock on") << int(Qt::Key_1) << keypad << "KP_END";
    QTest::newRow("keypad 1 Num Lock off") << int(Qt::Key_End) << keypad << "END";
    QTest::newRow("keypad 5 Num Lock on") << int(Qt::Key_5) << keypad << "KP_5";
    QTest::newRow("keypad 5 Num Lock off") << int(Qt::Key_Clear) << keypad << "KP_5";
    QTest::newRow("keypad star") << int(Qt::Key_Asterisk) << keypad << "*";
    QTest::newRow("keypad slash") << int(Qt::Key_Slash) << keypad << "/";
    QTest::newRow("keypad point") << int(Qt::Key_Period) << keypad << ".";
    QTest::newRow("F16") << int(Qt::Key_F16) << none << "F16";
    QTest::newRow("left Windows key") << int(Qt::Key_Super_L) << none << "0x00";
    QTest::newRow("menu key") << int(Qt::Key_Menu) << none << "0x00";
    QTest::newRow("Scroll Lock") << int(Qt::Key_ScrollLock) << none << "0x00";
}

void tst_KeyCapture::keyGivesName()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, name);

    sendKey(key, modifiers);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result().cancelled, name.isEmpty());
    QCOMPARE(m_dialog->result().keyName, name);
}

void tst_KeyCapture::keyWithoutCodeIsIgnored()
{
    sendKey(Qt::Key_Print);
    QVERIFY(m_dialog->isVisible());
    sendKey(Qt::Key_K);
    QCOMPARE(m_dialog->result().keyName, QStringLiteral("K"));
}

void tst_KeyCapture::shortcutDoesNotTakeKey()
{
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QShortcut shortcut(QKeySequence(Qt::Key_F5), m_dialog.get(), nullptr, nullptr, Qt::ApplicationShortcut);
    QSignalSpy activated(&shortcut, &QShortcut::activated);
    QTest::keyClick(m_dialog.get(), Qt::Key_F5); // offers the key to the shortcuts first, as a real press does
    QCOMPARE(activated.count(), 0);
    QCOMPARE(m_dialog->result().keyName, QStringLiteral("F5"));
}

void tst_KeyCapture::mouseRelease_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<QPoint>("release");
    QTest::addColumn<QString>("name"); // empty: the dialog stays open

    QTest::newRow("left") << Qt::LeftButton << QPoint(100, 17) << "MOUSE1";
    QTest::newRow("right") << Qt::RightButton << QPoint(100, 17) << "MOUSE2";
    QTest::newRow("middle") << Qt::MiddleButton << QPoint(100, 17) << "MOUSE3";
    QTest::newRow("just inside") << Qt::LeftButton << QPoint(278, 33) << "MOUSE1";
    QTest::newRow("dragged out right") << Qt::LeftButton << QPoint(279, 17) << QString();
    QTest::newRow("dragged out top") << Qt::MiddleButton << QPoint(100, 0) << QString();
    QTest::newRow("dragged out left") << Qt::RightButton << QPoint(-5, 17) << QString();
    QTest::newRow("back button") << Qt::BackButton << QPoint(100, 17) << QString();
}

void tst_KeyCapture::mouseRelease()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(QPoint, release);
    QFETCH(QString, name);

    sendMouse(QEvent::MouseButtonPress, button, QPoint(100, 17));
    QVERIFY(m_dialog->isVisible());
    sendMouse(QEvent::MouseButtonRelease, button, release);
    QCOMPARE(m_dialog->isVisible(), name.isEmpty());
    QCOMPARE(m_dialog->result().keyName, name);
    QCOMPARE(m_dialog->result().cancelled, false);
}

void tst_KeyCapture::wheelIsIgnored()
{
    const QPointF pos(100, 17);
    QWheelEvent wheel(pos, m_dialog->mapToGlobal(pos), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_dialog.get(), &wheel);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(m_dialog->result().keyName.isEmpty());
}

void tst_KeyCapture::closingCancels_data()
{
    QTest::addColumn<bool>("viaReject");
    QTest::newRow("close") << false;
    QTest::newRow("reject") << true;
}

void tst_KeyCapture::closingCancels()
{
    QFETCH(bool, viaReject);

    // A name left by the capture before must not come back from one closed without a key.
    sendKey(Qt::Key_A);
    QCOMPARE(m_dialog->result().keyName, QStringLiteral("A"));
    m_dialog->show();
    QDialog &dialog = *m_dialog; // reject() is public on QDialog, as the window manager's path uses it
    if (viaReject)
        dialog.reject();
    else
        m_dialog->close();
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(m_dialog->result().cancelled);
    QVERIFY(m_dialog->result().keyName.isEmpty());
}

void tst_KeyCapture::captureKeyReusesOneDialog()
{
    QWidget owner;
    owner.setGeometry(200, 150, 600, 400);
    owner.show();
    QVERIFY(QTest::qWaitForWindowExposed(&owner));

    const auto answer = [&owner](int key) {
        QTimer::singleShot(0, &owner, [key] {
            QWidget *modal = QApplication::activeModalWidget();
            QVERIFY(modal);
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(modal, &event);
        });
    };
    answer(Qt::Key_Space);
    QCOMPARE(CaptureKey(&owner).keyName, QStringLiteral("SPACE"));
    frmKey *first = owner.findChild<frmKey *>();
    QVERIFY(first);
    QCOMPARE(first->geometry().center(), owner.geometry().center());

    answer(Qt::Key_Escape);
    const KeyCaptureResult second = CaptureKey(&owner);
    QVERIFY(second.cancelled);
    QVERIFY(second.keyName.isEmpty());
    QCOMPARE(owner.findChildren<frmKey *>(), QList<frmKey *> { first });
}

// Keys the dialog table leaves out, straight through the mapping.
void tst_KeyCapture::virtualKeyCode_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<int>("code");

    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers keypad = Qt::KeypadModifier;
    QTest::newRow("Shift+0") << int(Qt::Key_ParenRight) << none << 48;
    QTest::newRow("Shift+8 is not keypad star") << int(Qt::Key_Asterisk) << none << 56;
    QTest::newRow("main plus") << int(Qt::Key_Plus) << none << 187;
    QTest::newRow("keypad comma is the decimal key") << int(Qt::Key_Comma) << keypad << 110;
    QTest::newRow("keypad Del Num Lock off") << int(Qt::Key_Delete) << keypad << 46;
    QTest::newRow("keypad 9 Num Lock on") << int(Qt::Key_9) << keypad << 105;
    QTest::newRow("dead grave") << int(Qt::Key_Dead_Grave) << none << 192;
    QTest::newRow("right Windows key") << int(Qt::Key_Super_R) << none << 92;
    QTest::newRow("F24") << int(Qt::Key_F24) << none << 135;
    QTest::newRow("F25") << int(Qt::Key_F25) << none << -1;
    QTest::newRow("Print Screen") << int(Qt::Key_Print) << none << -1;
    QTest::newRow("letter outside A-Z") << int(Qt::Key_Adiaeresis) << none << -1;
}

void tst_KeyCapture::virtualKeyCode()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(int, code);

    QCOMPARE(VirtualKeys::fromQtKey(key, modifiers), code);
#ifndef Q_OS_WIN
    // An X11 keysym or a macOS key code in the native field is no Windows code.
    QCOMPARE(VirtualKeys::fromQtKey(key, modifiers, 0xff0d), code);
#endif
}

QTEST_MAIN(tst_KeyCapture)
#include "tst_KeyCapture.moc"

// The key capture dialog: a key or a mouse button released over it gives the name, closing it cancels.
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
    void init()
    {
        m_dialog = std::make_unique<frmKey>(nullptr);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    }

    void cleanup() { m_dialog.reset(); }

    // What a key press does to the dialog (empty: the capture is cancelled); which name each key gives is
    // tst_KeyNames' matter. Tab and Backtab must not move the focus instead.
    void keyGivesName()
    {
        const std::tuple<Qt::Key, Qt::KeyboardModifiers, const char *> rows[]
            = { { Qt::Key_Escape, {}, "" }, { Qt::Key_Shift, Qt::ShiftModifier, "SHIFT" }, { Qt::Key_Tab, {}, "TAB" },
                  { Qt::Key_Backtab, Qt::ShiftModifier, "TAB" }, { Qt::Key_1, Qt::KeypadModifier, "KP_END" } };
        for (const auto &[key, modifiers, name] : rows) {
            init();
            sendKey(key, modifiers);
            QVERIFY(!m_dialog->isVisible());
            QCOMPARE(m_dialog->result().cancelled, !*name);
            QCOMPARE(m_dialog->result().keyName, QString::fromLatin1(name));
        }
    }

    // A key without a code and the wheel leave the dialog waiting for a key.
    void ignoredInput()
    {
        sendKey(Qt::Key_Print);
        const QPointF pos(100, 17);
        QWheelEvent wheel(pos, m_dialog->mapToGlobal(pos), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_dialog.get(), &wheel);
        QVERIFY(m_dialog->isVisible() && m_dialog->result().keyName.isEmpty());
        sendKey(Qt::Key_K);
        QCOMPARE(m_dialog->result().keyName, QStringLiteral("K"));
    }

    void shortcutDoesNotTakeKey()
    {
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
        QShortcut shortcut(QKeySequence(Qt::Key_F5), m_dialog.get(), nullptr, nullptr, Qt::ApplicationShortcut);
        QSignalSpy activated(&shortcut, &QShortcut::activated);
        QTest::keyClick(m_dialog.get(), Qt::Key_F5); // offers the key to the shortcuts first, as a real press does
        QCOMPARE(activated.count(), 0);
        QCOMPARE(m_dialog->result().keyName, QStringLiteral("F5"));
    }

    // A button pressed and released over the dialog gives its name; elsewhere, or a button the game has no name
    // for, the dialog stays.
    void mouseRelease()
    {
        const std::tuple<Qt::MouseButton, QPoint, const char *> rows[]
            = { { Qt::LeftButton, { 100, 17 }, "MOUSE1" }, { Qt::RightButton, { 100, 17 }, "MOUSE2" },
                  { Qt::MiddleButton, { 100, 17 }, "MOUSE3" }, { Qt::LeftButton, { 279, 17 }, "" },
                  { Qt::RightButton, { -5, 17 }, "" }, { Qt::BackButton, { 100, 17 }, "" } };
        for (const auto &[button, release, name] : rows) {
            init();
            sendMouse(QEvent::MouseButtonPress, button, QPoint(100, 17));
            QVERIFY(m_dialog->isVisible());
            sendMouse(QEvent::MouseButtonRelease, button, release);
            QCOMPARE(m_dialog->isVisible(), !*name);
            QCOMPARE(m_dialog->result().keyName, QString::fromLatin1(name));
            QVERIFY(!m_dialog->result().cancelled);
        }
    }

    void closingCancels()
    {
        for (const bool viaReject : { false, true }) {
            // A name left by the capture before must not come back from one closed without a key.
            sendKey(Qt::Key_A);
            QCOMPARE(m_dialog->result().keyName, QStringLiteral("A"));
            m_dialog->show();
            QDialog &dialog = *m_dialog; // reject() is public on QDialog, as the window manager's path uses it
            if (viaReject)
                dialog.reject();
            else
                m_dialog->close();
            QVERIFY(!m_dialog->isVisible() && m_dialog->result().cancelled && m_dialog->result().keyName.isEmpty());
        }
    }

    void captureKeyReusesOneDialog()
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
        QVERIFY(second.cancelled && second.keyName.isEmpty());
        QCOMPARE(owner.findChildren<frmKey *>(), QList<frmKey *> { first });
    }

private:
    void sendKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        // Sent directly: QTest::keyPress would press Shift, Ctrl and Alt as keys of their own first.
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(m_dialog.get(), &event);
    }

    void sendMouse(QEvent::Type type, Qt::MouseButton button, QPoint pos)
    {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::MouseButtons(button) : Qt::NoButton;
        QMouseEvent event(type, pos, m_dialog->mapToGlobal(pos), button, held, Qt::NoModifier);
        QApplication::sendEvent(m_dialog.get(), &event);
    }

    std::unique_ptr<frmKey> m_dialog;
};

QTEST_MAIN(tst_KeyCapture)
#include "tst_KeyCapture.moc"

// The tray's menu and always-on-top in the real window. The offscreen platform has no notification area, so
// these run without an icon, as on such a desktop; tests/app/tray-x11.sh tries the icon under X.
#include "WindowSettings.h"
#include "WindowTestSupport.h"
#include "frmSysTray.h"

using namespace WindowTest;

class tst_Tray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_window = answeredWindow(); }
    void cleanup() { closeWindow(m_window); }

    void onTopFromEverySource_data()
    {
        QTest::addColumn<QString>("source");
        QTest::newRow("main menu") << "menu";
        QTest::newRow("tray menu") << "tray";
        QTest::newRow("options dialog") << "options";
    }

    void onTopFromEverySource()
    {
        QFETCH(QString, source);
        frmSysTray *tray = m_window->tray();
        QCOMPARE(tray->hasIcon(), QSystemTrayIcon::isSystemTrayAvailable());
        const QRect place = m_window->geometry();
        for (const bool on : { true, false }) {
            if (source == u"menu") {
                m_window->commands().run("OnTop1");
            } else if (source == u"tray") {
                tray->run("OnTop1");
            } else {
                whenModal(this, [on](QWidget *dialog) {
                    auto *box = find<QCheckBox>(dialog, "chkTop");
                    QCOMPARE(box->isChecked(), !on);
                    box->setChecked(on);
                    find<QPushButton>(dialog, "cmdOK")->click();
                });
                m_window->commands().run("Options1");
            }
            QCOMPARE(m_window->commands().menu().isChecked("OnTop1"), on);
            QCOMPARE(tray->menu().isChecked("OnTop1"), on);
            QCOMPARE(m_window->windowFlags().testFlag(Qt::WindowStaysOnTopHint), on);
            QCOMPARE(m_window->settings().current().aot, on ? 1 : 0);
            // In place: the window neither moved nor went away.
            QVERIFY(m_window->isVisible());
            QCOMPARE(m_window->geometry(), place);
        }
    }

    void iconChangesOnlyOnADifference()
    {
        frmSysTray *tray = m_window->tray();
        QCOMPARE(tray->ToolTip(), QStringLiteral("Tarnwick v0.91 (BETA)"));
        tray->setToolTip(tray->ToolTip());
        tray->setIconHandle(tray->IconHandle());
        QCOMPARE(tray->iconUpdates(), 0);
        tray->setToolTip("other");
        tray->setIconHandle(QIcon(QPixmap(16, 16)));
        QCOMPARE(tray->iconUpdates(), 2);
    }

    void exitGoesThroughTheClose_data()
    {
        QTest::addColumn<bool>("dialogOpen"); // the Options dialog is open when Exit is chosen
        QTest::addColumn<int>("answer"); // to "Save changes ... before closing?"
        QTest::newRow("No closes it") << false << int(QMessageBox::No);
        QTest::newRow("an open dialog closes first, Cancel keeps the program") << true << int(QMessageBox::Cancel);
    }

    void exitGoesThroughTheClose()
    {
        QFETCH(bool, dialogOpen);
        QFETCH(int, answer);
        frmSysTray *tray = m_window->tray();
        editFov(*m_window);
        Prompts::setNextAnswers({ QMessageBox::StandardButton(answer) });
        if (dialogOpen) {
            whenModal(this, [tray](QWidget *) { tray->run("Exit1"); });
            m_window->commands().run("Options1");
            QVERIFY(!QApplication::activeModalWidget());
        } else {
            tray->run("Exit1");
        }
        QTRY_VERIFY(!Prompts::hasPendingAnswers());
        const QList<Prompts::Shown> shown = Prompts::takeShown();
        QCOMPARE(shown.size(), 1);
        QVERIFY(shown[0].text.endsWith(" before closing?"));
        const bool stays = answer == QMessageBox::Cancel;
        QCOMPARE(m_window->isVisible(), stays);
        QCOMPARE(m_window->tray() != nullptr, stays);
        QCOMPARE(m_window->gate().TrayExitPending(), !stays);
        if (stays)
            QVERIFY(m_window->gate().HotKeysEnabled());
    }

private:
    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_Tray)
#include "tst_Tray.moc"

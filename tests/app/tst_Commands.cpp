// The menu, the toolbar and the accelerators of the real window, each followed to the command it runs.
#include "Keys.h"
#include "WindowTestSupport.h"
#include "frmKey.h"
#include "frmLoad.h"

using namespace WindowTest;

class tst_Commands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = answeredWindow();
        m_window->activateWindow();
        Prompts::setWhileShown([this] { m_seen << titlesShown(); });
        for (const char *key : { "Game1", "TDemo1", "Search1", "Options1" }) {
            m_window->commands().setHandler(QString::fromLatin1(key), [this, key] {
                m_seen << QString::fromLatin1(key);
                QVERIFY(!gate().HotKeysEnabled());
            });
        }
    }

    void cleanup()
    {
        Prompts::setWhileShown({});
        closeWindow(m_window); // every command gives the commands back
    }

    void menuItemsRunTheirCommands_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("seen");
        QTest::addColumn<QKeyCombination>("accelerator");
        QTest::addColumn<QString>("button");
        const auto row = [](const char *key, const QStringList &seen, QKeyCombination accelerator = {},
                             const char *button = "") { QTest::newRow(key) << key << seen << accelerator << button; };
        row("New1", { "frmNew" }, Qt::CTRL | Qt::Key_N, "NEW1");
        row("Open1", { "Open" }, Qt::CTRL | Qt::Key_O, "OPEN1");
        row("Save1", { "Save" }, Qt::CTRL | Qt::Key_S, "SAVE1");
        row("SaveAs1", { "Save As" }, Qt::CTRL | Qt::ALT | Qt::Key_S);
        // Export, Import and the unavailable items: exportAndImportEachKind, itemsFollowWhatIsAvailable.
        row("Game1", { "Game1" }, Qt::SHIFT | Qt::Key_F5);
        row("TDemo1", { "TDemo1" }, Qt::SHIFT | Qt::Key_F6);
        row("Search1", { "Search1" }, QKeyCombination(Qt::Key_F3), "SEARCH1");
        row("Options1", { "Options1" }, QKeyCombination(Qt::Key_F4), "OPTIONS1");
        row("About1", { "frmAbout" }, {}, "ABOUT1");
        row("Contents1", { "Tarnwick" });
    }
    void menuItemsRunTheirCommands()
    {
        // Each item from the menu, its accelerator and its toolbar button.
        QFETCH(QString, key);
        QFETCH(QStringList, seen);
        QFETCH(QKeyCombination, accelerator);
        QFETCH(QString, button);
        QCOMPARE(observe([&] { triggerMenu(key); }), seen);
        if (accelerator.key() != Qt::Key_unknown)
            QCOMPARE(observe([&] { press(accelerator.key(), accelerator.keyboardModifiers()); }), seen);
        if (!button.isEmpty()) {
            auto *action = m_window->commands().toolbar()->findChild<QAction *>(button);
            QVERIFY(action && action->isVisible());
            QCOMPARE(observe([&] { action->trigger(); }), seen);
            // With the commands off a click is dropped.
            gate().setHotKeysEnabled(false);
            QCOMPARE(observe([&] { action->trigger(); }), QStringList());
            gate().setHotKeysEnabled(true);
        }
    }

    void itemsFollowWhatIsAvailable()
    {
        // Restore is there once a file is read and gone again after New; the wizard is not there yet.
        PopMenu &menu = m_window->commands().menu();
        auto *restore = m_window->commands().toolbar()->findChild<QAction *>("DEFAULTS1");
        QVERIFY(!menu.isEnabled("Def1") && !restore->isEnabled() && !menu.isEnabled("PrevFile1"));
        QVERIFY(!menu.isEnabled("Wiz1") && !m_window->commands().toolbar()->findChild<QAction *>("WIZ1")->isVisible());
        QVERIFY(m_window->documentCommands().OpenCfg(file("mine.cfg")));
        QVERIFY(restore->isEnabled() && menu.isEnabled("Def1"));
        QCOMPARE(observe([&] { restore->trigger(); }), QStringList { "Tarnwick" });
        whenModal(this, [](QWidget *dialog) { qobject_cast<QDialog *>(dialog)->accept(); });
        m_window->commands().run("New1");
        QVERIFY(!restore->isEnabled() && !menu.isEnabled("Def1"));
        // The toolbar and the accelerators reach a command by its key, past the menu's own disabled state.
        menu.setEnabled("About1", false);
        QCOMPARE(observe([&] { m_window->commands().run("About1"); }), QStringList());
        menu.setEnabled("About1", true);
        QCOMPARE(observe([&] { m_window->commands().run("About1"); }), QStringList { "frmAbout" });
        // The web button drops the web menu down.
        auto *web = m_window->commands().toolbar()->findChild<QToolButton *>("ONWEB1");
        QVERIFY(web->menu() == menu.subMenu("Websites1") && web->popupMode() == QToolButton::InstantPopup);
    }

    void menuHelpGoesToTheStatusBar()
    {
        auto *panel = m_window->findChild<QLabel *>("PAN1");
        PopMenu &menu = m_window->commands().menu();
        QMenu *file = menu.subMenu("File1TOP");
        file->popup(m_window->mapToGlobal(QPoint(10, 10)));
        QVERIFY(QTest::qWaitForWindowExposed(file));
        Q_EMIT file->hovered(menu.action("Save1"));
        QVERIFY(!panel->text().isEmpty() && panel->text() == menu.helpText("Save1"));
        // Over a separator the panel empties.
        QTest::mouseMove(file, file->actionGeometry(menu.action("sepFile1")).center());
        QTRY_COMPARE(panel->text(), QString());
        file->close();

        // The toolbar's web drop-down is the same submenu, popped up on its own: closing it empties the panel too.
        QMenu *web = m_window->commands().menu().subMenu("Websites1");
        web->popup(m_window->mapToGlobal(QPoint(10, 10)));
        QVERIFY(QTest::qWaitForWindowExposed(web));
        Q_EMIT web->hovered(m_window->commands().menu().action("Site2WEB"));
        QCOMPARE(panel->text(), QStringLiteral("id Software Homepage"));
        web->close();
        QCOMPARE(panel->text(), QString());
    }

    void webItemsOpenTheirAddresses()
    {
        QList<QUrl> opened;
        bool answers = true;
        m_window->commands().setUrlOpener([&](const QUrl &url) {
            opened.append(url);
            return answers;
        });
        for (QAction *item : m_window->commands().menu().subMenu("Websites1")->actions())
            item->trigger();
        QVERIFY(m_seen.isEmpty()); // no box
        QCOMPARE(QSet<QUrl>(opened.begin(), opened.end()).size(), 8); // seven sites and an e-mail address
        for (const QUrl &url : opened)
            QVERIFY2(
                url.isValid() && (url.scheme() == u"https" || url.scheme() == u"mailto"), qPrintable(url.toString()));

        // A link nothing opens is said, with its address.
        answers = false;
        Prompts::setWhileShown({});
        Prompts::setNextAnswers({ QMessageBox::Ok });
        triggerMenu("Site4WEB");
        const QList<Prompts::Shown> shown = Prompts::takeShown();
        QCOMPARE(shown.size(), 1);
        QVERIFY2(shown[0].text.contains(opened.last().toString()), qPrintable(shown[0].text));
    }

    void keyCaptureGoesThroughTheGate()
    {
        // The capture dialog is a dialog like any other: commands off, the active one, on top with the window.
        // Alt pressed in it binds ALT; the Q pressed while Alt is still down is no Alt+Q for the window.
        triggerMenu("OnTop1");
        m_window->SelectPage(Page::Control);
        m_window->document().setModified(true);
        auto *keys = m_window->findChild<Keys *>("btnKeys_1");
        QTimer::singleShot(0, this, [this] {
            auto *capture = qobject_cast<frmKey *>(QApplication::activeModalWidget());
            QVERIFY(capture && gate().ActiveDialogWindow() == capture && !gate().HotKeysEnabled());
            QVERIFY(capture->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
            QTest::keyPress(capture->windowHandle(), Qt::Key_Alt, Qt::AltModifier);
        });
        QTest::mouseClick(keys, Qt::LeftButton, {}, QPoint(keys->width() / 4, keys->height() / 2));
        QCOMPARE(m_window->document().bindings().at(1).firstKey, QStringLiteral("ALT"));
        QCOMPARE(gate().ActiveDialogWindow(), m_window);
        // As the desktop sends it: no new Alt press, only Q with Alt held, then the releases.
        QWindow *window = m_window->windowHandle();
        QCOMPARE(observe([&] {
            QTest::simulateEvent(window, true, Qt::Key_Q, Qt::AltModifier, QStringLiteral("q"), false);
            QTest::simulateEvent(window, false, Qt::Key_Q, Qt::AltModifier, QStringLiteral("q"), false);
            QTest::simulateEvent(window, false, Qt::Key_Alt, Qt::NoModifier, QString(), false);
        }),
            QStringList());
        QVERIFY(m_window->isVisible());
        // Once Alt is let go, Alt+Q is the Exit command again.
        Prompts::setNextAnswers({ QMessageBox::Cancel });
        QCOMPARE(observe([&] { press(Qt::Key_Q, Qt::AltModifier); }), QStringList { "Tarnwick" });
    }

    void acceleratorsRunOnlyWhenTheyShould()
    {
        // Each item's own keystroke runs it (above); one modifier more or less runs nothing.
        for (const QKeyCombination stroke : { Qt::CTRL | Qt::SHIFT | Qt::Key_S, QKeyCombination(Qt::Key_S),
                 Qt::ALT | Qt::Key_S, QKeyCombination(Qt::Key_F5), Qt::CTRL | Qt::SHIFT | Qt::Key_F5,
                 Qt::SHIFT | Qt::Key_F3, Qt::ALT | Qt::Key_F4, Qt::CTRL | Qt::Key_Q })
            QCOMPARE(observe([&] { press(stroke.key(), stroke.keyboardModifiers()); }), QStringList());
        const auto pressSome = [this] {
            press(Qt::Key_F3, Qt::NoModifier);
            press(Qt::Key_F5, Qt::ShiftModifier);
            press(Qt::Key_O, Qt::ControlModifier);
        };
        // While the Save dialog is "open", every accelerator is ignored.
        QStringList whileOpen;
        Prompts::setWhileShown([&] {
            Prompts::takeShown();
            pressSome();
            whileOpen = m_seen;
        });
        QCOMPARE(observe([&] { press(Qt::Key_S, Qt::ControlModifier); }), QStringList());
        QCOMPARE(whileOpen, QStringList());
        Prompts::setWhileShown([this] { m_seen << titlesShown(); });
        // So are they while the window is minimized.
        m_window->showMinimized();
        QTRY_VERIFY(m_window->isMinimized());
        QCOMPARE(observe(pressSome), QStringList());
        m_window->showNormal();
        QTRY_VERIFY(!m_window->isMinimized());
        // Afterwards they run again.
        QCOMPARE(observe([&] { press(Qt::Key_F3, Qt::NoModifier); }), QStringList { "Search1" });
    }

    void closeAsksToSave_data()
    {
        QTest::addColumn<bool>("opened");
        QTest::addColumn<QList<Answer>>("answers");
        QTest::addColumn<bool>("closes");
        QTest::addColumn<bool>("saved");
        const auto row = [](const char *tag, bool opened, const QList<Answer> &answers, bool closes, bool saved) {
            QTest::newRow(tag) << opened << answers << closes << saved;
        };
        row("yes saves and closes", true, { QMessageBox::Yes }, true, true);
        row("no closes", true, { QMessageBox::No }, true, false);
        row("cancel stays", true, { QMessageBox::Cancel }, false, false);
        row("yes, then the Save dialog cancelled, stays", false, { QMessageBox::Yes, QString() }, false, false);
    }
    void closeAsksToSave()
    {
        QFETCH(bool, opened);
        QFETCH(QList<Answer>, answers);
        QFETCH(bool, closes);
        QFETCH(bool, saved);
        const QString path = file("mine.cfg");
        if (opened)
            QVERIFY(m_window->documentCommands().OpenCfg(path));
        editFov(*m_window);
        Prompts::setNextAnswers(answers);
        QCOMPARE(observe([&] { triggerMenu("Exit1"); }).value(0), QStringLiteral("Tarnwick"));
        QCOMPARE(m_window->isVisible(), !closes);
        QCOMPARE(m_window->document().isModified(), !saved);
        QCOMPARE(readTestFile(path).contains("seta cg_fov \"120\""), saved);
    }

    void exportAndImportEachKind()
    {
        // What a partial file holds is tested without a window; here, that each item reaches its kind.
        const std::tuple<PartialKind, QString, Page> kinds[] { { PartialKind::Controls, "Ctrl", Page::Control },
            { PartialKind::Renderer, "Gfx", Page::Renderer }, { PartialKind::HudDisplay, "Hud", Page::HudDisplay },
            { PartialKind::Railgun, "RGun", Page::Railgun } };
        ConfigDocument &doc = m_window->document();
        Prompts::setWhileShown({}); // the filters are looked at afterwards
        for (const auto &[kind, key, page] : kinds) {
            const QString exported = m_dir.filePath("area" + PartialFiles::extension(kind));
            const std::optional<Page> before = m_window->currentPage();
            editFov(*m_window);
            Prompts::setNextAnswers({ exported });
            m_window->commands().run(key + u'1');
            QCOMPARE(Prompts::takeShown().value(0).text, PartialFiles::exportFilter(kind));
            QVERIFY(QFile::exists(exported) && doc.isModified() && m_window->currentPage() == before);

            Prompts::setNextAnswers({ exported });
            m_window->commands().run(key + u'2');
            QCOMPARE(Prompts::takeShown().value(0).text, PartialFiles::importFilter(kind));
            QVERIFY(doc.isModified() && doc.displayName() == u"Untitled"); // the document keeps its name
            QCOMPARE(m_window->currentPage(), page);
        }
    }

    void openReadsWhileTheSplashShows()
    {
        QString splashText;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            if (auto *splash = qobject_cast<frmLoad *>(QApplication::activeModalWidget()))
                splashText = splash->text();
        });
        watch.start(0);
        Prompts::setNextAnswers({ file("mine.cfg") });
        m_window->commands().run("Open1");
        QCOMPARE(splashText, frmLoad::message(true));
        QCOMPARE(m_window->document().displayName(), QStringLiteral("mine.cfg"));
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }

private:
    /// What `act` showed: box and file dialog titles, own dialogs (closed at once), other parts' commands.
    QStringList observe(const std::function<void()> &act)
    {
        m_seen.clear();
        QTimer closer;
        connect(&closer, &QTimer::timeout, this, [this] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_seen << dialog->objectName();
            if (!qobject_cast<frmLoad *>(dialog))
                QCOMPARE(gate().ActiveDialogWindow(), dialog);
            QVERIFY(!gate().HotKeysEnabled());
            dialog->reject();
        });
        closer.start(0);
        act();
        closer.stop();
        return std::exchange(m_seen, {});
    }
    QString file(const QString &name) { return writeTestFile(m_dir.filePath(name), smallCfg); }
    void triggerMenu(const QString &key) { m_window->commands().menu().action(key)->trigger(); }
    void press(int key, Qt::KeyboardModifiers mods) { QTest::keyClick(m_window->windowHandle(), Qt::Key(key), mods); }
    CommandGate &gate() { return m_window->gate(); }

    frmMain *m_window = nullptr;
    QStringList m_seen;
    QTemporaryDir m_dir;
};

QTEST_MAIN(tst_Commands)
#include "tst_Commands.moc"

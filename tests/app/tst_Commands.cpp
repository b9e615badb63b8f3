// The menu, the toolbar and the accelerators of the real window, each followed to the command it runs.
#include "CommandGate.h"
#include "Commands.h"
#include "DocumentCommands.h"
#include "Keys.h"
#include "PartialFiles.h"
#include "PopMenu.h"
#include "Prompts.h"
#include "SettingCatalog.h"
#include "TestFiles.h"
#include "frmKey.h"
#include "frmLoad.h"
#include "frmMain.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

Q_DECLARE_METATYPE(PartialKind)
Q_DECLARE_METATYPE(Page)

using Prompts::Answer;

class tst_Commands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void menuItemsRunTheirCommands_data();
    void menuItemsRunTheirCommands();
    void menuStartsWithItsStates();
    void menuHelpGoesToTheStatusBar();
    void webItemsOpenTheirAddresses();
    void previewAndAlwaysOnTopToggle();
    void keyCaptureGoesThroughTheGate();
    void keyCaptureKeepsTheHeldKeys();
    void acceleratorsMatchTheWholeMask_data();
    void acceleratorsMatchTheWholeMask();
    void acceleratorsWaitWhileADialogIsOpen();
    void acceleratorsWaitWhileMinimized();
    void toolbarButtonsRunMenuCommands_data();
    void toolbarButtonsRunMenuCommands();
    void toolbarRestoreFollowsTheDocument();
    void closeAsksToSave_data();
    void closeAsksToSave();
    void refusedCloseEndsATrayExit();
    void exportAndImportEachKind_data();
    void exportAndImportEachKind();
    void openReadsWhileTheSplashShows();

private:
    /// What `act` showed, in order: titles of boxes and file dialogs, object names of the program's own
    /// dialogs (each closed at once), and the keys of the commands other parts carry out.
    QStringList observe(const std::function<void()> &act);
    QString file(const QString &name, const QByteArray &bytes = "seta cg_fov \"110\"\r\nbind w \"+forward\"\r\n");
    void triggerMenu(const QString &key) { m_window->commands().menu().action(key)->trigger(); }
    void press(int key, Qt::KeyboardModifiers modifiers)
    {
        QTest::keyClick(m_window->windowHandle(), Qt::Key(key), modifiers);
    }

    CommandGate &gate() { return m_window->gate(); }

    frmMain *m_window = nullptr;
    QStringList m_seen;
    QTemporaryDir m_dir;
};

void tst_Commands::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
}

void tst_Commands::init()
{
    m_window = new frmMain;
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    m_window->activateWindow();
    Prompts::setNextAnswers({});
    Prompts::setWhileShown([this] {
        for (const Prompts::Shown &shown : Prompts::takeShown())
            m_seen << shown.title;
    });
    for (const char *key : { "Game1", "TDemo1", "Search1", "Options1" }) {
        m_window->commands().setHandler(QString::fromLatin1(key), [this, key] {
            m_seen << QString::fromLatin1(key);
            QVERIFY(!gate().HotKeysEnabled());
        });
    }
}

void tst_Commands::cleanup()
{
    Prompts::setWhileShown({});
    QVERIFY(!Prompts::hasPendingAnswers());
    QVERIFY(gate().HotKeysEnabled()); // every command gives the commands back
    delete m_window;
}

QStringList tst_Commands::observe(const std::function<void()> &act)
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

QString tst_Commands::file(const QString &name, const QByteArray &bytes)
{
    return writeTestFile(m_dir.filePath(name), bytes);
}

void tst_Commands::menuItemsRunTheirCommands_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QList<Answer>>("answers");
    QTest::addColumn<QStringList>("seen");
    const QList<Answer> cancel { QString() };
    QTest::newRow("New1") << "New1" << QList<Answer>() << QStringList { "frmNew" };
    QTest::newRow("Open1") << "Open1" << cancel << QStringList { "Open" };
    QTest::newRow("Save1") << "Save1" << cancel << QStringList { "Save" };
    QTest::newRow("SaveAs1") << "SaveAs1" << cancel << QStringList { "Save As" };
    for (const char *key : { "Ctrl1", "Gfx1", "Hud1", "RGun1" })
        QTest::newRow(key) << key << cancel << QStringList { "Export File" };
    for (const char *key : { "Ctrl2", "Gfx2", "Hud2", "RGun2" })
        QTest::newRow(key) << key << cancel << QStringList { "Import File" };
    QTest::newRow("Def1 before a file is open") << "Def1" << QList<Answer>() << QStringList();
    QTest::newRow("Wiz1") << "Wiz1" << QList<Answer>() << QStringList();
    QTest::newRow("PrevFile1") << "PrevFile1" << QList<Answer>() << QStringList();
    for (const char *key : { "Game1", "TDemo1", "Search1", "Options1" })
        QTest::newRow(key) << QString::fromLatin1(key) << QList<Answer>() << QStringList { QString::fromLatin1(key) };
    QTest::newRow("About1") << "About1" << QList<Answer>() << QStringList { "frmAbout" };
    QTest::newRow("Contents1") << "Contents1" << QList<Answer> { QMessageBox::Ok } << QStringList { "Tarnwick" };
}

void tst_Commands::menuItemsRunTheirCommands()
{
    QFETCH(QString, key);
    QFETCH(QList<Answer>, answers);
    QFETCH(QStringList, seen);
    Prompts::setNextAnswers(answers);
    QCOMPARE(observe([&] { triggerMenu(key); }), seen);

    // The same key through the dispatcher, as the toolbar and the accelerators reach it.
    Prompts::setNextAnswers(answers);
    QCOMPARE(observe([&] { m_window->commands().run(key); }), seen);
}

void tst_Commands::menuStartsWithItsStates()
{
    PopMenu &menu = m_window->commands().menu();
    for (const char *key : { "PrevFile1", "Def1", "Wiz1" })
        QVERIFY2(!menu.isEnabled(QString::fromLatin1(key)), key);
    QVERIFY(!menu.isChecked("OnTop1"));
    QCOMPARE(menu.caption("Prev1"), QStringLiteral("Show &Preview"));
    // Shortcuts show after a tab, as the accelerators match them.
    QCOMPARE(menu.caption("SaveAs1"), QStringLiteral("Save &As\tCtrl+Alt+S"));
    QCOMPARE(menu.caption("Game1"), QStringLiteral("&Quake 3 Arena\tShift+F5"));
    QCOMPARE(menu.caption("Search1"), QStringLiteral("&Q3Config Search\tF3"));
    const QList<QAction *> bar = m_window->menuBar()->actions();
    QCOMPARE(bar.size(), 3);
    QCOMPARE(menu.subMenu("Websites1")->actions().size(), 10);
}

void tst_Commands::menuHelpGoesToTheStatusBar()
{
    auto *panel = m_window->findChild<QLabel *>("PAN1");
    QMenu *file = m_window->commands().menu().subMenu("File1TOP");
    file->popup(m_window->mapToGlobal(QPoint(10, 10)));
    QVERIFY(QTest::qWaitForWindowExposed(file));
    Q_EMIT file->hovered(m_window->commands().menu().action("Save1"));
    QCOMPARE(panel->text(), QStringLiteral("Save Current Configuration"));
    // Over a separator the panel empties.
    QAction *separator = m_window->commands().menu().action("sepFile1");
    QTest::mouseMove(file, file->actionGeometry(separator).center());
    QTRY_COMPARE(panel->text(), QString());
    Q_EMIT file->hovered(m_window->commands().menu().action("Exit1"));
    QCOMPARE(panel->text(), QStringLiteral("Exit Tarnwick"));
    file->close();
    QCOMPARE(panel->text(), QString());

    // The toolbar's web drop-down is the same submenu, popped up on its own: closing it empties the panel too.
    QMenu *web = m_window->commands().menu().subMenu("Websites1");
    web->popup(m_window->mapToGlobal(QPoint(10, 10)));
    QVERIFY(QTest::qWaitForWindowExposed(web));
    Q_EMIT web->hovered(m_window->commands().menu().action("Site2WEB"));
    QCOMPARE(panel->text(), QStringLiteral("id Software Homepage"));
    web->close();
    QCOMPARE(panel->text(), QString());
}

void tst_Commands::webItemsOpenTheirAddresses()
{
    QList<QUrl> opened;
    bool answers = true;
    m_window->commands().setUrlOpener([&](const QUrl &url) {
        opened.append(url);
        return answers;
    });
    const QStringList keys { "Site1WEB", "Site2WEB", "Site3WEB", "Site4WEB", "Site5WEB", "Site6WEB", "Site7WEB",
        "Email1WEB" };
    QCOMPARE(observe([&] {
        for (const QString &key : keys)
            triggerMenu(key);
    }),
        QStringList());
    QCOMPARE(QSet<QUrl>(opened.begin(), opened.end()).size(), keys.size());
    for (const QUrl &url : opened)
        QVERIFY2(url.isValid() && (url.scheme() == u"https" || url.scheme() == u"mailto"), qPrintable(url.toString()));

    // A link nothing opens is said, with its address.
    answers = false;
    Prompts::setWhileShown({});
    Prompts::setNextAnswers({ QMessageBox::Ok });
    triggerMenu("Site4WEB");
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 1);
    QVERIFY2(shown[0].text.contains(opened.last().toString()), qPrintable(shown[0].text));
}

void tst_Commands::previewAndAlwaysOnTopToggle()
{
    Commands &commands = m_window->commands();
    commands.run("Prev1"); // no preview window yet: nothing to show
    QCOMPARE(commands.menu().caption("Prev1"), QStringLiteral("Show &Preview"));
    QWidget preview;
    commands.setPreviewWindow(&preview);
    commands.run("Prev1");
    QVERIFY(preview.isVisible());
    QCOMPARE(commands.menu().caption("Prev1"), QStringLiteral("Hide &Preview"));
    commands.run("Prev1");
    QVERIFY(!preview.isVisible());
    QCOMPARE(commands.menu().caption("Prev1"), QStringLiteral("Show &Preview"));

    triggerMenu("OnTop1");
    QVERIFY(commands.menu().isChecked("OnTop1"));
    QVERIFY(m_window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) && m_window->isVisible());
    triggerMenu("OnTop1");
    QVERIFY(!commands.menu().isChecked("OnTop1"));
    QVERIFY(!m_window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) && m_window->isVisible());
}

void tst_Commands::keyCaptureGoesThroughTheGate()
{
    // The capture dialog is a dialog like any other: commands off, the dialog the active one, on top with the
    // window.
    triggerMenu("OnTop1");
    m_window->SelectPage(Page::Control);
    auto *keys = m_window->findChild<Keys *>("btnKeys_1");
    bool checked = false;
    QTimer::singleShot(0, this, [&] {
        auto *capture = qobject_cast<frmKey *>(QApplication::activeModalWidget());
        QVERIFY(capture);
        QCOMPARE(gate().ActiveDialogWindow(), capture);
        QVERIFY(!gate().HotKeysEnabled());
        QVERIFY(capture->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        checked = true;
        QTest::keyClick(capture, Qt::Key_Escape);
    });
    QTest::mouseClick(keys, Qt::LeftButton, {}, QPoint(keys->width() / 4, keys->height() / 2));
    QVERIFY(checked);
    QCOMPARE(gate().ActiveDialogWindow(), m_window);
    triggerMenu("OnTop1");
}

void tst_Commands::keyCaptureKeepsTheHeldKeys()
{
    // Alt pressed in the capture binds ALT; the Q pressed while Alt is still down is no Alt+Q for the window.
    m_window->SelectPage(Page::Control);
    m_window->document().setModified(true);
    auto *keys = m_window->findChild<Keys *>("btnKeys_1");
    QTimer::singleShot(0, this,
        [] { QTest::keyPress(QApplication::activeModalWidget()->windowHandle(), Qt::Key_Alt, Qt::AltModifier); });
    QTest::mouseClick(keys, Qt::LeftButton, {}, QPoint(keys->width() / 4, keys->height() / 2));
    QCOMPARE(m_window->document().bindings().at(1).firstKey, QStringLiteral("ALT"));
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

void tst_Commands::acceleratorsMatchTheWholeMask_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QStringList>("seen");
    const Qt::KeyboardModifiers ctrl = Qt::ControlModifier, shift = Qt::ShiftModifier, alt = Qt::AltModifier;
    QTest::newRow("Ctrl+N") << int(Qt::Key_N) << ctrl << QStringList { "frmNew" };
    QTest::newRow("Ctrl+O") << int(Qt::Key_O) << ctrl << QStringList { "Open" };
    QTest::newRow("Ctrl+S") << int(Qt::Key_S) << ctrl << QStringList { "Save" };
    QTest::newRow("Ctrl+Alt+S") << int(Qt::Key_S) << (ctrl | alt) << QStringList { "Save As" };
    QTest::newRow("Ctrl+Shift+S") << int(Qt::Key_S) << (ctrl | shift) << QStringList();
    QTest::newRow("S") << int(Qt::Key_S) << Qt::KeyboardModifiers() << QStringList();
    QTest::newRow("Alt+S") << int(Qt::Key_S) << alt << QStringList();
    QTest::newRow("Shift+F5") << int(Qt::Key_F5) << shift << QStringList { "Game1" };
    QTest::newRow("F5") << int(Qt::Key_F5) << Qt::KeyboardModifiers() << QStringList();
    QTest::newRow("Ctrl+Shift+F5") << int(Qt::Key_F5) << (ctrl | shift) << QStringList();
    QTest::newRow("Shift+F6") << int(Qt::Key_F6) << shift << QStringList { "TDemo1" };
    QTest::newRow("F3") << int(Qt::Key_F3) << Qt::KeyboardModifiers() << QStringList { "Search1" };
    QTest::newRow("Shift+F3") << int(Qt::Key_F3) << shift << QStringList();
    QTest::newRow("F4") << int(Qt::Key_F4) << Qt::KeyboardModifiers() << QStringList { "Options1" };
    QTest::newRow("Alt+F4") << int(Qt::Key_F4) << alt << QStringList();
    QTest::newRow("Ctrl+Q") << int(Qt::Key_Q) << ctrl << QStringList();
}

void tst_Commands::acceleratorsMatchTheWholeMask()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QStringList, seen);
    Prompts::setNextAnswers({ QString() });
    QCOMPARE(observe([&] { press(key, modifiers); }), seen);
    Prompts::setNextAnswers({}); // rows that open no dialog leave the answer unused
}

void tst_Commands::acceleratorsWaitWhileADialogIsOpen()
{
    // While the Save dialog is "open", every accelerator is ignored.
    QStringList whileOpen;
    Prompts::setNextAnswers({ QString() });
    Prompts::setWhileShown([&] {
        Prompts::takeShown();
        for (int key : { Qt::Key_F3, Qt::Key_F4 })
            press(key, Qt::NoModifier);
        press(Qt::Key_F5, Qt::ShiftModifier);
        press(Qt::Key_O, Qt::ControlModifier);
        whileOpen = m_seen;
    });
    QCOMPARE(observe([&] { press(Qt::Key_S, Qt::ControlModifier); }), QStringList());
    QCOMPARE(whileOpen, QStringList());
    // Afterwards they run again.
    QCOMPARE(observe([&] { press(Qt::Key_F3, Qt::NoModifier); }), QStringList { "Search1" });
}

void tst_Commands::acceleratorsWaitWhileMinimized()
{
    m_window->showMinimized();
    QTRY_VERIFY(m_window->isMinimized());
    QCOMPARE(observe([&] {
        press(Qt::Key_F3, Qt::NoModifier);
        press(Qt::Key_F6, Qt::ShiftModifier);
    }),
        QStringList());
    m_window->showNormal();
    QTRY_VERIFY(!m_window->isMinimized());
    QCOMPARE(observe([&] { press(Qt::Key_F4, Qt::NoModifier); }), QStringList { "Options1" });
}

void tst_Commands::toolbarButtonsRunMenuCommands_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("seen");
    QTest::newRow("NEW1") << "NEW1" << QStringList { "frmNew" };
    QTest::newRow("OPEN1") << "OPEN1" << QStringList { "Open" };
    QTest::newRow("SAVE1") << "SAVE1" << QStringList { "Save" };
    QTest::newRow("OPTIONS1") << "OPTIONS1" << QStringList { "Options1" };
    QTest::newRow("SEARCH1") << "SEARCH1" << QStringList { "Search1" };
    QTest::newRow("ABOUT1") << "ABOUT1" << QStringList { "frmAbout" };
    QTest::newRow("WIZ1") << "WIZ1" << QStringList();
}

void tst_Commands::toolbarButtonsRunMenuCommands()
{
    QFETCH(QString, button);
    QFETCH(QStringList, seen);
    auto *action = m_window->commands().toolbar()->findChild<QAction *>(button);
    QVERIFY(action);
    QCOMPARE(action->isVisible(), button != u"WIZ1");
    Prompts::setNextAnswers({ QString() });
    QCOMPARE(observe([&] { action->trigger(); }), seen);
    // With the commands off a click is dropped.
    gate().setHotKeysEnabled(false);
    QCOMPARE(observe([&] { action->trigger(); }), QStringList());
    gate().setHotKeysEnabled(true);
    Prompts::setNextAnswers({});
}

void tst_Commands::toolbarRestoreFollowsTheDocument()
{
    auto *restore = m_window->commands().toolbar()->findChild<QAction *>("DEFAULTS1");
    auto *web = m_window->commands().toolbar()->findChild<QToolButton *>("ONWEB1");
    QCOMPARE(web->menu(), m_window->commands().menu().subMenu("Websites1"));
    QCOMPARE(web->popupMode(), QToolButton::InstantPopup);
    QVERIFY(!restore->isEnabled());
    QCOMPARE(observe([&] { restore->trigger(); }), QStringList());

    QVERIFY(m_window->documentCommands().OpenCfg(file("mine.cfg")));
    QVERIFY(restore->isEnabled() && m_window->commands().menu().isEnabled("Def1"));
    m_window->document().setText(SettingCatalog::instance().indexOfControl(u"txtFOV"), 0, "120");
    Prompts::setNextAnswers({ QMessageBox::Yes });
    QCOMPARE(observe([&] { restore->trigger(); }), QStringList { "Tarnwick" });
    QVERIFY(!m_window->document().isModified());

    // New detaches the document: Restore is unavailable again.
    QTimer::singleShot(0, this, [] { qobject_cast<QDialog *>(QApplication::activeModalWidget())->accept(); });
    m_window->commands().run("New1");
    QVERIFY(!restore->isEnabled() && !m_window->commands().menu().isEnabled("Def1"));
}

void tst_Commands::closeAsksToSave_data()
{
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QList<Answer>>("answers");
    QTest::addColumn<QStringList>("seen");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("saved");
    const QStringList prompt { "Tarnwick" };
    QTest::newRow("yes saves and closes") << true << QList<Answer> { QMessageBox::Yes } << prompt << true << true;
    QTest::newRow("no closes") << true << QList<Answer> { QMessageBox::No } << prompt << true << false;
    QTest::newRow("cancel stays") << true << QList<Answer> { QMessageBox::Cancel } << prompt << false << false;
    QTest::newRow("yes, then the Save dialog cancelled, stays")
        << false << QList<Answer> { QMessageBox::Yes, QString() } << QStringList { "Tarnwick", "Save" } << false
        << false;
}

void tst_Commands::closeAsksToSave()
{
    QFETCH(bool, opened);
    QFETCH(QList<Answer>, answers);
    QFETCH(QStringList, seen);
    QFETCH(bool, closes);
    QFETCH(bool, saved);
    const QString path = file("mine.cfg");
    if (opened)
        QVERIFY(m_window->documentCommands().OpenCfg(path));
    m_window->document().setText(SettingCatalog::instance().indexOfControl(u"txtFOV"), 0, "120");
    Prompts::setNextAnswers(answers);
    QCOMPARE(observe([&] { triggerMenu("Exit1"); }), seen);
    QCOMPARE(m_window->isVisible(), !closes);
    QCOMPARE(m_window->document().isModified(), !saved);
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll().contains("seta cg_fov \"120\""), saved);
}

void tst_Commands::refusedCloseEndsATrayExit()
{
    // The tray's Exit leaves the commands off for good; a close the user cancels gives them back.
    m_window->document().setModified(true);
    gate().setTrayExitPending(true);
    gate().setHotKeysEnabled(false);
    Prompts::setNextAnswers({ QMessageBox::Cancel });
    QCOMPARE(observe([&] { m_window->close(); }), QStringList { "Tarnwick" });
    QVERIFY(m_window->isVisible());
    QVERIFY(!gate().TrayExitPending());
    QVERIFY(gate().HotKeysEnabled());
}

void tst_Commands::exportAndImportEachKind_data()
{
    QTest::addColumn<PartialKind>("partial");
    QTest::addColumn<QString>("exportKey");
    QTest::addColumn<QString>("importKey");
    QTest::addColumn<Page>("page");
    QTest::newRow("controls") << PartialKind::Controls << "Ctrl1"
                              << "Ctrl2" << Page::Control;
    QTest::newRow("renderer") << PartialKind::Renderer << "Gfx1"
                              << "Gfx2" << Page::Renderer;
    QTest::newRow("hud") << PartialKind::HudDisplay << "Hud1"
                         << "Hud2" << Page::HudDisplay;
    QTest::newRow("railgun") << PartialKind::Railgun << "RGun1"
                             << "RGun2" << Page::Railgun;
}

void tst_Commands::exportAndImportEachKind()
{
    QFETCH(PartialKind, partial);
    QFETCH(QString, exportKey);
    QFETCH(QString, importKey);
    QFETCH(Page, page);
    const QString exported = m_dir.filePath("area" + PartialFiles::extension(partial));
    ConfigDocument &doc = m_window->document();
    doc.setText(SettingCatalog::instance().indexOfControl(u"txtFOV"), 0, "120");
    QVERIFY(doc.isModified());
    Prompts::setWhileShown({}); // the boxes are looked at afterwards, filters and all

    Prompts::setNextAnswers({ exported });
    m_window->commands().run(exportKey);
    QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown[0].title, QStringLiteral("Export File"));
    QCOMPARE(shown[0].text, PartialFiles::exportFilter(partial));
    QVERIFY(QFile::exists(exported));
    QVERIFY(!doc.isModified());
    QVERIFY(!m_window->currentPage());

    Prompts::setNextAnswers({ exported });
    m_window->commands().run(importKey);
    shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown[0].title, QStringLiteral("Import File"));
    QCOMPARE(shown[0].text, PartialFiles::importFilter(partial));
    QVERIFY(doc.isModified());
    QCOMPARE(m_window->currentPage(), page);
    QCOMPARE(doc.displayName(), QStringLiteral("Untitled")); // the document keeps its name

    // A cancelled import changes nothing.
    doc.setModified(false);
    Prompts::setNextAnswers({ QString() });
    m_window->commands().run(importKey);
    Prompts::takeShown();
    QVERIFY(!doc.isModified());
}

void tst_Commands::openReadsWhileTheSplashShows()
{
    const QString path = file("mine.cfg");
    QString splashText;
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (auto *splash = qobject_cast<frmLoad *>(QApplication::activeModalWidget()))
            splashText = splash->text();
    });
    watch.start(0);
    Prompts::setNextAnswers({ path });
    m_window->commands().run("Open1");
    watch.stop();
    QCOMPARE(splashText, frmLoad::message(true));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("mine.cfg - Tarnwick"));
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    Prompts::takeShown();
}

QTEST_MAIN(tst_Commands)
#include "tst_Commands.moc"

// The window's start-up and close: program settings in and out, the command line, the game folder and the
// options dialog, on the real window with every box answered through Prompts.
#include "CommandLineRouter.h"
#include "Commands.h"
#include "DocumentCommands.h"
#include "LocateGameFolder.h"
#include "PopMenu.h"
#include "ProgramSettings.h"
#include "Prompts.h"
#include "SettingCatalog.h"
#include "StartUp.h"
#include "TestFiles.h"
#include "WindowSettings.h"
#include "frmAbout.h"
#include "frmMain.h"
#include "frmOptions.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using Prompts::Answer;

class tst_StartUp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void commandLineRunsItsRequest_data();
    void commandLineRunsItsRequest();
    void commandLineAsksBeforeReplacingChanges_data();
    void commandLineAsksBeforeReplacingChanges();
    void handOverWaitsForTheOpenDialog();
    void locateGameFolder_data();
    void locateGameFolder();
    void optionsDialog_data();
    void optionsDialog();
    void settingsComeInAndGoOut();
    void minimizedCloseKeepsThePosition();

private:
    QString file(const QString &name, const QByteArray &bytes = "seta cg_fov \"110\"\r\nbind w \"+forward\"\r\n");
    QString gameFolder(const QString &name);
    QStringList titlesShown();
    /// A window started the way the program starts, with `ini` as its settings file.
    frmMain *start(const QString &ini);
    WindowSettings &settings() { return m_window->settings(); }

    frmMain *m_window = nullptr;
    QTemporaryDir m_dir;
};

void tst_StartUp::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    // Registering the file types writes into the user's data and config folders: keep them here.
    qputenv("XDG_DATA_HOME", m_dir.filePath("data").toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", m_dir.filePath("config").toLocal8Bit());
    qputenv("PATH", m_dir.path().toLocal8Bit()); // and start no desktop tool
}

void tst_StartUp::init()
{
    m_window = new frmMain;
    Prompts::setNextAnswers({});
}

void tst_StartUp::cleanup()
{
    QVERIFY(!Prompts::hasPendingAnswers());
    QVERIFY(m_window->gate().HotKeysEnabled());
    delete m_window;
}

QString tst_StartUp::file(const QString &name, const QByteArray &bytes)
{
    return writeTestFile(m_dir.filePath(name), bytes);
}

// A folder that holds the game when `program` is not empty.
QString tst_StartUp::gameFolder(const QString &program)
{
    const QString folder = m_dir.filePath("game-" + (program.isEmpty() ? QStringLiteral("none") : program));
    QDir().mkpath(folder + "/baseq3");
    if (!program.isEmpty())
        file(QDir(m_dir.path()).relativeFilePath(folder + '/' + program), "");
    return folder;
}

QStringList tst_StartUp::titlesShown()
{
    QStringList titles;
    for (const Prompts::Shown &shown : Prompts::takeShown())
        titles << shown.title;
    return titles;
}

frmMain *tst_StartUp::start(const QString &ini)
{
    auto *window = new frmMain;
    StartUp::prepare(*window, nullptr, ini, QCoreApplication::applicationFilePath());
    window->show();
    return window;
}

void tst_StartUp::commandLineRunsItsRequest_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text"); // "@" stands for the file's path
    QTest::addColumn<QList<Answer>>("answers");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("page");
    QTest::addColumn<bool>("modified");
    const QString untitled = "Untitled - Tarnwick";
    QTest::newRow("cfg") << "mine.cfg"
                         << "@" << QList<Answer>() << QStringList() << "mine.cfg - Tarnwick" << -1 << false;
    QTest::newRow("cfg in quotes") << "my q3.cfg"
                                   << " \"@\" " << QList<Answer>() << QStringList() << "my q3.cfg - Tarnwick" << -1
                                   << false;
    QTest::newRow("config") << "mine.Config"
                            << "@" << QList<Answer>() << QStringList() << "mine.Config - Tarnwick" << -1 << false;
    QTest::newRow("controls") << "keys.ctr"
                              << "@" << QList<Answer>() << QStringList() << untitled << 2 << true;
    QTest::newRow("renderer") << "gfx.RNR"
                              << "@" << QList<Answer>() << QStringList() << untitled << 3 << true;
    QTest::newRow("hud") << "hud.hud"
                         << "@" << QList<Answer>() << QStringList() << untitled << 5 << true;
    QTest::newRow("railgun") << "rail.rlg"
                             << "@" << QList<Answer>() << QStringList() << untitled << 6 << true;
    QTest::newRow("open switch") << ""
                                 << "C:\\Program Files\\Tarnwick\\OPEN" << QList<Answer> { QString() }
                                 << QStringList { "Open" } << untitled << -1 << false;
    QTest::newRow("missing cfg is tried")
        << ""
        << "@/gone.cfg" << QList<Answer> { QMessageBox::Ok } << QStringList { "Tarnwick" } << untitled << -1 << false;
    QTest::newRow("missing hud is nothing")
        << ""
        << "@/gone.hud" << QList<Answer>() << QStringList() << untitled << -1 << false;
}

void tst_StartUp::commandLineRunsItsRequest()
{
    QFETCH(QString, file);
    QFETCH(QString, text);
    QFETCH(QList<Answer>, answers);
    QFETCH(QStringList, shown);
    QFETCH(QString, caption);
    QFETCH(int, page);
    QFETCH(bool, modified);
    const QString path = file.isEmpty() ? m_dir.path() : this->file(file);
    // Whatever state the window was in, it comes back normal sized.
    page == 3 ? m_window->showMaximized() : m_window->showMinimized();
    Prompts::setNextAnswers(answers);
    m_window->commandLine().HandleCommandLine(text.replace(u'@', path));
    QCOMPARE(titlesShown(), shown);
    QVERIFY(m_window->isVisible());
    QTRY_VERIFY(!m_window->isMinimized() && !m_window->isMaximized());
    QCOMPARE(m_window->windowTitle(), caption);
    QCOMPARE(m_window->currentPage() ? int(*m_window->currentPage()) : -1, page);
    QCOMPARE(m_window->document().isModified(), modified);
}

void tst_StartUp::commandLineAsksBeforeReplacingChanges_data()
{
    QTest::addColumn<QList<Answer>>("answers");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<bool>("saved");
    QTest::newRow("yes saves, then opens") << QList<Answer> { QMessageBox::Yes } << "new.cfg - Tarnwick" << true;
    QTest::newRow("no opens") << QList<Answer> { QMessageBox::No } << "new.cfg - Tarnwick" << false;
    QTest::newRow("cancel keeps") << QList<Answer> { QMessageBox::Cancel } << "old.cfg - Tarnwick" << false;
}

void tst_StartUp::commandLineAsksBeforeReplacingChanges()
{
    QFETCH(QList<Answer>, answers);
    QFETCH(QString, caption);
    QFETCH(bool, saved);
    const QString old = file("old.cfg");
    QVERIFY(m_window->documentCommands().OpenCfg(old));
    m_window->document().setText(SettingCatalog::instance().indexOfControl(u"txtFOV"), 0, "120");
    Prompts::setNextAnswers(answers);
    m_window->commandLine().HandleCommandLine(file("new.cfg"));
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown[0].text, QStringLiteral("Save changes to configuration file \n\"old.cfg\" before loading a new?"));
    QCOMPARE(m_window->windowTitle(), caption);
    QFile f(old);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll().contains("seta cg_fov \"120\""), saved);
}

void tst_StartUp::handOverWaitsForTheOpenDialog()
{
    // A later copy hands a file over while the About box is open: the box stays in front and the file opens
    // once it is closed, nothing hidden behind the window.
    const QString path = file("handed.cfg");
    m_window->show();
    QString captionWhileOpen;
    QTimer::singleShot(0, this, [&] {
        QWidget *about = QApplication::activeModalWidget();
        QVERIFY(qobject_cast<frmAbout *>(about));
        m_window->commandLine().handOver(path);
        QCOMPARE(QApplication::activeModalWidget(), about);
        captionWhileOpen = m_window->windowTitle();
        qobject_cast<QDialog *>(about)->accept();
    });
    m_window->commands().run("About1");
    QCOMPARE(captionWhileOpen, QStringLiteral("Untitled - Tarnwick"));
    QTRY_COMPARE(m_window->windowTitle(), QStringLiteral("handed.cfg - Tarnwick"));
}

void tst_StartUp::locateGameFolder_data()
{
    QTest::addColumn<QString>("stored"); // a program name for a folder that holds it, "none" for one without
    QTest::addColumn<QStringList>("picked"); // folders chosen in turn ("" cancels)
    QTest::addColumn<QList<Answer>>("questions"); // answers to the retry question, in turn
    QTest::addColumn<bool>("found");
    QTest::addColumn<QString>("result"); // the game folder afterwards
    QTest::newRow("valid at once") << "quake3.exe" << QStringList() << QList<Answer>() << true << "quake3.exe";
    QTest::newRow("an engine's build counts")
        << "ioquake3.x86_64" << QStringList() << QList<Answer>() << true << "ioquake3.x86_64";
    QTest::newRow("cancel") << "none" << QStringList { "" } << QList<Answer>() << false << "none";
    QTest::newRow("wrong, yes, wrong, no") << "none" << QStringList { "none", "none" }
                                           << QList<Answer> { QMessageBox::Yes, QMessageBox::No } << false << "none";
    QTest::newRow("wrong, yes, right") << "none" << QStringList { "none", "quake3e.x64" }
                                       << QList<Answer> { QMessageBox::Yes } << true << "quake3e.x64";
}

void tst_StartUp::locateGameFolder()
{
    QFETCH(QString, stored);
    QFETCH(QStringList, picked);
    QFETCH(QList<Answer>, questions);
    QFETCH(bool, found);
    QFETCH(QString, result);
    auto folderOf = [this](const QString &name) { return gameFolder(name == u"none" ? QString() : name); };
    QString folder = folderOf(stored);
    QList<Answer> answers;
    QStringList expected;
    for (int i = 0; i < picked.size(); ++i) {
        answers << (picked[i].isEmpty() ? QString() : folderOf(picked[i]));
        expected << "Select Quake III Arena Folder";
        if (i < questions.size()) {
            answers << questions[i];
            expected << "Tarnwick";
        }
    }
    Prompts::setNextAnswers(answers);
    QCOMPARE(LocateGameFolder(m_window, QStringLiteral("can not locate Quake3.exe"), folder), found);
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QStringList titles;
    for (const Prompts::Shown &s : shown) {
        titles << s.title;
        QVERIFY(s.commandsOff);
        if (s.title == u"Tarnwick")
            QCOMPARE(s.text,
                QStringLiteral("Invalid Quake III Arena Dir.\nProblem: can not locate Quake3.exe.\n\n"
                               "Would you like to try again?"));
    }
    QCOMPARE(titles, expected);
    QCOMPARE(folder, folderOf(result));
}

void tst_StartUp::optionsDialog_data()
{
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("picked"); // what "&Select..." chooses ("" cancels it)
    QTest::addColumn<QString>("typed"); // typed over it afterwards when not empty
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("gradient");
    QTest::newRow("ok takes the typed folder, trimmed") << true << ""
                                                        << "  /games/q3  "
                                                        << "/games/q3" << false;
    QTest::newRow("ok takes the picked folder") << true << "/games/picked"
                                                << ""
                                                << "/games/picked" << false;
    QTest::newRow("cancel keeps everything") << false << "/games/picked"
                                             << "/elsewhere"
                                             << "/games/old" << true;
}

void tst_StartUp::optionsDialog()
{
    QFETCH(bool, ok);
    QFETCH(QString, picked);
    QFETCH(QString, typed);
    QFETCH(QString, folder);
    QFETCH(bool, gradient);
    settings().setGameFolder("/games/old");
    settings().setGradient(true);
    Prompts::setNextAnswers({ picked });
    QTimer::singleShot(0, this, [&] {
        auto *dialog = qobject_cast<frmOptions *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto *path = dialog->findChild<QLineEdit *>("txtPath");
        auto *check = dialog->findChild<QCheckBox *>("chkGrad");
        QCOMPARE(path->text(), QStringLiteral("/games/old"));
        QVERIFY(check->isChecked());
        QVERIFY(!m_window->gate().HotKeysEnabled());
        dialog->findChild<QPushButton *>("cmdSelect")->click();
        if (!picked.isEmpty())
            QCOMPARE(path->text(), picked);
        if (!typed.isEmpty())
            path->setText(typed);
        check->setChecked(false);
        dialog->findChild<QPushButton *>(QString::fromLatin1(ok ? "cmdOK" : "cmdCancel"))->click();
    });
    m_window->commands().run("Options1");
    const QList<Prompts::Shown> shown = Prompts::takeShown();
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shown[0].title, QStringLiteral("Select Quake III Arena Folder"));
    QCOMPARE(shown[0].text, QStringLiteral("/games/old")); // the picker starts at the folder shown
    QCOMPARE(settings().gameFolder(), folder);
    QCOMPARE(m_window->commands().menu().highlightStyle() == PopMenu::Gradient, gradient);
    QCOMPARE(settings().current().gradient, gradient ? 1 : 0);
}

void tst_StartUp::settingsComeInAndGoOut()
{
    const QString game = gameFolder("quake3.exe");
    const QString ini = file("in.ini",
        "[Tarnwick]\r\nq3dir=" + game.toUtf8()
            + "\r\ngradient=0\r\naot=1\r\nwx=1500\r\nwy=3000\r\npv_wx=10\r\npv_wy=20\r\npv_open=1\r\n");
    delete m_window;
    m_window = start(ini);
    QCOMPARE(settings().gameFolder(), game);
    QCOMPARE(m_window->commands().menu().highlightStyle(), PopMenu::Flat);
    QVERIFY(m_window->alwaysOnTop() && m_window->commands().menu().isChecked("OnTop1"));
    QCOMPARE(m_window->commands().menu().caption("Prev1"), QStringLiteral("Hide &Preview"));
    QCOMPARE(settings().current().wx, 1500);
    QCOMPARE(settings().current().wy, 3000);
    QVERIFY(m_window->close());
    const ProgramSettings out = pbLoadOptions(ini, 0, 0);
    QCOMPARE(out.q3dir, game);
    QCOMPARE(out.gradient, 0);
    QCOMPARE(out.aot, 1);
    QCOMPARE(out.wx, 1500);
    QCOMPARE(out.wy, 3000);
    QCOMPARE(out.pv_wx, 10);
    QCOMPARE(out.pv_wy, 20);
    QCOMPARE(out.pv_open, 1);
    QVERIFY(Prompts::takeShown().isEmpty()); // a valid game folder asks nothing
}

void tst_StartUp::minimizedCloseKeepsThePosition()
{
    const QString ini
        = file("min.ini", "[Tarnwick]\r\nq3dir=" + gameFolder("quake3.exe").toUtf8() + "\r\nwx=750\r\nwy=1500\r\n");
    delete m_window;
    m_window = start(ini);
    m_window->move(300, 200);
    m_window->showMinimized();
    QTRY_VERIFY(m_window->isMinimized());
    QVERIFY(m_window->close());
    QCOMPARE(IniFile::ReadSetting("Tarnwick", "wx", "", ini), QStringLiteral("750"));
    QCOMPARE(IniFile::ReadSetting("Tarnwick", "wy", "", ini), QStringLiteral("1500"));
    QCOMPARE(IniFile::ReadSetting("Tarnwick", "pv_open", "", ini), QStringLiteral("0"));
}

QTEST_MAIN(tst_StartUp)
#include "tst_StartUp.moc"

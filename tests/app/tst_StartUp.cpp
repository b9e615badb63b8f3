// The window's start-up and close: program settings in and out, the command line, the game folder and the
// options dialog, on the real window with every box answered through Prompts.
#include "CommandLineRouter.h"
#include "LocateGameFolder.h"
#include "ProgramSettings.h"
#include "StartUp.h"
#include "WindowSettings.h"
#include "WindowTestSupport.h"
#include "frmAbout.h"
#include "frmOptions.h"

using namespace WindowTest;

class tst_StartUp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Registering the file types writes into the user's data and config folders: keep them here.
        qputenv("XDG_DATA_HOME", m_dir.filePath("data").toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", m_dir.filePath("config").toLocal8Bit());
        qputenv("PATH", m_dir.path().toLocal8Bit()); // and start no desktop tool
    }

    void init() { m_window = answeredWindow(false); }
    void cleanup() { closeWindow(m_window); }

    void commandLineRunsItsRequest_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("text"); // "@" stands for the file's path
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<int>("page"); // shown afterwards; an import's, or none
        const auto row = [](const char *tag, const char *file, const char *text, const QStringList &shown, int page) {
            QTest::newRow(tag) << file << text << shown << page;
        };
        row("cfg", "mine.cfg", "@", {}, -1);
        row("renderer, window maximized", "gfx.RNR", "@", {}, int(Page::Renderer));
        row("open switch", "", "C:\\Program Files\\Tarnwick\\OPEN", { "Open" }, -1);
        row("missing cfg is tried", "", "@/gone.cfg", { "Tarnwick" }, -1);
    }
    void commandLineRunsItsRequest()
    {
        QFETCH(QString, file);
        QFETCH(QString, text);
        QFETCH(QStringList, shown);
        QFETCH(int, page);
        const QString path = file.isEmpty() ? m_dir.path() : this->file(file);
        // Whatever state the window was in, it comes back normal sized.
        Page(page) == Page::Renderer ? m_window->showMaximized() : m_window->showMinimized();
        m_window->commandLine().HandleCommandLine(text.replace(u'@', path));
        QCOMPARE(titlesShown(), shown);
        QTRY_VERIFY(m_window->isVisible() && !m_window->isMinimized() && !m_window->isMaximized());
        // A configuration opens under its name; an import leaves the document's.
        QCOMPARE(m_window->document().displayName(), file.endsWith(u".cfg") ? file : QStringLiteral("Untitled"));
        QCOMPARE(m_window->currentPage() ? int(*m_window->currentPage()) : -1, page);
        QCOMPARE(m_window->document().isModified(), page >= 0); // an import is a change
    }

    void commandLineAsksBeforeReplacingChanges()
    {
        // Cancel keeps the changed document (every answer to the question: closeAsksToSave).
        QVERIFY(m_window->documentCommands().OpenCfg(file("old.cfg")));
        editFov(*m_window);
        Prompts::setNextAnswers({ QMessageBox::Cancel });
        m_window->commandLine().HandleCommandLine(file("new.cfg"));
        QCOMPARE(titlesShown(), QStringList { "Tarnwick" });
        QCOMPARE(m_window->document().displayName(), QStringLiteral("old.cfg"));
        QVERIFY(m_window->document().isModified());
    }

    void handOverWaitsForTheOpenDialog()
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

    void locateGameFolder_data()
    {
        QTest::addColumn<QString>("stored"); // a program name for a folder that holds it, "none" for one without
        QTest::addColumn<QList<Answer>>(
            "answers"); // folders picked, the same way ("" cancels), and the retry question's
        QTest::addColumn<QString>("result"); // the game folder afterwards; "none": not found
        const auto row = [](const char *tag, const char *stored, const QList<Answer> &answers, const char *result) {
            QTest::newRow(tag) << stored << answers << result;
        };
        row("valid at once", "ioquake3.x86_64", {}, "ioquake3.x86_64");
        row("cancel", "none", { "" }, "none");
        row("wrong, yes, wrong, no", "none", { "none", QMessageBox::Yes, "none", QMessageBox::No }, "none");
        row("wrong, yes, right", "none", { "none", QMessageBox::Yes, "quake3e.x64" }, "quake3e.x64");
    }
    void locateGameFolder()
    {
        QFETCH(QString, stored);
        QFETCH(QList<Answer>, answers);
        QFETCH(QString, result);
        QString folder = gameFolder(stored);
        QStringList expected;
        for (Answer &answer : answers) {
            if (answer.isPath && !answer.path.isEmpty())
                answer.path = gameFolder(answer.path);
            expected << QString::fromLatin1(answer.isPath ? "Select Quake III Arena Folder" : "Tarnwick");
        }
        Prompts::setNextAnswers(answers);
        QCOMPARE(LocateGameFolder(m_window, QStringLiteral("can not locate Quake3.exe"), folder), result != u"none");
        QStringList titles;
        for (const Prompts::Shown &shown : Prompts::takeShown()) {
            titles << shown.title;
            QVERIFY(shown.commandsOff);
        }
        QCOMPARE(titles, expected);
        QCOMPARE(folder, gameFolder(result));
    }

    void pickerOpensAtAnInstallationFound()
    {
        // An engine in ~/ioquake3: the picker starts there, and the user still confirms it.
        QTemporaryDir home;
        QDir(home.path()).mkpath("ioquake3");
        writeTestFile(home.filePath("ioquake3/ioquake3.x86_64"), "");
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", home.path().toLocal8Bit());
        QString folder = gameFolder("none");
        Prompts::setNextAnswers({ QString() });
        QVERIFY(!LocateGameFolder(m_window, QStringLiteral("can not locate Quake3.exe"), folder));
        qputenv("HOME", oldHome);
        QCOMPARE(Prompts::takeShown().value(0).folder, home.filePath("ioquake3"));
    }

    void optionsDialog()
    {
        settings().setGameFolder("/games/old");
        settings().setGradient(true);
        // Cancel keeps everything, also after a cancelled "&Select..."; OK takes what is typed after a pick, trimmed.
        for (const bool ok : { false, true }) {
            const QString picked = ok ? QStringLiteral("/games/picked") : QString();
            Prompts::setNextAnswers({ picked });
            whenModal(this, [&](QWidget *dialog) {
                QVERIFY(qobject_cast<frmOptions *>(dialog) && !m_window->gate().HotKeysEnabled());
                auto *path = WindowTest::find<QLineEdit>(dialog, "txtPath");
                auto *check = WindowTest::find<QCheckBox>(dialog, "chkGrad");
                QVERIFY(path->text() == u"/games/old" && check->isChecked());
                WindowTest::find<QPushButton>(dialog, "cmdSelect")->click();
                QCOMPARE(path->text(), ok ? picked : QStringLiteral("/games/old"));
                path->setText("  /games/q3  ");
                check->setChecked(false);
                WindowTest::find<QPushButton>(dialog, QString::fromLatin1(ok ? "cmdOK" : "cmdCancel"))->click();
            });
            m_window->commands().run("Options1");
            QCOMPARE(Prompts::takeShown().value(0).text, QStringLiteral("/games/old")); // where the picker starts
            QCOMPARE(settings().gameFolder(), ok ? QStringLiteral("/games/q3") : QStringLiteral("/games/old"));
            QCOMPARE(m_window->commands().menu().highlightStyle() == PopMenu::Gradient, !ok);
            QCOMPARE(settings().current().gradient, ok ? 0 : 1);
        }
    }

    void settingsComeInAndGoOut()
    {
        // Started the way the program starts.
        const QString ini = file("in.ini",
            "[Tarnwick]\r\nq3dir=" + gameFolder("quake3.exe").toUtf8()
                + "\r\ngradient=0\r\naot=1\r\nwx=1500\r\nwy=3000\r\npv_wx=10\r\npv_wy=20\r\npv_open=1\r\n");
        StartUp::prepare(*m_window, nullptr, ini, QCoreApplication::applicationFilePath());
        m_window->show();
        QVERIFY(Prompts::takeShown().isEmpty()); // a valid game folder asks nothing
        QCOMPARE(settings().gameFolder(), gameFolder("quake3.exe"));
        QCOMPARE(m_window->commands().menu().highlightStyle(), PopMenu::Flat);
        QVERIFY(m_window->alwaysOnTop() && m_window->commands().menu().isChecked("OnTop1"));
        QCOMPARE(m_window->commands().menu().caption("Prev1"), QStringLiteral("Hide &Preview"));
        // Closed minimized, the window keeps the position it had, not where it was moved since.
        m_window->move(300, 200);
        m_window->showMinimized();
        QTRY_VERIFY(m_window->isMinimized());
        QVERIFY(m_window->close());
        const ProgramSettings out = pbLoadOptions(ini, 0, 0);
        QCOMPARE(std::tuple(out.q3dir, out.gradient, out.aot, out.wx, out.wy, out.pv_wx, out.pv_wy, out.pv_open),
            std::tuple(gameFolder("quake3.exe"), 0, 1, 1500, 3000, 10, 20, 1));
    }

private:
    QString file(const QString &n, const QByteArray &b = smallCfg) { return writeTestFile(m_dir.filePath(n), b); }

    // A folder that holds the game program `name`; "none" for one that holds no game.
    QString gameFolder(const QString &name)
    {
        const QString folder = m_dir.filePath("game-" + name);
        QDir().mkpath(folder + "/baseq3");
        if (name != u"none")
            file(QDir(m_dir.path()).relativeFilePath(folder + '/' + name), "");
        return folder;
    }

    WindowSettings &settings() { return m_window->settings(); }

    frmMain *m_window = nullptr;
    QTemporaryDir m_dir;
};

QTEST_MAIN(tst_StartUp)
#include "tst_StartUp.moc"

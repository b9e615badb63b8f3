// The Run menu's commands in the real window, with game folders built here and a fake engine that records how
// it was started: its working folder, then its arguments, one a line.
#include "WindowSettings.h"
#include "WindowTestSupport.h"

using namespace WindowTest;

namespace {

const QByteArray fakeEngine = "#!/bin/sh\n"
                              "f=\"$(dirname \"$0\")/started.$$\"\n"
                              "{ pwd -P; for a in \"$@\"; do printf '%s\\n' \"$a\"; done; } > \"$f.part\"\n"
                              "mv \"$f.part\" \"$f\"\n";

} // namespace

class tst_GameCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("HOME", QFile::encodeName(m_home.path())); } // no demos of the player's own
    void init()
    {
        m_window = answeredWindow();
        m_game = std::make_unique<QTemporaryDir>();
    }
    void cleanup() { closeWindow(m_window); } // every way out gives the commands back

    void runGame_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("shown");
        const QString question = "Do you want to run Quake III Arena now?";
        QTest::newRow("Yes starts it plainly")
            << "ioquake3.x86_64*" << int(QMessageBox::Yes) << QStringList { question };
        QTest::newRow("No starts nothing") << "ioquake3.x86_64*" << int(QMessageBox::No) << QStringList { question };
        QTest::newRow("an engine that can't start")
            << "ioquake3.x86_64" << int(QMessageBox::Yes) << QStringList { question, "Cannot start Quake3.exe" };
    }

    void runGame()
    {
        QFETCH(QString, engine);
        QFETCH(int, answer);
        QFETCH(QStringList, shown);
        makeGame({ engine });
        Prompts::setNextAnswers({ QMessageBox::StandardButton(answer) });
        m_window->commands().run("Game1");
        QCOMPARE(textsShown(), shown);
        const bool starts = shown.size() == 1 && answer == QMessageBox::Yes;
        if (starts)
            QTRY_COMPARE(recordedStarts(), QList<QStringList> { { canonicalGame() } });
        QTest::qWait(100);
        QCOMPARE(recordedStarts().size(), starts ? 1 : 0);
    }

    void timedemoLooksForTheGame_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("problem"); // "" when nothing is asked
        QTest::newRow("no engine, no baseq3") << QStringList {} << "cannot locate Quake3.exe and Baseq3 dir";
        QTest::newRow("no engine") << QStringList { "baseq3/demos/a.dm3" } << "can not locate Quake3.exe";
        QTest::newRow("no baseq3") << QStringList { "ioquake3.x86_64*" } << "";
    }

    void timedemoLooksForTheGame()
    {
        // Whatever the answer, the dialog opens, with nothing to start.
        QFETCH(QStringList, files);
        QFETCH(QString, problem);
        makeGame(files);
        if (!problem.isEmpty())
            Prompts::setNextAnswers({ m_home.path(), QMessageBox::No });
        whenModal(this, [](QWidget *dialog) {
            QCOMPARE(dialog->objectName(), QStringLiteral("frmTimeDemo"));
            QCOMPARE(find<QListWidget>(dialog, "lstDemos")->count(), 0);
            QVERIFY(!find<QPushButton>(dialog, "cmdStart")->isEnabled());
            find<QPushButton>(dialog, "cmdCancel")->click();
        });
        m_window->commands().run("TDemo1");
        const QList<Prompts::Shown> shown = Prompts::takeShown();
        QCOMPARE(shown.size(), problem.isEmpty() ? 0 : 2);
        if (!problem.isEmpty())
            QVERIFY(shown[1].text.contains("Problem: " + problem + ".\n"));
    }

    void startRunsTimedemosAndMayCloseTheProgram()
    {
        makeGame({ "ioquake3.x86_64*", "baseq3/demos/intro.DM3", "baseq3/demos/b.dm_68", "baseq3/bad.pk3",
            "baseq3/worse.pk3" });
        whenModal(this, [this](QWidget *dialog) {
            auto *list = find<QListWidget>(dialog, "lstDemos");
            auto *start = find<QPushButton>(dialog, "cmdStart");
            const QStringList shown = textsShown();
            QCOMPARE(shown.size(), 1); // the unreadable archives, together
            QVERIFY(shown[0].contains(m_game->filePath("baseq3/bad.pk3")) && shown[0].contains("worse.pk3"));
            QCOMPARE(list->currentRow(), 0);
            QCOMPARE(list->item(1)->text(), QStringLiteral("intro"));
            // Two Starts, two games; the dialog stays.
            start->click();
            list->setCurrentRow(1);
            start->click();
            const QStringList timedemo { canonicalGame(), "+timedemo", "1", "+demo" };
            QTRY_COMPARE(recordedStarts(),
                (QList<QStringList> { timedemo + QStringList { "b.dm_68" }, timedemo + QStringList { "intro.dm3" } }));
            QVERIFY(dialog->isVisible());
            // Exit before the demo goes through the close request: the modified configuration is offered.
            editFov(*m_window);
            Prompts::setNextAnswers({ QMessageBox::No });
            find<QCheckBox>(dialog, "chkExit")->setChecked(true);
            start->click();
            const bool closed = !dialog->isVisible(); // the program closed, and the dialog with it
            if (!closed)
                qobject_cast<QDialog *>(dialog)->reject();
            QVERIFY(closed);
        });
        // The scan lets the event loop turn: a timer fires while its wait cursor is on.
        bool firedInScan = false;
        QTimer::singleShot(0, this, [&] { firedInScan = QGuiApplication::overrideCursor() != nullptr; });
        m_window->commands().run("TDemo1");
        QVERIFY(firedInScan);
        const QStringList shown = textsShown();
        QVERIFY(shown.size() == 1 && shown[0].startsWith("Save changes"));
        QVERIFY(!m_window->isVisible());
        QTRY_COMPARE(recordedStarts().size(), 3);
    }

private:
    // Files of the game folder, which becomes the program's: "NAME*" is the fake engine, any other a few bytes.
    void makeGame(const QStringList &files)
    {
        for (QString name : files) {
            const bool engine = name.endsWith(u'*');
            name.remove(u'*');
            const QString path = m_game->filePath(name);
            QDir().mkpath(QFileInfo(path).path());
            writeTestFile(path, name.startsWith("ioquake3") ? fakeEngine : "not an archive");
            if (engine)
                QFile(path).setPermissions(QFile::permissions(path) | QFile::ExeOwner);
        }
        m_window->settings().setGameFolder(m_game->path());
    }

    QString canonicalGame() const { return QDir(m_game->path()).canonicalPath(); }

    // What each started engine recorded, sorted.
    QList<QStringList> recordedStarts() const
    {
        QList<QStringList> runs;
        for (const QFileInfo &file : QDir(m_game->path()).entryInfoList({ "started.*" }, QDir::Files))
            if (file.suffix() != u"part")
                runs.append(QString::fromUtf8(readTestFile(file.filePath())).split(u'\n', Qt::SkipEmptyParts));
        std::sort(runs.begin(), runs.end());
        return runs;
    }

    static QStringList textsShown()
    {
        QStringList texts;
        for (const Prompts::Shown &shown : Prompts::takeShown())
            texts << shown.text;
        return texts;
    }

    QTemporaryDir m_home;
    std::unique_ptr<QTemporaryDir> m_game;
    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_GameCommands)
#include "tst_GameCommands.moc"

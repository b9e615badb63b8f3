// The walk for q3config.cfg over trees built here, the search dialog running it, and the Q3Config Search of the
// real window, whose Load opens the chosen file through the window's own open sequence.
#include "ConfigSearch.h"
#include "TestGameFiles.h"
#include "WindowTestSupport.h"
#include "frmSearch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using ConfigSearch::Walker;
using TestGameFiles::make;
using namespace WindowTest;

namespace {

// What a walk reports: its matches, relative to `base`; `onEnter` runs as each folder is entered.
class Recorder final : public ConfigSearch::Visitor
{
public:
    explicit Recorder(const QString &base, std::function<void(const QByteArray &)> onEnter = {})
        : m_base(QFile::encodeName(base) + '/')
        , m_onEnter(std::move(onEnter))
    { }
    bool enter(const QByteArray &folder) override
    {
        if (m_onEnter)
            m_onEnter(folder);
        return true;
    }
    bool found(const QByteArray &path) override
    {
        matches.append(QFile::decodeName(path.startsWith(m_base) ? path.mid(m_base.size()) : path));
        return true;
    }
    QStringList matches;

private:
    QByteArray m_base;
    std::function<void(const QByteArray &)> m_onEnter;
};

QStringList items(const QComboBox *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts.append(list->itemText(i));
    return texts;
}

} // namespace

class tst_ConfigSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The home folder is the place the window's dialog offers first, and searches unless told otherwise.
    void initTestCase() { qputenv("HOME", QFile::encodeName(m_home.path())); }
    void cleanup() { ConfigSearch::BackgroundWalk::setFolderHook({}); }

    void walk_data()
    {
        QTest::addColumn<QStringList>("tree");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("no match") << QStringList { "a.cfg", "q3config.cfg.bak", "xq3config.cfg", "sub/q3config" }
                                  << QStringList {};
        QTest::newRow("a folder's matches, then its subfolders by name without case, depth first")
            << QStringList { "b/q3config.cfg", "A/z/q3config.cfg", "a2/Q3CONFIG.CFG", "q3config.cfg", "Q3Config.cfg",
                   "A/q3config.cfg", "_old/q3config.cfg" }
            << QStringList { "Q3Config.cfg", "q3config.cfg", "_old/q3config.cfg", "A/q3config.cfg", "A/z/q3config.cfg",
                   "a2/Q3CONFIG.CFG", "b/q3config.cfg" };
        QTest::newRow("names beyond ASCII without case too")
            << QStringList { "Été/q3config.cfg", "éa/q3config.cfg", "f/q3config.cfg", "Ez/q3config.cfg" }
            << QStringList { "Ez/q3config.cfg", "f/q3config.cfg", "éa/q3config.cfg", "Été/q3config.cfg" };
        QTest::newRow("a folder of that name is listed, and walked")
            << QStringList { "Q3CONFIG.CFG/q3config.cfg" }
            << QStringList { "Q3CONFIG.CFG", "Q3CONFIG.CFG/q3config.cfg" };
#ifdef Q_OS_WIN
        QTest::newRow("hidden folders skipped") << QStringList { ".q3a/baseq3/q3config.cfg" } << QStringList {};
#else
        QTest::newRow("hidden folders walked")
            << QStringList { ".q3a/baseq3/q3config.cfg" } << QStringList { ".q3a/baseq3/q3config.cfg" };
#endif
        QTest::newRow("links to folders not followed, a loop neither; a link of that name listed")
            << QStringList { "game/q3config.cfg", "game/loop>..", "link>game", "q3config.cfg>game/q3config.cfg" }
            << QStringList { "q3config.cfg", "game/q3config.cfg" };
    }

    void walk()
    {
        QFETCH(QStringList, tree);
        QFETCH(QStringList, found);
        QTemporaryDir root;
        make(root, tree);
        Recorder recorder(root.path());
        QCOMPARE(
            Walker(ConfigSearch::fileName, recorder).SearchDirs(QFile::encodeName(root.path())), Walker::Outcome::Done);
        QCOMPARE(recorder.matches, found);
    }

    void foldersThatCannotBeOpenedAreSkipped()
    {
        // "b" goes between its parent's listing and its own (a folder without access does the same).
        QTemporaryDir root;
        make(root, { "a/q3config.cfg", "b/q3config.cfg", "c/q3config.cfg" });
        Recorder recorder(root.path(), [&](const QByteArray &folder) {
            if (folder.endsWith("/a/"))
                QVERIFY(QDir(root.path()).rename("b", "gone"));
        });
        QCOMPARE(
            Walker(ConfigSearch::fileName, recorder).SearchDirs(QFile::encodeName(root.path())), Walker::Outcome::Done);
        QCOMPARE(recorder.matches, (QStringList { "a/q3config.cfg", "c/q3config.cfg" }));
    }

    void hostileTree()
    {
        // A chain of 5,000 folders (deeper than a path can name), a link looping back up at its foot and
        // another at its head: the walk ends, finds what a path can reach, and reports only real files.
        QTemporaryDir root;
        make(root, { "d/q3config.cfg", "up>." });
        int fd = ::open(QFile::encodeName(root.filePath("d")).constData(), O_RDONLY | O_DIRECTORY);
        QVERIFY(fd >= 0);
        for (int depth = 0; depth < 5000; ++depth) {
            QVERIFY(::mkdirat(fd, "d", 0700) == 0);
            const int next = ::openat(fd, "d", O_RDONLY | O_DIRECTORY);
            ::close(fd);
            QVERIFY(next >= 0);
            fd = next;
        }
        QVERIFY(::symlinkat("../..", fd, "loop") == 0);
        QVERIFY(::close(::openat(fd, "q3config.cfg", O_WRONLY | O_CREAT, 0600)) == 0);
        ::close(fd);
        Recorder recorder(root.path());
        QCOMPARE(
            Walker(ConfigSearch::fileName, recorder).SearchDirs(QFile::encodeName(root.path())), Walker::Outcome::Done);
        QCOMPARE(recorder.matches.value(0), QStringLiteral("d/q3config.cfg"));
        QCOMPARE(recorder.matches.size(), 1);
        QVERIFY(QProcess::execute(QStringLiteral("rm"), { QStringLiteral("-rf"), root.path() }) == 0);
    }

    void searchShowsWhatItFound_data()
    {
        QTest::addColumn<QStringList>("tree");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << QStringList { "a/b.cfg" } << "No config files found.";
        QTest::newRow("one") << QStringList { "a/q3config.cfg" } << "Found 1 config file.";
        QTest::newRow("three") << QStringList { "a/q3config.cfg", "b/Q3CONFIG.cfg", "c/q3config.cfg" }
                               << "Found 3 config files.";
    }

    void searchShowsWhatItFound()
    {
        QFETCH(QStringList, tree);
        QFETCH(QString, text);
        QTemporaryDir root;
        make(root, tree);
        frmSearch dialog;
        dialog.setPlaces({ { root.path() + u'/', "test" } });
        dialog.show();
        find<QPushButton>(&dialog, "cmdSearch")->click();
        QTRY_VERIFY(!dialog.searching());
        const auto *results = find<QComboBox>(&dialog, "cbResults");
        QCOMPARE(find<QLabel>(&dialog, "lblSearching")->text(), text);
        QCOMPARE(results->count(), tree.filter("q3config", Qt::CaseInsensitive).size());
        QCOMPARE(results->currentIndex(), results->count() > 0 ? 0 : -1);
        if (results->count() > 0)
            QCOMPARE(results->currentText(), root.filePath("a/q3config.cfg"));
        QCOMPARE(find<QPushButton>(&dialog, "cmdLoad")->isEnabled(), results->count() > 0);
        verifyIdle(dialog);
    }

    void stoppingKeepsWhatWasFound_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Stop") << "Stop";
        QTest::newRow("Esc") << "Esc";
        QTest::newRow("close, which is refused") << "close";
    }

    void stoppingKeepsWhatWasFound()
    {
        QFETCH(QString, how);
        QTemporaryDir root;
        make(root, { "a/q3config.cfg", "b/q3config.cfg", "c/q3config.cfg", "d/q3config.cfg" });
        // The walk waits at "c" until the test has stopped it.
        QSemaphore atC;
        QSemaphore goOn;
        const auto release = qScopeGuard([&] { goOn.release(); }); // also when a check fails
        ConfigSearch::BackgroundWalk::setFolderHook([&](const QString &folder) {
            if (folder.endsWith("/c/")) {
                atC.release();
                goOn.acquire();
            }
        });
        frmSearch dialog;
        dialog.setPlaces({ { root.path(), "test" } });
        dialog.show();
        auto *search = find<QPushButton>(&dialog, "cmdSearch");
        search->click();
        QVERIFY(atC.tryAcquire(1, 5000));
        const auto *results = find<QComboBox>(&dialog, "cbResults");
        QTRY_COMPARE(results->count(), 2);
        // The searching look, with the running count.
        QCOMPARE(search->text(), QStringLiteral("&Stop"));
        for (const char *name : { "Check1", "Drive1", "cbResults", "cmdLoad", "cmdCancel" })
            QVERIFY2(!find(&dialog, QString::fromLatin1(name))->isEnabled(), name);
        QTRY_COMPARE(find<QLabel>(&dialog, "lblSearching")->text(), "      Searching " + root.filePath("c/"));
        QVERIFY(find<QLabel>(&dialog, "lblFound")->isVisible());
        QCOMPARE(find<QLabel>(&dialog, "lblFound")->text(), QStringLiteral("Found 2 config files."));

        if (how == u"Stop")
            search->click();
        else if (how == u"Esc")
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else
            QVERIFY(!dialog.close());
        goOn.release();
        QTRY_VERIFY(!dialog.searching());
        QVERIFY(dialog.isVisible());
        QCOMPARE(items(results), (QStringList { root.filePath("a/q3config.cfg"), root.filePath("b/q3config.cfg") }));
        QCOMPARE(results->currentIndex(), 0);
        QCOMPARE(find<QLabel>(&dialog, "lblSearching")->text(), QStringLiteral("Found 2 config files."));
        verifyIdle(dialog);
        // Idle, Esc is Cancel: the dialog hides and keeps its list.
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(results->count(), 2);
    }

    void allDrives()
    {
        QTemporaryDir first;
        QTemporaryDir second;
        make(first, { "q3config.cfg" });
        make(second, { "x/q3config.cfg" });
        frmSearch dialog;
        dialog.setPlaces({ { first.path(), "one" }, { second.path(), "two" } });
        dialog.show();
        auto *check = find<QCheckBox>(&dialog, "Check1");
        auto *drive = find<QComboBox>(&dialog, "Drive1");
        QVERIFY(!check->isChecked() && drive->isEnabled() && !find(&dialog, "lblDisTxt")->isVisible());
        drive->setCurrentIndex(1);
        check->click();
        QVERIFY(!drive->isEnabled());
        QVERIFY(find(&dialog, "lblDisTxt")->isVisible() && !find(&dialog, "lblLookIn")->isVisible());
        // Every place, in the list's order, whichever is selected.
        find<QPushButton>(&dialog, "cmdSearch")->click();
        QTRY_VERIFY(!dialog.searching());
        QCOMPARE(items(find<QComboBox>(&dialog, "cbResults")),
            (QStringList { first.filePath("q3config.cfg"), second.filePath("x/q3config.cfg") }));
        QVERIFY(!drive->isEnabled()); // the box still checked
    }

    void load_data()
    {
        QTest::addColumn<bool>("modified");
        QTest::addColumn<bool>("deleted"); // the chosen file is deleted after the search
        QTest::addColumn<QList<Answer>>("answers");
        QTest::addColumn<QStringList>("shown"); // titles, then texts, of the boxes shown
        QTest::addColumn<bool>("opened");
        const QString save = "Save changes to configuration file \n\"Untitled\" before loading a new?";
        const QString gone = "The file '" + m_home.filePath("a/q3config.cfg") + "' seams to be not existing any more.";
        QTest::newRow("opens the file") << false << false << QList<Answer> {} << QStringList {} << true;
        QTest::newRow("modified, Cancel: all stays as it was")
            << true << false << QList<Answer> { QMessageBox::Cancel } << QStringList { "Tarnwick", save } << false;
        QTest::newRow("deleted since the search")
            << false << true << QList<Answer> { QMessageBox::Ok } << QStringList { "Error", gone } << false;
    }

    void load()
    {
        QFETCH(bool, modified);
        QFETCH(bool, deleted);
        QFETCH(QList<Answer>, answers);
        QFETCH(QStringList, shown);
        QFETCH(bool, opened);
        make(m_home, { "a/q3config.cfg", "b/q3config.cfg" });
        m_window = answeredWindow();
        const auto close = qScopeGuard([this] { closeWindow(m_window); });
        if (modified)
            editFov(*m_window);
        const QString chosen = m_home.filePath("a/q3config.cfg");
        QStringList seen;
        whenModal(this, [&](QWidget *dialog) {
            QCOMPARE(dialog->objectName(), QStringLiteral("frmSearch"));
            QVERIFY(!m_window->gate().HotKeysEnabled());
            find<QPushButton>(dialog, "cmdSearch")->click();
            QTRY_VERIFY(!qobject_cast<frmSearch *>(dialog)->searching());
            auto *results = find<QComboBox>(dialog, "cbResults");
            QCOMPARE(results->count(), 2);
            QCOMPARE(results->currentText(), chosen);
            if (deleted)
                QVERIFY(QFile::remove(chosen));
            Prompts::setNextAnswers(answers);
            find<QPushButton>(dialog, "cmdLoad")->click();
            for (const Prompts::Shown &box : Prompts::takeShown())
                seen << box.title << box.text;
            QCOMPARE(dialog->isVisible(), !opened);
            QCOMPARE(results->count(), 2); // the list stays
            if (dialog->isVisible())
                find<QPushButton>(dialog, "cmdCancel")->click();
        });
        m_window->commands().run("Search1");
        QCOMPARE(seen, shown);
        const ConfigDocument &doc = m_window->document();
        QCOMPARE(doc.path(), opened ? chosen : QString());
        QCOMPARE(doc.isModified(), modified && !opened);
        QCOMPARE(m_window->windowTitle(),
            opened ? QStringLiteral("q3config.cfg - Tarnwick") : QStringLiteral("Untitled - Tarnwick"));
        QCOMPARE(m_window->commands().menu().isEnabled("Def1"), opened);
    }

private:
    static void verifyIdle(const frmSearch &dialog)
    {
        QCOMPARE(find<QPushButton>(&dialog, "cmdSearch")->text(), QStringLiteral("&Search"));
        QVERIFY(!find(&dialog, "lblFound")->isVisible());
        for (const char *name : { "Check1", "Drive1", "cbResults", "cmdCancel" })
            QVERIFY2(find(&dialog, QString::fromLatin1(name))->isEnabled(), name);
    }

    QTemporaryDir m_home;
    frmMain *m_window = nullptr;
};

QTEST_MAIN(tst_ConfigSearch)
#include "tst_ConfigSearch.moc"

// The walk for q3config.cfg over trees built here.
#include "ConfigSearch.h"
#include "TestFiles.h"

#include <QtTest>

using ConfigSearch::Walker;

namespace {

// Under `root`: "PATH>TARGET" a link, any other PATH a small file.
void make(const QTemporaryDir &root, const QStringList &items)
{
    for (const QString &item : items) {
        const QString path = root.filePath(item.section(u'>', 0, 0));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        if (item.contains(u'>'))
            QVERIFY(QFile::link(item.section(u'>', 1), path));
        else
            writeTestFile(path, "seta cg_fov \"100\"\r\n");
    }
}

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

} // namespace

class tst_ConfigSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_GUILESS_MAIN(tst_ConfigSearch)
#include "tst_ConfigSearch.moc"

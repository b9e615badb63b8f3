// What a command line asks for, file tests and all.
#include "CommandLine.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using CommandLine::Action;

class tst_CommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : { "a.config", "b.CTR", "c.rnr", "d.hud", "e.rlg", ".hidden.ctr", ".hidden.hud",
                 ".hidden.config", "f g.cfg" }) {
            QFile f(m_dir.filePath(QString::fromLatin1(name)));
            QVERIFY(f.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir(m_dir.path()).mkdir("folder.ctr") && QDir(m_dir.path()).mkdir("folder.hud"));
    }

    void classify_data()
    {
        QTest::addColumn<QString>("text"); // "@" stands for the test folder
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("kind");
        const int nothing = int(Action::Nothing), dialog = int(Action::OpenDialog), open = int(Action::OpenConfig),
                  import = int(Action::Import);
        QTest::newRow("empty") << "   " << nothing << "" << -1;
        QTest::newRow("cfg, not looked for") << "@/missing.cfg" << open << "@/missing.cfg" << -1;
        QTest::newRow("cfg in quotes, blanks around") << "  \"@/f g.cfg\" " << open << "@/f g.cfg" << -1;
        QTest::newRow("one quote only") << "\"@/x.CFG" << open << "@/x.CFG" << -1;
        QTest::newRow("any ending in cfg") << "notacfg" << open << "notacfg" << -1;
        QTest::newRow("config that exists") << "@/a.config" << open << "@/a.config" << -1;
        QTest::newRow("config missing") << "@/missing.config" << nothing << "" << -1;
        QTest::newRow("hidden config") << "@/.hidden.config" << nothing << "" << -1;
        QTest::newRow("config by wildcard") << "@/*.config" << open << "@/*.config" << -1;
        QTest::newRow("open switch") << "C:\\Games\\Tarnwick\\open" << dialog << "" << -1;
        QTest::newRow("open switch, slash") << "/usr/bin/OPEN" << dialog << "" << -1;
        QTest::newRow("ctr, upper case") << "@/b.CTR" << import << "@/b.CTR" << 0;
        QTest::newRow("ctr hidden") << "@/.hidden.ctr" << nothing << "" << -1;
        QTest::newRow("ctr folder") << "@/folder.ctr" << nothing << "" << -1;
        QTest::newRow("ctr by wildcard") << "@/?.CTR" << import << "@/?.CTR" << 0;
        QTest::newRow("rnr") << "\"@/c.rnr\"" << import << "@/c.rnr" << 1;
        QTest::newRow("rnr missing") << "@/x.rnr" << nothing << "" << -1;
        QTest::newRow("hud") << "@/d.hud" << import << "@/d.hud" << 2;
        QTest::newRow("hud hidden still counts") << "@/.hidden.hud" << import << "@/.hidden.hud" << 2;
        QTest::newRow("hud folder") << "@/folder.hud" << nothing << "" << -1;
        QTest::newRow("hud wildcard is no file") << "@/*.hud" << nothing << "" << -1;
        QTest::newRow("rlg") << "@/e.rlg" << import << "@/e.rlg" << 3;
        QTest::newRow("other") << "@/readme.txt" << nothing << "" << -1;
    }

    void classify()
    {
        QFETCH(QString, text);
        QFETCH(int, action);
        QFETCH(QString, path);
        QFETCH(int, kind);
        const CommandLine::Request request = CommandLine::classify(text.replace(u'@', m_dir.path()));
        QCOMPARE(int(request.action), action);
        QCOMPARE(request.path, path.replace(u'@', m_dir.path()));
        QCOMPARE(request.kind ? int(*request.kind) : -1, kind);
    }

    void joinArguments()
    {
        QCOMPARE(CommandLine::joinArguments({ "tarnwick" }), QString());
        QCOMPARE(
            CommandLine::joinArguments({ "tarnwick", "/home/me/my q3.cfg" }), QStringLiteral("/home/me/my q3.cfg"));
        QCOMPARE(CommandLine::joinArguments({ "tarnwick", "my", "q3.cfg" }), QStringLiteral("my q3.cfg"));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"

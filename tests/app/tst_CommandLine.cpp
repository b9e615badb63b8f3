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

    // "@" stands for the test folder; -1: no kind.
    void classify()
    {
        const int nothing = int(Action::Nothing), dialog = int(Action::OpenDialog), open = int(Action::OpenConfig),
                  import = int(Action::Import);
        const std::tuple<const char *, int, const char *, int> rows[] = {
            { "   ", nothing, "", -1 },
            { "@/missing.cfg", open, "@/missing.cfg", -1 }, // a configuration is not looked for
            { "  \"@/f g.cfg\" ", open, "@/f g.cfg", -1 }, // quotes and blanks around go
            { "\"@/x.CFG", open, "@/x.CFG", -1 }, // one quote only
            { "notacfg", open, "notacfg", -1 }, // any ending in cfg
            { "@/a.config", open, "@/a.config", -1 },
            { "@/missing.config", nothing, "", -1 },
            { "@/.hidden.config", nothing, "", -1 },
            { "@/*.config", open, "@/*.config", -1 }, // by wildcard
            { "C:\\Games\\Tarnwick\\open", dialog, "", -1 },
            { "/usr/bin/OPEN", dialog, "", -1 },
            { "@/b.CTR", import, "@/b.CTR", 0 },
            { "@/.hidden.ctr", nothing, "", -1 },
            { "@/folder.ctr", nothing, "", -1 },
            { "@/?.CTR", import, "@/?.CTR", 0 }, // by wildcard
            { "\"@/c.rnr\"", import, "@/c.rnr", 1 },
            { "@/x.rnr", nothing, "", -1 },
            { "@/d.hud", import, "@/d.hud", 2 },
            { "@/.hidden.hud", import, "@/.hidden.hud", 2 }, // hidden still counts
            { "@/folder.hud", nothing, "", -1 },
            { "@/*.hud", nothing, "", -1 }, // a wildcard is no file
            { "@/e.rlg", import, "@/e.rlg", 3 },
            { "@/readme.txt", nothing, "", -1 },
        };
        for (const auto &[text, action, path, kind] : rows) {
            const CommandLine::Request request
                = CommandLine::classify(QString::fromLatin1(text).replace(u'@', m_dir.path()));
            QVERIFY2(int(request.action) == action, text);
            QCOMPARE(request.path, QString::fromLatin1(path).replace(u'@', m_dir.path()));
            QVERIFY2((request.kind ? int(*request.kind) : -1) == kind, text);
        }
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"

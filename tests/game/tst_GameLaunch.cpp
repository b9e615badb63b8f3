// Which folders hold the game, the timedemo list and the game's command line, from game, home and PATH folders
// built here; both scans of the game's archives when the folder goes away under them.
#include "GameFolder.h"
#include "GameLaunch.h"
#include "PlayerModels.h"
#include "TestGameFiles.h"

using TestGameFiles::make;
using TestGameFiles::under;

class tst_GameLaunch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheGame_data()
    {
        QTest::addColumn<QStringList>("files"); // see make()
        QTest::addColumn<QString>("found"); // the program found, "" for none
        QTest::newRow("the original") << QStringList { "quake3.exe" } << "quake3.exe";
        QTest::newRow("the original comes first") << QStringList { "quake3e.x64", "quake3.exe" } << "quake3.exe";
        QTest::newRow("baseq3 alone is not the game") << QStringList { "baseq3/pak0.pk3" } << "";
        QTest::newRow("a folder named like the program") << QStringList { "quake3.exe/readme.txt" } << "";
        QTest::newRow("another program") << QStringList { "quake3.bat", "q3.exe" } << "";
    }

    void holdsTheGame()
    {
        QFETCH(QStringList, files);
        QFETCH(QString, found);
        QTemporaryDir dir;
        make(dir, files);
        QCOMPARE(GameFolder::executableIn(dir.path()), found.isEmpty() ? QString() : dir.filePath(found));
        QCOMPARE(GameFolder::isValid(dir.path()), !found.isEmpty());
    }

    // Which installation the folder picker opens at, as installations appear in a home folder and on PATH.
    void firstInstallation()
    {
        QTemporaryDir home;
        const QDir dir(home.path());
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("PATH", QFile::encodeName(dir.filePath("bin")));
        qunsetenv("WINEPREFIX");
        const auto install = [&dir](const QString &folder, const QString &program) {
            QVERIFY(dir.mkpath(folder));
            writeTestFile(dir.filePath(folder + u'/' + program), {});
            QFile(dir.filePath(folder + u'/' + program)).setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        };
        install("Quake3e", "readme.txt");
        QCOMPARE(GameFolder::firstInstallation(), QString());
        install(".wine/drive_c/Program Files (x86)/Quake III Arena", "quake3.exe");
        QCOMPARE(GameFolder::firstInstallation(), dir.filePath(".wine/drive_c/Program Files (x86)/Quake III Arena"));
        install(".local/share/Steam/steamapps/common/Quake 3 Arena", "quake3.exe");
        QCOMPARE(GameFolder::firstInstallation(), dir.filePath(".local/share/Steam/steamapps/common/Quake 3 Arena"));
        // A program on PATH comes first, and the game lies where its link leads.
        install("games/q3", "quake3e.x64");
        QVERIFY(dir.mkpath("bin") && QFile::link("../games/q3/quake3e.x64", dir.filePath("bin/quake3e")));
        QCOMPARE(GameFolder::firstInstallation(), dir.filePath("games/q3"));
    }

    void gameFolder_data()
    {
        QTest::addColumn<QStringList>("files"); // see make()
        QTest::addColumn<QStringList>("listed"); // "NAME FILE" for each entry
        QTest::addColumn<QStringList>("unreadable");
        QTest::addColumn<QStringList>("command"); // the program and what goes before the game's parameters
        const auto row
            = [](const char *tag, const QStringList &files, const QStringList &listed, const QStringList &unreadable,
                  const QStringList &command) { QTest::newRow(tag) << files << listed << unreadable << command; };
        const QString demos = "game/baseq3/demos/";
        const QString base = "game/baseq3/";
        const QString home = "home/.q3a/baseq3/";
        row("demo folder, then archives by name, in archive order; case makes two names, a name stays once",
            { demos + "B.dm3", demos + "a.dm3", base + "Z.pk3:z1.dm3",
                base + "a.pk3:demos/a2.dm3,maps/a1.dm3,A.dm3,a.dm3" },
            { "a a.dm3", "B B.dm3", "a2 a2.dm3", "a1 a1.dm3", "A A.dm3", "z1 z1.dm3" }, {}, {});
        row("extensions; only archives, links to archives too",
            { demos + "intro.DM3", demos + "four.dm_68", demos + "x.dm_", demos + "y.dm4", demos + "z.dm_6a",
                demos + ".dm3", demos + "sub/deep.dm3", base + "notes.dm3", base + "maps.zip:m.dm3",
                "packs/l.pk3:l.dm3", base + "linked.pk3>../../packs/l.pk3", base + "folder.pk3>../../packs" },
            { "four.dm_68 four.dm_68", "intro intro.dm3", "l l.dm3" }, {}, {});
        row("unreadable archives skipped, each named once, when home is the game's baseq3",
            { base + "bad.pk3!", base + "good.pk3:g.dm3", base + "worse.pk3!", "home/.q3a>../game" }, { "g g.dm3" },
            { base + "bad.pk3", base + "worse.pk3" }, {});
        row("home after the game", { home + "demos/h.dm_71", home + "p.pk3:g.dm3,p.dm3", base + "g.pk3:g.dm3" },
            { "g g.dm3", "h.dm_71 h.dm_71", "p p.dm3" }, {}, {});
        row("no baseq3, no list; a native engine first",
            { "game/quake3.exe", "game/ioquake3*", "bin/wine*", home + "demos/h.dm3" }, {}, {}, { "game/ioquake3" });
        row("Windows build through wine", { "game/quake3.exe", "game/ioquake3", "bin/wine*" }, {}, {},
            { "bin/wine", "game/quake3.exe" });
        row("no wine: the program found", { "game/quake3.exe", "game/ioquake3" }, {}, {}, { "game/quake3.exe" });
    }

    void gameFolder()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, listed);
        QFETCH(QStringList, unreadable);
        QFETCH(QStringList, command);
        QTemporaryDir root;
        make(root, files);
        qputenv("HOME", QFile::encodeName(root.filePath("home")));
        qputenv("PATH", QFile::encodeName(root.filePath("bin")));
        const GameLaunch::DemoList list = GameLaunch::FillDemoList(root.filePath("game"));
        QStringList got;
        for (const GameLaunch::Demo &demo : list.demos)
            got.append(demo.name + u' ' + demo.file);
        QCOMPARE(got, listed);
        QCOMPARE(list.unreadable, under(root, unreadable));

        const QStringList parameters = GameLaunch::timedemoParameters({ "my demo", "my demo.dm3" });
        const GameLaunch::StartRequest request = GameLaunch::gameStartRequest(root.filePath("game"), parameters);
        const QStringList expected = under(root, command);
        QCOMPARE(request.program, expected.value(0));
        QCOMPARE(request.arguments, expected.mid(1) + parameters);
        QCOMPARE(request.workingFolder, root.filePath("game"));
    }

    void folderGoesDuringAScan_data()
    {
        QTest::addColumn<bool>("models"); // the player model scan, else the timedemo list
        QTest::addColumn<QString>("removed"); // what goes after the first archive is read
        for (const bool models : { false, true }) {
            const char *scan = models ? "models" : "demos";
            QTest::addRow("%s: the game folder", scan) << models << "game";
            QTest::addRow("%s: the next archive", scan) << models << "game/baseq3/b.pk3";
            QTest::addRow("%s: the home folder", scan) << models << "home";
        }
    }

    // The scan ends with what it found; the archives it could no longer read are named for the one report.
    void folderGoesDuringAScan()
    {
        QFETCH(bool, models);
        QFETCH(QString, removed);
        QTemporaryDir root;
        make(root,
            { "game/baseq3/a.pk3:a.dm3,models/players/a/icon_x.tga",
                "game/baseq3/b.pk3:b.dm3,models/players/b/icon_x.tga",
                "home/.q3a/baseq3/h.pk3:h.dm3,models/players/h/icon_x.tga" });
        qputenv("HOME", QFile::encodeName(root.filePath("home")));
        int archives = 0;
        const auto remove = [&] {
            if (++archives == 1)
                QVERIFY(QFileInfo(root.filePath(removed)).isDir() ? QDir(root.filePath(removed)).removeRecursively()
                                                                  : QFile::remove(root.filePath(removed)));
        };
        QStringList found;
        QStringList unreadable;
        if (models) {
            const PlayerModels::ModelTree tree = PlayerModels::ScanPlayerModels(root.filePath("game"), remove);
            for (const PlayerModels::Model &model : tree.models)
                found.append(model.label.toLower());
            unreadable = tree.unreadable;
        } else {
            const GameLaunch::DemoList list = GameLaunch::FillDemoList(root.filePath("game"), remove);
            for (const GameLaunch::Demo &demo : list.demos)
                found.append(demo.name);
            unreadable = list.unreadable;
        }
        // A folder gone before its archives are looked for has none to name.
        const QStringList gone = removed == u"home" ? QStringList() : QStringList { "game/baseq3/b.pk3" };
        QCOMPARE(unreadable, under(root, gone));
        QCOMPARE(found, (removed == u"home" ? QStringList { "a", "b" } : QStringList { "a", "h" }));
    }
};

QTEST_GUILESS_MAIN(tst_GameLaunch)
#include "tst_GameLaunch.moc"

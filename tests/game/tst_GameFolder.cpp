// Which folders hold the game.
#include "GameFolder.h"
#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_GameFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheGame_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("folders");
        QTest::addColumn<QString>("found"); // the program found, "" for none
        QTest::newRow("the original") << QStringList { "quake3.exe" } << QStringList() << "quake3.exe";
        QTest::newRow("ioquake3 for Linux") << QStringList { "ioquake3.x86_64" } << QStringList() << "ioquake3.x86_64";
        QTest::newRow("Quake3e for Windows") << QStringList { "quake3e.x64.exe" } << QStringList() << "quake3e.x64.exe";
        QTest::newRow("the original comes first")
            << QStringList { "quake3e.x64", "quake3.exe" } << QStringList() << "quake3.exe";
        QTest::newRow("baseq3 alone is not the game")
            << QStringList { "baseq3/pak0.pk3" } << QStringList { "baseq3" } << "";
        QTest::newRow("a folder named like the program") << QStringList() << QStringList { "quake3.exe" } << "";
        QTest::newRow("another program") << QStringList { "quake3.bat", "q3.exe" } << QStringList() << "";
    }

    void holdsTheGame()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, folders);
        QFETCH(QString, found);
        QTemporaryDir dir;
        for (const QString &folder : folders)
            QVERIFY(QDir(dir.path()).mkpath(folder));
        for (const QString &name : files)
            writeTestFile(dir.filePath(name), {});
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
};

QTEST_GUILESS_MAIN(tst_GameFolder)
#include "tst_GameFolder.moc"

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
};

QTEST_GUILESS_MAIN(tst_GameFolder)
#include "tst_GameFolder.moc"

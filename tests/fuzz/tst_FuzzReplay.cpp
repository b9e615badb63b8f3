// Every input kept under tests/data/fuzz/TARGET (a few seeds, and whatever scripts/fuzz once found) goes through
// that fuzz target's checks again, so what was fixed stays fixed.
#include "FuzzTargets.h"

#include <QDir>
#include <QFile>
#include <QTest>

class tst_FuzzReplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replay_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("path");
        for (const FuzzTargets::Target &target : FuzzTargets::all()) {
            const QDir folder(inputs().filePath(QLatin1StringView(target.name)));
            const QStringList files = folder.entryList(QDir::Files | QDir::Hidden, QDir::Name);
            for (const QString &file : files) {
                QTest::addRow("%s/%s", target.name, qPrintable(file))
                    << QString::fromLatin1(target.name) << folder.filePath(file);
            }
        }
    }
    void replay()
    {
        QFETCH(QString, target);
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString problem = FuzzTargets::find(target)->check(file.readAll());
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

    // A folder no target reads would be replayed by nothing; a target without inputs would go untested.
    void everyTargetHasInputs()
    {
        for (const QString &folder : inputs().entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            QVERIFY2(FuzzTargets::find(folder), qPrintable(folder + QStringLiteral(" is no fuzz target")));
        for (const FuzzTargets::Target &target : FuzzTargets::all()) {
            const QDir folder(inputs().filePath(QLatin1StringView(target.name)));
            QVERIFY2(!folder.isEmpty(QDir::Files | QDir::Hidden), target.name);
        }
    }

private:
    static QDir inputs() { return QDir(QStringLiteral(TARNWICK_TEST_DATA "/fuzz")); }
};

QTEST_GUILESS_MAIN(tst_FuzzReplay)
#include "tst_FuzzReplay.moc"

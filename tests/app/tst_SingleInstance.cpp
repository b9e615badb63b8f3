// One copy per user: the lock, the hand-over of a later copy's command line, and what the first copy refuses.
#include "SingleInstance.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QProcess>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <cstdlib>

// `tst_SingleInstance --hold-lock <folder>`: a first copy that says "locked" and waits to be killed, as if it crashed.
static void holdLockWhenAsked()
{
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 3 && args[1] == u"--hold-lock") {
        SingleInstance holder(args[2]);
        std::puts(holder.IsFirstInstance() && holder.hasLock() ? "locked" : "refused");
        std::fflush(stdout);
        QThread::sleep(30);
        std::_Exit(0);
    }
}
Q_COREAPP_STARTUP_FUNCTION(holdLockWhenAsked)

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void secondCopyIsRefusedUntilFirstReleases()
    {
        SingleInstance first(m_dir->path()), second(m_dir->path()), third(m_dir->path());
        QVERIFY(first.IsFirstInstance() && first.hasLock());
        QVERIFY(!second.IsFirstInstance() && !second.hasLock());
        first.ReleaseInstanceMutex();
        first.ReleaseInstanceMutex();
        QVERIFY(third.IsFirstInstance() && third.hasLock());
    }

    void handOver_data()
    {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<bool>("sent");
        const qsizetype max = SingleInstance::maxPayload();
        QTest::newRow("blanks and accents") << "/tmp/Spiel ü/é.cfg" << true;
        QTest::newRow("quotes kept") << "\"x.cfg\"" << true;
        QTest::newRow("restore only") << "" << true;
        QTest::newRow("longest") << QString(max, u'a') << true;
        QTest::newRow("longest in two-byte characters") << QString(max / 2, u'ü') << true;
        QTest::newRow("one byte too long") << QString(max / 2, u'ü') + u'a' << false;
        QTest::newRow("NUL character") << QStringLiteral("a.cfg\u0000b.cfg") << false;
    }
    void handOver()
    {
        QFETCH(QString, commandLine);
        QFETCH(bool, sent);
        SingleInstance first(m_dir->path()), later(m_dir->path());
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance() && !later.IsFirstInstance());
        QCOMPARE(later.sendToFirst(commandLine), sent);
        QTRY_COMPARE(received.size(), sent ? 1 : 0);
        QTest::qWait(50);
        QCOMPARE(received.size(), sent ? 1 : 0);
        QCOMPARE(received.value(0).value(0).toString(), sent ? commandLine : QString());
    }

    void garbageIsIgnored_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::newRow("one byte over the bound") << QByteArray(SingleInstance::maxPayload() + 1, 'a');
        QTest::newRow("zero inside") << QByteArray("a.cfg\0b.cfg", 11);
        QTest::newRow("two zeros") << QByteArray(2, '\0');
        QTest::newRow("not UTF-8") << QByteArray("\xff\xfe.cfg");
        QTest::newRow("cut character") << QByteArray("caf\xc3");
        QTest::newRow("encoded surrogate") << QByteArray("\xed\xa0\x80");
        QTest::newRow("nothing") << QByteArray();
    }
    void garbageIsIgnored()
    {
        QFETCH(QByteArray, payload);
        SingleInstance first(m_dir->path()), later(m_dir->path());
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance());
        QLocalSocket raw;
        raw.connectToServer(m_dir->filePath(SingleInstance::serverName()));
        QVERIFY(raw.waitForConnected(1000));
        raw.write(payload);
        raw.disconnectFromServer();
        QTRY_COMPARE(raw.state(), QLocalSocket::UnconnectedState);
        QTest::qWait(50);
        QVERIFY(later.sendToFirst(QStringLiteral("after.cfg")));
        QTRY_COMPARE(received.size(), 1);
        QTest::qWait(50);
        QCOMPARE(received, QList<QVariantList> { { QStringLiteral("after.cfg") } });
    }

    void idleConnectionBlocksNobodyAndIsDropped()
    {
        SingleInstance first(m_dir->path()), later(m_dir->path());
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance());
        QLocalSocket idle;
        idle.connectToServer(m_dir->filePath(SingleInstance::serverName()));
        QVERIFY(idle.waitForConnected(1000));
        idle.write("late.cfg"); // and never leaves
        QVERIFY(later.sendToFirst(QStringLiteral("second.cfg")));
        QTRY_COMPARE(received, QList<QVariantList> { { QStringLiteral("second.cfg") } });
        QTRY_COMPARE_WITH_TIMEOUT(
            idle.state(), QLocalSocket::UnconnectedState, 3 * SingleInstance::connectionTimeoutMs());
        QTest::qWait(50);
        QCOMPARE(received.size(), 1);
    }

    void lockOfKilledCopyIsTakenOver()
    {
        QProcess holder;
        holder.start(QCoreApplication::applicationFilePath(), { QStringLiteral("--hold-lock"), m_dir->path() });
        QVERIFY(holder.waitForReadyRead(10000));
        QCOMPARE(holder.readAllStandardOutput(), QByteArray("locked\n"));
        QVERIFY(!SingleInstance(m_dir->path()).IsFirstInstance()); // a live holder keeps its lock
        holder.kill();
        QVERIFY(holder.waitForFinished(10000));
        SingleInstance first(m_dir->path()), later(m_dir->path());
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance() && first.hasLock());
        QVERIFY(later.sendToFirst(QStringLiteral("q3config.cfg"))); // over the holder's leftover socket
        QTRY_COMPARE(received.size(), 1);
    }

    void noFirstCopyTimesOut()
    {
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!SingleInstance(m_dir->path()).sendToFirst(QStringLiteral("q3config.cfg"), 300));
        QVERIFY2(clock.elapsed() >= 250 && clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
    }

    void unwritableFolderRunsWithoutLock()
    {
        const QString folder = m_dir->filePath(QStringLiteral("locked"));
        QVERIFY(QDir().mkpath(folder));
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
        const auto restore = qScopeGuard(
            [&] { QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner); });
        if (QFileInfo(folder).isWritable())
            QSKIP("running as a user who writes into read-only folders");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot create the lock file")));
        SingleInstance copy(folder);
        QVERIFY(copy.IsFirstInstance() && !copy.hasLock());
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_SingleInstance.moc"

// One copy per user: the lock, the hand-over of a later copy's command line, and what the first copy refuses.
#include "SingleInstance.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QProcess>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdlib>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

// `tst_SingleInstance --connect <socket>`: ends with 0 when it could connect to the socket, else 1.
static void connectWhenAsked()
{
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 3 && args[1] == u"--connect") {
        QLocalSocket socket;
        socket.connectToServer(args[2]);
        std::_Exit(socket.waitForConnected(2000) ? 0 : 1);
    }
}
Q_COREAPP_STARTUP_FUNCTION(connectWhenAsked)

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

    void ownFolder_data()
    {
        QTest::addColumn<QString>("runtime"); // XDG_RUNTIME_DIR below the test's folder; "" for none
        QTest::addColumn<QString>("inTheWay"); // what stands at TMPDIR/tarnwick-UID: "", "link", "open", "other"
        const auto row = [](const char *tag, const char *runtime, const char *inTheWay) {
            QTest::newRow(tag) << QString::fromLatin1(runtime) << QString::fromLatin1(inTheWay);
        };
        row("the runtime folder", "run", "");
        row("no runtime folder: one of the user's own", "", "");
        row("a link in its place", "", "link");
        row("a folder others may write in", "", "open");
        row("another user's folder", "", "other");
    }

    // The lock and the socket live where only the user can reach them; where that can't be had, this copy runs
    // alone, without them.
    void ownFolder()
    {
        QFETCH(QString, runtime);
        QFETCH(QString, inTheWay);
        if (inTheWay == u"other" && geteuid() != 0)
            QSKIP("only root can make a folder for another user");
        const QByteArray oldRuntime = qgetenv("XDG_RUNTIME_DIR"), oldTemp = qgetenv("TMPDIR");
        const auto restore = qScopeGuard([&] {
            qputenv("XDG_RUNTIME_DIR", oldRuntime);
            qputenv("TMPDIR", oldTemp);
        });
        const QDir root(m_dir->path());
        qputenv("TMPDIR", QFile::encodeName(root.path()));
        // Qt's own runtime folder in the temporary folder is kept from being made, so none is found.
        writeFile(root.filePath("runtime-" + QString::fromLocal8Bit(getpwuid(geteuid())->pw_name)));
        const QString own = root.filePath("tarnwick-" + QString::number(geteuid()));
        QVERIFY(root.mkdir("elsewhere"));
        QVERIFY(QFile::setPermissions(root.filePath("elsewhere"), QFile::Permissions(0x7777)));
        if (runtime.isEmpty()) {
            qunsetenv("XDG_RUNTIME_DIR");
        } else {
            QVERIFY(root.mkdir(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(root.filePath(runtime)));
        }
        if (inTheWay == u"link")
            QVERIFY(QFile::link(root.filePath("elsewhere"), own));
        if (inTheWay == u"open" || inTheWay == u"other") {
            QVERIFY(QDir().mkdir(own));
            QVERIFY(QFile::setPermissions(own, QFile::Permissions(inTheWay == u"open" ? 0x7777 : 0x7000)));
        }
        if (inTheWay == u"other")
            QVERIFY(chown(QFile::encodeName(own).constData(), 65534, 65534) == 0);

        SingleInstance first, later;
        if (!inTheWay.isEmpty()) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("is not the user's own folder"));
            QVERIFY(first.IsFirstInstance() && !first.hasLock());
            QVERIFY(QDir(root.filePath("elsewhere")).isEmpty());
            return;
        }
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance() && first.hasLock());
        const QString folder = runtime.isEmpty() ? own : root.filePath(runtime);
        const QFileInfo info(folder);
        QCOMPARE(info.ownerId(), geteuid());
        QCOMPARE(info.permissions() & 0x0777, QFile::Permissions(0x0700)); // the user's, for him alone
        const QFileInfo socket(folder + u'/' + SingleInstance::serverName());
        QVERIFY(socket.exists() && QFileInfo::exists(folder + u'/' + SingleInstance::lockFileName()));
        QCOMPARE(socket.permissions() & 0x0077, QFile::Permissions()); // and again on the socket itself
        QVERIFY(!later.IsFirstInstance() && later.sendToFirst(QStringLiteral("x.cfg")));
        QTRY_COMPARE(received.size(), 1);
    }

    // Another user can't connect even where he could reach the socket, and his attempt changes nothing.
    void onlyTheUserConnects()
    {
        if (geteuid() != 0)
            QSKIP("the tests are not root: there is no other user to try");
        const QString shared = m_dir->filePath(QStringLiteral("shared"));
        QVERIFY(QFile::setPermissions(m_dir->path(), QFile::Permissions(0x7755)));
        QVERIFY(QDir().mkdir(shared));
        QVERIFY(QFile::setPermissions(shared, QFile::Permissions(0x7777)));
        SingleInstance first(shared);
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance());
        const auto connects = [&](bool asNobody) {
            QProcess child;
            child.setChildProcessModifier([asNobody] {
                if (asNobody && (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0))
                    _exit(2);
            });
            child.start(QCoreApplication::applicationFilePath(),
                { QStringLiteral("--connect"), shared + u'/' + SingleInstance::serverName() });
            while (child.state() != QProcess::NotRunning)
                QTest::qWait(10); // the first copy answers while the child tries
            return child.exitCode();
        };
        QCOMPARE(connects(false), 0);
        const int nobody = connects(true);
        if (nobody == 2)
            QSKIP("running as root without the right to become nobody");
        QCOMPARE(nobody, 1);
        QTest::qWait(50);
        QCOMPARE(received.size(), 0);
    }

    // What other programs may send: a huge payload, random bytes, a client that never ends, a hundred connections
    // at once. The first copy's event loop keeps turning (its window would not freeze), nothing arrives, and a
    // real later copy still gets through.
    void floodChangesNothing()
    {
        SingleInstance first(m_dir->path());
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QVERIFY(first.IsFirstInstance());
        QElapsedTimer sinceTick;
        qint64 longestGap = 0;
        QTimer ticks;
        QObject::connect(&ticks, &QTimer::timeout, [&] { longestGap = std::max(longestGap, sinceTick.restart()); });
        const QString name = m_dir->filePath(SingleInstance::serverName());
        const QString folder = m_dir->path();
        bool handedOver = false;
        QSemaphore sent, checked; // the other programs have sent all; the first copy has looked at what came
        std::unique_ptr<QThread> others(QThread::create([&] {
            std::vector<std::unique_ptr<QLocalSocket>> open;
            const auto connectOne = [&] {
                open.push_back(std::make_unique<QLocalSocket>());
                open.back()->connectToServer(name);
                open.back()->waitForConnected(2000);
                return open.back().get();
            };
            QLocalSocket *slow = connectOne();
            slow->write("slow.c"); // and never the rest
            slow->waitForBytesWritten(1000);
            for (int i = 0; i < 100; ++i) {
                QLocalSocket *socket = connectOne();
                if (i % 2 == 0) {
                    socket->write(QByteArray(1, char(0xff)));
                    socket->disconnectFromServer();
                }
            }
            const auto sendAll = [&](const QByteArray &bytes) {
                QLocalSocket *socket = connectOne();
                socket->write(bytes);
                while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(2000)) { }
                socket->disconnectFromServer();
            };
            sendAll(QByteArray(10 * 1024 * 1024, 'x'));
            QByteArray noise(1000, Qt::Uninitialized);
            QRandomGenerator(20).fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
            sendAll(noise);
            SingleInstance later(folder);
            handedOver = later.sendToFirst(QStringLiteral("after.cfg"));
            sent.release();
            checked.tryAcquire(1, 20000); // the slow client and the idle ones stay open until then
        }));
        const auto letGo = qScopeGuard([&] {
            checked.release();
            others->wait();
        });
        sinceTick.start();
        ticks.start(10);
        others->start();
        QTRY_VERIFY_WITH_TIMEOUT(sent.available() == 1, 20000);
        QVERIFY(handedOver);
        QTRY_COMPARE(received.size(), 1);
        QTest::qWait(100);
        ticks.stop();
        QCOMPARE(received, QList<QVariantList> { { QStringLiteral("after.cfg") } });
        QVERIFY2(longestGap < 1000, qPrintable(QStringLiteral("the event loop stood still for %1 ms").arg(longestGap)));
        qInfo("the longest the event loop stood still: %lld ms", longestGap);
        first.ReleaseInstanceMutex(); // before the slow client goes: what it sent is never taken
    }

private:
    static void writeFile(const QString &path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_SingleInstance.moc"

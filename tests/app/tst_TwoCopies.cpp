// Two real copies of the program (offscreen): the second hands its command line to the first and ends.
#include "TestFiles.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class tst_TwoCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The program runs from a folder of its own, so its settings file lands there, next to a game folder.
        const QDir root(m_dir.path());
        QVERIFY(root.mkpath("prog") && root.mkpath("game") && root.mkpath("run") && root.mkpath("home"));
        QFile(root.filePath("run")).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_program = root.filePath("prog/tarnwick");
        QVERIFY(QFile::copy(QStringLiteral(TARNWICK_EXE), m_program));
        writeTestFile(root.filePath("game/quake3.exe"), "");
        writeTestFile(
            root.filePath("prog/tarnwick.ini"), "[Tarnwick]\r\nq3dir=" + root.filePath("game").toUtf8() + "\r\n");
        writeTestFile(root.filePath("my q3.cfg"), "seta cg_fov \"110\"\r\n");

        m_env = QProcessEnvironment::systemEnvironment();
        m_env.insert("QT_QPA_PLATFORM", "offscreen");
        m_env.insert("QT_LOGGING_RULES", "tarnwick.shell.info=true");
        m_env.insert("XDG_RUNTIME_DIR", root.filePath("run"));
        m_env.insert("XDG_DATA_HOME", root.filePath("home/data"));
        m_env.insert("XDG_CONFIG_HOME", root.filePath("home/config"));
        m_env.insert("HOME", root.filePath("home"));
        m_env.insert("PATH", root.filePath("home")); // no desktop tool is started
    }

    void cleanup()
    {
        if (m_first) {
            m_first->kill();
            m_first->waitForFinished(5000);
            m_first.reset();
        }
    }

    void secondCopiesHandOverToTheFirst()
    {
        // A killed first copy leaves its lock file and socket behind; the next first copy takes them over.
        startFirst();
        m_first->kill();
        QVERIFY(m_first->waitForFinished(5000));
        startFirst();
        // Without arguments the second copy only brings the first to the front.
        QByteArray second = runSecond({});
        QVERIFY2(second.contains("handed over to the first copy"), second);
        QTRY_VERIFY_WITH_TIMEOUT(m_firstLog.contains("handed over: \"\""), 10000);
        QVERIFY(!m_firstLog.contains("opened"));
        const QString cfg = m_dir.filePath("my q3.cfg");
        second = runSecond({ cfg });
        QVERIFY2(second.contains("handed over to the first copy") && !second.contains("shell: first copy"), second);
        QTRY_VERIFY_WITH_TIMEOUT(m_firstLog.contains("opened \"" + cfg.toUtf8() + '"'), 10000);
        QCOMPARE(m_first->state(), QProcess::Running);
    }

    void quitsWhenIdleIfAsked()
    {
        // Timed starts: no game folder is asked for, and the program ends by itself once its window shows.
        QTemporaryDir alone;
        const QString program = alone.filePath("tarnwick");
        QVERIFY(QFile::copy(QStringLiteral(TARNWICK_EXE), program));
        QProcessEnvironment env = m_env;
        env.insert("TARNWICK_QUIT_WHEN_IDLE", "1");
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(program, {});
        QVERIFY(process.waitForFinished(15000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QVERIFY2(process.readAllStandardError().contains("first copy"), "the window program did not start");
    }

private:
    /// Starts a copy; its standard error (the shell's log) collects in `log`.
    std::unique_ptr<QProcess> launch(const QStringList &arguments, QByteArray *log)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(m_env);
        connect(process.get(), &QProcess::readyReadStandardError, this,
            [p = process.get(), log] { log->append(p->readAllStandardError()); });
        process->start(m_program, arguments);
        return process;
    }

    void startFirst()
    {
        m_firstLog.clear();
        m_first = launch({}, &m_firstLog);
        QVERIFY(m_first->waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(m_firstLog.contains("first copy"), 15000);
    }

    /// Runs a second copy to its end and returns its log.
    QByteArray runSecond(const QStringList &arguments)
    {
        QByteArray log;
        std::unique_ptr<QProcess> second = launch(arguments, &log);
        const bool ended = second->waitForFinished(15000) && second->exitStatus() == QProcess::NormalExit;
        return log + second->readAllStandardError() + (ended && second->exitCode() == 0 ? "" : "did not end well");
    }

    QTemporaryDir m_dir;
    QString m_program;
    QProcessEnvironment m_env;
    std::unique_ptr<QProcess> m_first;
    QByteArray m_firstLog;
};

QTEST_GUILESS_MAIN(tst_TwoCopies)
#include "tst_TwoCopies.moc"

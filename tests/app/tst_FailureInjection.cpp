// Saves and opens that fail, and saves killed half-way: the user's file stays whole and the message says why.
// Every case runs in a child process (this program, started again with --child), so a file size limit or
// another user applies to it alone: nobody, for the cases of permissions when the tests run as root, for whom
// permissions do not count.
#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "PartialFiles.h"
#include "ProgramSettings.h"
#include "TestFiles.h"
#include "WholeFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <grp.h>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// What a save of each kind writes: a configuration (the window's Save), a partial file, tarnwick.ini.
enum class Kind { Config, Partial, Ini };

// Where a child that can't become nobody says so.
constexpr int cannotDropToNobody = 77;

void setFov(ConfigDocument &doc, int fov)
{
    doc.setText(SettingCatalog::instance().indexOfControl(QStringLiteral("txtFOV")), 0, QString::number(fov));
}

// The window's save: the original kept aside when it needs to be, then the whole file.
bool saveConfig(ConfigDocument &doc, const QString &path, QString *error)
{
    QString keptAs;
    return KeepOriginal(path, &keptAs, error) && WriteCfgFile(doc, path, FileScope::Whole, error);
}

bool save(Kind kind, const QString &path, QString *error)
{
    ConfigDocument doc;
    StartUpDocument(doc);
    setFov(doc, 120);
    switch (kind) {
    case Kind::Config:
        return saveConfig(doc, path, error);
    case Kind::Partial:
        return ExportFile(doc, path, PartialKind::HudDisplay, error);
    case Kind::Ini:
        return pbSaveOptions(path, ProgramSettings { QStringLiteral("/games/q3") }, false, error);
    }
    return false;
}

// `tst_FailureInjection --child save KIND PATH`, `--child open PATH`: one save or open, its message on standard
// output, exit status 0 or 1. `--child saves PATH [named]`: opens PATH, says "opened", then saves it over and
// over, saying "saved" each time, until killed (with "named", through temporary files with a name, as on file
// systems without unnamed ones).
void runChildWhenAsked()
{
    const QStringList args = QCoreApplication::arguments();
    if (args.value(1) != u"--child")
        return;
    QString error;
    bool done = false;
    if (args.value(2) == u"save") {
        done = save(Kind(args.value(3).toInt()), args.value(4), &error);
    } else if (args.value(2) == u"open") {
        ConfigDocument doc;
        done = ReadCfgFile(doc, args.value(3), FileScope::Whole, &error);
    } else if (args.value(2) == u"saves") {
        WholeFile::setUnnamedFiles(args.value(4) != u"named");
        ConfigDocument doc;
        done = OpenCfgFile(doc, args.value(3), &error);
        std::puts("opened");
        std::fflush(stdout);
        for (int fov = 90; done; fov = 190 - fov) {
            setFov(doc, fov);
            done = saveConfig(doc, args.value(3), &error);
            std::puts("saved");
            std::fflush(stdout);
        }
    }
    std::fputs(qPrintable(error), stdout);
    std::fflush(stdout);
    std::_Exit(done ? 0 : 1);
}
Q_COREAPP_STARTUP_FUNCTION(runChildWhenAsked)

// The user nobody and his group.
std::pair<uid_t, gid_t> nobody()
{
    const passwd *entry = getpwnam("nobody");
    return entry ? std::pair(entry->pw_uid, entry->pw_gid) : std::pair<uid_t, gid_t>(65534, 65534);
}

bool runningAsRoot()
{
    return geteuid() == 0;
}

// Hands a folder and all it holds to nobody, when the tests run as root.
void giveToNobody(const QString &path)
{
    if (!runningAsRoot())
        return;
    const auto [uid, gid] = nobody();
    QVERIFY(lchown(QFile::encodeName(path).constData(), uid, gid) == 0);
    if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink()) {
        for (const QString &name : QDir(path).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden))
            giveToNobody(path + u'/' + name);
    }
}

struct Outcome
{
    int code = -1;
    QString message;
};

// Runs this program as a child with `args`, with a file size limit when `sizeLimit` is not 0, and as nobody
// with `otherUser` when the tests run as root. SIGXFSZ is ignored, as the programs ignore it, so a write over
// the limit fails rather than ending the process.
QProcess *startChild(const QStringList &args, rlim_t sizeLimit = 0, bool otherUser = false)
{
    auto *child = new QProcess;
    const auto [uid, gid] = nobody();
    const bool dropToNobody = otherUser && runningAsRoot();
    child->setChildProcessModifier([=] {
        std::signal(SIGXFSZ, SIG_IGN);
        if (sizeLimit > 0) {
            rlimit limit { sizeLimit, sizeLimit };
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        if (dropToNobody && (setgroups(0, nullptr) != 0 || setgid(gid) != 0 || setuid(uid) != 0))
            _exit(cannotDropToNobody);
    });
    child->start(QCoreApplication::applicationFilePath(), QStringList { QStringLiteral("--child") } + args);
    return child;
}

Outcome runChild(const QStringList &args, rlim_t sizeLimit = 0, bool otherUser = false)
{
    const std::unique_ptr<QProcess> child(startChild(args, sizeLimit, otherUser));
    if (!child->waitForFinished(20000)) {
        child->kill();
        child->waitForFinished();
        return {};
    }
    return { child->exitStatus() == QProcess::NormalExit ? child->exitCode() : -1,
        QString::fromUtf8(child->readAllStandardOutput()) };
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
}

// A file a player wrote himself: a save keeps it aside as NAME.orig first.
const QByteArray playersFile = "// mine\r\nexec autoexec.cfg\r\nseta cg_fov \"100\"\r\n";

} // namespace

class tst_FailureInjection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failedSave_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QString>("reason"); // what the message says after the path; "" for a save that works
        const std::pair<Kind, const char *> kinds[]
            = { { Kind::Config, "configuration" }, { Kind::Partial, "partial file" }, { Kind::Ini, "tarnwick.ini" } };
        for (const auto &[kind, name] : kinds) {
            const auto row = [&, kind = kind, name = name](const char *failure, const char *reason) {
                QTest::addRow("%s: %s", name, failure) << kind << QString::fromLatin1(failure) << reason;
            };
            row("file size limit", "File too large");
            row("read-only file", "Permission denied");
            row("read-only folder", "Permission denied");
            row("folder in place of the file", "directory");
            row("missing folder", "No such file or directory");
            row("file deleted after the dialog", "");
        }
    }

    void failedSave()
    {
        QFETCH(Kind, kind);
        QFETCH(QString, failure);
        QFETCH(QString, reason);
        QTemporaryDir root;
        const QString folder = root.filePath(QStringLiteral("folder"));
        QVERIFY(QDir().mkpath(folder));
        const QString name = kind == Kind::Config ? QStringLiteral("q3config.cfg")
            : kind == Kind::Partial               ? QStringLiteral("mine.hud")
                                                  : QStringLiteral("tarnwick.ini");
        QString target = folder + u'/' + name;
        const QByteArray old = kind == Kind::Ini ? QByteArray("[Tarnwick]\r\nq3dir=/old\r\n") : playersFile;
        if (failure == u"folder in place of the file")
            QVERIFY(QDir().mkpath(target));
        else if (failure == u"missing folder")
            target = folder + QStringLiteral("/missing/") + name;
        else if (failure != u"file deleted after the dialog")
            writeTestFile(target, old);
        const bool permissions = failure.startsWith(u"read-only");
        if (permissions)
            giveToNobody(root.path());
        if (failure == u"read-only file")
            QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        if (failure == u"read-only folder")
            QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        const QStringList before = entries(folder);

        const Outcome outcome = runChild({ QStringLiteral("save"), QString::number(int(kind)), target },
            failure == u"file size limit" ? 16 : 0, permissions);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        if (outcome.code == cannotDropToNobody)
            QSKIP("running as root without the right to become nobody: permissions would not count");
        if (reason.isEmpty()) {
            QCOMPARE(outcome.code, 0);
            QCOMPARE(entries(folder), QStringList { name });
            QVERIFY(readTestFile(target).size() > 0);
            return;
        }
        QCOMPARE(outcome.code, 1);
        // The message names the file (or the copy that would have been kept of it) and says why.
        QVERIFY2(outcome.message.contains(QDir::toNativeSeparators(target)) && outcome.message.endsWith(reason),
            qPrintable(outcome.message));
        // Nothing half-written: the file as it was, at most a whole copy of it kept aside.
        QStringList after = entries(folder);
        if (after.removeOne(name + QStringLiteral(".orig")))
            QCOMPARE(readTestFile(target + QStringLiteral(".orig")), old);
        QCOMPARE(after, before);
        if (QFileInfo(target).isFile())
            QCOMPARE(readTestFile(target), old);
        QVERIFY(!QFileInfo(target).isDir() || entries(target).isEmpty());
    }

    // A missing file and a folder in place of the file are tst_ConfigReader's; permissions need another user.
    void unreadableFileIsNotOpened()
    {
        QTemporaryDir root;
        const QString path = writeTestFile(root.filePath(QStringLiteral("q3config.cfg")), playersFile);
        giveToNobody(root.path());
        QVERIFY(QFile::setPermissions(path, QFile::WriteOwner));
        const Outcome outcome = runChild({ QStringLiteral("open"), path }, 0, true);
        if (outcome.code == cannotDropToNobody)
            QSKIP("running as root without the right to become nobody: permissions would not count");
        QCOMPARE(outcome.code, 1);
        QCOMPARE(outcome.message, ConfigReader::backupFailedMessage());
        QCOMPARE(entries(root.path()), QStringList { "q3config.cfg" });
    }

    void killedSave_data()
    {
        QTest::addColumn<bool>("named");
        QTest::newRow("unnamed temporary files") << false;
        QTest::newRow("named temporary files") << true;
    }

    // A save killed at any moment (while reading the file, keeping its original, writing, between two saves)
    // leaves the file whole, old or new. Whatever it leaves beside it the next save takes away.
    void killedSave()
    {
        QFETCH(bool, named);
        QTemporaryDir root;
        const QString path = root.filePath(QStringLiteral("q3config.cfg"));
        QByteArray old = playersFile;
        for (int i = 0; old.size() < 1024 * 1024; ++i)
            old += "seta player_note_" + QByteArray::number(i) + " \"a line the save keeps as it stands\"\r\n";
        // What the child's saves write, with cg_fov 90 and 100 in turn.
        QList<QByteArray> saved;
        for (int fov : { 90, 100 }) {
            ConfigDocument doc;
            writeTestFile(path, old);
            QVERIFY(OpenCfgFile(doc, path));
            setFov(doc, fov);
            saved.append(ConfigWriter::fileBytes(doc, FileScope::Whole));
        }
        // How long the first three saves take here, the original kept first: the kills fall across that time.
        const auto start = [&](bool afterRead) {
            QFile::remove(path + QStringLiteral(".orig"));
            writeTestFile(path, old);
            std::unique_ptr<QProcess> child(
                startChild({ QStringLiteral("saves"), path, named ? QStringLiteral("named") : QString() }));
            afterRead ? child->waitForReadyRead(20000) : child->waitForStarted();
            return child;
        };
        qint64 span = 0;
        {
            const std::unique_ptr<QProcess> child = start(true);
            QElapsedTimer clock;
            clock.start();
            QByteArray said = child->readAllStandardOutput();
            while (said.count("saved") < 3 && child->waitForReadyRead(20000))
                said += child->readAllStandardOutput();
            span = clock.elapsed();
            child->kill();
            child->waitForFinished();
        }
        int leftovers = 0, stillOld = 0;
        // Killed at once (during start-up and the read), or that part of the span after the child has read the
        // file: as it keeps the original, saves, and between saves.
        const double moments[] = { -1, 0, 0.05, 0.1, 0.15, 0.2, 0.3, 0.4, 0.5, 0.65, 0.8, 1 };
        for (const double moment : moments) {
            const std::unique_ptr<QProcess> child = start(moment >= 0);
            QThread::msleep(qRound64(std::max(0.0, moment) * span));
            child->kill();
            QVERIFY(child->waitForFinished());
            QCOMPARE(child->exitStatus(), QProcess::CrashExit);
            const QByteArray now = readTestFile(path);
            QVERIFY2(now == old || saved.contains(now), qPrintable(QStringLiteral("mixed at %1").arg(moment)));
            stillOld += now == old;
            QStringList after = entries(root.path());
            QVERIFY(after.removeOne(QStringLiteral("q3config.cfg")));
            if (after.removeOne(QStringLiteral("q3config.cfg.orig")))
                QCOMPARE(readTestFile(path + QStringLiteral(".orig")), old);
            for (const QString &name : after) {
                QVERIFY2(WholeFile::isLeftover(name, QStringLiteral("q3config.cfg"))
                        || WholeFile::isLeftover(name, QStringLiteral("q3config.cfg.orig")),
                    qPrintable(name));
                ++leftovers;
            }
            if (!after.isEmpty()) {
                ConfigDocument doc;
                QVERIFY(OpenCfgFile(doc, path));
                QVERIFY(KeepOriginal(path, nullptr, nullptr) && WriteCfgFile(doc, path, FileScope::Whole));
                after = entries(root.path());
                after.removeOne(QStringLiteral("q3config.cfg.orig"));
                QCOMPARE(after, QStringList { "q3config.cfg" });
            }
        }
        qInfo("three saves in %lld ms; of %d kills, %d found the old file, %d a saved one; %d left a file for the next "
              "save to remove",
            span, int(std::size(moments)), stillOld, int(std::size(moments)) - stillOld, leftovers);
    }

    // A save writes through a link to the file, which stays a link, and keeps the file's permissions.
    void saveKeepsLinksAndPermissions()
    {
        QTemporaryDir root;
        const QString file = writeTestFile(root.filePath(QStringLiteral("real.cfg")), "old");
        const QString link = root.filePath(QStringLiteral("q3config.cfg"));
        QVERIFY(QFile::link(QStringLiteral("real.cfg"), link));
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        QVERIFY(WriteWholeFile(link, "new"));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(readTestFile(file), QByteArray("new"));
        QCOMPARE(QFile::permissions(file) & 0x0777, QFile::Permissions(0x0640));
        QCOMPARE(entries(root.path()), (QStringList { "q3config.cfg", "real.cfg" }));
    }

    // Only what a killed save of that very file leaves goes; files that merely look alike stay.
    void leftoversOfKilledSavesGo()
    {
        QTemporaryDir root;
        const QString path = writeTestFile(root.filePath(QStringLiteral("q3config.cfg")), "old");
        const QStringList gone { "q3config.cfg.tarnwick-Ab12Cd", "q3config.cfg.tarnwick-000000" };
        const QStringList kept { "q3config.cfg.backup", "q3config.cfg.tarnwick-Ab12C", "q3config.cfg.tarnwick-Ab12Cd7",
            "q3config.cfg.tarnwick-Ab_2Cd", "autoexec.cfg.tarnwick-Ab12Cd", "q3config.cfg.tarnwick-folder",
            "q3config.cfg.tarnwick-linked" };
        for (const QString &name : gone + kept.mid(0, 5))
            writeTestFile(root.filePath(name), "bytes");
        QVERIFY(QDir(root.path()).mkdir(QStringLiteral("q3config.cfg.tarnwick-folder")));
        QVERIFY(QFile::link(path, root.filePath(QStringLiteral("q3config.cfg.tarnwick-linked"))));
        QVERIFY(WriteWholeFile(path, "new"));
        QStringList expected = kept + QStringList { "q3config.cfg" };
        expected.sort();
        QCOMPARE(entries(root.path()), expected);
        QCOMPARE(readTestFile(path), QByteArray("new"));
    }
};

QTEST_GUILESS_MAIN(tst_FailureInjection)
#include "tst_FailureInjection.moc"

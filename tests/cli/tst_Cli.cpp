// Drives the real tarnwick-cli: exit codes, messages, scripts, the corpus and hostile input.
#include "TestZip.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

class tst_Cli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exitCodes_data();
    void exitCodes();
    void scriptSession();
    void pk3Listing();
    void topLevelCommands();
    void corpusReachesFixedPoint();
    void hostileInput_data();
    void hostileInput();

private:
    struct Result
    {
        int code = -1;
        QByteArray out;
        QByteArray err;
    };
    static Result run(const QStringList &args, const QByteArray &input = {}, int timeoutMs = 60000);
    QTemporaryDir m_dir;
    QString path(const QString &name) const { return m_dir.filePath(name); }
    void write(const QString &name, const QByteArray &bytes) const;
    QByteArray read(const QString &name) const;
};

tst_Cli::Result tst_Cli::run(const QStringList &args, const QByteArray &input, int timeoutMs)
{
    QProcess p;
    p.start(QStringLiteral(TARNWICK_CLI), args);
    if (!p.waitForStarted())
        return {};
    p.write(input);
    p.closeWriteChannel();
    if (!p.waitForFinished(timeoutMs)) {
        p.kill();
        p.waitForFinished();
        return {};
    }
    return { p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
        p.readAllStandardError() };
}

void tst_Cli::write(const QString &name, const QByteArray &bytes) const
{
    QFile f(path(name));
    QVERIFY(f.open(QIODevice::WriteOnly));
    QCOMPARE(f.write(bytes), bytes.size());
}

QByteArray tst_Cli::read(const QString &name) const
{
    QFile f(path(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void tst_Cli::exitCodes_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message"); // the first line of standard error

    const QString noBackup = "tarnwick-cli: Tarnwick wasn't be able to create or/and load backup file.";
    QTest::newRow("help") << QStringList { "--help" } << QByteArray() << 0 << "";
    QTest::newRow("nothing") << QStringList {} << QByteArray() << 2 << "tarnwick-cli: no command given";
    QTest::newRow("unknown command") << QStringList { "frob" } << QByteArray() << 2 << "";
    QTest::newRow("too few paths") << QStringList { "rewrite", "in.cfg" } << QByteArray() << 2 << "";
    QTest::newRow("unknown kind") << QStringList { "export", "gfx", "in.cfg", "out" } << QByteArray() << 2 << "";
    QTest::newRow("unknown mode") << QStringList { "new", "3", "out.cfg" } << QByteArray() << 2 << "";
    QTest::newRow("missing input") << QStringList { "rewrite", "missing.cfg", "out.cfg" } << QByteArray() << 1
                                   << noBackup;
    QTest::newRow("folder as input") << QStringList { "rewrite", ".", "out.cfg" } << QByteArray() << 1 << noBackup;
    QTest::newRow("missing output folder") << QStringList { "new", "1", "none/out.cfg" } << QByteArray() << 1 << "";
    QTest::newRow("missing script") << QStringList { "script", "none.txt" } << QByteArray() << 1 << "";
    QTest::newRow("script: unknown command") << QStringList { "script", "-" } << QByteArray("\n# x\nfrob\n") << 2
                                             << "tarnwick-cli: line 3: wrong script command \"frob\"";
    QTest::newRow("script: action out of range")
        << QStringList { "script", "-" } << QByteArray("bind 37 1 W") << 2 << "";
    QTest::newRow("script: slot out of range") << QStringList { "script", "-" } << QByteArray("unbind 3 0") << 2 << "";
    QTest::newRow("script: not a setting")
        << QStringList { "script", "-" } << QByteArray("set cg_zoomfov 5") << 2 << "";
    QTest::newRow("script: failure stops the run")
        << QStringList { "script", "-" } << QByteArray("open missing.cfg\r\nprint\r\n") << 1
        << "tarnwick-cli: line 1: Tarnwick wasn't be able to create or/and load backup file.";
    QTest::newRow("script: empty") << QStringList { "script", "-" } << QByteArray() << 0 << "";
    QTest::newRow("pk3: no archive") << QStringList { "pk3" } << QByteArray() << 2 << "";
    QTest::newRow("pk3: two archives") << QStringList { "pk3", "a.pk3", "b.pk3" } << QByteArray() << 2 << "";
    QTest::newRow("pk3: missing archive") << QStringList { "pk3", "missing.pk3" } << QByteArray() << 1
                                          << "tarnwick-cli: Can't read the archive \"missing.pk3\": No such file";
    QTest::newRow("pk3: folder as archive") << QStringList { "pk3", "." } << QByteArray() << 1 << "";
}

void tst_Cli::exitCodes()
{
    QFETCH(QStringList, args);
    QFETCH(QByteArray, script);
    QFETCH(int, code);
    QFETCH(QString, message);
    QVERIFY(QDir::setCurrent(m_dir.path()));
    const Result r = run(args, script);
    QCOMPARE(r.code, code);
    if (code != 0) {
        QVERIFY(r.err.startsWith("tarnwick-cli: "));
        QVERIFY(r.out.isEmpty());
    }
    if (!message.isEmpty())
        QCOMPARE(QString::fromLocal8Bit(r.err.split('\n').first()), message);
    if (code == 2)
        QVERIFY(r.err.contains("Usage:"));
    QVERIFY(!QFile::exists(path("out.cfg")) && !QFile::exists(path("out")));
}

void tst_Cli::scriptSession()
{
    write("in.cfg", "seta cg_fov 100\r\nbind w \"+forward\"\r\nseta foo \"1\"\r\n");
    const QByteArray script = "# a session\n"
                              "open \""
        + path("in.cfg").toLocal8Bit()
        + "\"\n"
          "set cg_fov 80\n"
          "set rate 7777\n"
          "set name  \"Big Bad\"\n"
          "set r_swapinterval \f1\n"
          "bind 2 1 W\n"
          "bind 1 2 MOUSE1\n"
          "unbind 1 2\n"
          "print\n"
          "restore\n"
          "print\n"
          "save "
        + path("out.cfg").toLocal8Bit() + "\n";
    const Result r = run({ "script", "-" }, script);
    QCOMPARE(r.code, 0);
    const qsizetype second = r.out.lastIndexOf("//generated by Tarnwick");
    QVERIFY(second > 0);
    const QByteArray edited = r.out.left(second);
    const QByteArray restored = r.out.mid(second);
    QVERIFY(edited.startsWith("//generated by Tarnwick\r\nseta foo \"1\"\r\nbind w \"+back\"\r\nseta cg_autoswitch"));
    QVERIFY(edited.contains("seta cg_fov \"90\"\r\n"));
    QVERIFY(edited.contains("seta rate \"25000\"\r\n"));
    QVERIFY(edited.contains("seta name \"Big Bad\"\r\n"));
    QVERIFY(edited.contains("seta r_swapinterval \"0\"\r\n")); // a form feed is no blank: not a number
    QVERIFY(!edited.contains("+forward"));
    // Restore puts back the values read, not the keys.
    QVERIFY(restored.contains("seta cg_fov \"100\"\r\n"));
    QVERIFY(restored.contains("seta name \"UnnamedPlayer\"\r\n"));
    QVERIFY(restored.contains("bind w \"+back\"\r\n"));
    QCOMPARE(read("out.cfg"), restored);
}

void tst_Cli::topLevelCommands()
{
    write("base.cfg", "seta keep 1\r\nseta cg_fov 100\r\nseta cg_drawfps 0\r\nbind w \"+forward\"\r\n");
    write("part.hud", "seta cg_drawfps 1\r\nseta cg_fov 130\r\n");
    QCOMPARE(run({ "rewrite", path("base.cfg"), path("re.cfg") }).code, 0);
    QVERIFY(read("re.cfg").startsWith("//generated by Tarnwick\r\nseta keep 1\r\nbind w \"+forward\"\r\n"));

    QCOMPARE(run({ "export", "controls", path("base.cfg"), path("keys.ctr") }).code, 0);
    QCOMPARE(read("keys.ctr"),
        QByteArray("//generated by Tarnwick\r\nbind w \"+forward\"\r\nseta cg_autoswitch \"0\"\r\n"
                   "seta cl_run \"0\"\r\nseta sensitivity \"9.0\"\r\n"));

    // Import replaces the kept lines with the part's lines of other areas.
    QCOMPARE(run({ "import", "hud", path("part.hud"), path("base.cfg"), path("merged.cfg") }).code, 0);
    const QByteArray merged = read("merged.cfg");
    QVERIFY(merged.startsWith("//generated by Tarnwick\r\nseta cg_fov 130\r\nbind w \"+forward\"\r\n"));
    QVERIFY(merged.contains("seta cg_drawfps \"1\"\r\n"));
    QVERIFY(merged.contains("seta cg_fov \"100\"\r\n"));

    QCOMPARE(run({ "new", "1", path("new.cfg") }).code, 0);
    QCOMPARE(read("new.cfg"), [] {
        QFile f(QStringLiteral(TARNWICK_TEST_DATA "/new-defaults.cfg"));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }());
}

// A zip archive of empty stored entries; `encrypted` names the entries flagged as encrypted.
static QByteArray emptyEntriesZip(const QByteArrayList &names, const QByteArrayList &encrypted)
{
    QList<TestZip::RawEntry> entries;
    for (const QByteArray &name : names)
        entries.append({ name, QByteArray(), false, encrypted.contains(name) });
    return TestZip::zipBytes(entries);
}

void tst_Cli::pk3Listing()
{
    write("game.pk3",
        emptyEntriesZip({ "models/players/", "models/players/sarge/head.md3", "q3config.cfg", "secret/pass.txt",
                            "/abs/x", "sound/caf\x82.wav" },
            { "secret/pass.txt" }));
    const Result r = run({ "pk3", path("game.pk3") });
    QCOMPARE(r.code, 0);
    QCOMPARE(r.err, QByteArray());
    QCOMPARE(r.out,
        QByteArray("models\\players\\sarge\thead.md3\t-\n"
                   "\tq3config.cfg\t-\n"
                   "secret\tpass.txt\tE\n"
                   "/abs\tx\t-\n"
                   "sound\tcaf\xc3\xa9.wav\t-\n"));
}

void tst_Cli::corpusReachesFixedPoint()
{
    QDir corpus(QStringLiteral(TARNWICK_CORPUS));
    const QStringList files = corpus.entryList({ "*.cfg", "*.config" }, QDir::Files, QDir::Name);
    if (files.isEmpty())
        QSKIP("no corpus of players' configurations beside the project");
    for (const QString &name : files) {
        const QString in = corpus.filePath(name);
        QFile original(in);
        QVERIFY(original.open(QIODevice::ReadOnly));
        const QByteArray before = original.readAll();
        QString previous = in;
        for (int pass = 1; pass <= 3; ++pass) {
            const QString out = path(QStringLiteral("%1.%2").arg(name).arg(pass));
            const Result r = run({ "rewrite", previous, out });
            QVERIFY2(r.code == 0, qPrintable(name + ": " + QString::fromLocal8Bit(r.err)));
            previous = out;
        }
        QVERIFY2(read(name + ".2") == read(name + ".3"), qPrintable(name + " changes after the second pass"));
        QVERIFY(read(name + ".3").startsWith("//generated by Tarnwick\r\n"));
        original.seek(0);
        QCOMPARE(original.readAll(), before);
    }
}

void tst_Cli::hostileInput_data()
{
    QTest::addColumn<QByteArray>("content");
    QRandomGenerator random(20261123);
    QByteArray garbage(1 << 20, Qt::Uninitialized);
    for (char &c : garbage)
        c = char(random.bounded(256));
    QTest::newRow("binary garbage") << garbage;
    QTest::newRow("one 1 MB line") << QByteArray("seta name \"") + QByteArray(1 << 20, 'x') + "\"\r\n";
    QTest::newRow("NUL bytes") << QByteArray("seta\0 r_picmip 2\r\nbind \0 \"+attack\"\r\n\0\0\0", 37);
    QTest::newRow("LF-only megabytes") << QByteArray("seta cg_fov 100 // wide\nbind w \"+forward\"\n").repeated(50000);
    QByteArray big;
    const QByteArray block = "seta cg_fov \"110\"\r\nseta cl_mouseAccel \"0.5\" // smooth\r\nbind w \"+forward\"\r\n"
                             "bind MOUSE1 \"+attack\"\r\nseta g_spAwards \"\\a1\\3\\a2\\1\"\r\n// just a comment\r\n";
    while (big.size() < 50 * 1024 * 1024)
        big += block;
    QTest::newRow("50 MB") << big;
}

void tst_Cli::hostileInput()
{
    QFETCH(QByteArray, content);
    write("hostile.cfg", content);
    const Result r = run({ "rewrite", path("hostile.cfg"), path("hostile.out") }, {}, 300000);
    QCOMPARE(r.code, 0);
    QVERIFY(read("hostile.out").startsWith("//generated by Tarnwick\r\n"));
    QCOMPARE(read("hostile.cfg").size(), content.size());
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "TestZip.h"
#include "tst_Cli.moc"

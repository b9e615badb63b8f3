// The PK3 reader against archives written byte for byte here, so any name, flag or damage can be had.
#include "TestFiles.h"
#include "TestZip.h"
#include "cUnzip.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using TestZip::crc32;
using TestZip::RawEntry;
using TestZip::zipBytes;

namespace {

QList<RawEntry> named(const QByteArrayList &names)
{
    QList<RawEntry> entries;
    for (const QByteArray &name : names)
        entries.append({ name, name.endsWith('/') ? QByteArray() : "data of " + name });
    return entries;
}

// The end record's fields, by their place in it.
enum EndField { EntriesOnDisk = 8, Entries = 10, DirectorySize = 12, DirectoryStart = 16 };

QByteArray withEndField(QByteArray zip, EndField field, quint32 value)
{
    const qsizetype at = zip.size() - 22 + field;
    if (field == Entries || field == EntriesOnDisk)
        qToLittleEndian(quint16(value), zip.data() + at);
    else
        qToLittleEndian(value, zip.data() + at);
    return zip;
}

quint32 endField(const QByteArray &zip, EndField field)
{
    const char *at = zip.constData() + zip.size() - 22 + field;
    return field == Entries || field == EntriesOnDisk ? qFromLittleEndian<quint16>(at) : qFromLittleEndian<quint32>(at);
}

// The archive with ZIP64 end records before its end record, which then points at them: the only way to count more
// than 65,535 entries. `entries` and `start` are what the ZIP64 record states.
QByteArray withZip64End(const QByteArray &zip, quint64 entries, quint64 start)
{
    QByteArray out = zip.chopped(22);
    const quint64 size = endField(zip, DirectorySize);
    const quint64 recordAt = out.size();
    const auto put64 = [&out](quint64 v) {
        char bytes[8];
        qToLittleEndian(v, bytes);
        out.append(bytes, 8);
    };
    TestZip::put(out, { 0x06064b50 }, 4);
    put64(44);
    TestZip::put(out, { 45, 45 }, 2);
    TestZip::put(out, { 0, 0 }, 4);
    for (const quint64 v : { entries, entries, size, start })
        put64(v);
    TestZip::put(out, { 0x07064b50, 0 }, 4);
    put64(recordAt);
    TestZip::put(out, { 1 }, 4);
    TestZip::put(out, { 0x06054b50 }, 4);
    TestZip::put(out, { 0, 0, 0xffff, 0xffff }, 2);
    TestZip::put(out, { 0xffffffff, 0xffffffff }, 4);
    TestZip::put(out, { 0 }, 2);
    return out;
}

// Every file below `folder`, "/"-separated from it.
QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(folder).relativeFilePath(it.next()));
    files.sort();
    return files;
}

} // namespace

class tst_cUnzip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each entry listed as "folder|name", in the archive's order.
    void listing_data()
    {
        QTest::addColumn<QByteArrayList>("names");
        QTest::addColumn<QStringList>("listed");
        const auto row = [](const char *tag, const QByteArrayList &names, const QStringList &listed) {
            QTest::newRow(tag) << names << listed;
        };
        row("folder entries skipped", { "models/", "models/players/", "models/players/a.skin" },
            { "models\\players|a.skin" });
        row("folders only", { "maps/", "/", "maps/x/" }, {});
        row("backslashes separate too", { "maps\\q3dm1.bsp", "a/b\\c.txt", "\\d" },
            { "maps|q3dm1.bsp", "a\\b|c.txt", "|d" });
        row("UTF-8 and code page 437 names", { "sons/caf\xc3\xa9.wav", "sons/caf\x82.wav" },
            { QStringLiteral("sons|caf\u00e9.wav"), QStringLiteral("sons|caf\u00e9.wav") });
    }

    void listing()
    {
        QFETCH(QByteArrayList, names);
        QFETCH(QStringList, listed);
        cUnzip zip;
        zip.setZipFile(archive(named(names)));
        QString error;
        QVERIFY2(zip.Directory(&error), qPrintable(error));
        QStringList got;
        for (int i = 1; i <= zip.FileCount(); ++i)
            got.append(zip.FileDirectory(i) + u'|' + zip.Filename(i));
        QCOMPARE(got, listed);
        QStringList streamed;
        QVERIFY(zip.List([&](const cUnzip::ZipEntry &e) { streamed.append(e.entryFolder + u'|' + e.entryName); }));
        QCOMPARE(streamed, listed);
        // Listing again appends; naming the archive again starts afresh.
        QVERIFY(zip.Directory());
        QCOMPARE(zip.FileCount(), 2 * listed.size());
        zip.setZipFile(zip.ZipFile());
        QCOMPARE(zip.FileCount(), 0);
    }

    // Read from the central directory, or by libzip where a name is not ASCII: the same details either way.
    void entryDetails_data()
    {
        QTest::addColumn<QByteArray>("suffix");
        QTest::newRow("ASCII names") << QByteArray();
        QTest::newRow("a UTF-8 name") << QByteArray("\xc3\xa9");
    }
    void entryDetails()
    {
        QFETCH(QByteArray, suffix);
        const QByteArray text = QByteArray("seta cg_fov \"110\"\r\n").repeated(200);
        const QList<RawEntry> entries { { "stored", text }, { "deflated", text, true },
            { "encrypted", text, false, true }, { "empty" + suffix } };
        cUnzip zip;
        zip.setZipFile(archive(entries));
        QVERIFY(zip.Directory());
        QCOMPARE(zip.FileCount(), entries.size());
        for (int i = 1; i <= zip.FileCount(); ++i) {
            const RawEntry &e = entries[i - 1];
            QCOMPARE(zip.FileCompressionMethod(i), QString::fromLatin1(e.deflate ? "Deflated" : "Stored"));
            QCOMPARE(zip.FileSize(i), e.data.size());
            QCOMPARE(zip.FileCRC(i), crc32(e.data));
            QCOMPARE(zip.FileEncrypted(i), e.encrypted);
            QCOMPARE(zip.FileDate(i), QDateTime(QDate(2005, 6, 7), QTime(8, 9)));
            QVERIFY(zip.FileSelected(i));
            // The packed size comes back from the ratio to within the rounding of one per cent.
            const qint64 packed = e.deflate ? qCompress(e.data).size() - 10 : e.data.size(); // as TestZip packs it
            QCOMPARE(zip.FileCompressionRatio(i), e.data.isEmpty() ? 0 : packed * 100 / e.data.size());
            QVERIFY(packed - zip.FilePackedSize(i) <= e.data.size() / 100);
        }
    }

    // A listing that fails names the archive and keeps the entries listed before.
    void unreadableArchive()
    {
        QByteArray noise(4096, Qt::Uninitialized);
        for (qsizetype i = 0; i < noise.size(); ++i)
            noise[i] = char((i * 7919 + 13) % 251);
        const QByteArray whole = zipBytes(named({ "maps/q3dm17.bsp", "scripts/a.shader", "b.cfg" }));
        // Random bytes, cut in half, the end record cut, no bytes at all; a null array: the archive is removed.
        for (const QByteArray &bytes :
            { noise, whole.first(whole.size() / 2), whole.chopped(4), QByteArray(""), QByteArray() }) {
            const QString path = archive(named({ "a.cfg", "b/c.cfg" }), QStringLiteral("damaged.pk3"));
            cUnzip zip;
            zip.setZipFile(path);
            QVERIFY(zip.Directory());
            QVERIFY(bytes.isNull() ? QFile::remove(path) : !writeTestFile(path, bytes).isEmpty());
            QString error;
            QVERIFY(!zip.Directory(&error));
            QVERIFY2(error.contains(path), qPrintable(error));
            QCOMPARE(zip.FileCount(), 2);
        }
    }

    // What an extraction writes where (the names it refuses are hostileArchives' matter): packed data unpacked, an
    // entry not selected left out, "./" dropped, and the rest written after a refusal.
    void unzipWritesTheSelectedEntries()
    {
        QTemporaryDir dir;
        const QByteArray map = QByteArray("brush\n").repeated(500);
        QList<RawEntry> entries = named({ "../escape.txt", "b.cfg", "skip/me.txt", "./dot/ok.txt" });
        entries.prepend({ "maps/a.bsp", map, true });
        cUnzip zip;
        zip.setZipFile(archive(entries));
        zip.UnzipFolder = dir.filePath(QStringLiteral("out"));
        QVERIFY(zip.Directory());
        zip.setFileSelected(4, false);
        QString error;
        QVERIFY(!zip.Unzip(&error));
        QVERIFY2(error.startsWith(QStringLiteral("../escape.txt:")) && !error.contains(u'\n'), qPrintable(error));
        QCOMPARE(filesBelow(dir.path()), (QStringList { "out/b.cfg", "out/dot/ok.txt", "out/maps/a.bsp" }));
        QCOMPARE(readTestFile(zip.UnzipFolder + QStringLiteral("/maps/a.bsp")), map);
        QCOMPARE(readTestFile(zip.UnzipFolder + QStringLiteral("/dot/ok.txt")), QByteArray("data of ./dot/ok.txt"));
    }

    void unzipNeverFollowsLinks_data()
    {
        QTest::addColumn<bool>("overwrite");
        QTest::newRow("keeping existing files") << false;
        QTest::newRow("replacing existing files") << true;
    }

    void unzipNeverFollowsLinks()
    {
        QFETCH(bool, overwrite);
        QTemporaryDir dir;
        const QString out = dir.filePath(QStringLiteral("out")), outside = dir.filePath(QStringLiteral("outside"));
        QVERIFY(QDir().mkpath(out + QStringLiteral("/maps")) && QDir().mkpath(outside));
        writeTestFile(outside + QStringLiteral("/target.cfg"), "theirs");
        QVERIFY(QFile::link(outside, out + QStringLiteral("/maps/link")));
        QVERIFY(QFile::link(outside + QStringLiteral("/target.cfg"), out + QStringLiteral("/file.cfg")));
        QVERIFY(QFile::link(outside + QStringLiteral("/new.cfg"), out + QStringLiteral("/dangling.cfg")));
        cUnzip zip;
        zip.setZipFile(archive(named({ "maps/link/sub/deep.cfg", "file.cfg", "dangling.cfg", "maps/ok.cfg" })));
        zip.UnzipFolder = out;
        zip.OverwriteExisting = overwrite;
        QString error;
        QVERIFY(!zip.Unzip(&error));

        QCOMPARE(readTestFile(out + QStringLiteral("/maps/ok.cfg")), QByteArray("data of maps/ok.cfg"));
        QCOMPARE(QDir(outside).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList { "target.cfg" });
        QCOMPARE(readTestFile(outside + QStringLiteral("/target.cfg")), QByteArray("theirs"));
        QVERIFY(QFileInfo(out + QStringLiteral("/file.cfg")).isSymLink());
        const QStringList lines = error.split(u'\n');
        const QStringList refused { "maps/link/sub/deep.cfg", "file.cfg", "dangling.cfg" };
        QCOMPARE(lines.size(), refused.size());
        for (int i = 0; i < refused.size(); ++i)
            QVERIFY2(lines[i].startsWith(refused[i] + u':'), qPrintable(lines[i]));
    }

    void unzipKeepsOrReplaces()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("a.cfg"));
        writeTestFile(file, "mine");
        cUnzip zip;
        QVERIFY(!zip.Unzip()); // no archive yet
        zip.setZipFile(archive(named({ "a.cfg" })));
        zip.UnzipFolder = dir.path();
        QVERIFY(zip.Unzip()); // lists the archive first
        QCOMPARE(readTestFile(file), QByteArray("mine"));
        zip.OverwriteExisting = true;
        QVERIFY(zip.Unzip());
        QCOMPARE(readTestFile(file), QByteArray("data of a.cfg"));
    }

    // Archives damaged or made to harm: each lists correctly or says why it can't, extracts nothing outside its
    // folder, and tarnwick-cli pk3 ends with 0 or 1 (a crash or a hang would fail the row).
    void hostileArchives_data()
    {
        QTest::addColumn<QByteArray>("zip");
        QTest::addColumn<QStringList>("listed"); // "folder|name" each; empty when the listing fails
        QTest::addColumn<QStringList>("extracted"); // the files below the extraction folder afterwards
        QTest::addColumn<int>("refused"); // the lines of the extraction's message

        const QList<RawEntry> three = named({ "maps/q3dm17.bsp", "scripts/a.shader", "b.cfg" });
        const QByteArray plain = zipBytes(three);
        const QStringList threeListed { "maps|q3dm17.bsp", "scripts|a.shader", "|b.cfg" };
        const QStringList threeFiles { "b.cfg", "maps/q3dm17.bsp", "scripts/a.shader" };
        const quint32 start = endField(plain, DirectoryStart);
        const auto unreadable = [](const char *tag, const QByteArray &zip) {
            QTest::newRow(tag) << zip << QStringList() << QStringList() << 1;
        };
        const auto row
            = [](const char *tag, const QByteArray &zip, const QStringList &listed, const QStringList &extracted,
                  int refused) { QTest::newRow(tag) << zip << listed << extracted << refused; };
        unreadable("truncated in an entry's data", plain.first(40));
        unreadable("truncated in the central directory", plain.first(start + 20));
        unreadable("truncated in the end record", plain.chopped(5));
        unreadable("central directory past the end", withEndField(plain, DirectoryStart, plain.size() + 100));
        unreadable("central directory inside the data", withEndField(plain, DirectoryStart, start - 7));
        unreadable(
            "more entries counted than there are", withEndField(withEndField(plain, Entries, 9), EntriesOnDisk, 9));
        unreadable(
            "fewer entries counted than there are", withEndField(withEndField(plain, Entries, 2), EntriesOnDisk, 2));
        // Two entries of the central directory at the same local header: each is read from it.
        QByteArray overlapping = zipBytes(named({ "a.cfg", "b.cfg" }));
        const quint32 second = endField(overlapping, DirectoryStart) + 46 + 5 + 42;
        qToLittleEndian(quint32(0), overlapping.data() + second);
        row("overlapping entries", overlapping, { "|a.cfg", "|b.cfg" }, { "a.cfg" }, 1);
        QList<RawEntry> many;
        QStringList manyListed;
        for (int i = 0; i < 65536; ++i) {
            many.append({ "e/" + QByteArray::number(i) });
            manyListed.append("e|" + QString::number(i));
        }
        const QByteArray manyZip = zipBytes(many);
        row("65,536 entries", withZip64End(manyZip, 65536, endField(manyZip, DirectoryStart)), manyListed, {}, -1);
        unreadable("ZIP64 record claiming 2^40 entries", withZip64End(plain, quint64(1) << 40, start));
        QByteArray comment = plain.chopped(2);
        const QByteArray fake = withEndField(withEndField(plain.right(22), Entries, 1), DirectoryStart, 3);
        TestZip::put(comment, { quint32(fake.size()) }, 2);
        row("comment that looks like an end record", comment + fake, threeListed, threeFiles, 0);
        row("names with ..", zipBytes(named({ "../up.cfg", "maps/../../up2.cfg", "ok/../in.cfg" })),
            { "..|up.cfg", "maps\\..\\..|up2.cfg", "ok\\..|in.cfg" }, {}, 3);
        row("absolute names", zipBytes(named({ "/etc/passwd", "//server/share/x" })),
            { "/etc|passwd", "/\\server\\share|x" }, {}, 2);
        row("backslashes", zipBytes(named({ "..\\..\\evil.cfg", "maps\\ok.cfg", "\\root.cfg" })),
            { "..\\..|evil.cfg", "maps|ok.cfg", "|root.cfg" }, { "maps/ok.cfg" }, 2);
        row("drive letters", zipBytes(named({ "C:\\evil.cfg", "c:evil2.cfg", "d:/evil3.cfg" })),
            { "C:|evil.cfg", "|c:evil2.cfg", "d:|evil3.cfg" }, {}, 3);
        // libzip reads a NUL byte in a name as a blank.
        row("NUL bytes in names", zipBytes({ { QByteArray("safe.cfg\0../../evil.cfg", 23), "x" } }),
            { "safe.cfg ..\\..|evil.cfg" }, {}, 1);
        // libzip refuses the whole archive over a name that says it is UTF-8 and isn't; without the flag such a name
        // reads as code page 437 (see listing).
        unreadable("invalid UTF-8 names", zipBytes({ { "bad\xff\xfe.cfg", "x", false, false, -1, 0, true } }));
        row("entry claiming 4 GB", zipBytes({ { "huge.bsp", "small", false, false, 0xfffffffe } }), { "|huge.bsp" }, {},
            1);
        // Deflated zeros that say they are 1000 bytes: 32 MB once inflated.
        row("deflate bomb", zipBytes({ { "bomb.cfg", QByteArray(32 << 20, '\0'), true, false, 1000 } }),
            { "|bomb.cfg" }, {}, 1);
        row("encrypted entry", zipBytes({ { "locked.cfg", "x", false, true } }), { "|locked.cfg" }, {}, 1);
        // A symbolic link comes out as a file holding its target; nothing goes through it.
        row("link entry", zipBytes({ { "link", "..", false, false, -1, 0120777 }, { "link/escape.cfg", "x" } }),
            { "|link", "link|escape.cfg" }, { "link" }, 1);
    }

    void hostileArchives()
    {
        QFETCH(QByteArray, zip);
        QFETCH(QStringList, listed);
        QFETCH(QStringList, extracted);
        QFETCH(int, refused);
        const QString path = writeTestFile(m_dir.filePath(QStringLiteral("hostile.pk3")), zip);
        cUnzip archive;
        archive.setZipFile(path);
        QString error;
        QCOMPARE(archive.Directory(&error), !listed.isEmpty());
        QStringList got;
        for (int i = 1; i <= archive.FileCount(); ++i)
            got.append(archive.FileDirectory(i) + u'|' + archive.Filename(i));
        QCOMPARE(got, listed);
        if (listed.isEmpty())
            QVERIFY2(error.startsWith(QStringLiteral("Can't read the archive \"%1\": ").arg(path)), qPrintable(error));

        QTemporaryDir box; // holds the extraction folder and nothing else
        const QString out = box.filePath(QStringLiteral("out"));
        archive.UnzipFolder = out;
        if (!listed.isEmpty() && refused >= 0) {
            QCOMPARE(archive.Unzip(&error), refused == 0);
            QCOMPARE(error.isEmpty() ? 0 : error.count(u'\n') + 1, refused);
            QCOMPARE(filesBelow(out), extracted);
        }
        QCOMPARE(QDir(box.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
            filesBelow(out).isEmpty() && !QFileInfo::exists(out) ? QStringList() : QStringList { "out" });

        QProcess cli;
        cli.start(QStringLiteral(TARNWICK_CLI), { QStringLiteral("pk3"), path });
        QVERIFY(cli.waitForFinished(20000));
        QCOMPARE(cli.exitStatus(), QProcess::NormalExit);
        QCOMPARE(cli.exitCode(), listed.isEmpty() ? 1 : 0);
    }

private:
    QTemporaryDir m_dir;
    QString archive(const QList<RawEntry> &entries, const QString &name = QStringLiteral("test.pk3"))
    {
        return writeTestFile(m_dir.filePath(name), zipBytes(entries));
    }
};

QTEST_GUILESS_MAIN(tst_cUnzip)
#include "tst_cUnzip.moc"

// The PK3 reader against archives written byte for byte here, so any name, flag or damage can be had.
#include "TestFiles.h"
#include "TestZip.h"
#include "cUnzip.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

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
        row("nested", { "models/players/sarge/head.md3", "autoexec.cfg" },
            { "models\\players\\sarge|head.md3", "|autoexec.cfg" });
        row("folder entries skipped", { "models/", "models/players/", "models/players/a.skin" },
            { "models\\players|a.skin" });
        row("folders only", { "maps/", "/", "maps/x/" }, {});
        row("leading slash stays", { "/abs/x", "/y" }, { "/abs|x", "|/y" });
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
        // Listing again appends; naming the archive again starts afresh.
        QVERIFY(zip.Directory());
        QCOMPARE(zip.FileCount(), 2 * listed.size());
        zip.setZipFile(zip.ZipFile());
        QCOMPARE(zip.FileCount(), 0);
    }

    void entryDetails()
    {
        const QByteArray text = QByteArray("seta cg_fov \"110\"\r\n").repeated(200);
        const QList<RawEntry> entries { { "stored", text }, { "deflated", text, true },
            { "encrypted", text, false, true }, { "empty" } };
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

    void unzipStaysInsideItsFolder()
    {
        QTemporaryDir dir;
        const QString out = dir.filePath(QStringLiteral("out"));
        QVERIFY(QDir().mkpath(out));
        QVERIFY(QFile::link(dir.path(), out + QStringLiteral("/link")));
        const QByteArray map = QByteArray("brush\n").repeated(500);
        QList<RawEntry> entries = named({ "b.cfg", "skip/me.txt", "../escape.txt", "/abs.txt", "C:evil.txt",
            "maps/../../up.txt", "\\back.txt", "link/through.txt", "./dot/ok.txt" });
        entries.prepend({ "maps/a.bsp", map, true });
        entries.append({ "locked.cfg", "x", false, true });
        cUnzip zip;
        zip.setZipFile(archive(entries));
        zip.UnzipFolder = out;
        QVERIFY(zip.Directory());
        zip.setFileSelected(3, false);
        QString error;
        QVERIFY(!zip.Unzip(&error));

        QCOMPARE(readTestFile(out + QStringLiteral("/maps/a.bsp")), map);
        QCOMPARE(readTestFile(out + QStringLiteral("/b.cfg")), QByteArray("data of b.cfg"));
        QCOMPARE(readTestFile(out + QStringLiteral("/dot/ok.txt")), QByteArray("data of ./dot/ok.txt"));
        QVERIFY(!QFile::exists(out + QStringLiteral("/skip/me.txt")));
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList { "out" });
        QVERIFY(!QFile::exists(QStringLiteral("/abs.txt")));
        const QStringList lines = error.split(u'\n');
        QCOMPARE(lines.size(), 7);
        const QStringList refused { "../escape.txt", "/abs.txt", "C:evil.txt", "maps/../../up.txt", "\\back.txt",
            "link/through.txt", "locked.cfg" };
        for (int i = 0; i < refused.size(); ++i)
            QVERIFY2(lines[i].startsWith(refused[i] + u':'), qPrintable(lines[i]));
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

private:
    QTemporaryDir m_dir;
    QString archive(const QList<RawEntry> &entries, const QString &name = QStringLiteral("test.pk3"))
    {
        return writeTestFile(m_dir.filePath(name), zipBytes(entries));
    }
};

QTEST_GUILESS_MAIN(tst_cUnzip)
#include "tst_cUnzip.moc"

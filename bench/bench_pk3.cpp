// bench_pk3: how long `tarnwick-cli pk3` takes to list PK3s of many small files, measured against
// `unzip -Z1` listing the same archive. A report, not a test: the exit status only says whether the run
// itself worked.
//
//   bench_pk3 [ENTRIES [KEEP_DIR]]
//
// ENTRIES defaults to 50000. The archives come in several shapes: stored and deflated, with and without folder
// entries, short and long names, written by libzip, Info-ZIP's zip and Python's zipfile; the goal holds for the
// worst. With KEEP_DIR each generated archive is copied there, e.g. to profile tarnwick-cli on the same input.

#include "BenchProcess.h"
#include "BenchRow.h"
#include "cUnzip.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <zip.h>

#include <cstdio>
#include <limits>
#include <optional>
#include <vector>

namespace {

constexpr int defaultEntryCount = 50000;
constexpr int runs = 5;

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

// The name of the entry `index`, in the folder `folder`: a game's data names, or long ones of a mod's.
QByteArray folderName(int folder, bool longNames)
{
    static const char *const areas[] = { "textures", "models/players", "sound/player", "maps", "scripts", "gfx/2d" };
    const QByteArray area = areas[folder % 6];
    if (longNames)
        return area + "/a_collection_of_community_made_things_" + QByteArray::number(folder / 40)
            + "/the_group_of_items_number_" + QByteArray::number(folder);
    return area + "/set" + QByteArray::number(folder / 40) + "/group" + QByteArray::number(folder);
}

QByteArray fileName(int folder, int file, bool longNames)
{
    static const char *const kinds[] = { ".tga", ".jpg", ".md3", ".wav", ".shader", ".skin" };
    const QByteArray kind = kinds[(folder + file) % 6];
    if (longNames)
        return "a_rather_long_descriptive_item_name_" + QByteArray::number(file) + "_weathered_stone_wall" + kind;
    return "item_" + QByteArray::number(file) + "_stone" + kind;
}

// Calls `add(folder, name)` for each folder before its files and `add(-1, name)` for each file: folders of 20 to
// 150 files each, three levels deep.
template <typename Add> void layOut(int entries, bool longNames, Add add)
{
    int added = 0;
    for (int folder = 0; added < entries; ++folder) {
        const QByteArray name = folderName(folder, longNames);
        add(folder, name);
        const int files = 20 + (folder * 37) % 131;
        for (int f = 0; f < files && added < entries; ++f, ++added)
            add(-1, name + '/' + fileName(folder, f, longNames));
    }
}

QByteArray sampleContent()
{
    QByteArray content;
    for (int i = 0; i < 4096; ++i)
        content += char('a' + (i * 7 + i / 13) % 26);
    return content;
}

// One shape of archive: who writes it and how.
struct Shape
{
    const char *name;
    enum Writer { Libzip, InfoZip, Python } writer;
    bool deflated;
    bool folderEntries;
    bool longNames;
};

const Shape shapes[] = {
    { "libzip, deflated, folders, short names", Shape::Libzip, true, true, false },
    { "libzip, stored, no folders, long names", Shape::Libzip, false, false, true },
    { "Info-ZIP, stored, no folders, short names", Shape::InfoZip, false, false, false },
    { "Info-ZIP, deflated, folders, long names", Shape::InfoZip, true, true, true },
    { "Python, stored, no folders, short names", Shape::Python, false, false, false },
    { "Python, deflated, folders, long names", Shape::Python, true, true, true },
};

// The archive written by libzip: file times a few minutes apart, small contents.
bool makeWithLibzip(const QString &path, int entries, const Shape &shape)
{
    const QByteArray content = sampleContent();
    int error = 0;
    zip_t *archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return false;
    bool ok = true;
    int added = 0;
    time_t when = 1104537600; // 2005-01-01
    layOut(entries, shape.longNames, [&](int folder, const QByteArray &name) {
        if (!ok)
            return;
        if (folder >= 0) {
            if (shape.folderEntries)
                ok = zip_dir_add(archive, name.constData(), ZIP_FL_ENC_UTF_8) >= 0;
            return;
        }
        const int size = 16 + (added * 97) % 900;
        zip_source_t *source = zip_source_buffer(archive, content.constData() + added % 2048, size, 0);
        const zip_int64_t index = source ? zip_file_add(archive, name.constData(), source, ZIP_FL_ENC_UTF_8) : -1;
        if (index < 0) {
            if (source)
                zip_source_free(source);
            ok = false;
            return;
        }
        zip_set_file_compression(archive, zip_uint64_t(index), shape.deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE, 0);
        when += 7 + added % 300;
        zip_file_set_mtime(archive, zip_uint64_t(index), when, 0);
        ++added;
    });
    if (!ok || zip_close(archive) != 0) {
        std::fprintf(stderr, "bench_pk3: can't write the archive: %s\n", zip_strerror(archive));
        zip_discard(archive);
        return false;
    }
    return true;
}

bool runQuietly(const QString &program, const QStringList &args, const QString &folder = {})
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, args);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        std::fprintf(stderr, "bench_pk3: %s failed: %s %s\n", qPrintable(program), qPrintable(process.errorString()),
            process.readAllStandardError().constData());
        return false;
    }
    return true;
}

// The archive written by Info-ZIP's zip from a tree of files made for it.
bool makeWithInfoZip(const QString &path, int entries, const Shape &shape, const QString &work)
{
    const QString tree = work + QStringLiteral("/tree-") + QString::number(shape.longNames);
    if (!QFileInfo::exists(tree)) {
        const QByteArray content = sampleContent();
        int added = 0;
        bool ok = true;
        layOut(entries, shape.longNames, [&](int folder, const QByteArray &name) {
            if (!ok)
                return;
            if (folder >= 0) {
                ok = QDir().mkpath(tree + u'/' + QString::fromUtf8(name));
                return;
            }
            QFile file(tree + u'/' + QString::fromUtf8(name));
            ok = file.open(QIODevice::WriteOnly) && file.write(content.constData(), 16 + (added++ * 97) % 900) > 0;
        });
        if (!ok) {
            std::fprintf(stderr, "bench_pk3: can't make the tree %s\n", qPrintable(tree));
            return false;
        }
    }
    QStringList args { QStringLiteral("-q"), QStringLiteral("-r") };
    if (!shape.deflated)
        args << QStringLiteral("-0");
    if (!shape.folderEntries)
        args << QStringLiteral("-D");
    return runQuietly(QStandardPaths::findExecutable(QStringLiteral("zip")), args << path << QStringLiteral("."), tree);
}

// The archive written by Python's zipfile.
bool makeWithPython(const QString &path, int entries, const Shape &shape)
{
    QByteArray names;
    layOut(entries, shape.longNames, [&](int folder, const QByteArray &name) {
        if (folder < 0)
            names += name + '\n';
        else if (shape.folderEntries)
            names += name + "/\n";
    });
    const QString list = path + QStringLiteral(".names");
    QFile file(list);
    if (!file.open(QIODevice::WriteOnly) || file.write(names) != names.size())
        return false;
    file.close();
    static const char script[]
        = "import sys, zipfile\n"
          "path, names, method = sys.argv[1], sys.argv[2], int(sys.argv[3])\n"
          "content = bytes(ord('a') + (i * 7 + i // 13) % 26 for i in range(4096))\n"
          "with zipfile.ZipFile(path, 'w', method) as z:\n"
          "    for n, name in enumerate(open(names).read().split('\\n')):\n"
          "        if not name: continue\n"
          "        info = zipfile.ZipInfo(name, (2005, 1, 1 + n % 28, n % 24, n % 60, 0))\n"
          "        info.compress_type = method\n"
          "        z.writestr(info, b'' if name.endswith('/') else content[:16 + n * 97 % 900])\n";
    return runQuietly(QStandardPaths::findExecutable(QStringLiteral("python3")),
        { QStringLiteral("-c"), QString::fromLatin1(script), path, list, QString::number(shape.deflated ? 8 : 0) });
}

bool makeArchive(const QString &path, int entries, const Shape &shape, const QString &work)
{
    switch (shape.writer) {
    case Shape::Libzip:
        return makeWithLibzip(path, entries, shape);
    case Shape::InfoZip:
        return makeWithInfoZip(path, entries, shape, work);
    case Shape::Python:
        return makeWithPython(path, entries, shape);
    }
    return false;
}

struct Timed
{
    qint64 nanoseconds = std::numeric_limits<qint64>::max();
    qsizetype lines = 0; // folder entries aside
    qsizetype folderLines = 0;
};

// Runs a program over the archive `runs` times, keeping the median time and the count of its output's lines.
std::optional<Timed> runProgram(const QString &program, const QStringList &args)
{
    const std::optional<BenchProcess::Timed> timed = BenchProcess::run("bench_pk3", program, args, runs);
    if (!timed)
        return std::nullopt;
    Timed best;
    best.nanoseconds = timed->nanoseconds;
    for (const QByteArray &line : timed->output.split('\n')) {
        if (!line.isEmpty())
            ++(line.endsWith('/') ? best.folderLines : best.lines);
    }
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    // As the programs do: the local zone looked up once, not for every entry's time.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
    QCoreApplication app(argc, argv);

    int entries = defaultEntryCount;
    if (argc > 1) {
        bool ok = false;
        entries = QByteArray(argv[1]).toInt(&ok);
        if (!ok || entries < 1 || entries > 1000000) {
            std::fprintf(stderr, "usage: bench_pk3 [ENTRIES [KEEP_DIR]]   (ENTRIES 1 to 1000000, default %d)\n",
                defaultEntryCount);
            return 2;
        }
    }
    const QString cli = QStringLiteral(TARNWICK_CLI);
    const QString unzip = QStandardPaths::findExecutable(QStringLiteral("unzip"));
    if (unzip.isEmpty()) {
        std::fprintf(stderr, "bench_pk3: unzip not found\n");
        return 1;
    }

    QTemporaryDir folder;
    if (!folder.isValid()) {
        std::fprintf(stderr, "bench_pk3: no temporary folder: %s\n", qPrintable(folder.errorString()));
        return 1;
    }
    std::printf("listing of generated PK3s of %d entries (median of %d)\n", entries, runs);
    std::printf("  %-44s %10s %10s %10s %7s\n", "shape", "cUnzip", "cli pk3", "unzip -Z1", "ratio");
    double worst = 0;
    double worstOurs = 0;
    double worstReference = 0;
    for (const Shape &shape : shapes) {
        const QString archive = folder.filePath(QStringLiteral("big.pk3"));
        QFile::remove(archive);
        if (!makeArchive(archive, entries, shape, folder.path()))
            return 1;
        // Listed in this process too: the reader alone, without starting a program.
        std::vector<qint64> inProcess;
        for (int run = 0; run < runs; ++run) {
            cUnzip zip;
            zip.setZipFile(archive);
            QString error;
            QElapsedTimer timer;
            timer.start();
            if (!zip.Directory(&error)) {
                std::fprintf(stderr, "bench_pk3: %s\n", qPrintable(error));
                return 1;
            }
            inProcess.push_back(timer.nsecsElapsed());
            if (zip.FileCount() != entries) {
                std::fprintf(
                    stderr, "bench_pk3: the reader listed %d entries, expected %d\n", zip.FileCount(), entries);
                return 1;
            }
        }
        const std::optional<Timed> tarnwick = runProgram(cli, { QStringLiteral("pk3"), archive });
        const std::optional<Timed> reference = runProgram(unzip, { QStringLiteral("-Z1"), archive });
        if (!tarnwick || !reference)
            return 1;
        // Both must have listed every file, or they did not read the archive we made.
        if (tarnwick->lines != entries || reference->lines != entries) {
            std::fprintf(stderr, "bench_pk3: %s: listed %lld and %lld files, expected %d\n", shape.name,
                static_cast<long long>(tarnwick->lines), static_cast<long long>(reference->lines), entries);
            return 1;
        }
        const double ratio = double(tarnwick->nanoseconds) / double(reference->nanoseconds);
        std::printf("  %-44s %7.1f ms %7.1f ms %7.1f ms %7.2f\n", shape.name, ms(BenchRow::median(inProcess)),
            ms(tarnwick->nanoseconds), ms(reference->nanoseconds), ratio);
        if (ratio > worst) {
            worst = ratio;
            worstOurs = ms(tarnwick->nanoseconds);
            worstReference = ms(reference->nanoseconds);
        }
        if (argc > 2) {
            const QString target = QFile::decodeName(argv[2]) + u'/'
                + QString::fromLatin1(shape.name).replace(QStringLiteral(", "), QStringLiteral("-")).replace(u' ', u'_')
                + QStringLiteral(".pk3");
            QFile::remove(target);
            QFile::copy(archive, target);
        }
    }
    std::printf("  libzip %s, %s\n", qPrintable(cUnzip::GetVersion()), qPrintable(unzip));
    if (entries == defaultEntryCount)
        BenchRow::ratio(
            "tarnwick-cli pk3, 50,000 entries, worst shape vs unzip -Z1", worstOurs, worstReference, "ms", 0.5);
    else
        std::printf("  (the goal, within 0.5x unzip, is set for %d entries)\n", defaultEntryCount);
    return 0;
}

// bench_pk3: how long `tarnwick-cli pk3` takes to list a PK3 of many small files, measured against
// `unzip -Z1` listing the same archive. A report, not a test: the exit status only says whether the run
// itself worked.
//
//   bench_pk3 [ENTRIES [KEEP_DIR]]
//
// ENTRIES defaults to 50000. With KEEP_DIR the generated archive is copied there (big.pk3), e.g. to
// profile tarnwick-cli on the same input.

#include "cUnzip.h"

#include <QCoreApplication>
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

namespace {

constexpr int defaultEntryCount = 50000;
constexpr int runs = 5;

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

// An archive laid out as a game's data: folders of 20 to 150 files each, three levels deep, a folder
// entry before each folder's files, file times a few minutes apart, small deflated contents. Returns
// how many folder entries it holds; nothing when it can't be written.
std::optional<int> makeArchive(const QString &path, int entries)
{
    static const char *const areas[] = { "textures", "models/players", "sound/player", "maps", "scripts", "gfx/2d" };
    static const char *const kinds[] = { ".tga", ".jpg", ".md3", ".wav", ".shader", ".skin" };
    QByteArray content;
    for (int i = 0; i < 4096; ++i)
        content += char('a' + (i * 7 + i / 13) % 26);

    int error = 0;
    zip_t *archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return std::nullopt;
    const auto fail = [&] {
        std::fprintf(stderr, "bench_pk3: can't write the archive: %s\n", zip_strerror(archive));
        zip_discard(archive);
        return std::nullopt;
    };
    int folders = 0;
    int added = 0;
    time_t when = 1104537600; // 2005-01-01
    for (int folder = 0; added < entries; ++folder) {
        const QByteArray name = QByteArray(areas[folder % 6]) + "/set" + QByteArray::number(folder / 40) + "/group"
            + QByteArray::number(folder);
        if (zip_dir_add(archive, name.constData(), ZIP_FL_ENC_UTF_8) < 0)
            return fail();
        ++folders;
        const int files = 20 + (folder * 37) % 131;
        for (int f = 0; f < files && added < entries; ++f, ++added) {
            const QByteArray file = name + "/item_" + QByteArray::number(f) + "_stone" + kinds[(folder + f) % 6];
            const int size = 16 + (added * 97) % 900;
            zip_source_t *source = zip_source_buffer(archive, content.constData() + added % 2048, size, 0);
            const zip_int64_t index = source ? zip_file_add(archive, file.constData(), source, ZIP_FL_ENC_UTF_8) : -1;
            if (index < 0) {
                if (source)
                    zip_source_free(source);
                return fail();
            }
            when += 7 + added % 300;
            zip_file_set_mtime(archive, zip_uint64_t(index), when, 0);
        }
    }
    if (zip_close(archive) != 0)
        return fail();
    return folders;
}

struct Timed
{
    qint64 nanoseconds = std::numeric_limits<qint64>::max();
    qsizetype lines = 0;
};

// Runs a program over the archive `runs` times, output thrown away, and keeps the best time; a last run
// captures the output to count its lines. Nothing when it can't be run.
std::optional<Timed> runProgram(const QString &program, const QStringList &args)
{
    const auto start = [&](QProcess &process) {
        process.start(program, args);
        if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            std::fprintf(stderr, "bench_pk3: %s failed: %s %s\n", qPrintable(program),
                qPrintable(process.errorString()), process.readAllStandardError().constData());
            return false;
        }
        return true;
    };
    Timed best;
    for (int run = 0; run < runs; ++run) {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        QElapsedTimer timer;
        timer.start();
        if (!start(process))
            return std::nullopt;
        best.nanoseconds = std::min(best.nanoseconds, timer.nsecsElapsed());
    }
    QProcess process;
    if (!start(process))
        return std::nullopt;
    best.lines = process.readAllStandardOutput().count('\n');
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
    const QString archive = folder.filePath(QStringLiteral("big.pk3"));
    const std::optional<int> folders = makeArchive(archive, entries);
    if (!folders)
        return 1;

    // Listed in this process: the reader alone, without starting a program. The first run may have to grow
    // the heap; the later ones reuse it.
    qint64 firstRun = 0;
    qint64 inProcess = std::numeric_limits<qint64>::max();
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
        const qint64 elapsed = timer.nsecsElapsed();
        inProcess = std::min(inProcess, elapsed);
        if (run == 0)
            firstRun = elapsed;
        if (zip.FileCount() != entries) {
            std::fprintf(stderr, "bench_pk3: the reader listed %d entries, expected %d\n", zip.FileCount(), entries);
            return 1;
        }
    }

    const std::optional<Timed> tarnwick = runProgram(cli, { QStringLiteral("pk3"), archive });
    const std::optional<Timed> reference = runProgram(unzip, { QStringLiteral("-Z1"), archive });
    if (!tarnwick || !reference)
        return 1;
    // Both must have listed every entry (unzip the folders too), or they did not read the archive we made.
    if (tarnwick->lines != entries || reference->lines != entries + *folders) {
        std::fprintf(stderr, "bench_pk3: listed %lld and %lld lines, expected %d and %d\n",
            static_cast<long long>(tarnwick->lines), static_cast<long long>(reference->lines), entries,
            entries + *folders);
        return 1;
    }

    if (argc > 2) {
        const QString target = QFile::decodeName(argv[2]) + QStringLiteral("/big.pk3");
        QFile::remove(target);
        if (!QFile::copy(archive, target)) {
            std::fprintf(stderr, "bench_pk3: can't copy to %s\n", qPrintable(target));
            return 1;
        }
    }

    const double ratio = double(tarnwick->nanoseconds) / double(reference->nanoseconds);
    std::printf("listing of a generated PK3 (best of %d)\n", runs);
    std::printf("  %-24s %12d (and %d folders)\n", "entries", entries, *folders);
    std::printf("  %-24s %12lld bytes (%.1f MiB)\n", "archive size", static_cast<long long>(QFileInfo(archive).size()),
        double(QFileInfo(archive).size()) / (1024.0 * 1024.0));
    std::printf(
        "  %-24s %12.1f ms   (libzip %s)\n", "cUnzip::Directory", ms(inProcess), qPrintable(cUnzip::GetVersion()));
    std::printf("  %-24s %12.1f ms\n", "  its first run", ms(firstRun));
    std::printf("  %-24s %12.1f ms\n", "tarnwick-cli pk3", ms(tarnwick->nanoseconds));
    std::printf("  %-24s %12.1f ms   (%s)\n", "unzip -Z1", ms(reference->nanoseconds), qPrintable(unzip));
    std::printf("  %-24s %12.2f\n", "ratio tarnwick / unzip", ratio);
    if (entries == defaultEntryCount)
        std::printf("  %-24s %12s\n", "goal: within 0.5x unzip", ratio <= 0.5 ? "PASS" : "ABOVE");
    else
        std::printf("  (the goal, within 0.5x unzip, is set for %d entries)\n", defaultEntryCount);
    return 0;
}

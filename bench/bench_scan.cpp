// bench_scan: how long `tarnwick-cli models` (the player model scan) and `tarnwick-cli demos` (the timedemo list)
// take over a game folder of 1,000 generated PK3s, plus Debian's OpenArena PK3s when a cache holds them, measured
// against `unzip -Z1` listing the same archives. A report, not a test: the exit status only says whether the run
// itself worked.
//
//   bench_scan [ARCHIVES [OPENARENA_DIR]]
//
// ARCHIVES defaults to 1000; OPENARENA_DIR to ~/.cache/tarnwick/game-check/root/usr/share/games/openarena/baseoa
// (scripts/check-player-models fills it). The folder's PK3s are linked into the game folder.
#include "BenchRow.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <zip.h>

#include <unistd.h>

#include <cstdio>
#include <optional>
#include <vector>

namespace {

constexpr int defaultArchives = 1000;
constexpr int runs = 5;

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

// A mod's or a map's archive: a player model with its skins in every fifth, a demo in every seventh, textures,
// sounds and a map in all. About 60 entries. The map, stored as game archives keep their maps, is 1 KB, 16 KB,
// 80 KB or 300 KB: a scan must be quick on large archives too, not only on small ones read whole.
bool makeArchive(const QString &path, int n)
{
    static const QByteArray noise = [] {
        QByteArray bytes(300 * 1024, Qt::Uninitialized);
        QRandomGenerator random(20051210);
        random.fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
        return bytes;
    }();
    static constexpr qsizetype mapSizes[] = { 1024, 16 * 1024, 80 * 1024, 300 * 1024 };
    int error = 0;
    zip_t *archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return false;
    static const char content[] = "a small file of a generated archive, deflated or not as libzip likes";
    QList<QByteArray> names;
    const QByteArray tag = QByteArray::number(n);
    if (n % 5 == 0) {
        for (const char *part : { "head", "upper", "lower" })
            names << "models/players/m" + tag + '/' + part + ".md3";
        for (const char *skin : { "default", "red", "blue" }) {
            names << "models/players/m" + tag + "/icon_" + skin + ".tga";
            names << "models/players/m" + tag + "/upper_" + skin + ".skin";
        }
    }
    if (n % 7 == 0)
        names << "demos/demo" + tag + ".dm_68";
    for (int i = 0; i < 40; ++i)
        names << "textures/map" + tag + "/wall_" + QByteArray::number(i) + ".jpg";
    for (int i = 0; i < 8; ++i)
        names << "sound/map" + tag + "/noise_" + QByteArray::number(i) + ".wav";
    names << "levelshots/map" + tag + ".jpg"
          << "scripts/map" + tag + ".shader";
    for (const QByteArray &name : names) {
        zip_source_t *source = zip_source_buffer(archive, content, sizeof content - 1, 0);
        if (!source || zip_file_add(archive, name.constData(), source, 0) < 0) {
            if (source)
                zip_source_free(source);
            zip_discard(archive);
            return false;
        }
    }
    zip_source_t *map = zip_source_buffer(archive, noise.constData(), zip_uint64_t(mapSizes[n % 4]), 0);
    const zip_int64_t index = map ? zip_file_add(archive, ("maps/map" + tag + ".bsp").constData(), map, 0) : -1;
    if (index < 0 || zip_set_file_compression(archive, zip_uint64_t(index), ZIP_CM_STORE, 0) < 0) {
        if (map && index < 0)
            zip_source_free(map);
        zip_discard(archive);
        return false;
    }
    return zip_close(archive) == 0;
}

// One run of a program, output thrown away: its time, or nothing when it can't be run; the lines of its output
// in *lines.
std::optional<qint64> runOnce(const QString &program, const QStringList &args, qsizetype *lines)
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(program, args);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        std::fprintf(stderr, "bench_scan: %s failed: %s %s\n", qPrintable(program), qPrintable(process.errorString()),
            process.readAllStandardError().constData());
        return std::nullopt;
    }
    const qint64 elapsed = timer.nsecsElapsed();
    *lines = process.readAllStandardOutput().count('\n');
    return elapsed;
}

struct Program
{
    QString program;
    QStringList args;
    std::vector<qint64> times;
    qsizetype lines = 0;
};

// Runs the programs in turn, once to warm the caches, then `runs` rounds: whatever else the machine does in a
// moment weighs on all of them alike. False when one can't be run.
bool timeInTurn(std::vector<Program> &programs)
{
    for (int round = -1; round < runs; ++round) {
        for (Program &p : programs) {
            const std::optional<qint64> time = runOnce(p.program, p.args, &p.lines);
            if (!time)
                return false;
            if (round >= 0)
                p.times.push_back(*time);
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int archives = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : defaultArchives;
    const QString openArena = argc > 2
        ? QFile::decodeName(argv[2])
        : QDir::homePath() + "/.cache/tarnwick/game-check/root/usr/share/games/openarena/baseoa";
    const QString cli = QStringLiteral(TARNWICK_CLI);
    const QString unzip = QStandardPaths::findExecutable(QStringLiteral("unzip"));
    QTemporaryDir folder;
    if (unzip.isEmpty() || !folder.isValid()) {
        std::fprintf(stderr, "bench_scan: no unzip or no temporary folder\n");
        return 1;
    }
    // The game: a program file (empty will do) beside baseq3, and a home without a game data folder.
    const QDir root(folder.path());
    root.mkpath("game/baseq3");
    root.mkpath("home");
    QFile program(root.filePath("game/ioquake3.x86_64"));
    if (!program.open(QIODevice::WriteOnly))
        return 1;
    program.setPermissions(program.permissions() | QFile::ExeOwner);
    program.close();
    qputenv("HOME", QFile::encodeName(root.filePath("home")));
    const QString baseq3 = root.filePath("game/baseq3");
    for (int n = 0; n < archives; ++n) {
        if (!makeArchive(baseq3 + QStringLiteral("/z%1.pk3").arg(n, 4, 10, QLatin1Char('0')), n)) {
            std::fprintf(stderr, "bench_scan: can't write archive %d\n", n);
            return 1;
        }
    }
    int linked = 0;
    for (const QFileInfo &pk3 : QDir(openArena).entryInfoList({ QStringLiteral("*.pk3") }, QDir::Files))
        linked += QFile::link(pk3.absoluteFilePath(), baseq3 + u'/' + pk3.fileName()) ? 1 : 0;

    // The archives just written are on the disk before anything is timed, so their write-back weighs on no run.
    ::sync();
    std::vector<Program> programs {
        { cli, { QStringLiteral("models"), root.filePath("game") }, {}, 0 },
        { cli, { QStringLiteral("demos"), root.filePath("game") }, {}, 0 },
        { unzip, { QStringLiteral("-Z1"), baseq3 + QStringLiteral("/*.pk3") }, {}, 0 },
    };
    if (!timeInTurn(programs))
        return 1;
    const qsizetype models = programs[0].lines, demos = programs[1].lines, listed = programs[2].lines;
    const qint64 ourModels = BenchRow::median(programs[0].times);
    const qint64 ourDemos = BenchRow::median(programs[1].times);
    const qint64 reference = BenchRow::median(programs[2].times);
    // Each generated model and demo must be there, or the scans did not read the archives made.
    if (models < archives / 5 || demos < archives / 7) {
        std::fprintf(stderr, "bench_scan: found %lld model lines and %lld demos\n", static_cast<long long>(models),
            static_cast<long long>(demos));
        return 1;
    }
    std::printf(
        "scans of a game folder of %d generated PK3s and %d of OpenArena (median of %d)\n", archives, linked, runs);
    std::printf(
        "  %-24s %10.1f ms  (%lld lines)\n", "tarnwick-cli models", ms(ourModels), static_cast<long long>(models));
    std::printf("  %-24s %10.1f ms  (%lld lines)\n", "tarnwick-cli demos", ms(ourDemos), static_cast<long long>(demos));
    std::printf(
        "  %-24s %10.1f ms  (%lld lines)\n", "unzip -Z1 over them", ms(reference), static_cast<long long>(listed));
    if (archives == defaultArchives) {
        BenchRow::ratio("model scan, 1,000 PK3s + OpenArena's vs unzip -Z1", ms(ourModels), ms(reference), "ms", 0.2);
        BenchRow::ratio("demo list, 1,000 PK3s + OpenArena's vs unzip -Z1", ms(ourDemos), ms(reference), "ms", 0.2);
    }
    return 0;
}

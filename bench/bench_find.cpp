// bench_find: how long `tarnwick-cli find` takes to walk a generated tree of many folders and files for
// q3config.cfg, measured against `find ROOT -iname q3config.cfg` walking the same tree. A report, not a test: the
// exit status only says whether the run itself worked.
//
//   bench_find [FILES [KEEP_DIR]]
//
// FILES defaults to 300000, in a tenth as many folders. With KEEP_DIR the tree is made there (and left) instead
// of in a temporary folder, e.g. to profile tarnwick-cli on the same input.

#include "BenchProcess.h"
#include "BenchRow.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int defaultFileCount = 300000;
constexpr int runs = 5;

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

// A tree laid out as a disk's: folders of uneven size and depth, names of mixed case and length, some hidden
// folders, the configuration files in a few of them under several spellings. Returns the paths of those;
// nothing when the tree can't be made.
std::optional<QList<QByteArray>> makeTree(const QByteArray &root, int files)
{
    static const char *const stems[] = { "Documents", "baseq3", "textures", "Steam", ".local", "music", "src",
        "Pictures", "missionpack", "cache", "models", "backup 2004", "osp", "share", "demos", "screenshots" };
    static const char *const kinds[] = { ".cfg", ".pk3", ".jpg", ".txt", ".dm_68", ".tga", ".wav", "", ".html" };
    static const char *const spellings[] = { "q3config.cfg", "Q3CONFIG.CFG", "Q3Config.cfg", "q3config.CFG" };
    QRandomGenerator random(20050101);
    const int folderCount = std::max(1, files / 10);
    QList<QByteArray> folders { root };
    QList<QByteArray> configs;
    for (int i = 1; i < folderCount; ++i) {
        // Each new folder under one made before it, more often under a recent one: deep chains and wide levels.
        const qsizetype recent = std::max<qsizetype>(0, folders.size() - 200);
        const qsizetype parent = random.bounded(4) == 0 ? random.bounded(folders.size())
                                                        : recent + random.bounded(folders.size() - recent);
        const QByteArray folder = folders[parent] + '/' + stems[random.bounded(16)] + '_' + QByteArray::number(i);
        if (::mkdir(folder.constData(), 0755) != 0) {
            std::perror(folder.constData());
            return std::nullopt;
        }
        folders.append(folder);
    }
    for (int i = 0; i < files; ++i) {
        // Uneven folder sizes: most files land in the first folders of a random pick of two.
        const qsizetype folder = std::min(random.bounded(folders.size()), random.bounded(folders.size()));
        QByteArray path = folders[folder] + '/';
        if (i % (files / 7 + 1) == files / 14)
            configs.append(path += spellings[configs.size() % 4]);
        else
            path += QByteArray(stems[random.bounded(16)]) + '-' + QByteArray::number(i) + kinds[random.bounded(9)];
        const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0) {
            std::perror(path.constData());
            return std::nullopt;
        }
        ::close(fd);
    }
    return configs;
}

struct Timed
{
    qint64 nanoseconds = std::numeric_limits<qint64>::max();
    QList<QByteArray> lines;
};

// Runs a program once to warm the caches, then `runs` times, keeping the median time and the lines of its output.
std::optional<Timed> runProgram(const QString &program, const QStringList &args)
{
    const std::optional<BenchProcess::Timed> timed = BenchProcess::run("bench_find", program, args, runs, 1);
    if (!timed)
        return std::nullopt;
    Timed best;
    best.nanoseconds = timed->nanoseconds;
    best.lines = timed->output.split('\n');
    best.lines.removeAll(QByteArray());
    return best;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);

    int files = defaultFileCount;
    if (argc > 1) {
        bool ok = false;
        files = QByteArray(argv[1]).toInt(&ok);
        if (!ok || files < 10 || files > 5000000) {
            std::fprintf(
                stderr, "usage: bench_find [FILES [KEEP_DIR]]   (FILES 10 to 5000000, default %d)\n", defaultFileCount);
            return 2;
        }
    }
    const QString cli = QStringLiteral(TARNWICK_CLI);
    const QString find = QStandardPaths::findExecutable(QStringLiteral("find"));
    if (find.isEmpty()) {
        std::fprintf(stderr, "bench_find: find not found\n");
        return 1;
    }

    QTemporaryDir temporary;
    QString root;
    if (argc > 2) {
        root = QDir(QFile::decodeName(argv[2])).absoluteFilePath(QStringLiteral("tree"));
        if (QFileInfo::exists(root) || !QDir().mkpath(root)) {
            std::fprintf(stderr, "bench_find: %s exists already or can't be made\n", qPrintable(root));
            return 1;
        }
    } else {
        if (!temporary.isValid()) {
            std::fprintf(stderr, "bench_find: no temporary folder: %s\n", qPrintable(temporary.errorString()));
            return 1;
        }
        root = temporary.filePath(QStringLiteral("tree"));
        QDir().mkpath(root);
    }
    QElapsedTimer making;
    making.start();
    const std::optional<QList<QByteArray>> configs = makeTree(QFile::encodeName(root), files);
    if (!configs)
        return 1;
    const qint64 madeIn = making.nsecsElapsed();

    const std::optional<Timed> tarnwick = runProgram(cli, { QStringLiteral("find"), root });
    const std::optional<Timed> reference
        = runProgram(find, { root, QStringLiteral("-iname"), QStringLiteral("q3config.cfg") });
    if (!tarnwick || !reference)
        return 1;
    // Both must have found every file made, or they did not walk the tree we made.
    QList<QByteArray> expected = *configs;
    QList<QByteArray> listed = tarnwick->lines;
    QList<QByteArray> listedByFind = reference->lines;
    std::sort(expected.begin(), expected.end());
    std::sort(listed.begin(), listed.end());
    std::sort(listedByFind.begin(), listedByFind.end());
    if (listed != expected || listedByFind != expected) {
        std::fprintf(stderr, "bench_find: found %lld and %lld files, made %lld\n",
            static_cast<long long>(listed.size()), static_cast<long long>(listedByFind.size()),
            static_cast<long long>(expected.size()));
        return 1;
    }

    const double ratio = double(tarnwick->nanoseconds) / double(reference->nanoseconds);
    std::printf("walk of a generated tree for q3config.cfg (median of %d, caches warm)\n", runs);
    std::printf("  %-24s %12d in %d folders, %lld matches (made in %.1f s)\n", "files", files, std::max(1, files / 10),
        static_cast<long long>(configs->size()), double(madeIn) / 1e9);
    std::printf("  %-24s %12.1f ms\n", "tarnwick-cli find", ms(tarnwick->nanoseconds));
    std::printf("  %-24s %12.1f ms   (%s)\n", "find -iname", ms(reference->nanoseconds), qPrintable(find));
    std::printf("  %-24s %12.2f\n", "ratio tarnwick / find", ratio);
    if (files == defaultFileCount) {
        std::printf("  %-24s %12s\n", "goal: within 1.2x find", ratio <= 1.2 ? "PASS" : "ABOVE");
        BenchRow::ratio("config search, 300,000 files vs find -iname", ms(tarnwick->nanoseconds),
            ms(reference->nanoseconds), "ms", 1.2);
    } else
        std::printf("  (the goal, within 1.2x find, is set for %d files)\n", defaultFileCount);
    return 0;
}

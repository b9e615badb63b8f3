// bench_startup: how long Tarnwick takes from the start of its process to its main window shown and the event
// loop idle (TARNWICK_QUIT_WHEN_IDLE=1 ends it there), and how much memory it holds at its peak, measured
// against bench_minimal_window, a program that shows one empty window of the same size. A report, not a test:
// the exit status only says whether the run itself worked.
//
//   bench_startup [RUNS]
//
// Both run offscreen unless QT_QPA_PLATFORM says otherwise, from a copy in a temporary folder with a home of
// their own, so no settings file or file type of the player's is read or written.
#include "BenchRow.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct Run
{
    qint64 nanoseconds = 0;
    long peakKb = 0;
};

// One start of `program`, to its end; nothing when it can't be started or does not end well.
std::optional<Run> runOnce(const QByteArray &program)
{
    QElapsedTimer timer;
    timer.start();
    const pid_t child = fork();
    if (child < 0)
        return std::nullopt;
    if (child == 0) {
        // What the platform plugin has to say about the window is no concern here.
        if (const int null = open("/dev/null", O_WRONLY); null >= 0)
            dup2(null, STDERR_FILENO);
        char *const args[] = { const_cast<char *>(program.constData()), nullptr };
        execv(program.constData(), args);
        _exit(127);
    }
    int status = 0;
    rusage usage {};
    if (wait4(child, &status, 0, &usage) != child)
        return std::nullopt;
    const qint64 elapsed = timer.nsecsElapsed();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "bench_startup: %s did not end well (status %d)\n", program.constData(), status);
        return std::nullopt;
    }
    return Run { elapsed, usage.ru_maxrss };
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    int runs = 11;
    if (argc > 1)
        runs = std::max(1, QByteArray(argv[1]).toInt());

    QTemporaryDir folder;
    if (!folder.isValid()) {
        std::fprintf(stderr, "bench_startup: no temporary folder: %s\n", qPrintable(folder.errorString()));
        return 1;
    }
    const QDir root(folder.path());
    for (const char *sub : { "prog", "home", "run" })
        root.mkpath(QString::fromLatin1(sub));
    // A desktop session's runtime folder lives in memory (/run/user/UID); so does this one where the machine has
    // such a folder to offer.
    QTemporaryDir memoryFolder(QStringLiteral("/dev/shm/bench_startup-XXXXXX"));
    const QString runtime = memoryFolder.isValid() ? memoryFolder.path() : root.filePath("run");
    QFile(runtime).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString tarnwick = root.filePath("prog/tarnwick");
    const QString minimal = root.filePath("prog/bench_minimal_window");
    // The program comes with the HUD preview's sheet beside it, as it is built and installed.
    root.mkpath(QStringLiteral("prog/Images"));
    const QString sheet = QFileInfo(QStringLiteral(TARNWICK_EXE)).dir().filePath(QStringLiteral("Images/hud.img"));
    if (!QFile::copy(QStringLiteral(TARNWICK_EXE), tarnwick) || !QFile::copy(QStringLiteral(MINIMAL_EXE), minimal)
        || !QFile::copy(sheet, root.filePath("prog/Images/hud.img"))) {
        std::fprintf(stderr, "bench_startup: can't copy the programs into %s\n", qPrintable(root.path()));
        return 1;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("TARNWICK_QUIT_WHEN_IDLE", "1");
    qputenv("HOME", QFile::encodeName(root.filePath("home")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(root.filePath("home/data")));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(root.filePath("home/config")));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));

    // Taken in turns, so a busy moment of the machine falls on both alike; one start of each first warms the caches.
    std::vector<qint64> ourTimes, minimalTimes, ourPeaks, minimalPeaks;
    for (int run = -1; run < runs; ++run) {
        const std::optional<Run> ours = runOnce(QFile::encodeName(tarnwick));
        const std::optional<Run> reference = runOnce(QFile::encodeName(minimal));
        if (!ours || !reference)
            return 1;
        if (run < 0)
            continue;
        ourTimes.push_back(ours->nanoseconds);
        minimalTimes.push_back(reference->nanoseconds);
        ourPeaks.push_back(ours->peakKb);
        minimalPeaks.push_back(reference->peakKb);
    }
    const double ourMs = ms(BenchRow::median(ourTimes));
    const double minimalMs = ms(BenchRow::median(minimalTimes));
    const double ourMiB = double(BenchRow::median(ourPeaks)) / 1024.0;
    const double minimalMiB = double(BenchRow::median(minimalPeaks)) / 1024.0;
    std::printf("start-up to the main window shown and idle (median of %d, %s)\n", runs,
        qgetenv("QT_QPA_PLATFORM").constData());
    std::printf("  %-24s %10.1f ms %10.1f MiB peak\n", "tarnwick", ourMs, ourMiB);
    std::printf("  %-24s %10.1f ms %10.1f MiB peak\n", "minimal window", minimalMs, minimalMiB);
    std::printf("  %-24s %10.2f    %10.2f\n", "ratio", ourMs / minimalMs, ourMiB / minimalMiB);
    // Offscreen is the row of the table; on a display the rows say which.
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const QByteArray on = platform == "offscreen" ? QByteArray() : " (" + platform + ')';
    BenchRow::ratio(("start-up to the window shown and idle" + on).constData(), ourMs, minimalMs, "ms", 1.5);
    BenchRow::ratio(("peak resident memory of that start-up" + on).constData(), ourMiB, minimalMiB, "MiB", 1.3);
    return 0;
}

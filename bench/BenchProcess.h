// BenchProcess: a program timed as the benches time their programs and the references beside them.
#pragma once

#include "BenchRow.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>

#include <cstdio>
#include <optional>

namespace BenchProcess {

struct Timed
{
    qint64 nanoseconds = 0; // the median of the timed runs
    QByteArray output; // of one more run, captured
};

/// Runs `program` `warmUps` times untimed, then `runs` times with its output thrown away, keeping the median
/// time; one last run captures the output. Nothing, said on standard error under `bench`'s name, when a run
/// fails.
inline std::optional<Timed> run(
    const char *bench, const QString &program, const QStringList &args, int runs, int warmUps = 0)
{
    const auto start = [&](QProcess &process) {
        process.start(program, args);
        if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
            std::fprintf(stderr, "%s: %s failed: %s %s\n", bench, qPrintable(program),
                qPrintable(process.errorString()), process.readAllStandardError().constData());
            return false;
        }
        return true;
    };
    std::vector<qint64> times;
    for (int run = -warmUps; run < runs; ++run) {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        QElapsedTimer timer;
        timer.start();
        if (!start(process))
            return std::nullopt;
        if (run >= 0)
            times.push_back(timer.nsecsElapsed());
    }
    QProcess process;
    if (!start(process))
        return std::nullopt;
    return Timed { BenchRow::median(times), process.readAllStandardOutput() };
}

} // namespace BenchProcess

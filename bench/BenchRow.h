// BenchRow: the one line each bench gives scripts/bench for its table, besides its own report.
//
//   ROW <tab> what <tab> ours <tab> reference <tab> unit <tab> ratio <tab> goal <tab> PASS|ABOVE
//
// A row without a reference has "-" in the reference and ratio columns.
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace BenchRow {

/// The median of some timings (the upper one of an even count).
inline qint64 median(std::vector<qint64> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// A row held to a ratio: ours / reference at most `maxRatio`.
inline void ratio(const char *what, double ours, double reference, const char *unit, double maxRatio)
{
    const double r = reference > 0 ? ours / reference : 0.0;
    std::printf("ROW\t%s\t%.1f\t%.1f\t%s\t%.2f\t<= %gx\t%s\n", what, ours, reference, unit, r, maxRatio,
        reference > 0 && r <= maxRatio ? "PASS" : "ABOVE");
    std::fflush(stdout);
}

/// A row held to a limit of its own: ours below `limit`.
inline void limit(const char *what, double ours, const char *unit, double below)
{
    std::printf(
        "ROW\t%s\t%.1f\t-\t%s\t-\t< %g %s\t%s\n", what, ours, unit, below, unit, ours < below ? "PASS" : "ABOVE");
    std::fflush(stdout);
}

} // namespace BenchRow

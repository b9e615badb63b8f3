// The libFuzzer entry of one target, named by TARNWICK_FUZZ_TARGET when it is built (fuzz_NAME runs target NAME).
// A broken property aborts, so libFuzzer keeps the input; so does any sanitizer report.

#include "FuzzTargets.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzTargets::Target *target = [] {
        const FuzzTargets::Target *found = FuzzTargets::find(QStringLiteral(TARNWICK_FUZZ_TARGET));
        if (!found) {
            std::fprintf(stderr, "fuzz: no target \"%s\"\n", TARNWICK_FUZZ_TARGET);
            std::abort();
        }
        return found;
    }();
    const QString problem = target->check(QByteArrayView(data, qsizetype(size)));
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "fuzz_%s: %s\n", target->name, problem.toLocal8Bit().constData());
        std::abort();
    }
    return 0;
}

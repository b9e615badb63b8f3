// fuzz_reader: libFuzzer target for the reader and the writer.
//
// The first input byte picks the scope of the first read (byte % 5, as FileScope: 0 whole file,
// 1 renderer, 2 controls, 3 HUD, 4 railgun); the remaining bytes are the configuration file.
// The file is read into a freshly started document and written whole. That output is then read
// (whole file) into another fresh document and written again, and once more. The first rewrite may
// still change things (a comment on the last line only goes once that line is no longer last, lines
// of other areas are only taken by a whole read), but from then on the output must not change:
// the second and third writes must be byte for byte the same. Anything else aborts.

#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

QByteArray readThenWrite(const QByteArray &fileBytes, FileScope scope)
{
    ConfigDocument doc;
    StartUpDocument(doc);
    ConfigReader::applyWorkingCopy(doc, ConfigReader::workingCopy(fileBytes), scope);
    return ConfigWriter::fileBytes(doc, FileScope::Whole);
}

// Prints the first line where the two writes part, with a little context, then aborts.
[[noreturn]] void reportUnsettled(const QByteArray &second, const QByteArray &third)
{
    const QList<QByteArray> a = second.split('\n');
    const QList<QByteArray> b = third.split('\n');
    qsizetype line = 0;
    while (line < a.size() && line < b.size() && a[line] == b[line])
        ++line;
    std::fprintf(stderr, "fuzz_reader: the written file did not settle: writes 2 and 3 differ at line %lld\n",
        static_cast<long long>(line + 1));
    std::fprintf(stderr, "  write 2 (%lld bytes): %s\n", static_cast<long long>(second.size()),
        line < a.size() ? a[line].toPercentEncoding(" \"\\/").constData() : "<end>");
    std::fprintf(stderr, "  write 3 (%lld bytes): %s\n", static_cast<long long>(third.size()),
        line < b.size() ? b[line].toPercentEncoding(" \"\\/").constData() : "<end>");
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto scope = static_cast<FileScope>(data[0] % 5);
    const QByteArray file(reinterpret_cast<const char *>(data + 1), static_cast<qsizetype>(size - 1));

    const QByteArray first = readThenWrite(file, scope);
    const QByteArray second = readThenWrite(first, FileScope::Whole);
    const QByteArray third = readThenWrite(second, FileScope::Whole);
    if (third != second)
        reportUnsettled(second, third);
    return 0;
}

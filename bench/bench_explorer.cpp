// bench_explorer: how long the PK3 Explorer takes from LoadPK3 to a 50,000-entry archive's list shown and sorted
// by name (offscreen). A report, not a test: the exit status only says whether the run itself worked.
//
//   bench_explorer [ENTRIES]
#include "BenchRow.h"
#include "Pk3ExplorerPage.h"
#include "Prompts.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QTableView>
#include <QTemporaryDir>

#include <zip.h>

#include <cstdio>
#include <vector>

namespace {

constexpr int defaultEntries = 50000;
constexpr int runs = 5;

// A game's data: folders of 20 to 150 files, several kinds of file, stored.
bool makeArchive(const QString &path, int entries)
{
    static const char *const areas[] = { "textures", "models/players", "sound/player", "maps", "scripts", "gfx/2d" };
    static const char *const kinds[] = { ".tga", ".jpg", ".md3", ".wav", ".shader", ".skin" };
    int error = 0;
    zip_t *archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return false;
    int added = 0;
    for (int folder = 0; added < entries; ++folder) {
        const QByteArray name = QByteArray(areas[folder % 6]) + "/set" + QByteArray::number(folder / 40) + "/group"
            + QByteArray::number(folder);
        const int files = 20 + (folder * 37) % 131;
        for (int f = 0; f < files && added < entries; ++f, ++added) {
            const QByteArray file
                = name + "/item_" + QByteArray::number((f * 7919) % 1000) + "_stone" + kinds[(folder + f) % 6];
            zip_source_t *source = zip_source_buffer(archive, "x", 1, 0);
            if (!source || zip_file_add(archive, file.constData(), source, 0) < 0) {
                if (source)
                    zip_source_free(source);
                zip_discard(archive);
                return false;
            }
        }
    }
    return zip_close(archive) == 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int entries = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : defaultEntries;
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("big.pk3"));
    if (!folder.isValid() || !makeArchive(path, entries)) {
        std::fprintf(stderr, "bench_explorer: can't write the archive\n");
        return 1;
    }
    Prompts::setNextAnswers({}); // no box may wait for a person

    Pk3ExplorerPage page;
    page.resize(640, 400);
    page.show();
    auto *list = page.findChild<QTableView *>();
    if (!list) {
        std::fprintf(stderr, "bench_explorer: the page has no list\n");
        return 1;
    }
    Q_EMIT list->horizontalHeader()->sectionClicked(Pk3ExplorerPage::NameColumn); // sorted by name from here on
    QApplication::processEvents();

    std::vector<qint64> times;
    for (int run = 0; run < runs; ++run) {
        page.ClosePK3();
        QApplication::processEvents();
        QElapsedTimer timer;
        timer.start();
        if (!page.LoadPK3(path) || page.reader().FileCount() != entries) {
            std::fprintf(stderr, "bench_explorer: the page did not show the archive\n");
            return 1;
        }
        QApplication::processEvents();
        list->viewport()->repaint();
        times.push_back(timer.nsecsElapsed());
    }
    const double median = double(BenchRow::median(times)) / 1e6;
    std::printf("PK3 Explorer: LoadPK3 to a %d-entry list shown and sorted by name (median of %d, %s)\n", entries, runs,
        qgetenv("QT_QPA_PLATFORM").constData());
    std::printf("  %-24s %10.1f ms\n", "LoadPK3 to shown", median);
    if (entries == defaultEntries)
        BenchRow::limit("PK3 Explorer: LoadPK3 to 50,000 entries shown and sorted", median, "ms", 300);
    return 0;
}

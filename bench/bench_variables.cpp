// bench_variables: whether the All Variables page filters a table of 2,000 variables as the player types without
// a pause he could see. Each keystroke (the filter, the view's update and one repaint of the table) is measured
// against a plain repaint of the same table, in the same window and process. A report, not a test: the exit
// status only says whether the run itself worked.
//
//   bench_variables [VARIABLES]
//
// VARIABLES (catalogued settings included) defaults to 2000. Runs on the offscreen platform unless
// QT_QPA_PLATFORM says otherwise.

#include "AllVariablesPage.h"
#include "DocumentCommands.h"
#include "Prompts.h"
#include "VariablesModel.h"
#include "frmMain.h"

#include "BenchRow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <vector>

namespace {

constexpr int defaultVariables = 2000;
constexpr int runs = 5;

// The names and values of a large modded configuration: the game's prefixes, a mod's own, numbers and words.
QByteArray makeConfig(int keptLines)
{
    static const std::array<const char *, 12> prefixes { "cg_", "r_", "cl_", "com_", "s_", "m_", "in_", "ch_", "cp_",
        "osp_", "df_", "ui_" };
    static const std::array<const char *, 16> words { "draw", "hud", "color", "font", "scale", "team", "chat", "weapon",
        "sound", "mouse", "filter", "time", "speed", "line", "crosshair", "model" };
    static const std::array<const char *, 8> texts { "sarge/default", "^1Rail^7God", "0xff00ff", "GL_LINEAR", "Big Bad",
        "1 2 3 4", "keel/red", "stats.cfg" };
    quint64 state = 19; // a fixed stream, the same on every run
    const auto next = [&state](int n) {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return int((state >> 33) % quint64(n));
    };
    QByteArray file;
    for (int i = 0; i < keptLines; ++i) {
        QByteArray name = prefixes[size_t(next(int(prefixes.size())))];
        name += words[size_t(next(int(words.size())))];
        name += words[size_t(next(int(words.size())))] + QByteArray::number(i);
        const QByteArray value
            = next(3) == 0 ? QByteArray(texts[size_t(next(int(texts.size())))]) : QByteArray::number(next(2000) - 100);
        file += (next(8) == 0 ? "set " : "seta ") + name + " \"" + value + "\"\r\n";
    }
    return file;
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    int variables = defaultVariables;
    if (argc > 1) {
        bool ok = false;
        variables = QByteArray(argv[1]).toInt(&ok);
        if (!ok || variables < 100) {
            std::fprintf(stderr, "usage: bench_variables [VARIABLES]   (at least 100, default %d)\n", defaultVariables);
            return 2;
        }
    }

    QTemporaryDir folder;
    if (!folder.isValid()) {
        std::fprintf(stderr, "bench_variables: no temporary folder: %s\n", qPrintable(folder.errorString()));
        return 1;
    }
    frmMain window;
    window.show();
    const int settings = window.variablesPage()->model()->settingCount();
    const QString path = folder.filePath(QStringLiteral("q3config.cfg"));
    {
        const QByteArray content = makeConfig(variables - settings);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush()) {
            std::fprintf(stderr, "bench_variables: can't write %s\n", qPrintable(path));
            return 1;
        }
    }
    Prompts::setNextAnswers({}); // no box may wait for a person
    if (!window.documentCommands().OpenCfg(path)) {
        std::fprintf(stderr, "bench_variables: can't open %s\n", qPrintable(path));
        return 1;
    }
    window.SelectPage(Page::AllVariables);
    QApplication::processEvents();
    AllVariablesPage *page = window.variablesPage();
    QTableView *view = page->view();
    auto *field = page->findChild<QLineEdit *>(QStringLiteral("txtFilter"));
    if (page->model()->rowCount() != variables || !field) {
        std::fprintf(
            stderr, "bench_variables: the table holds %d variables, not %d\n", page->model()->rowCount(), variables);
        return 1;
    }

    // What the player types, one keystroke at a time, and then takes back: the last keystroke of each word
    // shows the whole table again.
    QStringList steps;
    for (const QString &word : { QStringLiteral("cg_draw"), QStringLiteral("CROSSHAIR"), QStringLiteral("1"),
             QStringLiteral("sarge"), QStringLiteral("zzq") }) {
        for (qsizetype n = 1; n <= word.size(); ++n)
            steps << word.left(n);
        for (qsizetype n = word.size() - 1; n >= 0; --n)
            steps << word.left(n);
    }
    // Each keystroke's best of the runs, so another program's work on the machine doesn't count.
    std::vector<qint64> keystrokes(size_t(steps.size()), std::numeric_limits<qint64>::max());
    std::vector<qint64> repaints;
    QElapsedTimer timer;
    for (int run = 0; run < runs; ++run) {
        for (qsizetype step = 0; step < steps.size(); ++step) {
            timer.start();
            field->setText(steps[step]);
            QApplication::processEvents();
            view->viewport()->repaint();
            keystrokes[size_t(step)] = std::min(keystrokes[size_t(step)], timer.nsecsElapsed());
            // The reference: the same table painted again, nothing changed.
            timer.start();
            view->viewport()->repaint();
            repaints.push_back(timer.nsecsElapsed());
        }
    }
    if (page->filter()->rowCount() != variables) {
        std::fprintf(stderr, "bench_variables: the emptied filter shows %d rows\n", page->filter()->rowCount());
        return 1;
    }

    const auto worst = std::max_element(keystrokes.begin(), keystrokes.end());
    const QString worstText = steps[worst - keystrokes.begin()];
    std::sort(keystrokes.begin(), keystrokes.end());
    std::sort(repaints.begin(), repaints.end());
    const qint64 repaint = std::max<qint64>(repaints[repaints.size() / 2], 1);
    const double ratio = double(keystrokes.back()) / double(repaint);
    std::printf("filtering the All Variables table as the player types (best of %d runs)\n", runs);
    std::printf("  %-30s %10d\n", "variables", variables);
    std::printf("  %-30s %10lld\n", "keystrokes", static_cast<long long>(keystrokes.size()));
    std::printf("  %-30s %10.2f ms\n", "keystroke, median", ms(keystrokes[keystrokes.size() / 2]));
    std::printf("  %-30s %10.2f ms   (filter \"%s\")\n", "keystroke, slowest", ms(keystrokes.back()),
        qPrintable(worstText.isEmpty() ? QStringLiteral("emptied") : worstText));
    std::printf("  %-30s %10.2f ms   (reference)\n", "repaint of the table, median", ms(repaint));
    std::printf("  %-30s %10.2f\n", "ratio slowest / repaint", ratio);
    std::printf("  %-30s %10s\n", "goal: within 10x a repaint", ratio <= 10.0 ? "PASS" : "ABOVE");
    BenchRow::ratio(
        "All Variables filter, slowest keystroke vs a repaint", ms(keystrokes.back()), ms(repaint), "ms", 10.0);
    return 0;
}

// bench_rewrite: how long a whole-file rewrite (open, then Save As) of a very large configuration takes,
// measured against awk counting the same file's lines. A report, not a test: the exit status only says
// whether the run itself worked.
//
//   bench_rewrite [LINES [KEEP_DIR]]
//
// LINES defaults to 200000. With KEEP_DIR the generated file and its rewrite are copied there
// (q3config.cfg, rewritten.cfg), e.g. to profile tarnwick-cli on the same input.

#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"

#include "BenchRow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <optional>

namespace {

constexpr int defaultLineCount = 200000;
constexpr int runs = 7;

// splitmix64: the same stream on every platform and library, unlike the std distributions.
class Random
{
public:
    explicit Random(quint64 seed)
        : m_state(seed)
    { }
    quint64 next()
    {
        quint64 z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int below(int n) { return int(next() % quint64(n)); }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T, size_t N> const T &pick(const std::array<T, N> &items)
    {
        return items[size_t(below(int(N)))];
    }

private:
    quint64 m_state;
};

QByteArray num(qint64 n)
{
    return QByteArray::number(n);
}

// "2.35" style values with one or two decimals.
QByteArray decimal(Random &r, int low, int high, int decimals)
{
    const int scale = decimals == 1 ? 10 : 100;
    const int v = r.between(low * scale, high * scale);
    return QByteArray::number(double(v) / scale, 'f', decimals);
}

// Values for the names the program knows, each shaped the way the game writes them.
QByteArray knownSetting(Random &r)
{
    static const std::array<const char *, 10> names { "Player", "^1Rail^7God", "UnnamedPlayer", "^3fr^7agger", "Sarge",
        "xX^4Camper^7Xx", "Doom", "n00b", "Klesk", "^5Orb" };
    static const std::array<const char *, 8> models { "sarge/default", "visor/blue", "keel/red", "doom/default",
        "major\\daemia", "bitterman/default", "sarge/krusade", "ranger/default" };
    static const std::array<const char *, 5> textureModes { "GL_NEAREST", "GL_LINEAR_MIPMAP_LINEAR",
        "GL_LINEAR_MIPMAP_NEAREST", "gl_linear", "GL_NEAREST_MIPMAP_NEAREST" };
    static const std::array<int, 6> rates { 2500, 3000, 4000, 5000, 25000, 8000 };

    QByteArray name;
    QByteArray value;
    switch (r.below(40)) {
    case 0:
        name = "r_picmip";
        value = num(r.between(0, 3));
        break;
    case 1:
        name = "cg_fov";
        value = num(r.between(90, 130));
        break;
    case 2:
        name = "s_volume";
        value = decimal(r, 0, 1, 2);
        break;
    case 3:
        name = "sensitivity";
        value = decimal(r, 1, 12, 1);
        break;
    case 4:
        name = "name";
        value = r.pick(names);
        break;
    case 5:
        name = "model";
        value = r.pick(models);
        break;
    case 6:
        name = "headmodel";
        value = r.pick(models);
        break; // not one of ours
    case 7:
        name = "g_spAwards";
        for (int k = 1; k <= 6; ++k)
            value += "\\a" + num(k) + '\\' + num(r.between(0, 40));
        break;
    case 8:
        name = "g_spVideos";
        for (int k = 1; k <= r.between(1, 8); ++k)
            value += "\\tier" + num(k) + "\\1";
        break;
    case 9:
        name = "rate";
        value = num(r.pick(rates));
        break;
    case 10:
        name = "r_texturemode";
        value = r.pick(textureModes);
        break;
    case 11:
        name = "color";
        value = num(r.between(1, 7));
        break;
    case 12:
        name = "r_mode";
        value = num(r.between(-1, 11));
        break;
    case 13:
        name = "r_gamma";
        value = decimal(r, 1, 2, 1);
        break;
    case 14:
        name = "com_maxfps";
        value = num(r.pick(std::array<int, 4> { 85, 125, 250, 333 }));
        break;
    case 15:
        name = "cl_maxpackets";
        value = num(r.between(30, 125));
        break;
    case 16:
        name = "s_khz";
        value = num(r.pick(std::array<int, 3> { 11, 22, 44 }));
        break;
    case 17:
        name = "r_colorbits";
        value = num(r.pick(std::array<int, 3> { 0, 16, 32 }));
        break;
    case 18:
        name = "r_texturebits";
        value = num(r.pick(std::array<int, 3> { 0, 16, 32 }));
        break;
    case 19:
        name = "cg_drawfps";
        value = num(r.between(0, 1));
        break;
    case 20:
        name = "cg_drawcrosshair";
        value = num(r.between(0, 9));
        break;
    case 21:
        name = "cg_crosshairsize";
        value = num(r.between(16, 48));
        break;
    case 22:
        name = "cl_run";
        value = num(r.between(0, 1));
        break;
    case 23:
        name = "cg_autoswitch";
        value = num(r.between(0, 1));
        break;
    case 24:
        name = "com_hunkmegs";
        value = num(r.pick(std::array<int, 4> { 56, 64, 128, 256 }));
        break;
    case 25:
        name = "r_subdivisions";
        value = num(r.between(1, 20));
        break;
    case 26:
        name = "cg_shadows";
        value = num(r.between(0, 3));
        break;
    case 27:
        name = "r_lodbias";
        value = num(r.between(-2, 2));
        break;
    case 28:
        name = "cg_brasstime";
        value = num(r.between(0, 2500));
        break;
    case 29:
        name = "r_railwidth";
        value = num(r.between(1, 128));
        break;
    case 30:
        name = "r_railcorewidth";
        value = num(r.between(1, 16));
        break;
    case 31:
        name = "cg_railtrailtime";
        value = num(r.between(100, 1000));
        break;
    case 32:
        name = "s_musicvolume";
        value = decimal(r, 0, 1, 2);
        break;
    case 33:
        name = "handicap";
        value = num(r.between(50, 100));
        break;
    case 34:
        name = "cl_nodelta";
        value = num(r.between(0, 1));
        break;
    case 35:
        name = "con_notifytime";
        value = num(r.between(-1, 6));
        break;
    case 36:
        name = "r_fullscreen";
        value = num(r.between(0, 1));
        break;
    case 37:
        name = "cg_marks";
        value = num(r.between(0, 1));
        break;
    case 38:
        name = "r_flaresize";
        value = num(r.between(10, 60));
        break;
    default:
        name = "r_dynamiclight";
        value = num(r.between(0, 1));
        break;
    }
    // The game writes lower case, hand edits don't always.
    if (r.chance(3))
        name = name.toUpper();
    return "seta " + name + " \"" + value + '"';
}

// Names the program has no control for: carried through the rewrite as they are.
QByteArray unknownSetting(Random &r)
{
    static const std::array<const char *, 40> names { "cg_zoomfov", "com_zoneMegs", "cl_mouseaccel", "m_pitch", "m_yaw",
        "m_filter", "cl_yawspeed", "cl_pitchspeed", "cg_crosshairhealth", "cg_teamchattime", "cg_bobup", "cg_bobpitch",
        "cg_bobroll", "cg_runpitch", "cg_runroll", "cg_gun_x", "cg_gun_y", "cg_gun_z", "cg_viewsize",
        "cg_thirdpersonrange", "cg_thirdpersonangle", "r_overbrightbits", "r_mapoverbrightbits", "r_intensity",
        "r_vertexlight", "r_displayrefresh", "r_customwidth", "r_customheight", "r_depthbits", "r_stencilbits",
        "vid_xpos", "vid_ypos", "snaps", "cl_timenudge", "cl_anglespeedkey", "sv_hostname", "ui_browserGameType",
        "g_gametype", "timelimit", "fraglimit" };
    const QByteArray name = r.pick(names);
    QByteArray value;
    switch (r.below(5)) {
    case 0:
        value = num(r.between(0, 1));
        break;
    case 1:
        value = num(r.between(-100, 5000));
        break;
    case 2:
        value = decimal(r, -3, 3, 2);
        break;
    case 3:
        value = "0." + num(r.between(0, 99999));
        break;
    default:
        value = num(r.between(0, 640)) + "." + num(r.between(0, 9));
        break;
    }
    // Now and then a set rather than a seta, or no quotes around the value.
    if (r.chance(4))
        return "set " + name + ' ' + value;
    return "seta " + name + " \"" + value + '"';
}

QByteArray bindLine(Random &r)
{
    static const std::array<const char *, 44> keys { "TAB", "ENTER", "ESCAPE", "SPACE", "BACKSPACE", "UPARROW",
        "DOWNARROW", "LEFTARROW", "RIGHTARROW", "ALT", "CTRL", "SHIFT", "F1", "F2", "F3", "F11", "F12", "INS", "DEL",
        "PGDN", "PGUP", "HOME", "END", "MOUSE1", "MOUSE2", "MOUSE3", "MOUSE4", "MWHEELUP", "MWHEELDOWN", "KP_ENTER",
        "KP_INS", "`", "[", "]", "\\", "/", "a", "c", "d", "e", "q", "s", "w", "1" };
    // Commands one of the 37 actions stands for.
    static const std::array<const char *, 24> actionCommands { "+forward", "+back", "+moveleft", "+moveright",
        "+moveup", "+movedown", "+attack", "+speed", "+strafe", "weapnext", "weapprev", "weapon 1", "weapon 5",
        "weapon 7", "weapon 10", "+zoom", "+scores", "+button2", "+button3", "centerview", "messagemode",
        "messagemode2", "screenshot", "toggleconsole" };
    static const std::array<const char *, 16> otherCommands { "togglemenu", "+button4", "kill", "vstr zoomtoggle",
        "say gg", "say_team ^1need health!", "weapon 7; cg_fov 90; sensitivity 2.5", "+attack; wait; -attack",
        "exec rail.cfg", "toggle cg_drawgun", "ui_teamorders", "vote yes", "vote no", "+lookup", "cg_thirdperson 1",
        "screenshotJPEG" };
    const QByteArray key = r.pick(keys);
    const QByteArray command = r.chance(60) ? QByteArray(r.pick(actionCommands)) : QByteArray(r.pick(otherCommands));
    return "bind " + key + " \"" + command + '"';
}

QByteArray commentLine(Random &r)
{
    static const std::array<const char *, 8> comments { "// generated by quake, do not modify", "// movement",
        "//---- weapons ----", "// rail settings", "// old binds, keep for now", "//",
        "// sensitivity tuned for 800 dpi", "// hud" };
    return r.pick(comments);
}

QByteArray trailingComment(Random &r)
{
    static const std::array<const char *, 5> comments { " // default", "\t// changed", " //was 1",
        " // see forum thread", "// fps" };
    return r.pick(comments);
}

// A q3config-like file of `lines` lines with CR LF ends.
QByteArray makeConfig(int lines)
{
    Random r(0x7a726e77u);
    QByteArray out;
    out.reserve(qsizetype(lines) * 32);
    out += "// generated by quake, do not modify\r\n";
    out += "unbindall\r\n";
    for (int i = 2; i < lines; ++i) {
        QByteArray line;
        const int kind = r.below(100);
        if (kind < 28)
            line = knownSetting(r);
        else if (kind < 63)
            line = unknownSetting(r);
        else if (kind < 83)
            line = bindLine(r);
        else if (kind < 91)
            line = commentLine(r);
        else if (kind < 96)
            line = QByteArray();
        else if (kind < 98)
            line = "exec autoexec.cfg";
        else
            line = "set zoomtoggle \"vstr zoomin\"";
        if (!line.isEmpty() && !line.startsWith("//") && r.chance(8))
            line += trailingComment(r);
        out += line;
        out += "\r\n";
    }
    return out;
}

struct RewriteResult
{
    qint64 nanoseconds = 0;
    QByteArray output;
};

// One open-and-save of `in` to `out`, timed from the open to the end of the save.
std::optional<RewriteResult> rewriteOnce(const QString &in, const QString &out)
{
    QFile::remove(out);
    ConfigDocument doc;
    StartUpDocument(doc);
    QString error;
    QElapsedTimer timer;
    timer.start();
    if (!OpenCfgFile(doc, in, &error)) {
        std::fprintf(stderr, "bench_rewrite: open failed: %s\n", qPrintable(error));
        return std::nullopt;
    }
    if (!SaveCfgFileAs(doc, out, &error)) {
        std::fprintf(stderr, "bench_rewrite: save failed: %s\n", qPrintable(error));
        return std::nullopt;
    }
    const qint64 elapsed = timer.nsecsElapsed();
    QFile written(out);
    if (!written.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "bench_rewrite: can't read back %s\n", qPrintable(out));
        return std::nullopt;
    }
    return RewriteResult { elapsed, written.readAll() };
}

struct ToolResult
{
    qint64 nanoseconds = 0;
    QByteArray output;
};

// Runs a line-counting tool over the file once: its time and output; nothing when it can't be run.
std::optional<ToolResult> runToolOnce(const QString &program, const QStringList &args)
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(program, args);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        std::fprintf(stderr, "bench_rewrite: %s failed: %s\n", qPrintable(program), qPrintable(process.errorString()));
        return std::nullopt;
    }
    const qint64 elapsed = timer.nsecsElapsed();
    return ToolResult { elapsed, process.readAllStandardOutput().trimmed() };
}

// Peak resident set of this process in kB, from /proc; -1 where there is no /proc.
qint64 peakRssKb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    // /proc files report size 0; readAll still reads them to the end.
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);

    int lines = defaultLineCount;
    if (argc > 1) {
        bool ok = false;
        lines = QByteArray(argv[1]).toInt(&ok);
        if (!ok || lines < 3) {
            std::fprintf(
                stderr, "usage: bench_rewrite [LINES [KEEP_DIR]]   (LINES at least 3, default %d)\n", defaultLineCount);
            return 2;
        }
    }

    QTemporaryDir folder;
    if (!folder.isValid()) {
        std::fprintf(stderr, "bench_rewrite: no temporary folder: %s\n", qPrintable(folder.errorString()));
        return 1;
    }
    const QString input = folder.filePath(QStringLiteral("q3config.cfg"));
    const QString output = folder.filePath(QStringLiteral("rewritten.cfg"));
    {
        const QByteArray content = makeConfig(lines);
        QFile file(input);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush()) {
            std::fprintf(stderr, "bench_rewrite: can't write %s\n", qPrintable(input));
            return 1;
        }
    }
    const qint64 inputBytes = QFileInfo(input).size();

    // The rewrite, awk and wc take turns in each round, so a busy moment of the machine weighs on all of them.
    if (QStandardPaths::findExecutable(QStringLiteral("awk")).isEmpty()) {
        std::fprintf(stderr, "bench_rewrite: awk not found\n");
        return 1;
    }
    const bool haveWc = !QStandardPaths::findExecutable(QStringLiteral("wc")).isEmpty();
    RewriteResult rewrite { 0, {} };
    std::optional<ToolResult> awk, wc;
    std::vector<qint64> rewriteTimes, awkTimes, wcTimes;
    for (int run = 0; run < runs; ++run) {
        std::optional<RewriteResult> result = rewriteOnce(input, output);
        if (!result)
            return 1;
        // Every run starts from the same file and a fresh document, so must write the same bytes.
        if (run > 0 && result->output != rewrite.output) {
            std::fprintf(stderr, "bench_rewrite: run %d wrote a different file than run 1\n", run + 1);
            return 1;
        }
        rewriteTimes.push_back(result->nanoseconds);
        if (run == 0)
            rewrite.output = std::move(result->output);
        awk = runToolOnce(QStringLiteral("awk"), { QStringLiteral("END { print NR }"), input });
        if (!awk)
            return 1;
        awkTimes.push_back(awk->nanoseconds);
        if (haveWc) {
            wc = runToolOnce(QStringLiteral("wc"), { QStringLiteral("-l"), input });
            if (wc)
                wcTimes.push_back(wc->nanoseconds);
        }
    }
    rewrite.nanoseconds = BenchRow::median(rewriteTimes);
    awk->nanoseconds = BenchRow::median(awkTimes);
    if (wc)
        wc->nanoseconds = BenchRow::median(wcTimes);
    // Both tools must see every line, or they did not read the file we think they read.
    if (awk->output.toLongLong() != lines) {
        std::fprintf(stderr, "bench_rewrite: awk counted %s lines, expected %d\n", awk->output.constData(), lines);
        return 1;
    }

    if (argc > 2) {
        const QString keep = QFile::decodeName(argv[2]);
        for (const QString &file : { input, output }) {
            const QString target = keep + u'/' + QFileInfo(file).fileName();
            QFile::remove(target);
            if (!QFile::copy(file, target)) {
                std::fprintf(stderr, "bench_rewrite: can't copy to %s\n", qPrintable(target));
                return 1;
            }
        }
    }

    const double ratio = double(rewrite.nanoseconds) / double(awk->nanoseconds);
    const bool within = ratio <= 3.0;

    std::printf("rewrite of a generated q3config.cfg (median of %d)\n", runs);
    std::printf("  %-22s %12d\n", "lines", lines);
    std::printf("  %-22s %12lld bytes (%.1f MiB)\n", "input size", static_cast<long long>(inputBytes),
        double(inputBytes) / (1024.0 * 1024.0));
    std::printf("  %-22s %12lld bytes\n", "output size", static_cast<long long>(rewrite.output.size()));
    std::printf("  %-22s %12.1f ms\n", "rewrite (open + save)", ms(rewrite.nanoseconds));
    std::printf("  %-22s %12.1f ms   (%s)\n", "awk END { print NR }", ms(awk->nanoseconds),
        qPrintable(QFileInfo(QStandardPaths::findExecutable(QStringLiteral("awk"))).canonicalFilePath()));
    if (wc)
        std::printf("  %-22s %12.1f ms   (reference)\n", "wc -l", ms(wc->nanoseconds));
    std::printf("  %-22s %12.2f\n", "ratio rewrite / awk", ratio);
    std::printf("  %-22s %12s\n", "goal: within 3x awk", within ? "PASS" : "ABOVE");
    if (lines == defaultLineCount)
        BenchRow::ratio(
            "rewrite of a 200,000-line configuration vs awk", ms(rewrite.nanoseconds), ms(awk->nanoseconds), "ms", 3.0);
    const qint64 rss = peakRssKb();
    if (rss >= 0)
        std::printf("  %-22s %12.1f MiB\n", "peak RSS", double(rss) / 1024.0);
    return 0;
}

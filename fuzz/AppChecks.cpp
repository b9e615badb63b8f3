// The checks of the program's own inputs: tarnwick.ini, the command line, and what a later copy hands over.
#include "FuzzTargets.h"

#include "CommandLine.h"
#include "ProgramSettings.h"
#include "SingleInstance.h"

#include <QDir>
#include <QFile>

#include <tuple>

namespace {

constexpr int centredLeft = 1005;
constexpr int centredTop = 2010;

auto numbersOf(const ProgramSettings &s)
{
    return std::tuple(s.gradient, s.aot, s.wx, s.wy, s.pv_wx, s.pv_wy, s.pv_open);
}

// Whether a value comes back from the file as it was written: the reader trims blanks around a value and drops
// the double quotes around a value wholly in them, as the initialisation-file format does.
bool keepsItsForm(const QString &value)
{
    const auto blank = [](QChar c) { return c == u' ' || c == u'\t'; };
    if (!value.isEmpty() && (blank(value.front()) || blank(value.back())))
        return false;
    return !(value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'));
}

// A folder with a file for each ending the classifier looks at (hidden ones and folders among them), made the
// current folder once, so relative names in the input can meet real files.
void enterSampleFolder()
{
    static const bool entered = [] {
        const QDir folder(QDir(FuzzTargets::scratchFolder()).filePath(QStringLiteral("cmdline")));
        folder.mkpath(QStringLiteral("sub.config"));
        for (const char *name : { "q3config.cfg", "a.config", ".hidden.config", "b.CTR", ".c.ctr", "d.rnr", "e.hud",
                 ".f.hud", "g.rlg", "sub.config/h.ctr" }) {
            QFile(folder.filePath(QLatin1StringView(name))).open(QIODevice::WriteOnly);
        }
        return QDir::setCurrent(folder.path());
    }();
    Q_UNUSED(entered);
}

QString checkRequest(const QString &text, const CommandLine::Request &request)
{
    using CommandLine::Action;
    const bool opens = request.action == Action::OpenConfig || request.action == Action::Import;
    if (opens == request.path.isEmpty() || request.kind.has_value() != (request.action == Action::Import))
        return QStringLiteral("a request that does not hang together for \"%1\"").arg(text);
    // The path is the text without blanks around it and one double quote at either end.
    if (!text.contains(request.path))
        return QStringLiteral("the path \"%1\" is not in \"%2\"").arg(request.path, text);
    if (request.kind) {
        const QString ending = PartialFiles::defaultExtension(*request.kind);
        if (!request.path.endsWith(ending, Qt::CaseInsensitive))
            return QStringLiteral("\"%1\" imported as a %2 file").arg(request.path, ending);
    }
    return {};
}

} // namespace

namespace FuzzTargets {

QString settingsFile(QByteArrayView input)
{
    const QString path = scratchFile(QStringLiteral("tarnwick.ini"), input);
    bool fellBack = false;
    const ProgramSettings first = pbLoadOptions(path, centredLeft, centredTop, &fellBack);
    ProgramSettings defaults;
    defaults.wx = centredLeft;
    defaults.wy = centredTop;
    if (fellBack && numbersOf(first) != numbersOf(defaults))
        return QStringLiteral("a load that fell back kept a number it read");
    if (first.q3dir != IniFile::ReadSetting(QStringLiteral("tarnwick"), QStringLiteral("Q3DIR"), QString(), path))
        return QStringLiteral("pbLoadOptions and ReadSetting read q3dir differently");

    // What Tarnwick saves, it loads again as it was; a second save changes nothing.
    QString error;
    if (!pbSaveOptions(path, first, false, &error))
        return QStringLiteral("the first save failed: ") + error;
    const QByteArray saved = fileContent(path);
    const ProgramSettings second = pbLoadOptions(path, centredLeft, centredTop, &fellBack);
    if (fellBack || numbersOf(second) != numbersOf(first))
        return QStringLiteral("the numbers did not come back from the saved file");
    if (keepsItsForm(first.q3dir) && second.q3dir != first.q3dir)
        return QStringLiteral("q3dir \"%1\" came back as \"%2\"").arg(first.q3dir, second.q3dir);
    if (!pbSaveOptions(path, second, false, &error))
        return QStringLiteral("the second save failed: ") + error;
    if (keepsItsForm(first.q3dir) && fileContent(path) != saved)
        return QStringLiteral("a second save of the same settings changed the file");
    return {};
}

QString commandLine(QByteArrayView input)
{
    enterSampleFolder();
    QStringList arguments { QStringLiteral("tarnwick") };
    arguments += QString::fromUtf8(input).split(QChar(0));
    const QString text = CommandLine::joinArguments(arguments);
    return checkRequest(text, CommandLine::classify(text));
}

QString handOver(QByteArrayView input)
{
    enterSampleFolder();
    const QByteArray payload = input.toByteArray();
    const std::optional<QString> text = SingleInstance::decodePayload(payload);
    if (payload == QByteArray(1, '\0'))
        return text && text->isEmpty() ? QString() : QStringLiteral("the lone zero byte was not taken as \"restore\"");
    // Only what a later copy can send is taken: UTF-8 without a zero byte, every character kept (a byte order mark
    // too).
    const bool sendable = !payload.isEmpty() && !payload.contains('\0') && QByteArrayView(payload).isValidUtf8();
    if (text.has_value() != sendable)
        return QStringLiteral("a payload %1 that should not be").arg(text ? u"taken" : u"refused");
    if (text && text->toUtf8() != payload)
        return QStringLiteral("the text taken is not the text sent");
    return text ? checkRequest(*text, CommandLine::classify(*text)) : QString();
}

} // namespace FuzzTargets

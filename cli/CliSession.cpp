#include "CliSession.h"

#include "CfgText.h"
#include "ConfigReader.h"
#include "ConfigSearch.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "GameFolder.h"
#include "PartialFiles.h"
#include "PlayerModels.h"
#include "Variables.h"
#include "cUnzip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>

namespace {

struct Token
{
    QString text;
    qsizetype end = 0; // position after the token in its line
};

bool isSpace(QChar c)
{
    return c == u' ' || c == u'\t';
}

// Splits a script line at blanks; a token may be double-quoted to hold blanks.
QList<Token> tokenize(const QString &line)
{
    QList<Token> tokens;
    qsizetype i = 0;
    while (true) {
        while (i < line.size() && isSpace(line[i]))
            ++i;
        if (i >= line.size())
            return tokens;
        Token t;
        if (line[i] == u'"') {
            const qsizetype close = line.indexOf(u'"', i + 1);
            const qsizetype stop = close < 0 ? line.size() : close;
            t.text = line.mid(i + 1, stop - i - 1);
            i = close < 0 ? line.size() : close + 1;
        } else {
            const qsizetype start = i;
            while (i < line.size() && !isSpace(line[i]))
                ++i;
            t.text = line.mid(start, i - start);
        }
        t.end = i;
        tokens.append(t);
    }
}

// What follows a token: blanks skipped; a wholly quoted rest loses its quotes.
QString restAfter(const QString &line, const Token &token)
{
    // Only blanks and tabs separate; any other byte belongs to the value, as it would in a file line.
    QString rest = CfgText::trimBlanks(QString(line.mid(token.end)).replace(u'\t', u' '));
    if (rest.size() >= 2 && rest.startsWith(u'"') && rest.endsWith(u'"') && rest.count(u'"') == 2)
        rest = rest.mid(1, rest.size() - 2);
    return rest;
}

// Script text is read byte for byte like a configuration; paths are the system's 8-bit names.
QString pathOf(const QString &token)
{
    return QFile::decodeName(token.toLatin1());
}

std::optional<int> wholeNumber(const QString &text, int minimum, int maximum)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < minimum || value > maximum || text.startsWith(u'+'))
        return std::nullopt;
    return value;
}

// Appends text as UTF-8; names are nearly always ASCII, which is copied over without a conversion buffer.
void appendUtf8(QByteArray &bytes, const QString &text)
{
    // Two plain loops the compiler turns into vector code: is it all ASCII, then narrow it.
    const ushort *in = text.utf16();
    const qsizetype size = text.size();
    ushort seen = 0;
    for (qsizetype i = 0; i < size; ++i)
        seen |= in[i];
    if (seen >= 0x80) {
        bytes += text.toUtf8();
        return;
    }
    const qsizetype start = bytes.size();
    bytes.resize(start + size);
    char *out = bytes.data() + start;
    for (qsizetype i = 0; i < size; ++i)
        out[i] = char(in[i]);
}

} // namespace

CliSession::CliSession(FILE *out, FILE *err)
    : m_out(out)
    , m_err(err)
{
    StartUpDocument(m_doc);
}

QString CliSession::usage()
{
    return QStringLiteral(
        "Usage:\n"
        "  tarnwick-cli rewrite IN OUT              open IN (whole-file read), then save it as OUT (whole-file write)\n"
        "  tarnwick-cli export KIND IN OUT          open IN, then export area KIND to OUT\n"
        "  tarnwick-cli import KIND PART BASE OUT   open BASE, import PART as KIND, then save as OUT\n"
        "  tarnwick-cli new MODE OUT                New with MODE 0, 1 or 2 (name \"Untitled\"), then save as OUT\n"
        "  tarnwick-cli check FILE                  list the lines of FILE a save would not keep (console commands,\n"
        "                                           bare variables ...): NUMBER, tab, LINE; then a summary.\n"
        "                                           Exit status 3 when there are some\n"
        "  tarnwick-cli pk3 ARCHIVE                 list the files of the PK3 (zip) ARCHIVE, one a line:\n"
        "                                           FOLDER, tab, NAME, tab, E (encrypted) or -\n"
        "  tarnwick-cli demos GAMEDIR               the timedemo list of the game in GAMEDIR, one name a line\n"
        "  tarnwick-cli models [--icons] GAMEDIR    the player models of the game in GAMEDIR: a line MODEL for each,\n"
        "                                           then MODEL/SKIN for each of its skins; with --icons each skin's\n"
        "                                           line ends in a tab and its icon's WIDTHxHEIGHT, or \"no picture\"\n"
        "                                           (exit status 3 when any icon is no picture)\n"
        "  tarnwick-cli find ROOT...                the q3config.cfg files (any case) under each ROOT in turn, one\n"
        "                                           full path a line, in the order the search dialog lists them\n"
        "  tarnwick-cli start GAMEDIR [DEMO]        what starting the game (a timedemo of DEMO) would run: the\n"
        "                                           program, then each argument, one a line; nothing starts\n"
        "  tarnwick-cli script FILE                 run the commands of FILE (\"-\" = standard input), one a line:\n"
        "      open PATH            whole-file read\n"
        "      save PATH            whole-file write (Save As)\n"
        "      export KIND PATH     write area KIND to PATH\n"
        "      import KIND PATH     read area KIND from PATH\n"
        "      new MODE [NAME]      new document (name \"Untitled\" when none is given)\n"
        "      restore              Restore Defaults: the values last read or saved\n"
        "      set NAME VALUE       setting NAME takes VALUE as if read from a file line\n"
        "      setvar NAME VALUE    any variable: a setting takes VALUE as with set; any other name has its\n"
        "                           last kept line rewritten as seta NAME \"VALUE\", or one added\n"
        "      unsetvar NAME        remove the kept lines of variable NAME (not a setting's)\n"
        "      bind INDEX SLOT KEY  key KEY into slot SLOT (1 or 2) of action INDEX (0-36)\n"
        "      unbind INDEX SLOT    empty slot SLOT of action INDEX\n"
        "      print                the whole document, as it would be saved, to standard output\n"
        "    Blank lines and lines starting with # are skipped. Paths may be double-quoted.\n"
        "KIND is controls, renderer, hud or railgun (0-3).\n"
        "MODE is 0 (Keep Control Keys), 1 (New All (Reset to Defaults)) or 2 (New All (Clear)).\n");
}

int CliSession::fail(const QString &message)
{
    const QString where = m_line > 0 ? QStringLiteral("line %1: ").arg(m_line) : QString();
    std::fprintf(m_err, "tarnwick-cli: %s%s\n", qPrintable(where), message.toLocal8Bit().constData());
    return Failure;
}

int CliSession::usageError(const QString &message)
{
    fail(message);
    std::fputs(usage().toLocal8Bit().constData(), m_err);
    return Usage;
}

int CliSession::run(const QStringList &args)
{
    const QString command = args.value(0);
    const qsizetype count = args.size();
    if (command == u"--help" || command == u"-h" || command == u"help") {
        std::fputs(usage().toLocal8Bit().constData(), m_out);
        return Success;
    }
    const auto chain = [](std::initializer_list<std::function<int()>> steps) {
        for (const auto &step : steps) {
            if (const int code = step(); code != Success)
                return code;
        }
        return int(Success);
    };
    if (command == u"rewrite" && count == 3)
        return chain({ [&] { return open(args[1]); }, [&] { return save(args[2]); } });
    if (command == u"export" && count == 4) {
        if (!PartialFiles::kindFromName(args[1]))
            return usageError(QStringLiteral("unknown KIND \"%1\"").arg(args[1]));
        return chain({ [&] { return open(args[2]); }, [&] { return exportKind(args[1], args[3]); } });
    }
    if (command == u"import" && count == 5) {
        if (!PartialFiles::kindFromName(args[1]))
            return usageError(QStringLiteral("unknown KIND \"%1\"").arg(args[1]));
        return chain({ [&] { return open(args[3]); }, [&] { return importKind(args[1], args[2]); },
            [&] { return save(args[4]); } });
    }
    if (command == u"new" && count == 3)
        return chain({ [&] { return newDocument(args[1], QString()); }, [&] { return save(args[2]); } });
    if (command == u"pk3" && count == 2)
        return listArchive(args[1]);
    if (command == u"check" && count == 2)
        return check(args[1]);
    if (command == u"demos" && count == 2)
        return demos(args[1]);
    if (command == u"models" && count == 2)
        return models(args[1], false);
    if (command == u"models" && count == 3 && args[1] == u"--icons")
        return models(args[2], true);
    if (command == u"find" && count >= 2)
        return find(args.mid(1));
    if (command == u"start" && (count == 2 || count == 3))
        return start(args[1], args.value(2));
    if (command == u"script" && count == 2) {
        QFile file;
        const bool opened = args[1] == u"-" ? file.open(stdin, QIODevice::ReadOnly)
                                            : (file.setFileName(args[1]), file.open(QIODevice::ReadOnly));
        if (!opened || (args[1] != u"-" && !QFileInfo(args[1]).isFile()))
            return fail(QStringLiteral("cannot read script \"%1\"").arg(args[1]));
        const QByteArray script = file.readAll();
        if (file.error() != QFileDevice::NoError)
            return fail(QStringLiteral("cannot read script \"%1\": %2").arg(args[1], file.errorString()));
        return runScript(script);
    }
    if (command.isEmpty())
        return usageError(QStringLiteral("no command given"));
    return usageError(QStringLiteral("wrong arguments for \"%1\"").arg(command));
}

int CliSession::runScript(const QByteArray &script)
{
    const QList<QByteArray> lines = script.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        m_line = int(i + 1);
        QByteArray bytes = lines[i];
        if (bytes.endsWith('\r'))
            bytes.chop(1);
        const QString line = QString::fromLatin1(bytes);
        const QString trimmed = CfgText::trimBlanks(QString(line).replace(u'\t', u' '));
        if (trimmed.isEmpty() || trimmed.startsWith(u'#'))
            continue;
        if (const int code = runLine(line); code != Success)
            return code;
    }
    m_line = 0;
    return Success;
}

int CliSession::runLine(const QString &line)
{
    const QList<Token> t = tokenize(line);
    const QString command = t[0].text;
    const qsizetype n = t.size();
    if (command == u"open" && n == 2)
        return open(pathOf(t[1].text));
    if (command == u"save" && n == 2)
        return save(pathOf(t[1].text));
    if (command == u"export" && n == 3)
        return exportKind(t[1].text, pathOf(t[2].text));
    if (command == u"import" && n == 3)
        return importKind(t[1].text, pathOf(t[2].text));
    if (command == u"new" && n >= 2)
        return newDocument(t[1].text, n > 2 ? restAfter(line, t[1]) : QString());
    if (command == u"restore" && n == 1) {
        m_doc.ApplySnapshot();
        return Success;
    }
    if (command == u"set" && n >= 2)
        return set(t[1].text, restAfter(line, t[1]));
    if (command == u"setvar" && n >= 2)
        return setvar(t[1].text, restAfter(line, t[1]));
    if (command == u"unsetvar" && n == 2)
        return unsetvar(t[1].text);
    if (command == u"bind" && n == 4)
        return bind(t[1].text, t[2].text, t[3].text);
    if (command == u"unbind" && n == 3)
        return unbind(t[1].text, t[2].text);
    if (command == u"print" && n == 1)
        return print();
    return usageError(QStringLiteral("wrong script command \"%1\"").arg(line.trimmed()));
}

int CliSession::open(const QString &path)
{
    QString error;
    return OpenCfgFile(m_doc, path, &error) ? int(Success) : fail(error);
}

int CliSession::check(const QString &path)
{
    QString error;
    DroppedLines dropped;
    dropped.examples = -1;
    if (!ReadCfgFile(m_doc, path, FileScope::Whole, &error, &dropped))
        return fail(error);
    QByteArray out;
    for (const auto &[number, line] : dropped.lines)
        out += QByteArray::number(number) + '\t' + line + '\n';
    const QString name = QFileInfo(path).fileName();
    if (dropped.count == 0)
        out += QStringLiteral("%1: a save keeps every line (comments and blank lines aside)\n").arg(name).toLocal8Bit();
    else
        out += QStringLiteral("%1: %2 line%3 a save would not keep\n")
                   .arg(name, QString::number(dropped.count), dropped.count == 1 ? QString() : QStringLiteral("s"))
                   .toLocal8Bit();
    std::fwrite(out.constData(), 1, size_t(out.size()), m_out);
    return dropped.count == 0 ? int(Success) : int(LinesDropped);
}

int CliSession::save(const QString &path)
{
    QString error;
    return SaveCfgFileAs(m_doc, path, &error) ? int(Success) : fail(error);
}

int CliSession::exportKind(const QString &kind, const QString &path)
{
    const std::optional<PartialKind> k = PartialFiles::kindFromName(kind);
    if (!k)
        return usageError(QStringLiteral("unknown KIND \"%1\"").arg(kind));
    QString error;
    return ExportFile(m_doc, path, *k, &error) ? int(Success) : fail(error);
}

int CliSession::importKind(const QString &kind, const QString &path)
{
    const std::optional<PartialKind> k = PartialFiles::kindFromName(kind);
    if (!k)
        return usageError(QStringLiteral("unknown KIND \"%1\"").arg(kind));
    QString error;
    return ImportFile(m_doc, path, *k, &error) ? int(Success) : fail(error);
}

int CliSession::newDocument(const QString &mode, const QString &name)
{
    const std::optional<int> m = wholeNumber(mode, 0, 2);
    if (!m)
        return usageError(QStringLiteral("MODE must be 0, 1 or 2, not \"%1\"").arg(mode));
    const QString trimmed = CfgText::trimBlanks(name);
    NewCfg(m_doc, trimmed.isEmpty() ? QStringLiteral("Untitled") : trimmed, NewMode(*m));
    return Success;
}

int CliSession::set(const QString &name, const QString &value)
{
    const int index = SettingCatalog::instance().indexOfSetting(name);
    if (index < 0)
        return usageError(QStringLiteral("\"%1\" is not a setting Tarnwick reads or writes").arg(name));
    Variables::setSetting(m_doc, index, value);
    m_doc.setModified(true);
    return Success;
}

int CliSession::setvar(const QString &name, const QString &value)
{
    QString error;
    if (Variables::setVariable(m_doc, name, value, &error) == Variables::Change::Refused)
        return usageError(error);
    return Success;
}

int CliSession::unsetvar(const QString &name)
{
    if (const QString why = Variables::nameProblem(name); !why.isEmpty())
        return usageError(why);
    QString error;
    if (Variables::unsetVariable(m_doc, name, &error))
        return Success;
    // A setting is no variable unsetvar takes; a name no line sets is a removal that failed.
    return SettingCatalog::instance().indexOfSetting(name) >= 0 ? usageError(error) : fail(error);
}

int CliSession::bind(const QString &index, const QString &slot, const QString &key)
{
    const std::optional<int> action = wholeNumber(index, 0, ActionTable::Count - 1);
    const std::optional<int> s = wholeNumber(slot, 1, 2);
    if (!action || !s || key.isEmpty())
        return usageError(QStringLiteral("bind takes INDEX 0-36, SLOT 1 or 2 and a KEY"));
    m_doc.DefineKey(*action, *s == 1 ? KeySlot::First : KeySlot::Second, key);
    return Success;
}

int CliSession::unbind(const QString &index, const QString &slot)
{
    const std::optional<int> action = wholeNumber(index, 0, ActionTable::Count - 1);
    const std::optional<int> s = wholeNumber(slot, 1, 2);
    if (!action || !s)
        return usageError(QStringLiteral("unbind takes INDEX 0-36 and SLOT 1 or 2"));
    m_doc.DeleteKey(*action, *s == 1 ? KeySlot::First : KeySlot::Second);
    return Success;
}

int CliSession::print()
{
    const QByteArray bytes = ConfigWriter::fileBytes(m_doc, FileScope::Whole);
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), m_out) != size_t(bytes.size()))
        return fail(QStringLiteral("could not write to standard output"));
    std::fflush(m_out);
    return Success;
}

int CliSession::listArchive(const QString &path)
{
    cUnzip archive;
    archive.setZipFile(path);
    // Archives hold tens of thousands of entries: none is kept, and the lines go out a buffer at a time.
    constexpr qsizetype bufferSize = 64 * 1024;
    QByteArray bytes;
    bytes.reserve(bufferSize + 1024);
    bool written = true;
    const auto flush = [&] {
        written = written && std::fwrite(bytes.constData(), 1, size_t(bytes.size()), m_out) == size_t(bytes.size());
        bytes.clear();
    };
    QString error;
    const bool listed = archive.List(
        [&](const cUnzip::ZipEntry &e) {
            appendUtf8(bytes, e.entryFolder);
            bytes += '\t';
            appendUtf8(bytes, e.entryName);
            bytes += e.entryEncrypted ? "\tE\n" : "\t-\n";
            if (bytes.size() >= bufferSize)
                flush();
        },
        &error);
    if (!listed)
        return fail(error);
    flush();
    if (!written || std::fflush(m_out) != 0)
        return fail(QStringLiteral("could not write to standard output"));
    return Success;
}

QString CliSession::skippedArchives(const QStringList &paths)
{
    return QStringLiteral("skipped archives that cannot be read: \"%1\"").arg(paths.join(QStringLiteral("\", \"")));
}

std::optional<GameLaunch::DemoList> CliSession::demoList(const QString &gameFolder)
{
    if (!GameFolder::isValid(gameFolder)) {
        fail(QStringLiteral("\"%1\" holds no game program").arg(gameFolder));
        return std::nullopt;
    }
    GameLaunch::DemoList list = GameLaunch::FillDemoList(gameFolder);
    if (!list.unreadable.isEmpty()) // said, as the window says it, but the list stands
        fail(skippedArchives(list.unreadable));
    return list;
}

int CliSession::demos(const QString &gameFolder)
{
    const std::optional<GameLaunch::DemoList> list = demoList(gameFolder);
    if (!list)
        return Failure;
    QStringList names;
    for (const GameLaunch::Demo &demo : list->demos)
        names.append(demo.name);
    return writeLines(names);
}

int CliSession::models(const QString &gameFolder, bool icons)
{
    if (!GameFolder::isValid(gameFolder))
        return fail(QStringLiteral("\"%1\" holds no game program").arg(gameFolder));
    const PlayerModels::ModelTree tree = PlayerModels::ScanPlayerModels(gameFolder);
    if (!tree.unreadable.isEmpty()) // said, as the window says it, but the list stands
        fail(skippedArchives(tree.unreadable));
    QStringList lines;
    bool allPictures = true;
    PlayerModels::IconReader reader;
    for (const PlayerModels::Model &model : tree.models) {
        lines.append(model.label);
        for (const PlayerModels::Skin &skin : model.skins) {
            lines.append(model.label + u'/' + skin.label);
            if (!icons)
                continue;
            const TgaImage::Picture icon = reader.icon(skin);
            allPictures = allPictures && !icon.isNull();
            lines.last() += icon.isNull() ? QStringLiteral("\tno picture")
                                          : QStringLiteral("\t%1x%2").arg(icon.width).arg(icon.height);
        }
    }
    const int written = writeLines(lines);
    return written == Success && !allPictures ? NoPicture : written;
}

int CliSession::find(const QStringList &roots)
{
    // A walk over a whole disk prints as it goes, through one buffer.
    class Printer final : public ConfigSearch::Visitor
    {
    public:
        explicit Printer(FILE *out)
            : m_out(out)
        { }
        bool enter(const QByteArray &) override { return true; }
        bool found(const QByteArray &path) override
        {
            m_buffer += path;
            m_buffer += '\n';
            return m_buffer.size() < 65536 || flush();
        }
        bool flush()
        {
            const bool written
                = std::fwrite(m_buffer.constData(), 1, size_t(m_buffer.size()), m_out) == size_t(m_buffer.size());
            m_buffer.clear();
            m_failed = m_failed || !written;
            return written;
        }
        bool failed() const { return m_failed; }

    private:
        FILE *m_out;
        QByteArray m_buffer;
        bool m_failed = false;
    };

    Printer printer(m_out);
    ConfigSearch::Walker walker(ConfigSearch::fileName, printer);
    int exit = Success;
    for (const QString &root : roots) {
        const QString folder = QDir::cleanPath(QDir::current().absoluteFilePath(root));
        if (walker.SearchDirs(ConfigSearch::walkPath(folder)) == ConfigSearch::Walker::Outcome::Unreadable)
            exit = fail(QStringLiteral("cannot read the folder \"%1\"").arg(root));
        if (printer.failed())
            break;
    }
    if (!printer.flush() || printer.failed() || std::fflush(m_out) != 0)
        return fail(QStringLiteral("could not write to standard output"));
    return exit;
}

int CliSession::start(const QString &gameFolder, const QString &demo)
{
    QStringList parameters;
    if (demo.isNull()) {
        if (!GameFolder::isValid(gameFolder))
            return fail(QStringLiteral("\"%1\" holds no game program").arg(gameFolder));
    } else {
        const std::optional<GameLaunch::DemoList> list = demoList(gameFolder);
        if (!list)
            return Failure;
        const auto found = std::find_if(list->demos.cbegin(), list->demos.cend(),
            [&demo](const GameLaunch::Demo &listed) { return listed.name == demo; });
        if (found == list->demos.cend())
            return fail(QStringLiteral("\"%1\" is not in the timedemo list").arg(demo));
        parameters = GameLaunch::timedemoParameters(*found);
    }
    const GameLaunch::StartRequest request = GameLaunch::gameStartRequest(gameFolder, parameters);
    return writeLines(QStringList { request.program } + request.arguments);
}

int CliSession::writeLines(const QStringList &lines)
{
    QByteArray bytes;
    for (const QString &line : lines)
        bytes += line.toUtf8() + '\n';
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), m_out) != size_t(bytes.size()))
        return fail(QStringLiteral("could not write to standard output"));
    std::fflush(m_out);
    return Success;
}

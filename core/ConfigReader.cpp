#include "ConfigReader.h"

#include "CfgNumber.h"
#include "CfgText.h"
#include "ConfigWriter.h"
#include "Defaults.h"
#include "SettingMapping.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>

namespace {

// The read rule: `upper` alone caps, `fallback` alone is a lower bound, both together make
// `fallback` the replacement for anything above `upper`. A value that is not a number always
// takes the replacement; the number compared is the value's integer rounding.
QString applyRule(const QString &value, const ReadRule &rule)
{
    if (!rule.upper && !rule.fallback)
        return value;
    const std::optional<double> n = CfgNumber::parse(value);
    const double rounded = n ? CfgNumber::roundHalfEven(*n) : 0;
    if (rule.upper && !rule.fallback)
        return n && rounded <= *rule.upper ? value : CfgNumber::formatNumber(*rule.upper);
    if (rule.fallback && !rule.upper)
        return n && rounded >= *rule.fallback ? value : CfgNumber::formatNumber(*rule.fallback);
    return n && rounded <= *rule.upper ? value : CfgNumber::formatNumber(*rule.fallback);
}

// Length of "seta " or "set " at the start of an examined line; 0 for neither.
qsizetype keywordLength(const QString &examined)
{
    if (CfgText::startsWithNoCase(examined, u"seta "))
        return 5;
    if (CfgText::startsWithNoCase(examined, u"set "))
        return 4;
    return 0;
}

// Offers a setting line to the catalog. A row takes the line when its name, followed by a blank or
// the end of the line, comes right after the keyword, its area is in scope, and the value after the
// read rule is not empty. A taken line whose number is unusable leaves the snapshot as it was.
bool takeSettingLine(ConfigDocument &doc, const QString &examined, FileScope scope)
{
    const qsizetype start = keywordLength(examined);
    if (start == 0)
        return false;
    qsizetype end = examined.indexOf(u' ', start);
    if (end < 0)
        end = examined.size();
    const SettingCatalog &catalog = SettingCatalog::instance();
    const int index = catalog.indexOfSetting(QStringView(examined).mid(start, end - start));
    if (index < 0)
        return false;
    const SettingRow &row = catalog.row(index);
    if (!SettingCatalog::inScope(row.area, scope))
        return false;
    const QString value = applyRule(CfgText::trimBlanks(QStringView(examined).mid(end)), row.rule);
    if (value.isEmpty())
        return false;
    SettingMapping::readIntoSnapshot(row, value, &doc.snapshotSlot(index));
    return true;
}

// Kept lines keep their quotes; only tabs become blanks.
QString keptForm(QByteArrayView line)
{
    return QString::fromLatin1(line).replace(u'\t', u' ');
}

// Whether an examined line could start with "set" or "bind": most lines of a file (comments,
// empty lines, other commands) are passed over without being examined.
bool mayMatter(QByteArrayView line)
{
    for (char c : line) {
        if (c != '"')
            return c == 's' || c == 'S' || c == 'b' || c == 'B';
    }
    return false;
}

// Whether a line the reader passes over says nothing: blanks, tabs and quotes only, or a comment.
bool blankOrComment(QByteArrayView line)
{
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == ' ' || c == '\t' || c == '"' || c == '\f' || c == '\v')
            continue;
        return c == '/' && i + 1 < line.size() && line[i + 1] == '/';
    }
    return true;
}

// A dropped line's first word, as a console reads it: up to a blank, a tab or a semicolon.
QString firstWord(QByteArrayView line)
{
    const QString text = CfgText::trimBlanks(CfgText::examined(line));
    qsizetype end = 0;
    while (end < text.size() && text[end] != u' ' && text[end] != u';')
        ++end;
    return CfgText::asciiLower(text.first(end));
}

// Where the first "//" of a line starts; the line's length when it has none.
qsizetype commentStart(QByteArrayView line)
{
    for (qsizetype slash = line.indexOf('/'); slash >= 0; slash = line.indexOf('/', slash + 1)) {
        if (slash + 1 < line.size() && line[slash + 1] == '/')
            return slash;
    }
    return line.size();
}

} // namespace

namespace ConfigReader {

QString backupFailedMessage()
{
    return QStringLiteral("Tarnwick wasn't be able to create or/and load backup file.");
}

QByteArray workingCopy(const QByteArray &fileBytes)
{
    const qsizetype n = fileBytes.size();
    // Written straight into a buffer sized for the worst case: every line gains at most a CR LF of its own, and
    // every LF inside one becomes a CR LF.
    const qsizetype crs = std::count(fileBytes.cbegin(), fileBytes.cend(), '\r');
    const qsizetype lfs = std::count(fileBytes.cbegin(), fileBytes.cend(), '\n');
    QByteArray copy(n + 2 * (crs + 1) + lfs, Qt::Uninitialized);
    char *out = copy.data();
    const auto put = [&out](QByteArrayView piece) {
        std::memcpy(out, piece.data(), size_t(piece.size()));
        out += piece.size();
    };
    const auto endLine = [&out] {
        *out++ = '\r';
        *out++ = '\n';
    };
    const char *const bytes = fileBytes.constData();
    qsizetype pos = 0;
    while (pos < n) {
        // A physical line ends at CR LF or a lone CR; a lone LF stays inside it.
        const void *found = std::memchr(bytes + pos, '\r', size_t(n - pos));
        const bool terminated = found != nullptr;
        const qsizetype cr = terminated ? static_cast<const char *>(found) - bytes : n;
        qsizetype next = cr + (terminated ? 1 : 0);
        if (terminated && next < n && bytes[next] == '\n')
            ++next;
        QByteArrayView line(bytes + pos, cr - pos);
        // Every line but the file's last loses its comment, even one inside quotes.
        if (next < n)
            line = line.first(commentStart(line));
        // The copy turns every LF into CR LF, so those pieces become lines of their own.
        endLine();
        for (qsizetype lf = line.indexOf('\n'); lf >= 0; lf = line.indexOf('\n')) {
            put(line.first(lf));
            endLine();
            line = line.sliced(lf + 1);
        }
        put(line);
        pos = next;
    }
    copy.truncate(out - copy.constData());
    return copy;
}

void applyWorkingCopy(ConfigDocument &doc, const QByteArray &copy, FileScope scope)
{
    if (scope == FileScope::Whole)
        NewAllClear(doc);
    else if (scope == FileScope::Controls)
        doc.bindingsForUpdate().ClearAllBindings();
    const bool takesBindings = scope == FileScope::Whole || scope == FileScope::Controls;

    QStringList kept;
    QString examined; // one buffer for every line
    const qsizetype n = copy.size();
    qsizetype pos = 0;
    while (pos < n) {
        // The copy's lines end in CR LF, and no CR stands anywhere else.
        qsizetype end = copy.indexOf('\r', pos);
        if (end < 0)
            end = n;
        const QByteArrayView line(copy.constData() + pos, end - pos);
        pos = end + 2;
        if (!mayMatter(line))
            continue;
        CfgText::examineInto(line, examined);
        if (CfgText::startsWithNoCase(examined, u"set")) {
            if (!takeSettingLine(doc, examined, scope))
                kept.append(keptForm(line));
        } else if (takesBindings && CfgText::startsWithNoCase(examined, u"bind")) {
            doc.bindingsForUpdate().applyExaminedBindLine(examined);
        }
    }
    doc.setKeptLines(std::move(kept));
    doc.ApplySnapshot();
    doc.setCanRestore(true);
}

DroppedLines droppedLines(const QByteArray &copy, qsizetype examples)
{
    DroppedLines dropped;
    dropped.examples = examples;
    const qsizetype n = copy.size();
    qsizetype number = 0; // the copy's first line is its own empty one: the file's lines count from 1
    for (qsizetype pos = 0; pos < n; ++number) {
        qsizetype end = copy.indexOf('\r', pos);
        if (end < 0)
            end = n;
        const QByteArrayView line(copy.constData() + pos, end - pos);
        pos = end + 2;
        // The same decisions as applyWorkingCopy's: a setting line is always carried (taken or kept), a bind
        // line when it binds an action.
        if (mayMatter(line)) {
            const QString examined = CfgText::examined(line);
            if (CfgText::startsWithNoCase(examined, u"set"))
                continue;
            if (CfgText::startsWithNoCase(examined, u"bind") && ActionBindings::bindsAnAction(examined))
                continue;
        } else if (blankOrComment(line)) {
            continue;
        }
        ++dropped.count;
        if (examples < 0 || dropped.lines.size() < examples)
            dropped.lines.append({ number, line.toByteArray() });
        if (dropped.commands.size() < 3) {
            const QString word = firstWord(line);
            if (!word.isEmpty() && !dropped.commands.contains(word))
                dropped.commands.append(word);
        }
    }
    return dropped;
}

QString dropReason(QByteArrayView line)
{
    const QString examined = CfgText::examined(line);
    if (examined.startsWith(u' '))
        return QStringLiteral("starts with a blank");
    const QString word = firstWord(line);
    if (word == u"bind")
        return QStringLiteral("binds a key to none of the 37 actions");
    // A name the program knows, or one of the game's prefixed names, followed by a value: a variable.
    const QString rest = CfgText::trimBlanks(QStringView(examined).mid(word.size())); // the word starts the line
    if (!rest.isEmpty() && !rest.startsWith(u';')
        && (SettingCatalog::instance().indexOfSetting(word) >= 0 || word.contains(u'_')))
        return QStringLiteral("a variable without set or seta");
    return QStringLiteral("a console command");
}

bool writtenByTarnwick(QByteArrayView fileBytes)
{
    const QByteArray header = ConfigWriter::header().toLatin1();
    if (!fileBytes.startsWith(header))
        return false;
    const QByteArrayView rest = fileBytes.sliced(header.size());
    return rest.isEmpty() || rest.front() == '\r' || rest.front() == '\n';
}

} // namespace ConfigReader

QString GetSetaValue(const QString &line, const QString &name, const ReadRule &rule)
{
    const QString examined = CfgText::examined(line);
    const qsizetype start = keywordLength(examined);
    if (start == 0 || !CfgText::startsWithNoCase(QStringView(examined).mid(start), name))
        return QString();
    const qsizetype end = start + name.size();
    if (end < examined.size() && examined[end] != u' ')
        return QString();
    return applyRule(CfgText::trimBlanks(QStringView(examined).mid(end)), rule);
}

QString InfoValue(const QString &info, const QString &key)
{
    const qsizetype at = info.indexOf(key);
    if (at < 0)
        return QStringLiteral("0");
    return CfgNumber::formatNumber(CfgNumber::numericValue(QStringView(info).mid(at + key.size())));
}

bool ReadCfgFile(ConfigDocument &doc, const QString &path, FileScope scope, QString *error, DroppedLines *dropped)
{
    const auto fail = [error] {
        if (error)
            *error = ConfigReader::backupFailedMessage();
        return false;
    };
    // Only regular files: a folder or a device would fail, or never end.
    const QFileInfo info(path);
    if (!info.isFile())
        return fail();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail();
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return fail();
    file.close();
    const bool ours = ConfigReader::writtenByTarnwick(bytes);

    // The working copy lives in a fresh temporary folder, so read-only game folders still read.
    QTemporaryDir folder;
    if (!folder.isValid())
        return fail();
    QFile copy(folder.filePath(info.fileName() + QStringLiteral(".bcp")));
    if (!copy.open(QIODevice::WriteOnly))
        return fail();
    {
        const QByteArray content = ConfigReader::workingCopy(bytes);
        bytes = QByteArray();
        if (copy.write(content) != content.size() || !copy.flush())
            return fail();
    }
    copy.close();
    if (!copy.open(QIODevice::ReadOnly))
        return fail();
    const QByteArray content = copy.readAll();
    if (copy.error() != QFileDevice::NoError)
        return fail();
    copy.close();
    copy.remove();

    ConfigReader::applyWorkingCopy(doc, content, scope);
    if (dropped && scope == FileScope::Whole) {
        *dropped = ConfigReader::droppedLines(content, dropped->examples);
        dropped->writtenByTarnwick = ours;
    }
    return true;
}

bool OpenCfgFile(ConfigDocument &doc, const QString &path, QString *error)
{
    if (!ReadCfgFile(doc, path, FileScope::Whole, error))
        return false;
    doc.setFile(path, QFileInfo(path).fileName(), true);
    doc.setModified(false);
    return true;
}

#include "ProgramSettings.h"

#include "WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QStandardPaths>

#include <climits>
#include <cmath>
#include <optional>
#include <utility>

namespace {

const QString ownSection = QStringLiteral("Tarnwick");
constexpr qsizetype valueCap = 749; // what a 750-character buffer holds besides its terminator
const QByteArray bom("\xEF\xBB\xBF");

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

QString trimBlanks(const QString &text)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && isBlank(text[from]))
        ++from;
    while (to > from && isBlank(text[to - 1]))
        --to;
    return text.mid(from, to - from);
}

QString capped(QString text)
{
    if (text.size() > valueCap) {
        text.truncate(valueCap);
        if (text.back().isHighSurrogate())
            text.chop(1);
    }
    return text;
}

bool sameName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

/// An initialisation file as lines. Every line keeps its bytes, so the lines a write does not touch go back out as
/// they came in; only the line ends become CR LF.
class IniText
{
public:
    /// A missing file reads as an empty one.
    bool load(const QString &path, QString *error);
    std::optional<QString> value(const QString &sectionName, const QString &key) const;
    void set(const QString &sectionName, const QString &key, const QString &value);
    bool save(const QString &path, QString *error) const;

private:
    enum class Kind { Other, Section, Entry };
    struct Line
    {
        QByteArray bytes;
        Kind kind = Kind::Other;
        QString name; // the section's or the key's
        QString value;
    };
    struct Span
    {
        qsizetype header; // the section's own line
        qsizetype end; // the next section's line, or the end of the file
    };

    static Line parse(QByteArray bytes);
    std::optional<Span> findSection(const QString &sectionName) const;
    std::optional<qsizetype> findKey(const Span &span, const QString &key) const;

    bool m_bom = false;
    QList<Line> m_lines;
};

IniText::Line IniText::parse(QByteArray bytes)
{
    Line line;
    const QString text = trimBlanks(QString::fromUtf8(bytes));
    line.bytes = std::move(bytes);
    if (text.startsWith(u'[')) {
        const qsizetype close = text.indexOf(u']');
        line.kind = Kind::Section;
        line.name = trimBlanks(text.mid(1, close < 0 ? -1 : close - 1));
        return line;
    }
    const qsizetype equals = text.indexOf(u'=');
    if (text.startsWith(u';') || equals < 0)
        return line;
    line.kind = Kind::Entry;
    line.name = trimBlanks(text.left(equals));
    line.value = trimBlanks(text.mid(equals + 1));
    if (line.value.size() >= 2 && line.value.startsWith(u'"') && line.value.endsWith(u'"'))
        line.value = line.value.mid(1, line.value.size() - 2);
    return line;
}

bool IniText::load(const QString &path, QString *error)
{
    m_bom = false;
    m_lines.clear();
    QFile file(path);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = QStringLiteral("Could not read \"%1\": %2")
                         .arg(QFileInfo(path).absoluteFilePath(), file.errorString());
        }
        return false;
    }
    const QByteArray bytes = file.readAll();
    m_bom = bytes.startsWith(bom);
    qsizetype start = m_bom ? bom.size() : 0;
    for (qsizetype at = start; at < bytes.size(); ++at) {
        if (bytes[at] != '\r' && bytes[at] != '\n')
            continue;
        m_lines.append(parse(bytes.mid(start, at - start)));
        if (bytes[at] == '\r' && at + 1 < bytes.size() && bytes[at + 1] == '\n')
            ++at;
        start = at + 1;
    }
    if (start < bytes.size())
        m_lines.append(parse(bytes.mid(start)));
    return true;
}

std::optional<IniText::Span> IniText::findSection(const QString &sectionName) const
{
    for (qsizetype at = 0; at < m_lines.size(); ++at) {
        if (m_lines[at].kind != Kind::Section || !sameName(m_lines[at].name, sectionName))
            continue;
        qsizetype end = at + 1;
        while (end < m_lines.size() && m_lines[end].kind != Kind::Section)
            ++end;
        return Span { at, end };
    }
    return std::nullopt;
}

std::optional<qsizetype> IniText::findKey(const Span &span, const QString &key) const
{
    for (qsizetype at = span.header + 1; at < span.end; ++at) {
        if (m_lines[at].kind == Kind::Entry && sameName(m_lines[at].name, key))
            return at;
    }
    return std::nullopt;
}

std::optional<QString> IniText::value(const QString &sectionName, const QString &key) const
{
    const std::optional<Span> span = findSection(sectionName);
    if (!span)
        return std::nullopt;
    const std::optional<qsizetype> at = findKey(*span, key);
    return at ? std::optional(m_lines[*at].value) : std::nullopt;
}

void IniText::set(const QString &sectionName, const QString &key, const QString &value)
{
    // A line break in the value would start a new line of the file.
    QString flat = value;
    flat.replace(u'\r', u' ').replace(u'\n', u' ');
    Line entry = parse((key.toLower() + u'=' + flat).toUtf8());
    const std::optional<Span> span = findSection(sectionName);
    if (!span) {
        m_lines.append(parse((u'[' + sectionName + u']').toUtf8()));
        m_lines.append(std::move(entry));
        return;
    }
    if (const std::optional<qsizetype> at = findKey(*span, key)) {
        m_lines[*at] = std::move(entry);
        return;
    }
    // A new key goes after the section's last line that is not blank, so the blank lines parting it from the next
    // section stay where they are.
    qsizetype at = span->end;
    while (at > span->header + 1 && trimBlanks(QString::fromUtf8(m_lines[at - 1].bytes)).isEmpty())
        --at;
    m_lines.insert(at, std::move(entry));
}

bool IniText::save(const QString &path, QString *error) const
{
    QByteArray bytes = m_bom ? bom : QByteArray();
    for (const Line &line : m_lines)
        bytes += line.bytes + "\r\n";
    return WriteWholeFile(path, bytes, error);
}

QString readSetting(const IniText &text, const QString &sectionName, const QString &key, const QString &defaultValue)
{
    const QString value = capped(text.value(sectionName, key.toLower()).value_or(QString()));
    return value.isEmpty() ? capped(defaultValue.toLower()) : value;
}

/// A whole number, rounded half to even; nothing when the text is not a number or the number does not fit.
std::optional<int> wholeNumber(const QString &text)
{
    bool ok = false;
    const double number = trimBlanks(text).toDouble(&ok);
    if (!ok || !std::isfinite(number))
        return std::nullopt;
    const double rounded = std::nearbyint(number); // the default rounding mode takes halves to even
    if (rounded < double(INT_MIN) || rounded > double(INT_MAX))
        return std::nullopt;
    return int(rounded);
}

} // namespace

namespace IniFile {

QString ReadSetting(const QString &section, const QString &key, const QString &defaultValue, const QString &file)
{
    IniText text;
    text.load(file, nullptr); // an unreadable file gives the default, as a missing one does
    return readSetting(text, section, key, defaultValue);
}

bool WriteSetting(const QString &section, const QString &key, const QString &value, const QString &file, QString *error)
{
    IniText text;
    if (!text.load(file, error))
        return false;
    text.set(section, key, value);
    return text.save(file, error);
}

} // namespace IniFile

ProgramSettings pbLoadOptions(const QString &file, int centredLeft, int centredTop, bool *fellBack)
{
    IniText text;
    text.load(file, nullptr);
    ProgramSettings settings;
    settings.q3dir = readSetting(text, ownSection, QStringLiteral("q3dir"), QString());
    const struct
    {
        QString key;
        QString fallback;
        int *field;
    } numbers[] = {
        { QStringLiteral("gradient"), QStringLiteral("1"), &settings.gradient },
        { QStringLiteral("aot"), QStringLiteral("0"), &settings.aot },
        { QStringLiteral("wx"), QString::number(centredLeft), &settings.wx },
        { QStringLiteral("wy"), QString::number(centredTop), &settings.wy },
        { QStringLiteral("pv_wx"), QStringLiteral("3600"), &settings.pv_wx },
        { QStringLiteral("pv_wy"), QStringLiteral("3600"), &settings.pv_wy },
        { QStringLiteral("pv_open"), QStringLiteral("0"), &settings.pv_open },
    };
    bool failed = false;
    for (const auto &number : numbers) {
        const std::optional<int> read = wholeNumber(readSetting(text, ownSection, number.key, number.fallback));
        if (!read) {
            failed = true;
            break;
        }
        *number.field = *read;
    }
    if (failed) {
        const QString q3dir = settings.q3dir;
        settings = ProgramSettings {};
        settings.q3dir = q3dir;
        settings.wx = centredLeft;
        settings.wy = centredTop;
    } else {
        // Older saves may hold a check box's true (-1) or grey (-2) state.
        if (settings.gradient == -1 || settings.gradient == -2)
            settings.gradient = 1;
        if (settings.aot == -1 || settings.aot == -2)
            settings.aot = 0;
    }
    if (fellBack)
        *fellBack = failed;
    return settings;
}

bool pbSaveOptions(const QString &file, const ProgramSettings &settings, bool minimized, QString *error)
{
    IniText text;
    if (!text.load(file, error))
        return false;
    text.set(ownSection, QStringLiteral("q3dir"), settings.q3dir);
    text.set(ownSection, QStringLiteral("gradient"), QString::number(settings.gradient));
    text.set(ownSection, QStringLiteral("aot"), QString::number(settings.aot));
    if (!minimized) { // a minimised window's position says nothing about where it should reopen
        text.set(ownSection, QStringLiteral("wx"), QString::number(settings.wx));
        text.set(ownSection, QStringLiteral("wy"), QString::number(settings.wy));
    }
    text.set(ownSection, QStringLiteral("pv_wx"), QString::number(settings.pv_wx));
    text.set(ownSection, QStringLiteral("pv_wy"), QString::number(settings.pv_wy));
    text.set(ownSection, QStringLiteral("pv_open"), QString::number(settings.pv_open));
    return text.save(file, error);
}

QString settingsFilePath(const QString &programFolder)
{
    const QString name = QStringLiteral("tarnwick.ini");
    const QFileInfo folder(programFolder);
    if (!programFolder.isEmpty() && folder.isDir() && folder.isWritable()
        && installedDataFolder(programFolder).isEmpty())
        return QDir(programFolder).filePath(name);
    const QString config = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QDir().mkpath(config);
    return QDir(config).filePath(name);
}

QString installedDataFolder(const QString &programFolder)
{
    if (programFolder.isEmpty())
        return QString();
    const QString folder
        = QDir::cleanPath(QDir(programFolder).absoluteFilePath(QStringLiteral(TARNWICK_DATA_FROM_BIN)));
    return QFileInfo(folder).isDir() ? folder : QString();
}

QString programDataFile(const QString &programFolder, const QString &name)
{
    const QString beside = QDir(programFolder).filePath(name);
    const QString data = installedDataFolder(programFolder);
    if (QFileInfo::exists(beside) || data.isEmpty())
        return beside;
    return QDir(data).filePath(name);
}

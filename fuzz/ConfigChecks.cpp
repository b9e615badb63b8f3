// The checks of the configuration file (reader, rewrite) and of the bind lines.
#include "FuzzTargets.h"

#include "ActionBindings.h"
#include "CfgText.h"
#include "ConfigReader.h"
#include "ConfigWriter.h"
#include "Defaults.h"

#include <QDir>
#include <QList>

namespace {

// Where two files part: the first differing line of each, percent-encoded so control bytes show.
QString firstDifference(const QByteArray &a, const QByteArray &b)
{
    const QList<QByteArray> left = a.split('\n');
    const QList<QByteArray> right = b.split('\n');
    qsizetype line = 0;
    while (line < left.size() && line < right.size() && left[line] == right[line])
        ++line;
    const auto shown = [line](const QList<QByteArray> &lines) {
        return line < lines.size() ? QString::fromLatin1(lines[line].toPercentEncoding(" \"\\/"))
                                   : QStringLiteral("<end>");
    };
    return QStringLiteral("they part at line %1:\n  %2\n  %3")
        .arg(QString::number(line + 1), shown(left), shown(right));
}

// tarnwick-cli rewrite IN OUT: a freshly started document opens IN whole and saves it as OUT.
QByteArray rewriteOnce(const QString &in, const QString &out, QString *problem)
{
    ConfigDocument doc;
    StartUpDocument(doc);
    QString error;
    if (!OpenCfgFile(doc, in, &error) || !SaveCfgFileAs(doc, out, &error)) {
        *problem = QStringLiteral("rewrite %1: %2").arg(in, error);
        return {};
    }
    return FuzzTargets::fileContent(out);
}

QString checkDroppedLines(const QByteArray &copy)
{
    const DroppedLines dropped = ConfigReader::droppedLines(copy, -1);
    if (dropped.lines.size() != dropped.count || dropped.commands.size() > 3)
        return QStringLiteral("the dropped lines do not add up");
    // The copy's own empty first line is line 0; each CR LF starts the next.
    const qsizetype lastLine = copy.count("\r\n");
    qsizetype previous = 0;
    for (const auto &[number, line] : dropped.lines) {
        if (number <= previous || number > lastLine)
            return QStringLiteral("dropped line number %1 out of order or past the end").arg(number);
        previous = number;
    }
    return {};
}

} // namespace

namespace FuzzTargets {

QString reader(QByteArrayView input)
{
    if (input.isEmpty())
        return {};
    const auto scope = static_cast<FileScope>(uchar(input[0]) % 5);
    const QByteArray copy = ConfigReader::workingCopy(input.sliced(1).toByteArray());
    ConfigDocument doc;
    StartUpDocument(doc);
    ConfigReader::applyWorkingCopy(doc, copy, scope);
    // A read of one area leaves the others as a read of an empty file of that area leaves them.
    if (scope != FileScope::Whole) {
        ConfigDocument empty;
        StartUpDocument(empty);
        ConfigReader::applyWorkingCopy(empty, QByteArray(), scope);
        for (const FileScope other :
            { FileScope::Renderer, FileScope::Controls, FileScope::HudDisplay, FileScope::Railgun }) {
            const QByteArray written = ConfigWriter::fileBytes(doc, other);
            const QByteArray untouched = ConfigWriter::fileBytes(empty, other);
            if (other != scope && written != untouched) {
                return QStringLiteral("a read of area %1 changed area %2; %3")
                    .arg(QString::number(int(scope)), QString::number(int(other)), firstDifference(untouched, written));
            }
        }
    }
    return checkDroppedLines(copy);
}

QString rewrite(QByteArrayView input)
{
    // The first rewrite may still change things (a comment on the last line only goes once that line is no longer
    // last; a key holding "//" on the last line is cut at the next read). From the second on, nothing may change.
    QString names[4];
    names[0] = scratchFile(QStringLiteral("rewrite-0.cfg"), input);
    QByteArray written[4];
    for (int pass = 1; pass <= 3; ++pass) {
        QString problem;
        names[pass] = QDir(scratchFolder()).filePath(QStringLiteral("rewrite-%1.cfg").arg(pass));
        written[pass] = rewriteOnce(names[pass - 1], names[pass], &problem);
        if (!problem.isEmpty())
            return problem;
    }
    if (written[3] != written[2])
        return QStringLiteral("rewrites 2 and 3 differ; ") + firstDifference(written[2], written[3]);
    if (const QString problem = checkDroppedLines(ConfigReader::workingCopy(written[2])); !problem.isEmpty())
        return problem;
    // A save keeps every line of a file it wrote itself.
    if (ConfigReader::droppedLines(ConfigReader::workingCopy(written[2]), 1).count != 0)
        return QStringLiteral("the second rewrite holds a line its own read does not carry");
    return {};
}

QString bindLines(QByteArrayView input)
{
    ActionBindings bindings;
    int lineNumber = 0;
    for (const QByteArrayView line : QByteArray::fromRawData(input.data(), input.size()).split('\n')) {
        const QString text = QString::fromLatin1(line);
        ActionBindings alone;
        alone.ApplyBindLine(text);
        // The three ways into a bind line agree. ParseBindLine examines the line anew for every action: it is asked
        // about them all only for a line that binds one, else about one action a line, so each run stays quick.
        const bool binds = ActionBindings::bindsAnAction(CfgText::examined(text));
        if (binds != (alone != ActionBindings()))
            return QStringLiteral("bindsAnAction and ApplyBindLine disagree on \"%1\"").arg(text);
        const int first = binds ? 0 : lineNumber % ActionTable::Count;
        const int end = binds ? ActionTable::Count : first + 1;
        ++lineNumber;
        for (int action = first; action < end; ++action) {
            const QString parsed = ParseBindLine(text, ActionTable::command(action)).value_or(QString());
            if (parsed != alone.key(action, KeySlot::First)) {
                return QStringLiteral("ParseBindLine gives \"%1\", ApplyBindLine \"%2\" for action %3 on \"%4\"")
                    .arg(parsed, alone.key(action, KeySlot::First), QString::number(action), text);
            }
        }
        bindings.ApplyBindLine(text);
    }
    // What the writer makes of the bindings reads back as the same bindings.
    ActionBindings again;
    for (int action = 0; action < ActionTable::Count; ++action) {
        for (const QString &line : bindings.BindLinesFor(action))
            again.ApplyBindLine(line);
    }
    for (int action = 0; action < ActionTable::Count; ++action) {
        if (again.at(action) != bindings.at(action)) {
            return QStringLiteral("action %1 was \"%2\" \"%3\", reads back as \"%4\" \"%5\"")
                .arg(QString::number(action), bindings.key(action, KeySlot::First),
                    bindings.key(action, KeySlot::Second), again.key(action, KeySlot::First),
                    again.key(action, KeySlot::Second));
        }
    }
    return {};
}

} // namespace FuzzTargets

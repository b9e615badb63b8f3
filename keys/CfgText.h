// CfgText: the small text rules every configuration line is examined with.
// Files are 8-bit: one character per byte (Latin-1), so case rules touch ASCII letters only
// and every other byte passes through unchanged.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace CfgText {

/// Blanks are spaces only; a tab counts as one once tabsToBlanks has run.
QString trimBlanks(QStringView text);
QString asciiLower(QStringView text);
QString asciiUpper(QStringView text);
/// The copy of a line that the reader examines: every double quote gone, every tab a blank.
QString examined(QStringView line);
/// The same, straight from a line's bytes (one character per byte).
QString examined(QByteArrayView line);
/// The same into `out`, whose buffer is reused from line to line.
void examineInto(QByteArrayView line, QString &out);
bool startsWithNoCase(QStringView text, QStringView prefix);
bool equalsNoCase(QStringView a, QStringView b);

} // namespace CfgText

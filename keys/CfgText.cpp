#include "CfgText.h"

#include <cstring>

namespace CfgText {

namespace {
    QChar lowerOf(QChar c)
    {
        return (c >= u'A' && c <= u'Z') ? QChar(c.unicode() + 32) : c;
    }
    QChar upperOf(QChar c)
    {
        return (c >= u'a' && c <= u'z') ? QChar(c.unicode() - 32) : c;
    }
} // namespace

QString trimBlanks(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text[begin] == u' ')
        ++begin;
    while (end > begin && text[end - 1] == u' ')
        --end;
    return text.mid(begin, end - begin).toString();
}

QString asciiLower(QStringView text)
{
    QString out(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        out[i] = lowerOf(text[i]);
    return out;
}

QString asciiUpper(QStringView text)
{
    QString out(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        out[i] = upperOf(text[i]);
    return out;
}

QString examined(QStringView line)
{
    QString out(line.size(), Qt::Uninitialized);
    QChar *to = out.data();
    for (QChar c : line) {
        if (c != u'"')
            *to++ = c == u'\t' ? QChar(u' ') : c;
    }
    out.truncate(to - out.constData());
    return out;
}

QString examined(QByteArrayView line)
{
    QString out;
    examineInto(line, out);
    return out;
}

void examineInto(QByteArrayView line, QString &out)
{
    out.resize(line.size());
    char16_t *to = reinterpret_cast<char16_t *>(out.data());
    const qsizetype n = line.size();
    const char *const from = line.data();
    if (!std::memchr(from, '"', size_t(n)) && !std::memchr(from, '\t', size_t(n))) {
        // Most lines hold neither: a plain widening copy, which the compiler vectorises.
        for (qsizetype i = 0; i < n; ++i)
            to[i] = char16_t(static_cast<unsigned char>(from[i]));
        return;
    }
    for (char c : line) {
        if (c != '"')
            *to++ = c == '\t' ? u' ' : char16_t(static_cast<unsigned char>(c));
    }
    out.truncate(to - reinterpret_cast<const char16_t *>(out.constData()));
}

bool startsWithNoCase(QStringView text, QStringView prefix)
{
    if (text.size() < prefix.size())
        return false;
    for (qsizetype i = 0; i < prefix.size(); ++i) {
        if (lowerOf(text[i]) != lowerOf(prefix[i]))
            return false;
    }
    return true;
}

bool equalsNoCase(QStringView a, QStringView b)
{
    return a.size() == b.size() && startsWithNoCase(a, b);
}

} // namespace CfgText

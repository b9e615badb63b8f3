#include "CfgText.h"

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
    QString out(line.size(), Qt::Uninitialized);
    QChar *to = out.data();
    for (char c : line) {
        if (c != '"')
            *to++ = c == '\t' ? QChar(u' ') : QChar::fromLatin1(c);
    }
    out.truncate(to - out.constData());
    return out;
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

#include "CfgNumber.h"

#include <QLocale>
#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace CfgNumber {

namespace {

    bool isDigit(QChar c)
    {
        return c >= u'0' && c <= u'9';
    }

    // Length of the longest decimal number at the start of `text`, or 0 when there is none.
    qsizetype leadingNumberLength(QStringView text)
    {
        qsizetype i = 0;
        const qsizetype n = text.size();
        if (i < n && (text[i] == u'+' || text[i] == u'-'))
            ++i;
        qsizetype digits = 0;
        while (i < n && isDigit(text[i]))
            ++i, ++digits;
        if (i < n && text[i] == u'.') {
            qsizetype j = i + 1;
            qsizetype fraction = 0;
            while (j < n && isDigit(text[j]))
                ++j, ++fraction;
            if (digits + fraction > 0) {
                i = j;
                digits += fraction;
            }
        }
        if (digits == 0)
            return 0;
        if (i < n && (text[i] == u'e' || text[i] == u'E')) {
            qsizetype j = i + 1;
            if (j < n && (text[j] == u'+' || text[j] == u'-'))
                ++j;
            const qsizetype expStart = j;
            while (j < n && isDigit(text[j]))
                ++j;
            if (j > expStart)
                i = j;
        }
        return i;
    }

    // Converts a text that is known to be a decimal number. Values beyond the double range
    // become the largest finite double, values below it zero, each with its sign.
    double convert(QStringView number)
    {
        const bool negative = number.startsWith(u'-');
        if (number.startsWith(u'+') || negative)
            number = number.mid(1);
        // Short numbers, nearly all of them, convert without touching the heap.
        std::array<char, 64> onStack {};
        std::string onHeap;
        char *buffer = onStack.data();
        if (number.size() > qsizetype(onStack.size())) {
            onHeap.resize(size_t(number.size()));
            buffer = onHeap.data();
        }
        for (qsizetype i = 0; i < number.size(); ++i)
            buffer[i] = char(number[i].unicode()); // digits, point, exponent: all ASCII
        const std::string_view bytes(buffer, size_t(number.size()));
        double value = 0;
        const auto [end, ec] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), value);
        Q_UNUSED(end);
        if (ec == std::errc::result_out_of_range) {
            // Decide overflow or underflow from the magnitude of the first significant digit.
            const auto ePos = bytes.find_first_of("eE");
            const std::string_view mantissa = bytes.substr(0, ePos);
            long exponent = 0;
            if (ePos != std::string_view::npos) {
                const std::string_view e = bytes.substr(ePos + 1);
                const bool eNegative = !e.empty() && e[0] == '-';
                for (char c : e) {
                    if (c >= '0' && c <= '9')
                        exponent = std::min(exponent * 10 + (c - '0'), 100000L);
                }
                if (eNegative)
                    exponent = -exponent;
            }
            const auto point = mantissa.find('.');
            const auto firstSignificant = mantissa.find_first_of("123456789");
            const long intDigits = long(point == std::string_view::npos ? mantissa.size() : point);
            const long position = long(firstSignificant);
            const long magnitude = (position < intDigits ? intDigits - position - 1 : intDigits - position) + exponent;
            value = magnitude > 0 ? DBL_MAX : 0.0;
        }
        return negative ? -value : value;
    }

} // namespace

std::optional<double> parse(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text[begin] == u' ')
        ++begin;
    while (end > begin && text[end - 1] == u' ')
        --end;
    const QStringView trimmed = text.mid(begin, end - begin);
    const qsizetype length = leadingNumberLength(trimmed);
    if (length == 0 || length != trimmed.size())
        return std::nullopt;
    return convert(trimmed);
}

double numericValue(QStringView text)
{
    qsizetype begin = 0;
    while (begin < text.size() && text[begin] == u' ')
        ++begin;
    const QStringView rest = text.mid(begin);
    const qsizetype length = leadingNumberLength(rest);
    return length == 0 ? 0.0 : convert(rest.left(length));
}

double roundHalfEven(double value)
{
    return std::nearbyint(value);
}

double roundHalfAway(double value)
{
    return std::round(value);
}

QString formatInteger(double value)
{
    if (value == 0)
        return QStringLiteral("0");
    return QString::number(value, 'f', 0);
}

QString formatNumber(double value)
{
    if (value == std::trunc(value))
        return formatInteger(value);
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

QString formatTenths(int tenths)
{
    const QString sign = tenths < 0 ? QStringLiteral("-") : QString();
    const int magnitude = std::abs(tenths);
    if (magnitude % 10 == 0)
        return sign + QString::number(magnitude / 10);
    return sign + QString::number(magnitude / 10) + u'.' + QString::number(magnitude % 10);
}

int clampToRange(double value, int minimum, int maximum)
{
    if (std::isnan(value) || value <= minimum)
        return minimum;
    if (value >= maximum)
        return maximum;
    return int(value);
}

} // namespace CfgNumber

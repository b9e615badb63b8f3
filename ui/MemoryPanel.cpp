#include "MemoryPanel.h"

#include <charconv>
#include <cmath>

#if defined(Q_OS_LINUX)
#include <fcntl.h>
#include <unistd.h>
#elif defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace {

// The value of a "Key:   123 kB" line, or nothing when the key is missing or malformed.
std::optional<quint64> memInfoField(std::string_view text, std::string_view key)
{
    std::size_t at = 0;
    while ((at = text.find(key, at)) != std::string_view::npos) {
        if (at == 0 || text[at - 1] == '\n')
            break;
        at += key.size();
    }
    if (at == std::string_view::npos)
        return std::nullopt;
    std::size_t pos = at + key.size();
    while (pos < text.size() && text[pos] == ' ')
        ++pos;
    quint64 value = 0;
    const auto [end, ec] = std::from_chars(text.data() + pos, text.data() + text.size(), value);
    if (ec != std::errc() || end == text.data() + pos)
        return std::nullopt;
    return value;
}

// At least four digits, grouped in threes: 512 -> "0,512".
QString groupedK(quint64 value, const QString &separator)
{
    const QString digits = QString::number(value).rightJustified(4, QLatin1Char('0'));
    QString out;
    out.reserve(digits.size() + digits.size() / 3 * separator.size());
    for (qsizetype i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            out += separator;
        out += digits.at(i);
    }
    return out;
}

} // namespace

MemoryPanel::MemoryPanel(QWidget *parent)
    : QLabel(parent)
{
    setObjectName(QStringLiteral("PAN2"));
    setMinimumWidth(102);
#if defined(Q_OS_LINUX)
    m_fd = ::open("/proc/meminfo", O_RDONLY | O_CLOEXEC);
#endif
}

MemoryPanel::~MemoryPanel()
{
#if defined(Q_OS_LINUX)
    if (m_fd >= 0)
        ::close(m_fd);
#endif
}

std::optional<MemoryStatus> MemoryPanel::parseMemInfo(std::string_view text)
{
    const auto total = memInfoField(text, "MemTotal:");
    const auto available = memInfoField(text, "MemAvailable:");
    if (!total || !available || *total == 0)
        return std::nullopt;
    return MemoryStatus { *total, *available };
}

std::optional<MemoryStatus> MemoryPanel::query()
{
#if defined(Q_OS_LINUX)
    if (m_fd < 0)
        return std::nullopt;
    // Both fields sit in the first lines of the file, so one short read from the start is enough; this runs
    // every 50 ms.
    char buffer[512];
    const ssize_t n = ::pread(m_fd, buffer, sizeof buffer, 0);
    if (n <= 0)
        return std::nullopt;
    return parseMemInfo(std::string_view(buffer, std::size_t(n)));
#elif defined(Q_OS_WIN)
    MEMORYSTATUSEX status {};
    status.dwLength = sizeof status;
    if (!GlobalMemoryStatusEx(&status))
        return std::nullopt;
    return MemoryStatus { status.ullTotalPhys / 1024, status.ullAvailPhys / 1024 };
#else
    return std::nullopt;
#endif
}

QString MemoryPanel::panelText(const MemoryStatus &status)
{
    // A total below a hundred kilobytes has no whole hundredth to divide by.
    const long percent
        = status.totalK < 100 ? 0 : std::lround(double(status.availableK) / (double(status.totalK) / 100.0));
    return QStringLiteral("Free RAM Mem: %1%").arg(percent);
}

QString MemoryPanel::toolTipText(const MemoryStatus &status, const QLocale &locale)
{
    const quint64 used = status.totalK > status.availableK ? status.totalK - status.availableK : 0;
    const QString separator = locale.groupSeparator();
    return QStringLiteral("RAM Mem Usage (K): ") + groupedK(used, separator) + QStringLiteral(" / ")
        + groupedK(status.totalK, separator);
}

void MemoryPanel::refresh()
{
    const auto status = query();
    if (!status)
        return;
    setText(panelText(*status));
    setToolTip(toolTipText(*status, locale()));
}

// MemoryPanel: the status bar panel that shows the machine's free physical memory.
#pragma once

#include <QLabel>
#include <QLocale>
#include <optional>
#include <string_view>

struct MemoryStatus
{
    quint64 totalK = 0; // physical memory, in kilobytes
    quint64 availableK = 0; // of which available
};

class MemoryPanel : public QLabel
{
    Q_OBJECT

public:
    explicit MemoryPanel(QWidget *parent = nullptr);
    ~MemoryPanel() override;

    /// The machine's memory now (Linux: /proc/meminfo MemTotal and MemAvailable; Windows:
    /// GlobalMemoryStatusEx); nothing when it can't be read.
    std::optional<MemoryStatus> query();
    /// MemTotal and MemAvailable from the text of /proc/meminfo; nothing when either is missing.
    static std::optional<MemoryStatus> parseMemInfo(std::string_view text);
    /// "Free RAM Mem: 25%".
    static QString panelText(const MemoryStatus &status);
    /// "RAM Mem Usage (K): 98,304 / 131,072", grouped by the locale's separator, at least four digits.
    static QString toolTipText(const MemoryStatus &status, const QLocale &locale);

    /// One refresh: query, then set text and tool tip (the window's 50 ms timer calls this).
    void refresh();

private:
    int m_fd = -1; // /proc/meminfo, opened once and re-read from the start
};

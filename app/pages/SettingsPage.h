// SettingsPage: one page container of the main window — the page's controls, scrolling only when a
// larger desktop font makes them taller than the page area.
#pragma once

#include <QScrollArea>

class SettingsPage : public QScrollArea
{
    Q_OBJECT

public:
    /// A container named `name` (picPlayer, picGFX, ...) holding `content`.
    SettingsPage(const QString &name, QWidget *content, QWidget *parent = nullptr);
};

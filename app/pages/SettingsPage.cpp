#include "SettingsPage.h"

SettingsPage::SettingsPage(const QString &name, QWidget *content, QWidget *parent)
    : QScrollArea(parent)
{
    setObjectName(name);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setWidget(content);
    // The page shows the window's own background, not a list-like base colour.
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

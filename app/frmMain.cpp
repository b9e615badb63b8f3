#include "frmMain.h"

#include "Defaults.h"

#include <QLabel>

frmMain::frmMain(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMain"));
    StartUpDocument(m_document);
    auto *placeholder = new QLabel(tr("The settings pages are on their way."), this);
    placeholder->setAlignment(Qt::AlignCenter);
    setCentralWidget(placeholder);
    resize(760, 540);
    connect(&m_document, &ConfigDocument::fileChanged, this, &frmMain::SetTitle);
    SetTitle();
}

void frmMain::SetTitle()
{
    const QString title = QStringLiteral("Tarnwick");
    const QString name = m_document.displayName().trimmed();
    setWindowTitle(name.isEmpty() ? title : m_document.displayName() + QStringLiteral(" - ") + title);
}

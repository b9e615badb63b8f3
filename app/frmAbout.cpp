#include "frmAbout.h"

#include "LinkLabel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#ifndef TARNWICK_VERSION_MAJOR
#define TARNWICK_VERSION_MAJOR 0
#endif
#ifndef TARNWICK_VERSION_MINOR
#define TARNWICK_VERSION_MINOR 1
#endif

namespace {

struct Credit
{
    const char *heading;
    const char *name;
    const char *address;
};

constexpr Credit Credits[] = {
    { QT_TRANSLATE_NOOP("frmAbout", "Written by"), "The Tarnwick developers", "mailto:developers@tarnwick.invalid" },
    { QT_TRANSLATE_NOOP("frmAbout", "Special thanks to:"), "Everyone who shared a config",
        "mailto:players@tarnwick.invalid" },
};

} // namespace

frmAbout::frmAbout(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(tr("About Tarnwick"));
    setModal(true);

    auto *layout = new QGridLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->setHorizontalSpacing(12);

    auto *lblProgName = new QLabel(programNameText(TARNWICK_VERSION_MAJOR, TARNWICK_VERSION_MINOR), this);
    lblProgName->setObjectName(QStringLiteral("lblProgName"));
    lblProgName->setAlignment(Qt::AlignCenter);
    QFont nameFont = lblProgName->font();
    nameFont.setBold(true);
    nameFont.setPointSizeF(nameFont.pointSizeF() * 1.5);
    lblProgName->setFont(nameFont);
    layout->addWidget(lblProgName, 0, 0, 1, 2);
    layout->setRowMinimumHeight(1, 8);

    int row = 2;
    for (const Credit &credit : Credits) {
        const QString name = QString::fromLatin1(credit.name);
        auto *link = new LinkLabel(name, QUrl(QString::fromLatin1(credit.address)), this);
        link->setToolTip(tr("Send an e-mail to %1").arg(name));
        connect(link, &LinkLabel::activated, this, &frmAbout::linkActivated);
        layout->addWidget(new QLabel(tr(credit.heading), this), row, 0, Qt::AlignRight);
        layout->addWidget(link, row, 1, Qt::AlignLeft);
        ++row;
    }
    layout->setRowMinimumHeight(row++, 8);

    auto *cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(cmdOK, row, 0, 1, 2, Qt::AlignCenter);
}

QString frmAbout::programNameText(int major, int minor)
{
    return QStringLiteral("Tarnwick\nv%1.%2 (BETA)").arg(major).arg(minor);
}

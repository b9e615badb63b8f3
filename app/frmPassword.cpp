#include "frmPassword.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmPassword::frmPassword(QWidget *parent)
    : QDialog(parent)
    , m_txtPass(new QLineEdit(this))
{
    setObjectName(QStringLiteral("frmPassword"));
    setWindowTitle(tr("Password"));
    setModal(true);

    m_txtPass->setObjectName(QStringLiteral("txtPass"));
    m_txtPass->setEchoMode(QLineEdit::Password);
    m_txtPass->setMinimumWidth(160);
    auto *label = new QLabel(tr("Password:"), this);
    label->setBuddy(m_txtPass);

    auto *cmdOK = new QPushButton(tr("&OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(tr("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *layout = new QGridLayout(this);
    layout->addWidget(label, 0, 0);
    layout->addWidget(m_txtPass, 0, 1, 1, 2);
    layout->addWidget(cmdOK, 1, 1);
    layout->addWidget(cmdCancel, 1, 2);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void frmPassword::setPassword(const QString &password)
{
    m_txtPass->setText(password);
    m_txtPass->selectAll();
}

QString frmPassword::password() const
{
    return m_txtPass->text();
}

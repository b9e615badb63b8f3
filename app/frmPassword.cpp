#include "frmPassword.h"

#include "OkCancelButtons.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

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

    auto *layout = new QGridLayout(this);
    layout->addWidget(label, 0, 0);
    layout->addWidget(m_txtPass, 0, 1);
    layout->addWidget(OkCancelButtons(this), 1, 0, 1, 2);
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

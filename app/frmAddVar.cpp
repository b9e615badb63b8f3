#include "frmAddVar.h"

#include "OkCancelButtons.h"
#include "Prompts.h"
#include "Variables.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

frmAddVar::frmAddVar(QWidget *parent)
    : QDialog(parent)
    , m_name(new QLineEdit(this))
    , m_value(new QLineEdit(this))
{
    setObjectName(QStringLiteral("frmAddVar"));
    setWindowTitle(QStringLiteral("Add Variable"));
    setModal(true);
    m_name->setObjectName(QStringLiteral("txtVarName"));
    m_value->setObjectName(QStringLiteral("txtVarValue"));
    m_name->setMinimumWidth(fontMetrics().averageCharWidth() * 32);
    auto *nameLabel = new QLabel(QStringLiteral("&Name:"), this);
    nameLabel->setBuddy(m_name);
    auto *valueLabel = new QLabel(QStringLiteral("&Value:"), this);
    valueLabel->setBuddy(m_value);

    auto *layout = new QGridLayout(this);
    layout->addWidget(nameLabel, 0, 0);
    layout->addWidget(m_name, 0, 1);
    layout->addWidget(valueLabel, 1, 0);
    layout->addWidget(m_value, 1, 1);
    layout->addWidget(OkCancelButtons(this), 2, 0, 1, 2);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void frmAddVar::prepare()
{
    m_name->clear();
    m_value->clear();
    m_name->setFocus();
}

QString frmAddVar::variableName() const
{
    return m_name->text().trimmed();
}

QString frmAddVar::value() const
{
    return m_value->text();
}

void frmAddVar::accept()
{
    const QString why = Variables::problem(variableName(), value());
    if (why.isEmpty()) {
        QDialog::accept();
        return;
    }
    Prompts::ask(this, Prompts::programTitle(), why, QMessageBox::Ok, QMessageBox::Warning);
    QLineEdit *wrong = Variables::nameProblem(variableName()).isEmpty() ? m_value : m_name;
    wrong->selectAll();
    wrong->setFocus();
}

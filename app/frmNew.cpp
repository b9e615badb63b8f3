#include "frmNew.h"

#include "OkCancelButtons.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmNew::frmNew(QWidget *parent)
    : QDialog(parent)
    , m_name(new QLineEdit)
{
    setObjectName(QStringLiteral("frmNew"));
    setWindowTitle(QStringLiteral("New"));
    auto *options = new QGroupBox(QStringLiteral("Options"));
    auto *optionLayout = new QVBoxLayout(options);
    const char *const captions[] = { "Keep Control Keys", "New All (Reset to Defaults)", "New All (Clear)" };
    for (int i = 0; i < 3; ++i) {
        m_options[i] = new QRadioButton(QString::fromLatin1(captions[i]));
        m_options[i]->setObjectName(QStringLiteral("optNew_%1").arg(i));
        optionLayout->addWidget(m_options[i]);
    }
    m_name->setObjectName(QStringLiteral("txtFName"));
    QDialogButtonBox *buttons = OkCancelButtons(this);

    auto *layout = new QGridLayout(this);
    layout->addWidget(options, 0, 0, 1, 2);
    layout->addWidget(new QLabel(QStringLiteral("Name:")), 1, 0);
    layout->addWidget(m_name, 1, 1);
    layout->addWidget(buttons, 2, 0, 1, 2);
    setFixedSize(sizeHint());
    prepare();
}

void frmNew::prepare()
{
    m_name->setText(QStringLiteral("Untitled"));
    m_name->selectAll();
    m_name->setFocus();
    m_options[int(NewMode::Clear)]->setChecked(true);
}

NewMode frmNew::mode() const
{
    for (int i = 0; i < 3; ++i) {
        if (m_options[i]->isChecked())
            return NewMode(i);
    }
    return NewMode::Clear;
}

QString frmNew::documentName() const
{
    const QString name = m_name->text().trimmed();
    return name.isEmpty() ? QStringLiteral("Untitled") : name;
}

#include "frmOptions.h"

#include "OkCancelButtons.h"
#include "Prompts.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmOptions::frmOptions(QWidget *parent)
    : QDialog(parent)
    , m_path(new QLineEdit)
    , m_gradient(new QCheckBox(QStringLiteral("Enable Gradient attribute")))
    , m_onTop(new QCheckBox(QStringLiteral("Always On &Top")))
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    m_path->setObjectName(QStringLiteral("txtPath"));
    m_path->setMinimumWidth(260);
    m_gradient->setObjectName(QStringLiteral("chkGrad"));
    m_onTop->setObjectName(QStringLiteral("chkTop"));
    auto *select = new QPushButton(QStringLiteral("&Select..."));
    select->setObjectName(QStringLiteral("cmdSelect"));
    connect(select, &QPushButton::clicked, this, &frmOptions::selectFolder);

    auto *frame = new QGroupBox;
    auto *frameLayout = new QGridLayout(frame);
    frameLayout->addWidget(new QLabel(QStringLiteral("Quake 3 Arena Folder:")), 0, 0, 1, 2);
    frameLayout->addWidget(m_path, 1, 0);
    frameLayout->addWidget(select, 1, 1);
    frameLayout->addWidget(m_gradient, 2, 0, 1, 2);
    frameLayout->addWidget(m_onTop, 3, 0, 1, 2);

    QDialogButtonBox *buttons = OkCancelButtons(this);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(frame);
    layout->addWidget(buttons);
    setFixedSize(sizeHint());
}

void frmOptions::prepare(const QString &gameFolder, bool gradient, bool onTop)
{
    m_path->setText(gameFolder);
    m_gradient->setChecked(gradient);
    m_onTop->setChecked(onTop);
}

QString frmOptions::gameFolder() const
{
    return m_path->text().trimmed();
}

bool frmOptions::gradient() const
{
    return m_gradient->isChecked();
}

bool frmOptions::onTop() const
{
    return m_onTop->isChecked();
}

void frmOptions::selectFolder()
{
    const QString chosen = Prompts::folderName(this, QStringLiteral("Select Quake III Arena Folder"), m_path->text());
    if (!chosen.isEmpty() && !Prompts::exitPending())
        m_path->setText(chosen);
}

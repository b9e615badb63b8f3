#include "TwinLabel.h"

#include <QLabel>
#include <QStackedLayout>

TwinLabel::TwinLabel(const QString &name, const QString &disabledName, QWidget *parent)
    : QWidget(parent)
    , m_normal(new QLabel(this))
    , m_greyed(new QLabel(this))
{
    m_normal->setObjectName(name);
    m_greyed->setObjectName(disabledName);
    m_greyed->setEnabled(false); // drawn in the style's greyed text colour
    auto *stack = new QStackedLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->addWidget(m_normal);
    stack->addWidget(m_greyed);
}

QString TwinLabel::text() const
{
    return m_normal->text();
}

void TwinLabel::setText(const QString &text)
{
    m_normal->setText(text);
    m_greyed->setText(text);
}

void TwinLabel::setAlignment(Qt::Alignment alignment)
{
    m_normal->setAlignment(alignment);
    m_greyed->setAlignment(alignment);
}

void TwinLabel::setActive(bool on)
{
    static_cast<QStackedLayout *>(layout())->setCurrentWidget(on ? m_normal : m_greyed);
}

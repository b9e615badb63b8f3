#include "HoverButton.h"

#include <QEnterEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <qdrawutil.h>

namespace {

constexpr int Margin = 4;
constexpr int IconGap = 4;

} // namespace

HoverButton::HoverButton(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(text);
    QFont buttonFont = font();
    buttonFont.setFamilies({ QStringLiteral("Tahoma") });
    setFont(buttonFont);
    setFocusPolicy(Qt::TabFocus);
}

QSize HoverButton::sizeHint() const
{
    const QFontMetrics fm = fontMetrics();
    int width = fm.horizontalAdvance(text());
    int height = fm.height();
    if (!icon().isNull()) {
        width += iconSize().width() + IconGap;
        height = std::max(height, iconSize().height());
    }
    return QSize(width + 4 * Margin, height + 2 * Margin);
}

void HoverButton::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    const bool sunken = isDown() || isChecked();
    if (sunken || (m_hovered && isEnabled()))
        qDrawShadePanel(&p, rect(), palette(), sunken, 1);

    // Icon and text are centred as one block; the block moves a pixel down-right while sunken, as the
    // pressed face does.
    const QRect face = rect().adjusted(Margin, Margin, -Margin, -Margin).translated(sunken ? QPoint(1, 1) : QPoint());
    const int textWidth = fontMetrics().horizontalAdvance(text());
    const bool hasIcon = !icon().isNull();
    const int blockWidth = textWidth + (hasIcon ? iconSize().width() + IconGap : 0);
    int x = face.left() + std::max(0, (face.width() - blockWidth) / 2);
    if (hasIcon) {
        const QRect iconRect(QPoint(x, face.top() + (face.height() - iconSize().height()) / 2), iconSize());
        icon().paint(&p, iconRect, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        x += iconSize().width() + IconGap;
    }
    const QRect textRect = hasIcon ? QRect(QPoint(x, face.top()), face.bottomRight()) : face;
    const int align = (hasIcon ? Qt::AlignLeft : Qt::AlignHCenter) | Qt::AlignVCenter | Qt::TextShowMnemonic;
    style()->drawItemText(&p, textRect, align, palette(), isEnabled(), text(), QPalette::ButtonText);

    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(2, 2, -2, -2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &p, this);
    }
}

void HoverButton::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void HoverButton::leaveEvent(QEvent *event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}

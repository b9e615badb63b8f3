#include "Keys.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

constexpr int HalfWidth = 86; // fits KP_RIGHTARROW in Tahoma 8pt
constexpr int ButtonHeight = 21;
constexpr int TextMargin = 3;

} // namespace

Keys::Keys(QWidget *parent)
    : QWidget(parent)
    , m_caption(objectName())
    , m_caption2(objectName())
{
    QFont captionFont = font();
    captionFont.setFamilies({ QStringLiteral("Tahoma") });
    setFont(captionFont);
}

void Keys::Refresh()
{
    m_pressed = Half::None;
    m_held = Half::None;
    update();
}

void Keys::setCaption(const QString &caption)
{
    m_caption = caption;
    update();
}

void Keys::setCaption2(const QString &caption)
{
    m_caption2 = caption;
    update();
}

void Keys::setForeColor(const QColor &color)
{
    m_foreColor = color;
    update();
}

void Keys::setForeColor2(const QColor &color)
{
    m_foreColor2 = color;
    update();
}

void Keys::Clear()
{
    m_caption.clear();
    m_caption2.clear();
    update();
}

Keys::Half Keys::halfAt(QPoint pos) const
{
    const int split = width() / 2;
    if (pos.y() <= 0 || pos.y() >= height() - 1 || pos.x() <= 0 || pos.x() >= width() - 1 || pos.x() == split)
        return Half::None;
    return pos.x() < split ? Half::Left : Half::Right;
}

QSize Keys::sizeHint() const
{
    return QSize(2 * HalfWidth, ButtonHeight);
}

void Keys::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int split = width() / 2;
    const struct
    {
        Half half;
        QRect rect;
        const QString &caption;
        const QColor &color;
    } halves[] = {
        { Half::Left, QRect(0, 0, split, height()), m_caption, m_foreColor },
        { Half::Right, QRect(split, 0, width() - split, height()), m_caption2, m_foreColor2 },
    };
    for (const auto &h : halves) {
        QStyleOptionButton option;
        option.initFrom(this);
        option.rect = h.rect;
        const bool sunken = h.half == m_pressed;
        option.state |= sunken ? QStyle::State_Sunken : QStyle::State_Raised;
        style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);

        QRect textRect = h.rect.adjusted(TextMargin, 0, -TextMargin, 0);
        if (sunken)
            textRect.translate(style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal, &option, this),
                style()->pixelMetric(QStyle::PM_ButtonShiftVertical, &option, this));
        if (!isEnabled())
            painter.setPen(palette().color(QPalette::Disabled, QPalette::ButtonText));
        else
            painter.setPen(h.color.isValid() ? h.color : palette().color(QPalette::ButtonText));
        const QString text = fontMetrics().elidedText(h.caption, Qt::ElideRight, textRect.width());
        painter.drawText(textRect, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextSingleLine, text);
    }
}

void Keys::mousePressEvent(QMouseEvent *event)
{
    const QPoint pos = event->position().toPoint();
    const Half half = halfAt(pos);
    if (half == Half::None)
        return;
    if (event->button() == Qt::LeftButton) {
        m_held = half;
        m_pressed = half;
        update();
    } else if (half == Half::Left) {
        Q_EMIT MouseDown(event->button(), event->modifiers(), pos.x(), pos.y());
    } else {
        Q_EMIT MouseDown2(event->button(), event->modifiers(), pos.x(), pos.y());
    }
}

void Keys::mouseMoveEvent(QMouseEvent *event)
{
    if (m_held == Half::None)
        return;
    // The held half shows pressed only while the pointer is over it, as a push button does.
    const Half pressed = halfAt(event->position().toPoint()) == m_held ? m_held : Half::None;
    if (pressed != m_pressed) {
        m_pressed = pressed;
        update();
    }
}

void Keys::mouseReleaseEvent(QMouseEvent *event)
{
    const QPoint pos = event->position().toPoint();
    const Half half = halfAt(pos);
    if (event->button() == Qt::LeftButton) {
        const Half held = m_held;
        m_held = Half::None;
        m_pressed = Half::None;
        update();
        // The handler may open the capture dialog or delete this button: nothing is touched after it.
        if (held == Half::None || half != held)
            return;
        if (held == Half::Left)
            Q_EMIT Click();
        else
            Q_EMIT Click2();
    } else if (event->button() == Qt::RightButton && m_held == Half::None) {
        if (half == Half::Left)
            Q_EMIT MouseUp(event->button(), event->modifiers(), pos.x(), pos.y());
        else if (half == Half::Right)
            Q_EMIT MouseUp2(event->button(), event->modifiers(), pos.x(), pos.y());
    }
}

void Keys::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange) {
        m_held = Half::None;
        m_pressed = Half::None;
        update();
    }
    QWidget::changeEvent(event);
}

#include "LinkLabel.h"

#include <QMouseEvent>

LinkLabel::LinkLabel(const QString &text, const QUrl &url, QWidget *parent)
    : QLabel(text, parent)
    , m_url(url)
{
    QFont linkFont = font();
    linkFont.setUnderline(true);
    setFont(linkFont);
    setCursor(Qt::PointingHandCursor);
    setTextFormat(Qt::PlainText);
    setHeld(false);
}

void LinkLabel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QLabel::mousePressEvent(event);
        return;
    }
    setHeld(true);
    event->accept();
}

void LinkLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_held) {
        QLabel::mouseReleaseEvent(event);
        return;
    }
    setHeld(false);
    event->accept();
    // Letting go elsewhere is the way out of a click the user changed their mind about.
    if (rect().contains(event->position().toPoint()))
        Q_EMIT activated(m_url);
}

void LinkLabel::setHeld(bool held)
{
    m_held = held;
    QPalette pal = palette();
    pal.setColor(QPalette::WindowText, held ? QColor(255, 0, 0) : QColor(0, 0, 255));
    setPalette(pal);
}

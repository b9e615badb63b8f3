#include "DeferredIconEngine.h"

#include <QPainter>

QPixmap DeferredIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    // The size asked for is in pixels already; the icon asking sets the ratio on what it gets.
    return resolved().pixmap(size, 1.0, mode, state);
}

void DeferredIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state)
{
    resolved().paint(painter, rect, Qt::AlignCenter, mode, state);
}

QSize DeferredIconEngine::actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    return resolved().actualSize(size, mode, state);
}

QList<QSize> DeferredIconEngine::availableSizes(QIcon::Mode mode, QIcon::State state)
{
    return resolved().availableSizes(mode, state);
}

const QIcon &DeferredIconEngine::resolved()
{
    if (m_resolved.isNull())
        m_resolved = resolve();
    return m_resolved;
}

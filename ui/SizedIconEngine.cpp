#include "SizedIconEngine.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

QPixmap SizedIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    Q_UNUSED(state);
    const int side = qMax(1, qMin(size.width(), size.height()));
    const quint64 key = quint64(side) << 8 | quint64(mode);
    if (const auto cached = m_cache.constFind(key); cached != m_cache.cend())
        return *cached;
    QPixmap result = draw(side);
    if (mode == QIcon::Disabled || mode == QIcon::Selected) {
        if (auto *app = qobject_cast<QApplication *>(QCoreApplication::instance())) {
            QStyleOption option;
            option.palette = QApplication::palette();
            result = app->style()->generatedIconPixmap(mode, result, &option);
        }
    }
    m_cache.insert(key, result);
    return result;
}

void SizedIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state)
{
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap shown = pixmap(rect.size() * ratio, mode, state);
    shown.setDevicePixelRatio(ratio);
    painter->drawPixmap(rect, shown);
}

QSize SizedIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    const int side = qMin(qMin(size.width(), size.height()), largestSide());
    return { side, side };
}

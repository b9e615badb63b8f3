// DeferredIconEngine: an icon whose picture is found when it is first drawn or measured, not when it is made.
#pragma once

#include <QIcon>
#include <QIconEngine>

/// Every question goes to the icon `resolve` gives, asked for once, the first time one comes. For pictures that
/// cost something to find (a theme's lookup, a style's file) and that a window makes long before it shows them.
class DeferredIconEngine : public QIconEngine
{
public:
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;

protected:
    virtual QIcon resolve() const = 0;

private:
    const QIcon &resolved();

    QIcon m_resolved;
};

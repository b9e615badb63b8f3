// SizedIconEngine: an icon drawn when a size of it is first asked for, not before.
#pragma once

#include <QHash>
#include <QIconEngine>

#include <limits>

/// Draws each side and mode once, when first asked for, and keeps it. Disabled and selected looks are made by the
/// style, as for any other icon. Subclasses draw a square picture of a given side.
class SizedIconEngine : public QIconEngine
{
public:
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;

protected:
    /// The picture at `side` pixels square, in its normal look.
    virtual QPixmap draw(int side) const = 0;
    /// The largest side drawn; larger requests get this.
    virtual int largestSide() const { return std::numeric_limits<int>::max(); }

private:
    QHash<quint64, QPixmap> m_cache; // side and mode to the picture
};

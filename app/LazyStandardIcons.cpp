#include "LazyStandardIcons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPointer>

namespace {

// A style picture fetched from the style the first time it is drawn or measured. Reading one of the style's own
// pictures makes Qt ask every image plugin it has what the file is (loading each, the SVG library among them);
// the menu bar asks for its overflow arrow as it is made, though it shows only when the menus do not fit.
class DeferredIconEngine : public QIconEngine
{
public:
    DeferredIconEngine(QStyle *style, QStyle::StandardPixmap which)
        : m_style(style)
        , m_which(which)
    { }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return real().pixmap(size, mode, state);
    }
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        real().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return real().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return real().availableSizes(mode, state);
    }
    QIconEngine *clone() const override { return new DeferredIconEngine(m_style, m_which); }
    QString key() const override { return QStringLiteral("TarnwickDeferred"); }

private:
    const QIcon &real()
    {
        if (m_real.isNull() && m_style)
            m_real = m_style->standardIcon(m_which);
        return m_real;
    }

    QPointer<QStyle> m_style;
    QStyle::StandardPixmap m_which;
    QIcon m_real;
};

} // namespace

QIcon LazyStandardIcons::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const
{
    if (which == SP_ToolBarHorizontalExtensionButton || which == SP_ToolBarVerticalExtensionButton)
        return QIcon(new DeferredIconEngine(baseStyle(), which));
    return QProxyStyle::standardIcon(which, option, widget);
}

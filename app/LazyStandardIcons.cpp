#include "LazyStandardIcons.h"

#include "DeferredIconEngine.h"

#include <QPointer>

namespace {

// A style picture fetched from the style the first time it is drawn or measured. Reading one of the style's own
// pictures makes Qt ask every image plugin it has what the file is (loading each, the SVG library among them);
// the menu bar asks for its overflow arrow as it is made, though it shows only when the menus do not fit.
class DeferredStandardIcon : public DeferredIconEngine
{
public:
    DeferredStandardIcon(QStyle *style, QStyle::StandardPixmap which)
        : m_style(style)
        , m_which(which)
    { }

    QIconEngine *clone() const override { return new DeferredStandardIcon(m_style, m_which); }
    QString key() const override { return QStringLiteral("TarnwickDeferred"); }

protected:
    QIcon resolve() const override { return m_style ? m_style->standardIcon(m_which) : QIcon(); }

private:
    QPointer<QStyle> m_style;
    QStyle::StandardPixmap m_which;
};

} // namespace

QIcon LazyStandardIcons::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const
{
    if (which == SP_ToolBarHorizontalExtensionButton || which == SP_ToolBarVerticalExtensionButton)
        return QIcon(new DeferredStandardIcon(baseStyle(), which));
    return QProxyStyle::standardIcon(which, option, widget);
}

// LazyStandardIcons: the program's style — the desktop's own, except that the pictures a menu bar asks the style
// for as it is made are read only when first drawn.
#pragma once

#include <QProxyStyle>

class LazyStandardIcons : public QProxyStyle
{
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const override;
};

#include "LeftBar.h"

#include <QPainter>
#include <qdrawutil.h>

LeftBar::LeftBar(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void LeftBar::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Window));
    // A one-pixel sunken edge: shadow along the top and left, light along the bottom and right.
    qDrawShadePanel(&p, rect(), palette(), true, 1);
}

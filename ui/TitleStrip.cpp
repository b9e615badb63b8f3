#include "TitleStrip.h"

#include <QEvent>
#include <QPainter>
#include <QScreen>
#include <cmath>
#include <vector>

namespace {

constexpr int TextIndent = 6;

int blend(int from, int to, double t)
{
    return int(std::lround(from + (to - from) * t));
}

} // namespace

TitleStrip::TitleStrip(QWidget *parent)
    : QWidget(parent)
{
    QFont titleFont = font();
    titleFont.setFamilies({ QStringLiteral("Tahoma") });
    titleFont.setPointSize(10);
    setFont(titleFont);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TitleStrip::setText(const QString &text)
{
    m_text = text;
    update();
}

void TitleStrip::setGradient(bool on)
{
    m_gradient = on;
    repaintBackground();
    update();
}

QSize TitleStrip::sizeHint() const
{
    return QSize(200, fontMetrics().height() + 8);
}

QImage TitleStrip::DrawGrad(QSize size, const QColor &face, const QColor &shadow, bool gradient, int screenDepth)
{
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const int width = size.width();
    const bool blended = gradient && screenDepth > 8 && width > 1;
    std::vector<QRgb> row(width, shadow.rgb());
    if (blended) {
        // Column by column from the right edge (face) towards the left edge (shadow).
        for (int x = width - 1; x >= 0; --x) {
            const double t = double(width - 1 - x) / (width - 1);
            row[x] = qRgb(blend(face.red(), shadow.red(), t), blend(face.green(), shadow.green(), t),
                blend(face.blue(), shadow.blue(), t));
        }
    }
    for (int y = 0; y < size.height(); ++y)
        std::copy(row.begin(), row.end(), reinterpret_cast<QRgb *>(image.scanLine(y)));
    return image;
}

void TitleStrip::repaintBackground()
{
    const QScreen *s = screen();
    const int depth = s ? s->depth() : 32;
    m_background
        = DrawGrad(size(), palette().color(QPalette::Button), palette().color(QPalette::Dark), m_gradient, depth);
}

void TitleStrip::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    if (m_background.size() != size())
        repaintBackground();
    p.drawImage(QPoint(0, 0), m_background);
    // Button text stays readable on both ends of the blend (the light face and the darker shadow).
    p.setPen(palette().color(QPalette::ButtonText));
    p.drawText(
        rect().adjusted(TextIndent, 0, -TextIndent, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, m_text);
}

void TitleStrip::resizeEvent(QResizeEvent *event)
{
    repaintBackground();
    QWidget::resizeEvent(event);
}

void TitleStrip::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        repaintBackground();
        update();
    }
    QWidget::changeEvent(event);
}

#include "MsgBoard.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace {

constexpr int IconSize = 16;
constexpr QRgb SheetKey = 0xffff00ff; // pure magenta: the sheet's "see-through" colour

// WCAG relative luminance, enough to tell whether black-on-grey text reads.
double luminance(const QColor &c)
{
    const auto channel = [](double v) {
        v /= 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(c.red()) + 0.7152 * channel(c.green()) + 0.0722 * channel(c.blue());
}

double contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The outer shapes are drawn without antialiasing so every edge pixel is either the shape or pure magenta;
// a blended edge would survive the colour replacement as a purple fringe.
void drawDisc(QPainter &p, QPoint o, const QColor &edge, const QColor &fill)
{
    p.setPen(edge);
    p.setBrush(fill);
    p.drawEllipse(QRect(o, QSize(IconSize - 1, IconSize - 1)));
}

void drawExclamation(QPainter &p, QPoint o, int top, const QColor &colour)
{
    p.fillRect(QRect(o + QPoint(7, top), QSize(2, 10 - top)), colour);
    p.fillRect(QRect(o + QPoint(7, 11), QSize(2, 2)), colour);
}

void drawInformation(QPainter &p, QPoint o)
{
    drawDisc(p, o, QColor(0, 40, 140), QColor(30, 90, 220));
    const QColor white(Qt::white);
    p.fillRect(QRect(o + QPoint(7, 3), QSize(2, 2)), white);
    p.fillRect(QRect(o + QPoint(6, 6), QSize(3, 1)), white);
    p.fillRect(QRect(o + QPoint(7, 7), QSize(2, 5)), white);
    p.fillRect(QRect(o + QPoint(6, 12), QSize(4, 1)), white);
}

void drawWarning(QPainter &p, QPoint o)
{
    drawDisc(p, o, QColor(140, 20, 0), QColor(225, 60, 20));
    drawExclamation(p, o, 3, Qt::white);
}

void drawCaution(QPainter &p, QPoint o)
{
    p.setPen(QColor(140, 100, 0));
    p.setBrush(QColor(255, 205, 0));
    const QPolygon triangle { o + QPoint(7, 1), o + QPoint(8, 1), o + QPoint(15, 14), o + QPoint(0, 14) };
    p.drawPolygon(triangle);
    drawExclamation(p, o, 5, Qt::black);
}

void drawHint(QPainter &p, QPoint o)
{
    drawDisc(p, o, QColor(0, 90, 30), QColor(20, 160, 70));
    const QColor white(Qt::white);
    p.fillRect(QRect(o + QPoint(6, 3), QSize(4, 2)), white);
    p.fillRect(QRect(o + QPoint(4, 4), QSize(2, 2)), white);
    p.fillRect(QRect(o + QPoint(10, 4), QSize(2, 3)), white);
    p.fillRect(QRect(o + QPoint(8, 6), QSize(2, 2)), white);
    p.fillRect(QRect(o + QPoint(7, 8), QSize(2, 2)), white);
    p.fillRect(QRect(o + QPoint(7, 11), QSize(2, 2)), white);
}

} // namespace

MsgBoard::MsgBoard(QWidget *parent)
    : QWidget(parent)
{
    loadIconSheet();
}

void MsgBoard::setMessage(const QString &message)
{
    m_message = message;
    update();
}

void MsgBoard::DrawMsg(const QString &message, int msgType)
{
    m_msgType = msgType;
    m_message = message;
    update();
}

std::optional<QPoint> MsgBoard::iconCell(int msgType)
{
    switch (msgType) {
    case 0:
        return QPoint(17, 16);
    case 1:
        return QPoint(0, 16);
    case 2:
        return QPoint(0, 0);
    case 3:
        return QPoint(17, 0);
    default:
        return std::nullopt;
    }
}

QColor MsgBoard::boardColor(const QPalette &palette)
{
    // The workspace shade is the board's own colour; on themes where it is too dark for the text, the mid
    // shade and finally the window colour take over.
    const QColor text = palette.color(QPalette::WindowText);
    for (const QPalette::ColorRole role : { QPalette::Dark, QPalette::Mid }) {
        if (contrast(text, palette.color(role)) >= 4.5)
            return palette.color(role);
    }
    return palette.color(QPalette::Window);
}

void MsgBoard::loadIconSheet()
{
    QImage sheet(33, 32, QImage::Format_RGB32);
    sheet.fill(SheetKey);
    {
        QPainter p(&sheet);
        p.setRenderHint(QPainter::Antialiasing, false);
        drawInformation(p, *iconCell(2));
        drawWarning(p, *iconCell(0));
        drawCaution(p, *iconCell(1));
        drawHint(p, *iconCell(3));
    }
    const QRgb background = boardColor(palette()).rgb();
    for (int y = 0; y < sheet.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(sheet.scanLine(y));
        for (int x = 0; x < sheet.width(); ++x) {
            if (line[x] == SheetKey)
                line[x] = background;
        }
    }
    m_sheet = sheet;
}

void MsgBoard::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    const QColor background = boardColor(palette());
    // Two overlapping rectangles give the board its cut corners; the parent shows through outside them.
    p.fillRect(rect().adjusted(2, 2, -2, -2), background);
    p.fillRect(rect().adjusted(1, 3, -1, -3), background);
    if (const auto cell = iconCell(m_msgType))
        p.drawImage(QPoint(0, 0), m_sheet, QRect(*cell, QSize(IconSize, IconSize)));

    // Help texts come with CR LF line breaks; the painter only breaks on LF.
    QString text = m_message;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    p.setPen(palette().color(QPalette::WindowText));
    const QRect textRect(QPoint(18, 2), QPoint(width() - 3, height() - 4));
    p.drawText(textRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text);
}

void MsgBoard::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        loadIconSheet();
        update();
    }
    QWidget::changeEvent(event);
}

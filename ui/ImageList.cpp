#include "ImageList.h"

#include "DeferredIconEngine.h"
#include "SizedIconEngine.h"

#include <QCoreApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>

#include <cmath>
#include <initializer_list>
#include <numbers>

namespace {

// Every picture is drawn on a 16 × 16 grid that the painter scales to the wanted size. Outlines are one grid unit
// wide and sit on half units, so at 16 px (and 32 px) each edge falls on whole pixels.

const QColor PaperFill(0xff, 0xff, 0xff);
const QColor PaperFold(0xdd, 0xe1, 0xe6);
const QColor PaperEdge(0x6a, 0x70, 0x78);
const QColor TextLine(0xa8, 0xb4, 0xc2);
const QColor GoldFill(0xff, 0xcc, 0x33);
const QColor GoldEdge(0xb0, 0x78, 0x00);
const QColor BlueFill(0x35, 0x78, 0xd4);
const QColor BlueEdge(0x1b, 0x46, 0x86);
const QColor GreenFill(0x3c, 0xb0, 0x4a);
const QColor GreenEdge(0x1d, 0x6a, 0x28);
const QColor Ink(0x22, 0x22, 0x22);

QPainterPath polygon(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    return path;
}

QPainterPath box(qreal left, qreal top, qreal right, qreal bottom)
{
    return polygon({ { left, top }, { right, top }, { right, bottom }, { left, bottom } });
}

// The outline of a wide line, so it can be filled and edged like any other shape.
QPainterPath thickLine(const QPainterPath &centre, qreal width)
{
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::FlatCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(centre).simplified();
}

QPainterPath star(QPointF centre, qreal outer, qreal inner, int points = 5)
{
    QPolygonF corners;
    for (int i = 0; i < 2 * points; ++i) {
        const qreal angle = -std::numbers::pi / 2 + i * std::numbers::pi / points;
        const qreal radius = i % 2 ? inner : outer;
        corners << centre + QPointF(radius * std::cos(angle), radius * std::sin(angle));
    }
    QPainterPath path;
    path.addPolygon(corners);
    path.closeSubpath();
    return path;
}

// A fat arrow along y from `tail` to `tip`; it points left when the tip is left of the tail.
QPainterPath arrow(qreal tail, qreal tip, qreal y = 8)
{
    const qreal neck = tip - (tip > tail ? 4.5 : -4.5);
    return polygon({ { tail, y - 1.5 }, { neck, y - 1.5 }, { neck, y - 4.5 }, { tip, y }, { neck, y + 4.5 },
        { neck, y + 1.5 }, { tail, y + 1.5 } });
}

void outlined(QPainter &p, const QPainterPath &shape, const QColor &fill, const QColor &edge, qreal width = 1.0)
{
    p.setPen(QPen(edge, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    p.setBrush(fill);
    p.drawPath(shape);
}

void stroke(QPainter &p, const QPainterPath &line, const QColor &colour, qreal width = 1.0)
{
    p.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPath(line);
}

QPainterPath segments(std::initializer_list<QLineF> lines)
{
    QPainterPath path;
    for (const QLineF &line : lines) {
        path.moveTo(line.p1());
        path.lineTo(line.p2());
    }
    return path;
}

// A sheet of paper with its top right corner folded over.
void page(QPainter &p, const QRectF &sheet, qreal fold = 3)
{
    const qreal l = sheet.left(), t = sheet.top(), r = sheet.right(), b = sheet.bottom();
    outlined(p, polygon({ { l, t }, { r - fold, t }, { r, t + fold }, { r, b }, { l, b } }), PaperFill, PaperEdge);
    outlined(p, polygon({ { r - fold, t }, { r - fold, t + fold }, { r, t + fold } }), PaperFold, PaperEdge);
}

// Grey lines of text across a page, one every two units.
void textLines(QPainter &p, qreal left, qreal right, qreal top, int count)
{
    QPainterPath lines;
    for (int i = 0; i < count; ++i) {
        lines.moveTo(left, top + 2 * i);
        lines.lineTo(right, top + 2 * i);
    }
    p.setPen(QPen(TextLine, 1.0, Qt::SolidLine, Qt::FlatCap));
    p.drawPath(lines);
}

void drawNew(QPainter &p)
{
    page(p, QRectF(2.5, 1.5, 10, 14), 4);
    outlined(p, star(QPointF(11.5, 4.5), 4.3, 1.8), GoldFill, GoldEdge);
}

void drawOpen(QPainter &p)
{
    const QColor back(0xe0, 0xa8, 0x26), front(0xff, 0xd4, 0x52), edge(0x8c, 0x62, 0x0c);
    outlined(p, polygon({ { 0.5, 14.5 }, { 0.5, 2.5 }, { 5.5, 2.5 }, { 6.5, 3.5 }, { 12.5, 3.5 }, { 12.5, 14.5 } }),
        back, edge);
    outlined(p, box(2.5, 5.5, 10.5, 10.5), PaperFill, PaperEdge);
    outlined(p, polygon({ { 0.5, 14.5 }, { 3.5, 7.5 }, { 15.5, 7.5 }, { 12.5, 14.5 } }), front, edge);
}

void drawSave(QPainter &p)
{
    const QColor metal(0xd8, 0xdd, 0xe4);
    outlined(
        p, polygon({ { 1.5, 1.5 }, { 13.5, 1.5 }, { 14.5, 2.5 }, { 14.5, 14.5 }, { 1.5, 14.5 } }), BlueFill, BlueEdge);
    outlined(p, box(3.5, 1.5, 12.5, 7.5), PaperFill, BlueEdge);
    textLines(p, 5, 11, 3.5, 2);
    outlined(p, box(4.5, 10.5, 11.5, 14.5), metal, BlueEdge);
    p.fillRect(QRectF(9, 11, 1.5, 3), BlueEdge);
}

void drawExport(QPainter &p)
{
    page(p, QRectF(1.5, 0.5, 9, 15));
    textLines(p, 3.5, 7, 5.5, 5);
    outlined(p, arrow(5.5, 15), GreenFill, GreenEdge);
}

void drawImport(QPainter &p)
{
    page(p, QRectF(1.5, 0.5, 9, 15));
    textLines(p, 3.5, 7, 5.5, 5);
    outlined(p, arrow(15.5, 6), BlueFill, BlueEdge);
}

void drawDefaults(QPainter &p)
{
    page(p, QRectF(1.5, 0.5, 10, 13));
    const QRectF turn(5.5, 6.5, 8, 8);
    QPainterPath curl;
    curl.arcMoveTo(turn, 180);
    curl.arcTo(turn, 180, -250);
    const QPainterPath head = polygon({ { 3.3, 10.2 }, { 5.5, 13.8 }, { 7.7, 10.2 } });
    outlined(p, thickLine(curl, 2.2).united(head).simplified(), QColor(0xf2, 0x8c, 0x28), QColor(0x9a, 0x4c, 0x08));
}

void drawWiz(QPainter &p)
{
    p.save();
    p.translate(1.5, 14.5);
    p.rotate(-45);
    outlined(p, box(0, -1.4, 9, 1.4), Ink, Ink);
    outlined(p, box(5.8, -1.4, 9, 1.4), PaperFill, Ink);
    p.restore();
    outlined(p, star(QPointF(11.5, 4.5), 4.3, 1.8), GoldFill, GoldEdge);
    stroke(p, segments({ { { 4, 2 }, { 4, 6 } }, { { 2, 4 }, { 6, 4 } } }), GoldEdge);
}

void drawRunQ3(QPainter &p)
{
    outlined(p, polygon({ { 3.5, 1.5 }, { 14.5, 8 }, { 3.5, 14.5 } }), GreenFill, GreenEdge);
}

void drawTDemo(QPainter &p)
{
    const QColor bezel(0x8e, 0x98, 0xa4), bezelEdge(0x3c, 0x43, 0x4c);
    outlined(p, box(6.5, 0.5, 9.5, 2.5), bezel, bezelEdge);
    outlined(p, polygon({ { 12.2, 2.6 }, { 13.6, 4.0 }, { 12.6, 5.0 }, { 11.2, 3.6 } }), bezel, bezelEdge);
    QPainterPath dial;
    dial.addEllipse(QPointF(8, 9.5), 6, 6);
    outlined(p, dial, bezel, bezelEdge);
    p.setPen(Qt::NoPen);
    p.setBrush(PaperFill);
    p.drawEllipse(QPointF(8, 9.5), 4.3, 4.3);
    stroke(p, segments({ { { 8, 6 }, { 8, 6.6 } }, { { 11.5, 9.5 }, { 10.9, 9.5 } } }), bezelEdge);
    stroke(p, segments({ { { 8, 9.5 }, { 10.2, 7 } } }), QColor(0xd8, 0x2a, 0x20), 1.3);
}

void drawSearch(QPainter &p)
{
    stroke(p, segments({ { { 10.5, 10.5 }, { 14, 14 } } }), QColor(0x5a, 0x3a, 0x1c), 3);
    QPainterPath lens;
    lens.addEllipse(QPointF(6.5, 6.5), 5, 5);
    outlined(p, lens, QColor(0xd4, 0xea, 0xff), QColor(0x3e, 0x48, 0x55), 1.5);
    QPainterPath shine;
    shine.arcMoveTo(QRectF(3.5, 3.5, 6, 6), 100);
    shine.arcTo(QRectF(3.5, 3.5, 6, 6), 100, 70);
    stroke(p, shine, PaperFill);
}

void drawOptions(QPainter &p)
{
    constexpr int Teeth = 8;
    constexpr qreal Outer = 7.2, Inner = 5.2, Step = 2 * std::numbers::pi / Teeth;
    QPolygonF rim;
    for (int i = 0; i < Teeth; ++i) {
        for (const auto &[radius, offset] :
            { std::pair { Inner, -0.3 }, { Outer, -0.17 }, { Outer, 0.17 }, { Inner, 0.3 } }) {
            const qreal angle = i * Step + offset;
            rim << QPointF(8 + radius * std::cos(angle), 8 + radius * std::sin(angle));
        }
    }
    QPainterPath gear;
    gear.addPolygon(rim);
    gear.closeSubpath();
    gear.addEllipse(QPointF(8, 8), 2.2, 2.2);
    outlined(p, gear, QColor(0xa4, 0xad, 0xb8), QColor(0x45, 0x4d, 0x57));
}

void roundBadge(QPainter &p)
{
    QPainterPath disc;
    disc.addEllipse(QPointF(8, 8), 7, 7);
    outlined(p, disc, BlueFill, BlueEdge);
}

void drawHelp(QPainter &p)
{
    roundBadge(p);
    QPainterPath hook;
    hook.arcMoveTo(QRectF(5.4, 3.4, 5.2, 5.2), 165);
    hook.arcTo(QRectF(5.4, 3.4, 5.2, 5.2), 165, -225);
    hook.lineTo(8, 9.3);
    hook.lineTo(8, 10.2);
    p.setPen(QPen(PaperFill, 2, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPath(hook);
    p.setPen(Qt::NoPen);
    p.setBrush(PaperFill);
    p.drawEllipse(QPointF(8, 12.4), 1.2, 1.2);
}

void drawAbout(QPainter &p)
{
    roundBadge(p);
    p.setPen(Qt::NoPen);
    p.setBrush(PaperFill);
    p.drawEllipse(QPointF(8, 4.5), 1.3, 1.3);
    p.drawPath(polygon({ { 6, 7 }, { 9, 7 }, { 9, 11 }, { 10, 11 }, { 10, 12 }, { 6, 12 }, { 6, 11 }, { 7, 11 },
        { 7, 8 }, { 6, 8 } }));
}

void drawWeb(QPainter &p)
{
    QPainterPath globe;
    globe.addEllipse(QPointF(8, 8), 6.5, 6.5);
    outlined(p, globe, BlueFill, BlueEdge);
    p.save();
    p.setClipPath(globe);
    QPainterPath grid = segments({ { { 1, 8 }, { 15, 8 } }, { { 8, 1 }, { 8, 15 } }, { { 1, 4.5 }, { 15, 4.5 } },
        { { 1, 11.5 }, { 15, 11.5 } } });
    grid.addEllipse(QPointF(8, 8), 3.2, 6.5);
    stroke(p, grid, QColor(0xc6, 0xdf, 0xf8), 0.8);
    p.restore();
    outlined(p, globe, Qt::transparent, BlueEdge);
}

void drawHome(QPainter &p)
{
    const QColor wall(0xf4, 0xe6, 0xc8), wood(0x8a, 0x5a, 0x2b), brown(0x5c, 0x3a, 0x18);
    const QColor roof(0xd2, 0x4a, 0x34), roofEdge(0x7c, 0x22, 0x14);
    outlined(p, box(10.5, 1.5, 12.5, 6.5), roof, roofEdge);
    outlined(p, box(2.5, 7.5, 13.5, 14.5), wall, brown);
    outlined(p, box(6.5, 9.5, 9.5, 14.5), wood, brown);
    outlined(p, polygon({ { 0.5, 8.5 }, { 8, 1 }, { 15.5, 8.5 } }), roof, roofEdge);
}

void chainLink(QPainter &p, qreal along)
{
    QPainterPath ring;
    ring.addRoundedRect(QRectF(along - 5, -2.5, 10, 5), 2.5, 2.5);
    stroke(p, ring, BlueEdge, 2.6);
    stroke(p, ring, QColor(0x7c, 0xb0, 0xf0), 1.0);
}

void drawLink(QPainter &p)
{
    // Two rings along the diagonal; the first is drawn again over one crossing so they hook into each other.
    p.translate(8, 8);
    p.rotate(-45);
    chainLink(p, -3.1);
    chainLink(p, 3.1);
    p.setClipRect(QRectF(-2.5, -4, 5, 4));
    chainLink(p, -3.1);
}

void drawEmail(QPainter &p)
{
    outlined(p, box(0.5, 3.5, 15.5, 12.5), QColor(0xfb, 0xf6, 0xe8), PaperEdge);
    stroke(p, segments({ { { 1, 12 }, { 6, 7.5 } }, { { 15, 12 }, { 10, 7.5 } } }), TextLine);
    stroke(p, segments({ { { 0.5, 3.5 }, { 8, 9.5 } }, { { 8, 9.5 }, { 15.5, 3.5 } } }), PaperEdge);
}

void drawCheck(QPainter &p)
{
    QPainterPath tick;
    tick.moveTo(3.5, 8.5);
    tick.lineTo(6.5, 11.5);
    tick.lineTo(12.5, 4.5);
    // A faint light rim keeps the tick visible on dark menus.
    stroke(p, tick, QColor(0xff, 0xff, 0xff, 0x70), 3.4);
    stroke(p, tick, Ink, 2);
}

void drawUnchecked(QPainter &p)
{
    p.setPen(QPen(QColor(0x80, 0x80, 0x80, 0x90), 1.0));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(3.5, 3.5, 9, 9));
}

struct Picture
{
    const char *key;
    const char *themeNames; // space-separated, best first
    void (*draw)(QPainter &);
};

constexpr Picture Pictures[] = {
    { "NEW", "document-new", drawNew },
    { "OPEN", "document-open folder-open", drawOpen },
    { "SAVE", "document-save media-floppy", drawSave },
    { "EXPORT", "document-export document-send", drawExport },
    { "IMPORT", "document-import", drawImport },
    { "DEFAULTS", "document-revert edit-undo", drawDefaults },
    { "WIZ", "tools-wizard", drawWiz },
    { "RUNQ3", "media-playback-start applications-games", drawRunQ3 },
    { "TDEMO", "chronometer appointment-soon", drawTDemo },
    { "SEARCH", "edit-find system-search", drawSearch },
    { "OPTIONS", "preferences-system configure", drawOptions },
    { "HELP", "help-contents help-browser", drawHelp },
    { "WEB", "applications-internet internet-web-browser", drawWeb },
    { "HOME", "go-home user-home", drawHome },
    { "LINK", "insert-link", drawLink },
    { "EMAIL", "mail-send mail-message-new", drawEmail },
    { "ABOUT", "help-about", drawAbout },
    // The check marks never come from the theme, so menus look the same on every desktop.
    { "CHK1", "", drawCheck },
    { "CHK2", "", drawUnchecked },
};

const Picture *find(const QString &key)
{
    for (const Picture &picture : Pictures) {
        if (key == QLatin1StringView(picture.key))
            return &picture;
    }
    return nullptr;
}

// Our own drawing as an icon: each size is drawn when first asked for (a menu's pictures when the menu first
// opens), not every size of every picture at start.
class DrawnIconEngine : public SizedIconEngine
{
public:
    explicit DrawnIconEngine(QString key)
        : m_key(std::move(key))
    { }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return { { 16, 16 }, { 24, 24 }, { 32, 32 }, { 48, 48 } };
    }
    QIconEngine *clone() const override { return new DrawnIconEngine(m_key); }
    QString key() const override { return QStringLiteral("TarnwickDrawn"); }

protected:
    QPixmap draw(int side) const override { return ImageList::drawn(m_key, side); }

private:
    QString m_key;
};

// A picture of the list as the desktop's theme shows it, or our drawing where the theme has none of its names. The
// theme is asked when the icon is first drawn, not when it is made: a theme whose cache Qt can't use answers each
// question by looking for the name in every one of its folders, and the menus alone hold twenty pictures.
class ThemeOrDrawnIconEngine : public DeferredIconEngine
{
public:
    explicit ThemeOrDrawnIconEngine(QString key)
        : m_key(std::move(key))
    { }

    QIconEngine *clone() const override { return new ThemeOrDrawnIconEngine(m_key); }
    QString key() const override { return QStringLiteral("TarnwickThemeOrDrawn"); }

protected:
    QIcon resolve() const override
    {
        for (const QString &name : ImageList::themeNames(m_key)) {
            if (QIcon::hasThemeIcon(name))
                return QIcon::fromTheme(name);
        }
        return QIcon(new DrawnIconEngine(m_key));
    }

private:
    QString m_key;
};

// Icons built for the theme named in cachedTheme; dropped when the desktop switches themes.
QHash<QString, QIcon> iconCache;
QString cachedTheme;

void dropCache()
{
    iconCache.clear();
}

} // namespace

namespace ImageList {

QStringList keys()
{
    QStringList result;
    for (const Picture &picture : Pictures)
        result << QString::fromLatin1(picture.key);
    return result;
}

QStringList themeNames(const QString &key)
{
    const Picture *picture = find(key);
    if (!picture)
        return {};
    return QString::fromLatin1(picture->themeNames).split(u' ', Qt::SkipEmptyParts);
}

QPixmap drawn(const QString &key, int size)
{
    const Picture *picture = find(key);
    if (!picture || size < 1)
        return {};
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    picture->draw(painter);
    return pixmap;
}

QIcon icon(const QString &key)
{
    if (!find(key))
        return {};
    static const bool cleanupRegistered = [] {
        // The cached pixmaps must go before the application object does.
        qAddPostRoutine(dropCache);
        return true;
    }();
    Q_UNUSED(cleanupRegistered);
    if (QIcon::themeName() != cachedTheme) {
        iconCache.clear();
        cachedTheme = QIcon::themeName();
    }
    if (const auto cached = iconCache.constFind(key); cached != iconCache.cend())
        return *cached;

    const QIcon result(new ThemeOrDrawnIconEngine(key));
    iconCache.insert(key, result);
    return result;
}

} // namespace ImageList

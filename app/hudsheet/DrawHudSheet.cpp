// tarnwick-hudsheet OUTPUT: draws the HUD preview's sprite sheet (a PNG, whatever OUTPUT is called).
//
// The preview window builds a mock-up of the game screen, 260 x 162 pixels, from pieces of this sheet: an arena
// scene, and over it the status strip, the upper-right counters, the lag-o-meter, the crosshair, the low-ammo
// warning and the chat line. Each piece is cut from the scene at the very place the window shows it and has its
// HUD element painted on top, so the pieces fit the scene without a seam. Everything is painted with shapes and
// pixel fonts of our own, on a QImage: no window system, no installed fonts, the same picture on every machine.
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <optional>

namespace {

constexpr int sheetWidth = 260;
constexpr int sheetHeight = 852;
constexpr int sceneHeight = 195; // the screen shows the top 162 rows
constexpr QPointF vanishing(130, 78);

// ---------------------------------------------------------------------------------------------------------------
// Pixel fonts: the counters and the warning in a 5 x 7 font, the status numbers in big blocky digits.

struct Glyph
{
    char c;
    std::array<const char *, 7> rows;
};

constexpr Glyph smallFont[] = {
    { '0', { ".###.", "#...#", "#..##", "#.#.#", "##..#", "#...#", ".###." } },
    { '1', { "..#..", ".##..", "..#..", "..#..", "..#..", "..#..", ".###." } },
    { '2', { ".###.", "#...#", "....#", "...#.", "..#..", ".#...", "#####" } },
    { '3', { "#####", "...#.", "..#..", "...#.", "....#", "#...#", ".###." } },
    { '4', { "...#.", "..##.", ".#.#.", "#..#.", "#####", "...#.", "...#." } },
    { '5', { "#####", "#....", "####.", "....#", "....#", "#...#", ".###." } },
    { '6', { "..##.", ".#...", "#....", "####.", "#...#", "#...#", ".###." } },
    { '7', { "#####", "....#", "...#.", "..#..", ".#...", ".#...", ".#..." } },
    { '8', { ".###.", "#...#", "#...#", ".###.", "#...#", "#...#", ".###." } },
    { '9', { ".###.", "#...#", "#...#", ".####", "....#", "...#.", ".##.." } },
    { ':', { "..", "##", "##", "..", "##", "##", ".." } },
    { ' ', { "..", "..", "..", "..", "..", "..", ".." } },
    { 'A', { ".###.", "#...#", "#...#", "#####", "#...#", "#...#", "#...#" } },
    { 'E', { "#####", "#....", "#....", "####.", "#....", "#....", "#####" } },
    { 'G', { ".###.", "#...#", "#....", "#.###", "#...#", "#...#", ".####" } },
    { 'I', { ".###.", "..#..", "..#..", "..#..", "..#..", "..#..", ".###." } },
    { 'L', { "#....", "#....", "#....", "#....", "#....", "#....", "#####" } },
    { 'M', { "#...#", "##.##", "#.#.#", "#.#.#", "#...#", "#...#", "#...#" } },
    { 'N', { "#...#", "#...#", "##..#", "#.#.#", "#..##", "#...#", "#...#" } },
    { 'O', { ".###.", "#...#", "#...#", "#...#", "#...#", "#...#", ".###." } },
    { 'R', { "####.", "#...#", "#...#", "####.", "#.#..", "#..#.", "#...#" } },
    { 'V', { "#...#", "#...#", "#...#", "#...#", "#...#", ".#.#.", "..#.." } },
    { 'W', { "#...#", "#...#", "#...#", "#.#.#", "#.#.#", "##.##", "#...#" } },
    { 'X', { "#...#", "#...#", ".#.#.", "..#..", ".#.#.", "#...#", "#...#" } },
    { 'f', { "..##.", ".#...", "####.", ".#...", ".#...", ".#...", ".#..." } },
    { 'p', { ".....", ".....", "####.", "#...#", "####.", "#....", "#...." } },
    { 's', { ".....", ".....", ".####", "#....", ".###.", "....#", "####." } },
};

const Glyph &glyphOf(char c)
{
    for (const Glyph &g : smallFont) {
        if (g.c == c)
            return g;
    }
    return smallFont[11]; // a blank
}

int glyphWidth(const Glyph &g)
{
    return int(std::strlen(g.rows[0]));
}

int textWidth(const char *text, int spacing = 1)
{
    int width = 0;
    for (const char *c = text; *c; ++c)
        width += glyphWidth(glyphOf(*c)) + (c[1] ? spacing : 0);
    return width;
}

// Text as the game draws it on screen: the letters over a dark drop shadow. Bold doubles every stroke sideways.
void drawText(QPainter &p, int x, int y, const char *text, const QColor &colour, bool bold = false)
{
    const int spacing = bold ? 2 : 1;
    for (const int shift : { 1, 0 }) {
        const QColor ink = shift ? QColor(0, 0, 0, 200) : colour;
        int left = x;
        for (const char *c = text; *c; ++c) {
            const Glyph &g = glyphOf(*c);
            for (int row = 0; row < 7; ++row) {
                for (int col = 0; g.rows[row][col]; ++col) {
                    if (g.rows[row][col] == '#')
                        p.fillRect(left + col + shift, y + row + shift, bold ? 2 : 1, 1, ink);
                }
            }
            left += glyphWidth(g) + spacing;
        }
    }
}

// The status numbers: blocky digits of 3 x 5 blocks, 4 x 3 pixels each, lit from above, outlined dark.
constexpr std::array<const char *, 10> bigDigits[] = {
    { "###", "#.#", "#.#", "#.#", "###" },
    { ".#.", "##.", ".#.", ".#.", "###" },
    { "###", "..#", "###", "#..", "###" },
    { "###", "..#", ".##", "..#", "###" },
    { "#.#", "#.#", "###", "..#", "..#" },
    { "###", "#..", "###", "..#", "###" },
    { "###", "#..", "###", "#.#", "###" },
    { "###", "..#", "..#", "..#", "..#" },
    { "###", "#.#", "###", "#.#", "###" },
    { "###", "#.#", "###", "..#", "###" },
};
constexpr int blockWidth = 4;
constexpr int blockHeight = 3;
constexpr int digitAdvance = 3 * blockWidth + 1;

// A number right-aligned in a field of three digits starting at `x`, its top at `y`.
void drawBigNumber(QPainter &p, int x, int y, int value)
{
    const QByteArray digits = QByteArray::number(value);
    int left = x + (3 - int(digits.size())) * digitAdvance;
    QLinearGradient lit(0, y, 0, y + 5 * blockHeight);
    lit.setColorAt(0, QColor(255, 236, 140));
    lit.setColorAt(0.45, QColor(255, 176, 0));
    lit.setColorAt(1, QColor(200, 84, 0));
    for (const char digit : digits) {
        const auto &rows = bigDigits[digit - '0'];
        for (const bool outline : { true, false }) {
            for (int row = 0; row < 5; ++row) {
                for (int col = 0; col < 3; ++col) {
                    if (rows[size_t(row)][col] != '#')
                        continue;
                    const QRect block(left + col * blockWidth, y + row * blockHeight, blockWidth, blockHeight);
                    if (outline)
                        p.fillRect(block.adjusted(-1, -1, 1, 1), QColor(40, 12, 0));
                    else
                        p.fillRect(block, lit);
                }
            }
        }
        left += digitAdvance;
    }
}

// ---------------------------------------------------------------------------------------------------------------
// The arena: a stone hall open to a starry sky, a glowing doorway ahead, torches, a jump pad and a health orb.

QPolygonF polygon(std::initializer_list<QPointF> points)
{
    return QPolygonF(QList<QPointF>(points));
}

// The point on the line from the vanishing point through `through` where it reaches x.
QPointF alongToX(QPointF through, double x)
{
    const double t = (x - vanishing.x()) / (through.x() - vanishing.x());
    return vanishing + (through - vanishing) * t;
}

void glow(QPainter &p, QPointF centre, double radius, const QColor &colour)
{
    QRadialGradient light(centre, radius);
    QColor edge = colour;
    edge.setAlpha(0);
    light.setColorAt(0, colour);
    light.setColorAt(1, edge);
    p.setPen(Qt::NoPen);
    p.setBrush(light);
    p.drawEllipse(centre, radius, radius);
}

void drawWall(QPainter &p, const QPolygonF &wall, double nearX, double farX, const QColor &stone)
{
    p.save();
    QPainterPath clip;
    clip.addPolygon(wall);
    p.setClipPath(clip);
    QLinearGradient shade(nearX, 0, farX, 0);
    shade.setColorAt(0, stone.darker(170));
    shade.setColorAt(1, stone);
    p.fillRect(wall.boundingRect(), shade);
    // Courses of stone running to the far wall, and the joints between the blocks.
    p.setPen(QPen(QColor(14, 10, 8), 1));
    for (int y = -40; y < 260; y += 22)
        p.drawLine(QPointF(nearX, y), alongToX(QPointF(nearX, y), farX));
    for (const double t : { 0.18, 0.42, 0.62, 0.78, 0.9 }) {
        const double x = nearX + (farX - nearX) * t;
        p.drawLine(QPointF(x, -50), QPointF(x, 250));
    }
    // A pillar near the viewer, lighter where the torch reaches it.
    const double pillar = nearX + (farX - nearX) * 0.25;
    QLinearGradient column(pillar - 6, 0, pillar + 6, 0);
    column.setColorAt(0, QColor(48, 40, 34));
    column.setColorAt(0.5, QColor(100, 82, 66));
    column.setColorAt(1, QColor(32, 26, 21));
    p.fillRect(QRectF(pillar - 6, -50, 12, 300), column);
    p.restore();
}

QImage drawScene()
{
    QImage scene(sheetWidth, sceneHeight, QImage::Format_RGB32);
    QPainter p(&scene);
    p.setRenderHint(QPainter::Antialiasing);

    // The sky: deep space with a red haze low down, and a few stars.
    QLinearGradient sky(0, 0, 0, 70);
    sky.setColorAt(0, QColor(6, 4, 14));
    sky.setColorAt(1, QColor(58, 14, 16));
    p.fillRect(scene.rect(), sky);
    quint32 seed = 7;
    const auto next = [&seed](int range) {
        seed = seed * 1103515245u + 12345u;
        return int((seed >> 16) % quint32(range));
    };
    for (int i = 0; i < 26; ++i) {
        const int x = next(sheetWidth);
        const int y = next(50);
        const int bright = 120 + next(130);
        p.fillRect(x, y, 1, 1, QColor(bright, bright, bright + 10 > 255 ? 255 : bright + 10));
    }

    const QPointF farTopLeft(78, 50), farBottomLeft(78, 104), farTopRight(182, 50), farBottomRight(182, 104);
    const QPolygonF leftWall
        = polygon({ alongToX(farTopLeft, -1), farTopLeft, farBottomLeft, alongToX(farBottomLeft, -1) });
    const QPolygonF rightWall = polygon({ alongToX(farTopRight, sheetWidth + 1), farTopRight, farBottomRight,
        alongToX(farBottomRight, sheetWidth + 1) });
    const QPolygonF floor = polygon(
        { alongToX(farBottomLeft, -200), farBottomLeft, farBottomRight, alongToX(farBottomRight, sheetWidth + 200),
            QPointF(sheetWidth + 200, sceneHeight + 300), QPointF(-200, sceneHeight + 300) });

    // The floor: dark metal plates in perspective.
    {
        p.save();
        QPainterPath clip;
        clip.addPolygon(floor);
        p.setClipPath(clip);
        QLinearGradient metal(0, 104, 0, sceneHeight);
        metal.setColorAt(0, QColor(30, 26, 24));
        metal.setColorAt(1, QColor(58, 50, 44));
        p.fillRect(QRect(0, 100, sheetWidth, sceneHeight), metal);
        p.setPen(QPen(QColor(16, 13, 12), 1));
        for (int x = -400; x <= 660; x += 36)
            p.drawLine(vanishing, vanishing + (QPointF(x, sceneHeight) - vanishing) * 3);
        for (const int y : { 108, 114, 122, 133, 148, 168, 194 })
            p.drawLine(0, y, sheetWidth, y);
        p.restore();
    }
    drawWall(p, leftWall, 0, 78, QColor(74, 62, 52));
    drawWall(p, rightWall, sheetWidth, 182, QColor(70, 59, 50));

    // The far wall, block by block, with an arched doorway full of light.
    {
        const QRectF wall(farTopLeft, farBottomRight);
        p.fillRect(wall, QColor(52, 44, 38));
        p.setPen(QPen(QColor(30, 24, 20), 1));
        for (int row = 0; row * 9 < 54; ++row) {
            const double y = wall.top() + row * 9;
            p.drawLine(QPointF(wall.left(), y), QPointF(wall.right(), y));
            for (double x = wall.left() + (row % 2 ? 7 : 0); x < wall.right(); x += 14)
                p.drawLine(QPointF(x, y), QPointF(x, y + 9));
        }
        QPainterPath arch;
        arch.moveTo(114, 104);
        arch.lineTo(114, 78);
        arch.arcTo(QRectF(114, 62, 32, 32), 180, -180);
        arch.lineTo(146, 104);
        arch.closeSubpath();
        p.setPen(QPen(QColor(24, 18, 14), 3));
        QRadialGradient door(QPointF(130, 92), 26);
        door.setColorAt(0, QColor(255, 236, 170));
        door.setColorAt(0.5, QColor(255, 150, 40));
        door.setColorAt(1, QColor(150, 40, 6));
        p.setBrush(door);
        p.drawPath(arch);
    }
    // Torches on the walls, and the light they throw.
    for (const QPointF torch : { QPointF(92, 66), QPointF(168, 66), QPointF(34, 52), QPointF(226, 52) }) {
        glow(p, torch, torch.y() < 60 ? 22 : 12, QColor(255, 120, 30, 120));
        glow(p, torch, 3, QColor(255, 230, 160));
    }
    // A jump pad on the floor, and a health orb floating over it to the left.
    {
        const QRectF pad(104, 119, 52, 14);
        p.setPen(QPen(QColor(20, 16, 14), 2));
        p.setBrush(QColor(70, 66, 62));
        p.drawEllipse(pad);
        QRadialGradient energy(pad.center(), 24);
        energy.setColorAt(0, QColor(255, 250, 200));
        energy.setColorAt(0.6, QColor(255, 170, 40));
        energy.setColorAt(1, QColor(160, 50, 10));
        p.setPen(Qt::NoPen);
        p.setBrush(energy);
        p.drawEllipse(pad.adjusted(5, 2, -5, -2));
        glow(p, pad.center() - QPointF(0, 6), 22, QColor(255, 180, 60, 70));

        glow(p, QPointF(84, 116), 10, QColor(255, 220, 80, 110));
        QRadialGradient orb(QPointF(82, 114), 6);
        orb.setColorAt(0, QColor(255, 255, 220));
        orb.setColorAt(0.5, QColor(250, 200, 40));
        orb.setColorAt(1, QColor(170, 100, 0));
        p.setBrush(orb);
        p.drawEllipse(QPointF(84, 116), 5, 5);
    }
    return scene;
}

// ---------------------------------------------------------------------------------------------------------------
// What the HUD draws over the scene, in screen coordinates (the screen is 260 x 162).

void drawGun(QPainter &p)
{
    p.save();
    p.setPen(QPen(QColor(10, 12, 14), 1));
    // The body, seen from behind the shooter's right shoulder.
    QLinearGradient steel(180, 128, 220, 162);
    steel.setColorAt(0, QColor(120, 128, 138));
    steel.setColorAt(0.5, QColor(70, 76, 84));
    steel.setColorAt(1, QColor(28, 30, 34));
    p.setBrush(steel);
    p.drawPolygon(polygon({ { 166, 163 }, { 176, 136 }, { 204, 126 }, { 234, 144 }, { 242, 163 } }));
    // The barrel, narrowing towards the middle of the screen.
    const QPointF nearEnd(194, 138), farEnd(150, 108);
    const QPointF along = (farEnd - nearEnd) / std::hypot(farEnd.x() - nearEnd.x(), farEnd.y() - nearEnd.y());
    const QPointF across(-along.y(), along.x());
    QLinearGradient barrel(nearEnd - across * 7, nearEnd + across * 7);
    barrel.setColorAt(0, QColor(40, 44, 50));
    barrel.setColorAt(0.35, QColor(190, 198, 206));
    barrel.setColorAt(1, QColor(36, 40, 46));
    p.setBrush(barrel);
    p.drawPolygon(polygon({ nearEnd + across * 7, farEnd + across * 4, farEnd - across * 4, nearEnd - across * 7 }));
    p.setPen(QPen(QColor(30, 32, 36), 1));
    for (const double side : { -2.5, 2.5 })
        p.drawLine(nearEnd + across * side * 1.6, farEnd + across * side);
    p.setPen(QPen(QColor(10, 12, 14), 1));
    p.setBrush(QColor(14, 14, 16));
    p.drawEllipse(farEnd, 4.2, 3.4);
    // A charge light on the side.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(90, 200, 255));
    p.drawRect(QRectF(212, 140, 9, 3));
    glow(p, QPointF(216, 141), 7, QColor(90, 200, 255, 110));
    p.restore();
}

enum class Icons { None, Flat, Shaded };

// The ammunition: three cartridges, flat, or their box, shaded.
void drawAmmoIcon(QPainter &p, int x, int y, bool shaded)
{
    if (!shaded) {
        p.setRenderHint(QPainter::Antialiasing, false);
        p.setPen(QColor(20, 12, 0));
        for (int i = 0; i < 3; ++i) {
            const int left = x + 1 + i * 5;
            p.setBrush(QColor(218, 168, 60));
            p.drawRect(left, y + 6, 4, 9);
            p.setBrush(QColor(190, 92, 40));
            p.drawPolygon(polygon({ { double(left), y + 6.0 }, { left + 4.0, y + 6.0 }, { left + 2.0, y + 1.0 } }));
        }
        p.setRenderHint(QPainter::Antialiasing);
        return;
    }
    p.setPen(QPen(QColor(12, 14, 6), 0.8));
    QLinearGradient front(0, y + 6, 0, y + 15);
    front.setColorAt(0, QColor(150, 162, 92));
    front.setColorAt(1, QColor(50, 58, 26));
    p.setBrush(front);
    p.drawRect(QRectF(x + 1, y + 6, 10, 9));
    QLinearGradient top(x + 1, y + 6, x + 15, y + 2);
    top.setColorAt(0, QColor(214, 224, 150));
    top.setColorAt(1, QColor(150, 164, 90));
    p.setBrush(top);
    p.drawPolygon(
        polygon({ { x + 1.0, y + 6.0 }, { x + 5.0, y + 2.0 }, { x + 15.0, y + 2.0 }, { x + 11.0, y + 6.0 } }));
    QLinearGradient side(0, y + 2, 0, y + 15);
    side.setColorAt(0, QColor(90, 100, 50));
    side.setColorAt(1, QColor(24, 28, 10));
    p.setBrush(side);
    p.drawPolygon(
        polygon({ { x + 11.0, y + 6.0 }, { x + 15.0, y + 2.0 }, { x + 15.0, y + 11.0 }, { x + 11.0, y + 15.0 } }));
    p.fillRect(QRectF(x + 2.5, y + 9, 7, 2), QColor(240, 190, 60));
}

// The player's head: a helmeted face, flat as a portrait or shaded as the model.
void drawHead(QPainter &p, QRectF box, bool shaded, const QColor &helmet, const QColor &eyes)
{
    const double w = box.width();
    const QRectF dome(box.left() + w * 0.1, box.top(), w * 0.8, w * 0.8);
    const QRectF face(box.left() + w * 0.25, box.top() + w * 0.3, w * 0.5, w * 0.62);
    p.setPen(QPen(QColor(10, 8, 6), shaded ? 0.8 : 1));
    if (shaded) {
        QRadialGradient metal(dome.topLeft() + QPointF(w * 0.3, w * 0.25), w * 0.7);
        metal.setColorAt(0, helmet.lighter(190));
        metal.setColorAt(0.5, helmet);
        metal.setColorAt(1, helmet.darker(300));
        p.setBrush(metal);
    } else {
        p.setBrush(helmet);
    }
    p.drawEllipse(dome);
    if (shaded) {
        QLinearGradient skin(face.topLeft(), face.bottomRight());
        skin.setColorAt(0, QColor(246, 200, 160));
        skin.setColorAt(1, QColor(120, 70, 44));
        p.setBrush(skin);
    } else {
        p.setBrush(QColor(214, 160, 120));
    }
    p.drawRoundedRect(face, w * 0.12, w * 0.12);
    p.setPen(Qt::NoPen);
    p.setBrush(eyes);
    p.drawRect(QRectF(face.left() + w * 0.05, face.top() + w * 0.18, face.width() - w * 0.1, w * 0.1));
    if (shaded)
        glow(p, dome.topLeft() + QPointF(w * 0.28, w * 0.2), w * 0.12, QColor(255, 255, 255, 220));
}

// The armour: a chest plate, flat yellow or shaded gold.
void drawArmourIcon(QPainter &p, int x, int y, bool shaded)
{
    const QPolygonF plate
        = polygon({ { x + 1.0, y + 3.0 }, { x + 5.0, y + 1.0 }, { x + 8.0, y + 3.0 }, { x + 11.0, y + 1.0 },
            { x + 15.0, y + 3.0 }, { x + 14.0, y + 10.0 }, { x + 8.0, y + 15.0 }, { x + 2.0, y + 10.0 } });
    p.setPen(QPen(QColor(50, 30, 0), shaded ? 0.8 : 1));
    if (shaded) {
        QRadialGradient gold(QPointF(x + 5, y + 4), 13);
        gold.setColorAt(0, QColor(255, 250, 190));
        gold.setColorAt(0.4, QColor(240, 190, 30));
        gold.setColorAt(1, QColor(110, 50, 0));
        p.setBrush(gold);
    } else {
        p.setBrush(QColor(236, 196, 32));
    }
    p.drawPolygon(plate);
    p.drawLine(QPointF(x + 8, y + 4), QPointF(x + 8, y + 13));
}

void drawStatusBar(QPainter &p, Icons icons)
{
    constexpr int top = 146;
    drawBigNumber(p, 0, top, 13); // ammunition
    drawBigNumber(p, 75, top, 100); // health
    drawBigNumber(p, 150, top, 50); // armour
    if (icons == Icons::None)
        return;
    const bool shaded = icons == Icons::Shaded;
    drawAmmoIcon(p, 42, top, shaded);
    drawHead(p, QRectF(117, top, 16, 16), shaded, QColor(70, 120, 60), QColor(20, 20, 20));
    drawArmourIcon(p, 192, top, shaded);
}

// The upper-right corner: frame rate, then the match timer, then the last attacker's face and name.
void drawCounters(QPainter &p, bool fps, bool timer, bool attacker)
{
    constexpr int right = 258;
    int y = 2;
    const auto line = [&](const char *text) {
        drawText(p, right - textWidth(text), y, text, QColor(240, 240, 240));
        y += 9;
    };
    if (fps)
        line("125fps");
    if (timer)
        line("3:42");
    if (attacker) {
        drawHead(p, QRectF(right - 20, y + 1, 20, 20), true, QColor(160, 36, 24), QColor(255, 230, 60));
        y += 23;
        line("VEGA");
    }
}

void drawLagometer(QPainter &p)
{
    const QRect box(240, 142, 20, 20);
    p.fillRect(box, QColor(16, 16, 20, 215));
    p.setPen(QColor(70, 70, 80));
    p.drawLine(box.left(), box.top() + 9, box.right(), box.top() + 9);
    // Frame interpolation above the line; snapshot latency below, green, with a late one and a dropped one.
    static constexpr int above[] = { 2, 3, 2, 4, 3, 2, 5, 3, 2, 2, 3, 4, 2, 3, 6, 3, 2, 3, 2, 4 };
    static constexpr int below[] = { 3, 4, 3, 5, 4, 4, 3, 6, 4, 3, 4, 3, 7, 4, 3, 9, 4, 3, 5, 4 };
    for (int i = 0; i < 20; ++i) {
        const int x = box.left() + i;
        p.fillRect(x, box.top() + 9 - above[i], 1, above[i], i == 14 ? QColor(255, 230, 0) : QColor(60, 90, 255));
        const QColor late = below[i] >= 9 ? QColor(255, 40, 40)
            : below[i] >= 7               ? QColor(255, 230, 0)
                                          : QColor(0, 230, 0);
        p.fillRect(x, box.bottom() + 1 - below[i], 1, below[i], late);
    }
}

void drawCrosshair(QPainter &p)
{
    p.setRenderHint(QPainter::Antialiasing, false);
    const QPoint c(130, 81);
    const QRect arms[] = { { c.x() - 6, c.y(), 4, 1 }, { c.x() + 3, c.y(), 4, 1 }, { c.x(), c.y() - 6, 1, 4 },
        { c.x(), c.y() + 3, 1, 4 }, { c.x(), c.y(), 1, 1 } };
    for (const QRect &arm : arms)
        p.fillRect(arm.adjusted(-1, -1, 1, 1), QColor(0, 0, 0, 170));
    for (const QRect &arm : arms)
        p.fillRect(arm, QColor(250, 250, 250));
    p.setRenderHint(QPainter::Antialiasing);
}

void drawAmmoWarning(QPainter &p)
{
    const char *text = "LOW AMMO WARNING";
    drawText(p, 130 - (textWidth(text, 2) + 16) / 2, 27, text, QColor(255, 36, 24), true);
}

void drawChatLine(QPainter &p)
{
    drawText(p, 1, 1, "REX:", QColor(120, 220, 255));
    drawText(p, 1 + textWidth("REX: ") + 1, 1, "GG", QColor(40, 240, 40));
}

// ---------------------------------------------------------------------------------------------------------------

class Sheet
{
public:
    Sheet()
        : m_image(sheetWidth, sheetHeight, QImage::Format_RGB32)
        , m_scene(drawScene())
    {
        m_image.fill(Qt::black);
    }

    // The piece the window shows at `place` on the screen: that part of the scene with `hud` painted over it,
    // put on the sheet with its top-left corner at `at`.
    void piece(QPoint at, QRect place, const std::function<void(QPainter &)> &hud)
    {
        QImage piece = m_scene.copy(place);
        QPainter p(&piece);
        p.setRenderHint(QPainter::Antialiasing);
        p.translate(-place.topLeft());
        hud(p);
        p.end();
        QPainter(&m_image).drawImage(at, piece);
    }

    // The scene itself, whole.
    void scene(QPoint at) { QPainter(&m_image).drawImage(at, m_scene); }
    const QImage &image() const { return m_image; }

private:
    QImage m_image;
    QImage m_scene;
};

QImage drawSheet()
{
    Sheet sheet;
    // The status strips: the gun shown, then not; each with 2D icons, 3D icons, no icons, no status bar.
    const QRect strip(0, 99, 260, 63);
    for (const bool gun : { true, false }) {
        int y = gun ? 0 : 252;
        for (const auto bar : { std::optional(Icons::Flat), std::optional(Icons::Shaded), std::optional(Icons::None),
                 std::optional<Icons>() }) {
            sheet.piece({ 0, y }, strip, [&](QPainter &p) {
                if (gun)
                    drawGun(p);
                if (bar)
                    drawStatusBar(p, *bar);
            });
            y += 63;
        }
    }
    // The corner counters: frame rate and timer, both, the frame rate, the timer, neither; with the attacker, then
    // without.
    const QRect corner(218, 0, 42, 53);
    for (const bool attacker : { true, false }) {
        const int y = attacker ? 505 : 559;
        sheet.piece({ 1, y }, corner, [&](QPainter &p) { drawCounters(p, false, false, attacker); });
        sheet.piece({ 44, y }, corner, [&](QPainter &p) { drawCounters(p, true, true, attacker); });
        sheet.piece({ 87, y }, corner, [&](QPainter &p) { drawCounters(p, true, false, attacker); });
        sheet.piece({ 130, y }, corner, [&](QPainter &p) { drawCounters(p, false, true, attacker); });
    }
    sheet.piece({ 1, 613 }, { 240, 142, 20, 20 }, drawLagometer);
    sheet.piece({ 22, 613 }, { 123, 75, 14, 13 }, drawCrosshair);
    sheet.piece({ 0, 634 }, { 0, 25, 260, 11 }, drawAmmoWarning);
    sheet.piece({ 0, 646 }, { 0, 0, 38, 10 }, drawChatLine);
    sheet.scene({ 0, 657 });
    return sheet.image();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: tarnwick-hudsheet OUTPUT\n");
        return 2;
    }
    const QString output = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(QFileInfo(output).absolutePath());
    QImageWriter writer(output, "png");
    if (!writer.write(drawSheet())) {
        std::fprintf(stderr, "tarnwick-hudsheet: %s: %s\n", argv[1], qPrintable(writer.errorString()));
        return 1;
    }
    return 0;
}

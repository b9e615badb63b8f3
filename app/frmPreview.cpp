#include "frmPreview.h"

#include "ConfigDocument.h"
#include "ProgramSettings.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QLabel>
#include <QPainter>
#include <QScreen>

namespace {

// The sheet: eight status strips, then the corner counters, the small pieces and the scene.
constexpr QSize sheetSize(260, 852);
constexpr QSize screenSize(260, 162); // the mock-up inside the sunken frame
constexpr int frameWidth = 2;

} // namespace

frmPreview::frmPreview(const ConfigDocument &doc, QWidget *parent)
    : QWidget(parent, Qt::Tool)
    , m_doc(doc)
    , m_hud(new QLabel(this))
    , m_plain(new QLabel(QStringLiteral("No Preview"), this))
{
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(QStringLiteral("Preview"));
    setFixedSize(screenSize.width() + 2 * frameWidth + 6, screenSize.height() + 2 * frameWidth + 6);

    const QRect hud(3, 3, screenSize.width() + 2 * frameWidth, screenSize.height() + 2 * frameWidth);
    m_hud->setObjectName(QStringLiteral("picHud"));
    m_hud->setGeometry(hud);
    m_hud->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    m_hud->setLineWidth(frameWidth);
    m_hud->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_plain->setObjectName(QStringLiteral("picPreview"));
    m_plain->setGeometry(hud);
    m_plain->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    m_plain->setLineWidth(frameWidth);
    m_plain->setAlignment(Qt::AlignCenter);

    // Later pieces lie over earlier ones: the lag-o-meter over the status strip, the counters over the
    // warning's line.
    const auto piece = [this](const char *name, int x, int y, int width, int height) {
        auto *label = new QLabel(m_hud);
        label->setObjectName(QString::fromLatin1(name));
        label->setGeometry(frameWidth + x, frameWidth + y, width, height);
        return label;
    };
    m_status = piece("picStatus", 0, 99, 260, 63);
    m_ammoWarning = piece("picLAW", 0, 25, 260, 11);
    m_counters = piece("picFT", 218, 0, 42, 53);
    m_crosshair = piece("picCHair", 123, 75, 14, 13);
    m_lagometer = piece("picLOM", 240, 142, 20, 20);
    m_message = piece("picMsg", 0, 0, 38, 10);

    connect(&doc, &ConfigDocument::valueChanged, this, [this](int row) {
        if (SettingCatalog::instance().row(row).area == Area::HudDisplay)
            PreviewHud();
    });
    connect(&doc, &ConfigDocument::contentReset, this, &frmPreview::PreviewHud);
}

void frmPreview::showEvent(QShowEvent *event)
{
    // The sheet is read when the window first shows: a player who never opens the preview never pays for it.
    if (!m_sheetRead)
        LoadHudImage(sheetPath());
    QWidget::showEvent(event);
}

QString frmPreview::sheetPath()
{
    return programDataFile(QCoreApplication::applicationDirPath(), QStringLiteral("Images/hud.img"));
}

void frmPreview::LoadHudImage(const QString &path)
{
    m_sheetRead = true;
    // The sheet the build draws is a PNG, read as such; any other picture put in its place is recognised by its
    // content, which makes Qt load every image plugin it has to ask them.
    QImage image = QImageReader(path, "png").read();
    if (image.isNull() && QFileInfo::exists(path)) {
        QImageReader reader(path);
        reader.setDecideFormatFromContent(true);
        image = reader.read();
    }
    const bool fits = image.width() >= sheetSize.width() && image.height() >= sheetSize.height();
    m_sheet = fits ? QPixmap::fromImage(image) : QPixmap();
    if (HudImageLoaded()) {
        BlitPiece(m_ammoWarning, 0, 634, 260, 11);
        BlitPiece(m_lagometer, 1, 613, 20, 20);
        BlitPiece(m_message, 0, 646, 38, 10);
        BlitPiece(m_hud, 0, 657, 260, 195);
        BlitPiece(m_crosshair, 22, 613, 14, 13);
    }
    showHudPicture(m_hudWanted);
    PreviewHud();
}

void frmPreview::PreviewHud()
{
    const auto on = [this](QStringView box) { return m_doc.state(box) == 1; };
    const bool all2d = on(u"chk2D");
    const bool bar = all2d && on(u"chkStBar");
    // The status strips come with the gun first, then without; each as 2D icons, 3D icons, no icons, no bar.
    int strip = !bar ? 3 : !on(u"chkIcons") ? 2 : on(u"chk3DIcons") ? 1 : 0;
    if (!on(u"chkWModel"))
        strip += 4;
    // The corner cell: frame rate and timer, frame rate, timer or neither across; with the attacker or not down.
    // Without 2D drawing it is the empty one.
    const bool fps = all2d && on(u"chkFPS");
    const bool timer = all2d && on(u"chkTimer");
    const int column = fps && timer ? 1 : fps ? 2 : timer ? 3 : 0;
    const bool attacker = all2d && on(u"chkKiller");
    if (HudImageLoaded()) {
        BlitPiece(m_status, 0, strip * 63, 260, 63);
        BlitPiece(m_counters, 1 + column * 43, attacker ? 505 : 559, 42, 53);
    }
    m_lagometer->setVisible(bar && on(u"chkLAG"));
    m_crosshair->setVisible(all2d && on(u"chkCHair"));
    m_ammoWarning->setVisible(all2d && on(u"chkLAW"));
    m_message->setVisible(on(u"chkMsg"));
}

void frmPreview::showHudPicture(bool hud)
{
    m_hudWanted = hud;
    const bool mockUp = hud && HudImageLoaded();
    m_hud->setVisible(mockUp);
    m_plain->setVisible(!mockUp);
}

void frmPreview::BlitPiece(QLabel *target, int x, int y, int width, int height)
{
    QPixmap canvas(target->contentsRect().size());
    canvas.fill(Qt::black);
    QPainter(&canvas).drawPixmap(0, 0, m_sheet, x, y, width, height);
    target->setPixmap(canvas);
}

void frmPreview::placeAt(QPoint topLeft, const QRect &mainWindow)
{
    if (QGuiApplication::screenAt(topLeft)) {
        move(topLeft);
        return;
    }
    // Beside the main window: right of it where the screen has room, else left of it, always on its screen.
    const QScreen *screen = QGuiApplication::screenAt(mainWindow.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(QPoint(0, 0), size());
    QPoint place(mainWindow.right() + 1, mainWindow.top());
    if (place.x() + width() > area.right())
        place.setX(mainWindow.left() - width());
    place.setX(qBound(area.left(), place.x(), qMax(area.left(), area.right() + 1 - width())));
    place.setY(qBound(area.top(), place.y(), qMax(area.top(), area.bottom() + 1 - height())));
    move(place);
}

void frmPreview::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

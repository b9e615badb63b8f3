// Tests for the reusable window components: help board, title strip, memory panel, links, and the image list
// (every key has a picture of its own, and the desktop theme only replaces the pictures it has a name for).
#include "ImageList.h"
#include "LinkLabel.h"
#include "MemoryPanel.h"
#include "MsgBoard.h"
#include "TestFiles.h"
#include "TitleStrip.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

QImage image(const QPixmap &pixmap)
{
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

void useTheme(const QString &name, const QStringList &paths = {})
{
    QIcon::setThemeSearchPaths(paths);
    QIcon::setFallbackSearchPaths({});
    QIcon::setThemeName(name);
}

// A theme of plain squares for the names we ask for: red for a key's first choice, green for the later ones.
void writeTheme(const QString &dir, bool withFirstChoices)
{
    QVERIFY(QDir().mkpath(dir + QStringLiteral("/16x16/apps")));
    writeTestFile(dir + QStringLiteral("/index.theme"),
        "[Icon Theme]\nName=Test\nDirectories=16x16/apps\n[16x16/apps]\nSize=16\nType=Fixed\n");
    for (const QString &key : ImageList::keys()) {
        const QStringList names = ImageList::themeNames(key);
        for (qsizetype i = withFirstChoices ? 0 : 1; i < names.size(); ++i) {
            QImage square(16, 16, QImage::Format_ARGB32);
            square.fill(i == 0 ? Qt::red : Qt::green);
            QVERIFY(square.save(dir + QStringLiteral("/16x16/apps/") + names[i] + QStringLiteral(".png")));
        }
    }
}

class CountingBoard : public MsgBoard
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        MsgBoard::paintEvent(event);
    }
};

} // namespace

class tst_UiWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        writeTheme(m_themes.filePath(QStringLiteral("full")), true);
        writeTheme(m_themes.filePath(QStringLiteral("later")), false);
        cleanup();
    }

    void cleanup() { useTheme(QStringLiteral("tarnwick-no-such-theme")); }

    void sheetHasFourDistinctIconsOnTheBoardColour()
    {
        const QColor boardColour(150, 170, 190);
        MsgBoard board;
        QPalette pal = board.palette();
        pal.setColor(QPalette::WindowText, Qt::black);
        pal.setColor(QPalette::Dark, boardColour);
        board.setPalette(pal);
        const QImage sheet = board.iconSheet();
        // Column 16 lies between the cells, so it is the board's colour; no magenta is left anywhere.
        QCOMPARE(QColor(sheet.pixel(16, 5)), boardColour);
        for (int y = 0; y < sheet.height(); ++y) {
            for (int x = 0; x < sheet.width(); ++x)
                QVERIFY(sheet.pixel(x, y) != qRgb(255, 0, 255));
        }
        QImage empty(16, 16, sheet.format());
        empty.fill(boardColour);
        QList<QImage> cells { empty }; // each icon drawn, and unlike the others
        for (int type = 0; type < 4; ++type) {
            const QImage cell = sheet.copy(QRect(*MsgBoard::iconCell(type), QSize(16, 16)));
            QVERIFY2(!cells.contains(cell), qPrintable(QString::number(type)));
            cells.append(cell);
        }
        QVERIFY(!MsgBoard::iconCell(-1) && !MsgBoard::iconCell(4)); // no icon for other types
    }

    void boardColourKeepsTextReadable()
    {
        // Shades of grey, 0 black to 255 white: the text, dark, mid and window colours, then the board's.
        const int rows[][5] = {
            { 0, 160, 200, 255, 160 }, // the workspace grey under black text
            { 0, 60, 180, 255, 180 }, // too dark: mid reads
            { 0, 40, 70, 255, 255 }, // both too dark
            { 255, 30, 60, 50, 30 }, // a dark theme's light text
        };
        const QPalette::ColorRole roles[] = { QPalette::WindowText, QPalette::Dark, QPalette::Mid, QPalette::Window };
        for (const auto &r : rows) {
            QPalette pal;
            for (int i = 0; i < 4; ++i)
                pal.setColor(roles[i], QColor(r[i], r[i], r[i]));
            QCOMPARE(MsgBoard::boardColor(pal), QColor(r[4], r[4], r[4]));
        }
    }

    void newMessageRepaints()
    {
        CountingBoard board;
        board.resize(300, 60);
        board.show();
        QVERIFY(QTest::qWaitForWindowExposed(&board));
        for (const bool drawMsg : { false, true }) {
            QTRY_VERIFY(board.paints > 0);
            QTest::qWait(20);
            board.paints = 0;
            if (drawMsg)
                board.DrawMsg(QStringLiteral("Shown"), 3);
            else
                board.setMessage(QStringLiteral("Line one\r\nLine two"));
            QTRY_VERIFY(board.paints > 0);
        }
    }

    // The strip blends from the shadow (left) to the face (right) on a true-colour screen, else is the shadow alone.
    void gradientColumns()
    {
        const QColor face(240, 200, 40), shadow(40, 80, 160);
        const std::tuple<bool, int, bool> rows[] = { { true, 24, true }, { true, 8, false }, { false, 32, false } };
        for (const auto &[gradient, depth, blended] : rows) {
            const QImage image = TitleStrip::DrawGrad(QSize(101, 4), face, shadow, gradient, depth);
            QCOMPARE(QColor(image.pixel(0, 0)), shadow);
            QCOMPARE(QColor(image.pixel(100, 3)), blended ? face : shadow);
            QCOMPARE(QColor(image.pixel(25, 1)).red() < QColor(image.pixel(75, 1)).red(), blended);
        }
    }

    void memoryTexts()
    {
        // Total and available kilobytes, the locale, the free percentage, the usage in the tool tip.
        const std::tuple<quint64, quint64, const char *, int, const char *> rows[] = {
            { 131072, 32768, "en_US", 25, "98,304 / 131,072" }, { 131072, 32768, "de_DE", 25, "98.304 / 131.072" },
            { 1000, 488, "en_US", 49, "0,512 / 1,000" }, // four digits at least
            { 1000, 125, "en_US", 13, "0,875 / 1,000" }, // a half rounds up
            { 1000, 124, "en_US", 12, "0,876 / 1,000" }, { 50, 25, "en_US", 0, "0,025 / 0,050" }, // a tiny total
        };
        for (const auto &[total, available, locale, percent, usage] : rows) {
            const MemoryStatus status { total, available };
            QCOMPARE(MemoryPanel::panelText(status), QStringLiteral("Free RAM Mem: %1%").arg(percent));
            QCOMPARE(MemoryPanel::toolTipText(status, QLocale(QString::fromLatin1(locale))),
                QStringLiteral("RAM Mem Usage (K): ") + QLatin1String(usage));
        }
    }

    void parsesMemInfo()
    {
        const auto kernel = MemoryPanel::parseMemInfo(
            "MemTotal:       16303512 kB\nMemFree:          812344 kB\nMemAvailable:    9876543 kB\nBuffers:  1 kB\n");
        QVERIFY(kernel && kernel->totalK == 16303512 && kernel->availableK == 9876543);
        const auto inside = MemoryPanel::parseMemInfo("HugeMemTotal: 5 kB\nMemTotal: 200 kB\nMemAvailable: 50 kB\n");
        QVERIFY(inside && inside->totalK == 200 && inside->availableK == 50); // a key inside another name
        QVERIFY(!MemoryPanel::parseMemInfo("MemTotal: 200 kB\nMemFree: 50 kB\n")); // an old kernel
    }

    void queriesThisMachine()
    {
#if !defined(Q_OS_LINUX) && !defined(Q_OS_WIN)
        QSKIP("No memory query on this system");
#endif
        MemoryPanel panel;
        for (int i = 0; i < 2; ++i) { // the second read starts from the top again
            const auto status = panel.query();
            QVERIFY(status && status->availableK > 0 && status->totalK > status->availableK);
        }
        panel.refresh();
        QVERIFY(panel.text().startsWith(QStringLiteral("Free RAM Mem: ")));
    }

    void linkActivatesOnReleaseOverIt()
    {
        const QUrl url(QStringLiteral("mailto:someone@example.invalid"));
        LinkLabel link(QStringLiteral("Someone"), url);
        link.resize(100, 20);
        QSignalSpy spy(&link, &LinkLabel::activated);
        for (const QPoint releaseAt : { QPoint(-20, 5), QPoint(5, 5) }) { // dragged off first, then over it
            QTest::mousePress(&link, Qt::LeftButton, {}, QPoint(5, 5));
            QVERIFY(link.isHeld() && spy.isEmpty());
            QTest::mouseRelease(&link, Qt::LeftButton, {}, releaseAt);
            QVERIFY(!link.isHeld());
        }
        QCOMPARE(spy, QList<QVariantList> { { url } });
    }

    // Without a theme each icon is our drawing, scaled to the size on a transparent square, and no two alike.
    void everyKeyHasItsOwnDrawing()
    {
        QList<QImage> seen;
        for (const QString &key : ImageList::keys()) {
            const QImage big = image(ImageList::drawn(key, 32));
            QRect painted;
            int clear = 0;
            for (int y = 0; y < 32; ++y) {
                for (int x = 0; x < 32; ++x) {
                    clear += qAlpha(big.pixel(x, y)) == 0;
                    painted |= qAlpha(big.pixel(x, y)) ? QRect(x, y, 1, 1) : QRect();
                }
            }
            QVERIFY2(clear > 0 && painted.width() > 16 && painted.height() > 16, qPrintable(key));
            QCOMPARE(image(ImageList::icon(key).pixmap(24)), image(ImageList::drawn(key, 24)));
            const QImage own = image(ImageList::drawn(key));
            QVERIFY2(!seen.contains(own), qPrintable(key + QStringLiteral(" looks like another key")));
            seen.append(own);
        }
    }

    void unknownKeyGivesNothing()
    {
        for (const QString &key : { QString(), QStringLiteral("new"), QStringLiteral("CHK3") })
            QVERIFY(ImageList::icon(key).isNull() && ImageList::drawn(key).isNull()
                && ImageList::themeNames(key).isEmpty());
    }

    void checkedMarkIsDarkerThanUnchecked()
    {
        const auto dark = [](const char *key) {
            const QImage img = image(ImageList::drawn(QString::fromLatin1(key)));
            int count = 0;
            for (int y = 0; y < img.height(); ++y) {
                for (int x = 0; x < img.width(); ++x)
                    count += qAlpha(img.pixel(x, y)) >= 128 && qGray(img.pixel(x, y)) < 96;
            }
            return count;
        };
        QVERIFY2(dark("CHK1") >= 16 && dark("CHK1") > 3 * dark("CHK2"), qPrintable(QString::number(dark("CHK1"))));
    }

    // A theme shows its best name a key asks for; the check marks and keys it has no name for stay ours.
    void themeReplacesAllButCheckMarks()
    {
        for (const bool full : { true, false }) {
            useTheme(full ? QStringLiteral("full") : QStringLiteral("later"), { m_themes.path() });
            for (const QString &key : ImageList::keys()) {
                const QImage shown = image(ImageList::icon(key).pixmap(16));
                if (ImageList::themeNames(key).size() > (full ? 0 : 1))
                    QVERIFY2(shown.pixelColor(8, 8) == QColor(full ? Qt::red : Qt::green), qPrintable(key));
                else
                    QVERIFY2(shown == image(ImageList::drawn(key, 16)), qPrintable(key));
            }
        }
    }

private:
    QTemporaryDir m_themes;
};

QTEST_MAIN(tst_UiWidgets)
#include "tst_UiWidgets.moc"

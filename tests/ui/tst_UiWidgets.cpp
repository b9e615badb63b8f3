// Tests for the reusable window components: help board, title strip, page buttons, memory panel, links.
#include "HoverButton.h"
#include "LinkLabel.h"
#include "MemoryPanel.h"
#include "MsgBoard.h"
#include "TitleStrip.h"

#include <QEnterEvent>
#include <QSignalSpy>
#include <QTest>

namespace {

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
    void sheetHasFourDistinctIconsOnTheBoardColour();
    void boardColourKeepsTextReadable_data();
    void boardColourKeepsTextReadable();
    void newMessageRepaints();
    void gradientColumns_data();
    void gradientColumns();
    void memoryTexts_data();
    void memoryTexts();
    void parsesMemInfo_data();
    void parsesMemInfo();
    void queriesThisMachine();
    void linkActivatesOnReleaseOverIt();
    void hoverButtonTracksTheMouse();
};

void tst_UiWidgets::sheetHasFourDistinctIconsOnTheBoardColour()
{
    MsgBoard board;
    QPalette pal = board.palette();
    pal.setColor(QPalette::WindowText, Qt::black);
    pal.setColor(QPalette::Dark, QColor(150, 170, 190));
    board.setPalette(pal);
    const QImage sheet = board.iconSheet();
    QCOMPARE(sheet.size(), QSize(33, 32));
    // Column 16 lies between the cells, so it is the board's colour on every row.
    QCOMPARE(QColor(sheet.pixel(16, 5)), QColor(150, 170, 190));
    for (int y = 0; y < sheet.height(); ++y) {
        for (int x = 0; x < sheet.width(); ++x)
            QVERIFY2(
                sheet.pixel(x, y) != qRgb(255, 0, 255), qPrintable(QStringLiteral("magenta at %1,%2").arg(x).arg(y)));
    }
    QList<QImage> cells;
    for (int type = 0; type < 4; ++type) {
        const QImage cell = sheet.copy(QRect(*MsgBoard::iconCell(type), QSize(16, 16)));
        int drawn = 0;
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x)
                drawn += cell.pixel(x, y) != qRgb(150, 170, 190);
        }
        QVERIFY2(drawn > 64, qPrintable(QStringLiteral("type %1 is nearly empty").arg(type)));
        QVERIFY(!cells.contains(cell));
        cells.append(cell);
    }
    QVERIFY(!MsgBoard::iconCell(-1) && !MsgBoard::iconCell(4)); // no icon for other types
}

void tst_UiWidgets::boardColourKeepsTextReadable_data()
{
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("dark");
    QTest::addColumn<QColor>("mid");
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("expected");
    // Shades of grey, 0 black to 255 white.
    const auto row = [](const char *tag, int text, int dark, int mid, int window, int expected) {
        QTest::newRow(tag) << QColor(text, text, text) << QColor(dark, dark, dark) << QColor(mid, mid, mid)
                           << QColor(window, window, window) << QColor(expected, expected, expected);
    };
    row("workspace grey under black", 0, 160, 200, 255, 160);
    row("too dark, mid reads", 0, 60, 180, 255, 180);
    row("both too dark", 0, 40, 70, 255, 255);
    row("dark theme, light text", 255, 30, 60, 50, 30);
}

void tst_UiWidgets::boardColourKeepsTextReadable()
{
    QFETCH(QColor, text);
    QFETCH(QColor, dark);
    QFETCH(QColor, mid);
    QFETCH(QColor, window);
    QFETCH(QColor, expected);
    QPalette pal;
    pal.setColor(QPalette::WindowText, text);
    pal.setColor(QPalette::Dark, dark);
    pal.setColor(QPalette::Mid, mid);
    pal.setColor(QPalette::Window, window);
    QCOMPARE(MsgBoard::boardColor(pal), expected);
}

void tst_UiWidgets::newMessageRepaints()
{
    CountingBoard board;
    board.resize(300, 60);
    board.show();
    QVERIFY(QTest::qWaitForWindowExposed(&board));
    QTRY_VERIFY(board.paints > 0);
    for (const bool drawMsg : { false, true }) {
        QTest::qWait(20);
        board.paints = 0;
        if (drawMsg)
            board.DrawMsg(QStringLiteral("Shown"), 3);
        else
            board.setMessage(QStringLiteral("Line one\r\nLine two"));
        QTRY_VERIFY(board.paints > 0);
    }
}

void tst_UiWidgets::gradientColumns_data()
{
    QTest::addColumn<bool>("gradient");
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("blended");
    QTest::newRow("gradient, true colour") << true << 24 << true;
    QTest::newRow("gradient, 8 bit") << true << 8 << false;
    QTest::newRow("flat") << false << 32 << false;
}

void tst_UiWidgets::gradientColumns()
{
    QFETCH(bool, gradient);
    QFETCH(int, depth);
    QFETCH(bool, blended);
    const QColor face(240, 200, 40);
    const QColor shadow(40, 80, 160);
    const QImage image = TitleStrip::DrawGrad(QSize(101, 4), face, shadow, gradient, depth);
    QCOMPARE(image.size(), QSize(101, 4));
    QCOMPARE(QColor(image.pixel(0, 0)), shadow);
    QCOMPARE(QColor(image.pixel(100, 3)), blended ? face : shadow);
    // Nearer the shadow on the left half; each column one colour.
    QCOMPARE(QColor(image.pixel(25, 1)).red() < QColor(image.pixel(75, 1)).red(), blended);
    for (int y = 1; y < image.height(); ++y)
        QCOMPARE(image.pixel(37, y), image.pixel(37, 0));
}

void tst_UiWidgets::memoryTexts_data()
{
    QTest::addColumn<quint64>("totalK");
    QTest::addColumn<quint64>("availableK");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("panel");
    QTest::addColumn<QString>("toolTip");
    const auto row = [](const char *tag, quint64 total, quint64 available, const char *locale, const char *panel,
                         const char *toolTip) {
        QTest::newRow(tag) << total << available << QString::fromLatin1(locale) << QString::fromLatin1(panel)
                           << QString::fromLatin1(toolTip);
    };
    row("quarter free", 131072, 32768, "en_US", "Free RAM Mem: 25%", "RAM Mem Usage (K): 98,304 / 131,072");
    row("German grouping", 131072, 32768, "de_DE", "Free RAM Mem: 25%", "RAM Mem Usage (K): 98.304 / 131.072");
    row("four digits at least", 1000, 488, "en_US", "Free RAM Mem: 49%", "RAM Mem Usage (K): 0,512 / 1,000");
    row("half rounds up", 1000, 125, "en_US", "Free RAM Mem: 13%", "RAM Mem Usage (K): 0,875 / 1,000");
    row("below half rounds down", 1000, 124, "en_US", "Free RAM Mem: 12%", "RAM Mem Usage (K): 0,876 / 1,000");
    row("tiny total", 50, 25, "en_US", "Free RAM Mem: 0%", "RAM Mem Usage (K): 0,025 / 0,050");
}

void tst_UiWidgets::memoryTexts()
{
    QFETCH(quint64, totalK);
    QFETCH(quint64, availableK);
    QFETCH(QString, locale);
    QFETCH(QString, panel);
    QFETCH(QString, toolTip);
    const MemoryStatus status { totalK, availableK };
    QCOMPARE(MemoryPanel::panelText(status), panel);
    QCOMPARE(MemoryPanel::toolTipText(status, QLocale(locale)), toolTip);
}

void tst_UiWidgets::parsesMemInfo_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("found");
    QTest::addColumn<quint64>("totalK");
    QTest::addColumn<quint64>("availableK");
    const auto row = [](const char *tag, const char *text, bool found, quint64 total = 0, quint64 available = 0) {
        QTest::newRow(tag) << QByteArray(text) << found << total << available;
    };
    row("kernel layout",
        "MemTotal:       16303512 kB\nMemFree:          812344 kB\nMemAvailable:    9876543 kB\nBuffers:  1 kB\n", true,
        16303512, 9876543);
    row("key inside another name", "HugeMemTotal: 5 kB\nMemTotal: 200 kB\nMemAvailable: 50 kB\n", true, 200, 50);
    row("old kernel, no MemAvailable", "MemTotal: 200 kB\nMemFree: 50 kB\n", false);
}

void tst_UiWidgets::parsesMemInfo()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, found);
    QFETCH(quint64, totalK);
    QFETCH(quint64, availableK);
    const auto status = MemoryPanel::parseMemInfo(std::string_view(text.constData(), std::size_t(text.size())));
    QCOMPARE(status.has_value(), found);
    if (found) {
        QCOMPARE(status->totalK, totalK);
        QCOMPARE(status->availableK, availableK);
    }
}

void tst_UiWidgets::queriesThisMachine()
{
#if !defined(Q_OS_LINUX) && !defined(Q_OS_WIN)
    QSKIP("No memory query on this system");
#endif
    MemoryPanel panel;
    for (int i = 0; i < 2; ++i) { // the second read starts from the top again
        const auto status = panel.query();
        QVERIFY(status.has_value());
        QVERIFY(status->availableK > 0);
        QVERIFY(status->totalK > status->availableK);
    }
    panel.refresh();
    QVERIFY(panel.text().startsWith(QStringLiteral("Free RAM Mem: ")));
    QVERIFY(panel.toolTip().startsWith(QStringLiteral("RAM Mem Usage (K): ")));
}

void tst_UiWidgets::linkActivatesOnReleaseOverIt()
{
    const QUrl url(QStringLiteral("mailto:someone@example.invalid"));
    LinkLabel link(QStringLiteral("Someone"), url);
    link.resize(100, 20);
    QSignalSpy spy(&link, &LinkLabel::activated);
    for (const QPoint releaseAt : { QPoint(-20, 5), QPoint(5, 5) }) { // dragged off first, then over it
        QTest::mousePress(&link, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(link.isHeld());
        QCOMPARE(link.palette().color(QPalette::WindowText), QColor(255, 0, 0));
        QCOMPARE(spy.count(), 0);
        QTest::mouseRelease(&link, Qt::LeftButton, {}, releaseAt);
        QVERIFY(!link.isHeld());
        QCOMPARE(link.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    }
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toUrl(), url);
}

void tst_UiWidgets::hoverButtonTracksTheMouse()
{
    HoverButton button(QStringLiteral("Graphics"));
    QVERIFY(!button.isHovered());
    QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2));
    QCoreApplication::sendEvent(&button, &enter);
    QVERIFY(button.isHovered());
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&button, &leave);
    QVERIFY(!button.isHovered());
}

QTEST_MAIN(tst_UiWidgets)
#include "tst_UiWidgets.moc"

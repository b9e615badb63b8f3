// Tests for the main window's image list: every key has a picture of its own, and the desktop theme only replaces
// the pictures it has a name for.
#include "ImageList.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QColor FirstChoice(Qt::red);
const QColor LaterChoice(Qt::green);

QImage image(const QPixmap &pixmap)
{
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

int darkPixels(const QImage &img)
{
    int count = 0;
    for (int y = 0; y < img.height(); ++y) {
        for (int x = 0; x < img.width(); ++x)
            count += qAlpha(img.pixel(x, y)) >= 128 && qGray(img.pixel(x, y)) < 96;
    }
    return count;
}

void useMissingTheme()
{
    QIcon::setThemeSearchPaths({});
    QIcon::setFallbackSearchPaths({});
    QIcon::setThemeName(QStringLiteral("tarnwick-no-such-theme"));
}

// Writes a theme of plain squares, one per name: red for a key's first choice, green for the others.
void writeTheme(const QString &dir, const QStringList &names, const QStringList &firstChoices)
{
    QVERIFY(QDir().mkpath(dir + QStringLiteral("/16x16/apps")));
    QFile index(dir + QStringLiteral("/index.theme"));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=Test\nDirectories=16x16/apps\n[16x16/apps]\nSize=16\nType=Fixed\n");
    for (const QString &name : names) {
        QImage square(16, 16, QImage::Format_ARGB32);
        square.fill(firstChoices.contains(name) ? FirstChoice : LaterChoice);
        QVERIFY(square.save(dir + QStringLiteral("/16x16/apps/") + name + QStringLiteral(".png")));
    }
}

} // namespace

class tst_ImageList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { useMissingTheme(); }
    void everyKeyHasItsOwnDrawing();
    void unknownKeyGivesNothing();
    void checkedMarkIsDarkerThanUnchecked();
    void themeReplacesAllButCheckMarks_data();
    void themeReplacesAllButCheckMarks();

private:
    QTemporaryDir m_themes;
};

void tst_ImageList::initTestCase()
{
    // "full" holds every name we ask for, "later" only the second choices onwards.
    QStringList all, firsts, laters;
    for (const QString &key : ImageList::keys()) {
        const QStringList names = ImageList::themeNames(key);
        all << names;
        firsts << names.mid(0, 1);
        laters << names.mid(1);
    }
    writeTheme(m_themes.filePath(QStringLiteral("full")), all, firsts);
    writeTheme(m_themes.filePath(QStringLiteral("later")), laters, firsts);
    useMissingTheme();
}

// Without a theme each icon is our drawing, spread over a transparent square at every size, and no two alike.
void tst_ImageList::everyKeyHasItsOwnDrawing()
{
    QList<QImage> seen;
    for (const QString &key : ImageList::keys()) {
        for (const int size : { 16, 32 }) {
            const QImage img = image(ImageList::drawn(key, size));
            QCOMPARE(img.size(), QSize(size, size));
            int clear = 0;
            QRect painted;
            for (int y = 0; y < size; ++y) {
                for (int x = 0; x < size; ++x) {
                    if (qAlpha(img.pixel(x, y)) == 0)
                        ++clear;
                    else
                        painted |= QRect(x, y, 1, 1);
                }
            }
            QVERIFY2(clear > 0, qPrintable(key + QStringLiteral(": no transparent background")));
            QVERIFY2(painted.width() > size / 2 && painted.height() > size / 2,
                qPrintable(key + QStringLiteral(": not scaled to the size")));
        }
        const QIcon icon = ImageList::icon(key);
        QCOMPARE(icon.availableSizes(), (QList<QSize> { { 16, 16 }, { 24, 24 }, { 32, 32 }, { 48, 48 } }));
        QCOMPARE(image(icon.pixmap(24)), image(ImageList::drawn(key, 24)));
        const QImage own = image(ImageList::drawn(key));
        QVERIFY2(!seen.contains(own), qPrintable(key + QStringLiteral(" looks like another key")));
        seen.append(own);
    }
}

void tst_ImageList::unknownKeyGivesNothing()
{
    for (const QString &key : { QString(), QStringLiteral("new"), QStringLiteral("CHK3") }) {
        QVERIFY(ImageList::icon(key).isNull());
        QVERIFY(ImageList::drawn(key).isNull());
        QVERIFY(ImageList::themeNames(key).isEmpty());
    }
}

void tst_ImageList::checkedMarkIsDarkerThanUnchecked()
{
    for (const int size : { 16, 32 }) {
        const int checked = darkPixels(image(ImageList::drawn(QStringLiteral("CHK1"), size)));
        const int unchecked = darkPixels(image(ImageList::drawn(QStringLiteral("CHK2"), size)));
        QVERIFY2(checked >= size && checked > 3 * unchecked,
            qPrintable(QStringLiteral("%1 px: %2 vs %3 dark pixels").arg(size).arg(checked).arg(unchecked)));
    }
}

void tst_ImageList::themeReplacesAllButCheckMarks_data()
{
    QTest::addColumn<QString>("theme");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QColor>("themed"); // invalid where our own drawing must show
    for (const QString &key : ImageList::keys()) {
        // The check marks stay ours whatever the theme offers.
        const bool checkMark = key == QStringLiteral("CHK1") || key == QStringLiteral("CHK2");
        const qsizetype names = checkMark ? 0 : ImageList::themeNames(key).size();
        QTest::addRow("full %s", qPrintable(key)) << "full" << key << (names > 0 ? FirstChoice : QColor());
        QTest::addRow("later %s", qPrintable(key)) << "later" << key << (names > 1 ? LaterChoice : QColor());
    }
}

void tst_ImageList::themeReplacesAllButCheckMarks()
{
    QFETCH(QString, theme);
    QFETCH(QString, key);
    QFETCH(QColor, themed);
    QIcon::setThemeSearchPaths({ m_themes.path() });
    QIcon::setThemeName(theme);
    const QImage shown = image(ImageList::icon(key).pixmap(16));
    if (themed.isValid())
        QCOMPARE(shown.pixelColor(8, 8), themed);
    else
        QCOMPARE(shown, image(ImageList::drawn(key, 16)));
}

QTEST_MAIN(tst_ImageList)
#include "tst_ImageList.moc"

// Tests for the main window's image list: every key has a picture of its own, and the desktop theme only replaces
// the pictures it has a name for.
#include "ImageList.h"
#include "TestFiles.h"

#include <QDir>
#include <QImage>
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

} // namespace

class tst_ImageList : public QObject
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

QTEST_MAIN(tst_ImageList)
#include "tst_ImageList.moc"

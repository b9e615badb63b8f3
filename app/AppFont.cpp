#include "AppFont.h"

#include <QApplication>
#include <QFileInfo>
#include <QFontDatabase>

namespace AppFont {

namespace {

    const QString family = QStringLiteral("Tahoma");

    // Wine's fonts package carries a free Tahoma outside fontconfig's folders.
    const char *const freeTahomaFiles[] = {
        "/usr/share/wine/fonts/tahoma.ttf",
        "/usr/share/wine/fonts/tahomabd.ttf",
        "/usr/share/fonts/truetype/wine/tahoma.ttf",
        "/usr/share/fonts/truetype/wine/tahomabd.ttf",
    };

} // namespace

void install()
{
    if (!QFontDatabase::families().contains(family)) {
        for (const char *file : freeTahomaFiles) {
            const QString path = QString::fromLatin1(file);
            if (QFileInfo::exists(path))
                QFontDatabase::addApplicationFont(path);
        }
    }
    if (!QFontDatabase::families().contains(family)) {
        // Similar widths and a tall x-height, in the order they come closest.
        QFont::insertSubstitutions(family,
            { QStringLiteral("Liberation Sans"), QStringLiteral("Arimo"), QStringLiteral("Arial"),
                QStringLiteral("DejaVu Sans") });
    }
    QFont font(family);
    font.setPointSize(8);
    QApplication::setFont(font);
}

} // namespace AppFont

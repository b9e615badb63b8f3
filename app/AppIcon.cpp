#include "AppIcon.h"

#ifdef TARNWICK_PNG_WINDOW_ICONS
#include "SizedIconEngine.h"

#include <QImageReader>
#endif

namespace AppIcon {

#ifdef TARNWICK_PNG_WINDOW_ICONS
namespace {

    constexpr int sizes[] = { 16, 32, 48, 64, 128, 256 };

    // The PNGs drawn from the SVG at build time, each read when a window or panel first asks for a size near it:
    // read as PNGs by name, since QIcon's own file engine asks every image plugin Qt has what each file is.
    class PngIconEngine : public SizedIconEngine
    {
    public:
        // What an X window carries in its icon property, drawn and sent for each window as it is created: up to
        // 128 pixels, which is what title bars, task bars and switchers show. The 256-pixel drawing (a quarter of
        // a megabyte) stays for whoever asks for that size.
        QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
        {
            QList<QSize> result;
            for (const int size : sizes) {
                if (size <= 128)
                    result.append({ size, size });
            }
            return result;
        }
        QIconEngine *clone() const override { return new PngIconEngine; }
        QString key() const override { return QStringLiteral("TarnwickAppIcon"); }

    protected:
        QPixmap draw(int side) const override
        {
            // The smallest drawing at least as large, else the largest; scaled down to the size asked for.
            int source = largestSide();
            for (const int candidate : sizes) {
                if (candidate >= side) {
                    source = candidate;
                    break;
                }
            }
            QImage image
                = QImageReader(QStringLiteral(":/window-icon/%1x%1/apps/tarnwick.png").arg(source), "png").read();
            if (image.width() > side)
                image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            return QPixmap::fromImage(image);
        }
        int largestSide() const override { return sizes[std::size(sizes) - 1]; }
    };

} // namespace
#endif

QIcon icon()
{
#ifdef TARNWICK_PNG_WINDOW_ICONS
    return QIcon(new PngIconEngine);
#else
    return QIcon(QStringLiteral(":/icons/tarnwick.svg"));
#endif
}

} // namespace AppIcon

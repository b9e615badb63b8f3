#include "AppIcon.h"

#ifdef TARNWICK_PNG_WINDOW_ICONS
#include <QApplication>
#include <QHash>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#endif

namespace AppIcon {

#ifdef TARNWICK_PNG_WINDOW_ICONS
namespace {

    constexpr int sizes[] = { 16, 32, 48, 64, 128, 256 };

    // The PNGs drawn from the SVG at build time, each read when a window or panel first asks for a size near it:
    // read as PNGs by name, since QIcon's own file engine asks every image plugin Qt has what each file is.
    class PngIconEngine : public QIconEngine
    {
    public:
        QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
        {
            Q_UNUSED(state);
            const int wanted = qMax(1, qMin(size.width(), size.height()));
            const quint64 key = quint64(wanted) << 8 | quint64(mode);
            if (const auto cached = m_cache.constFind(key); cached != m_cache.cend())
                return *cached;
            // The smallest drawing at least as large, else the largest; scaled down to the size asked for.
            int source = sizes[std::size(sizes) - 1];
            for (const int candidate : sizes) {
                if (candidate >= wanted) {
                    source = candidate;
                    break;
                }
            }
            QImage image
                = QImageReader(QStringLiteral(":/window-icon/%1x%1/apps/tarnwick.png").arg(source), "png").read();
            if (image.width() > wanted)
                image = image.scaled(wanted, wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            QPixmap result = QPixmap::fromImage(image);
            if (mode != QIcon::Normal && mode != QIcon::Active) {
                if (auto *app = qobject_cast<QApplication *>(QCoreApplication::instance())) {
                    QStyleOption option;
                    option.palette = QApplication::palette();
                    result = app->style()->generatedIconPixmap(mode, result, &option);
                }
            }
            m_cache.insert(key, result);
            return result;
        }

        void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
        {
            const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
            QPixmap shown = pixmap(rect.size() * ratio, mode, state);
            shown.setDevicePixelRatio(ratio);
            painter->drawPixmap(rect, shown);
        }

        QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
        {
            const int side = qMin(qMin(size.width(), size.height()), sizes[std::size(sizes) - 1]);
            return { side, side };
        }

        QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
        {
            QList<QSize> result;
            for (const int size : sizes)
                result.append({ size, size });
            return result;
        }

        QIconEngine *clone() const override { return new PngIconEngine; }
        QString key() const override { return QStringLiteral("TarnwickAppIcon"); }

    private:
        QHash<quint64, QPixmap> m_cache; // size and mode to the picture
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

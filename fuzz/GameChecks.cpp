// The checks of what the game's folder holds: PK3 archives and skin icons.
#include "FuzzTargets.h"

#include "TgaImage.h"
#include "cUnzip.h"

#include <QtEndian>

namespace {

// Reading an entry opens the archive again: a few dozen are enough to try every method and flag.
constexpr int entriesRead = 32;
constexpr qint64 entryLimit = 1 << 20;

} // namespace

namespace FuzzTargets {

QString pk3(QByteArrayView input)
{
    cUnzip zip;
    zip.setZipFile(scratchFile(QStringLiteral("fuzz.pk3"), input));
    QString error;
    if (!zip.Directory(&error) && error.isEmpty())
        return QStringLiteral("the listing failed without saying why");
    for (int i = 1; i <= zip.FileCount(); ++i) {
        // The name is what follows the last separator; only a leading "/" may stay in it.
        const QString name = zip.Filename(i);
        if (name.isEmpty() || name.contains(u'\\') || name.lastIndexOf(u'/') > 0)
            return QStringLiteral("entry %1 is named \"%2\"").arg(QString::number(i), name);
        if (zip.FileSize(i) < 0 || zip.FileCompressionRatio(i) < 0)
            return QStringLiteral("entry %1 has a negative size").arg(i);
        if (i > entriesRead)
            continue;
        QString why;
        const QByteArray data = zip.FileData(i, entryLimit, &why);
        if (why.isEmpty() && data.size() != zip.FileSize(i)) {
            return QStringLiteral("entry %1 read %2 bytes, listed as %3")
                .arg(QString::number(i), QString::number(data.size()), QString::number(zip.FileSize(i)));
        }
    }
    return {};
}

QString tga(QByteArrayView input)
{
    const TgaImage::Picture image = TgaImage::decode(input.toByteArray());
    if (image.isNull())
        return {};
    const auto *header = reinterpret_cast<const uchar *>(input.data());
    if (image.width != qFromLittleEndian<quint16>(header + 12)
        || image.height != qFromLittleEndian<quint16>(header + 14)
        || image.pixels.size() != qsizetype(image.width) * image.height)
        return QStringLiteral("the picture is not the size its header gives");
    const bool grey = header[2] == 3 || header[2] == 11;
    const bool alpha = header[16] == 32;
    // Every pixel is read, so a row the decoder left short would show under the sanitizers.
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const quint32 pixel = image.pixel(x, y); // 0xAARRGGBB
            const quint32 red = (pixel >> 16) & 0xff, green = (pixel >> 8) & 0xff, blue = pixel & 0xff;
            if (!alpha && pixel >> 24 != 255)
                return QStringLiteral("a picture without alpha has a transparent pixel");
            if (grey && (red != green || green != blue))
                return QStringLiteral("a grey picture has a coloured pixel");
        }
    }
    return {};
}

} // namespace FuzzTargets

// TgaImage: the TGA pictures player models carry as skin icons, read here since Qt's own reader misses the
// run-length encoded ones.
#pragma once

#include <QByteArray>
#include <QList>

namespace TgaImage {

/// A decoded picture, without QtGui (the command line lists icons without loading it): width × height pixels as
/// 0xAARRGGBB, the layout of QImage::Format_ARGB32, top row first; alpha 255 throughout without an alpha channel.
struct Picture
{
    int width = 0;
    int height = 0;
    bool hasAlpha = false;
    QList<quint32> pixels;

    bool isNull() const { return pixels.isEmpty(); }
    quint32 pixel(int x, int y) const { return pixels.at(qsizetype(y) * width + x); }
};

/// Types 2 (colour), 3 (grey), 10 and 11 (the same, run-length encoded); 24- or 32-bit colour, 8-bit grey;
/// either origin. A null picture for any other kind, for damaged or truncated data, and for one of more than
/// 16 million pixels (a skin icon has some thousands).
Picture decode(const QByteArray &bytes);

} // namespace TgaImage

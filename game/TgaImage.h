// TgaImage: the TGA pictures player models carry as skin icons, read here since Qt's own reader misses the
// run-length encoded ones.
#pragma once

#include <QByteArray>
#include <QImage>

namespace TgaImage {

/// Types 2 (colour), 3 (grey), 10 and 11 (the same, run-length encoded); 24- or 32-bit colour, 8-bit grey;
/// either origin. A null image for any other kind and for damaged or truncated data.
QImage decode(const QByteArray &bytes);

} // namespace TgaImage

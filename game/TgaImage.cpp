#include "TgaImage.h"

#include <QtEndian>

namespace {

constexpr int headerSize = 18;
constexpr qint64 maxPixels = 16 * 1024 * 1024;

class Reader
{
public:
    explicit Reader(const QByteArray &bytes)
        : m_bytes(bytes)
    { }

    TgaImage::Picture decode()
    {
        if (m_bytes.size() < headerSize)
            return {};
        const auto *header = reinterpret_cast<const uchar *>(m_bytes.constData());
        const int type = header[2];
        const bool grey = type == 3 || type == 11;
        const bool packed = type == 10 || type == 11;
        m_depth = header[16] / 8;
        const bool colour = (type == 2 || type == 10) && (header[16] == 24 || header[16] == 32);
        if (!colour && !(grey && header[16] == 8))
            return {};
        const int width = qFromLittleEndian<quint16>(header + 12);
        const int height = qFromLittleEndian<quint16>(header + 14);
        const bool rightToLeft = header[17] & 0x10;
        const bool topDown = header[17] & 0x20;
        // The picture follows the image ID and the colour map, which a colour or grey picture does not use.
        const int mapEntryBytes = (header[7] + 7) / 8;
        m_at = headerSize + header[0] + (header[1] ? qFromLittleEndian<quint16>(header + 5) * mapEntryBytes : 0);
        // Each packet byte gives at most 128 pixels: more than that would be a damaged header.
        const qint64 pixels = qint64(width) * height;
        const qint64 left = m_bytes.size() - m_at;
        if (pixels == 0 || pixels > maxPixels || left < 0 || (packed ? pixels > left * 128 : pixels * m_depth > left))
            return {};
        TgaImage::Picture picture;
        picture.pixels.resize(pixels);
        quint32 pixel = 0;
        int repeat = 0; // pixels left in the current run
        int raw = 0; // pixels left to read one by one
        for (int y = 0; y < height; ++y) {
            quint32 *row = picture.pixels.data() + qsizetype(topDown ? y : height - 1 - y) * width;
            for (int x = 0; x < width; ++x) {
                if (packed && repeat == 0 && raw == 0) {
                    if (m_at >= m_bytes.size())
                        return {};
                    const uchar packet = uchar(m_bytes[m_at++]);
                    (packet & 0x80 ? repeat : raw) = (packet & 0x7f) + 1;
                    if (repeat && !read(&pixel))
                        return {};
                }
                if (repeat > 0)
                    --repeat;
                else if (!read(&pixel))
                    return {};
                else if (raw > 0)
                    --raw;
                row[rightToLeft ? width - 1 - x : x] = pixel;
            }
        }
        picture.width = width;
        picture.height = height;
        picture.hasAlpha = m_depth == 4;
        return picture;
    }

private:
    static quint32 argb(uchar red, uchar green, uchar blue, uchar alpha)
    {
        return quint32(alpha) << 24 | quint32(red) << 16 | quint32(green) << 8 | blue;
    }

    bool read(quint32 *pixel)
    {
        if (m_bytes.size() - m_at < m_depth)
            return false;
        const auto *p = reinterpret_cast<const uchar *>(m_bytes.constData()) + m_at;
        m_at += m_depth;
        if (m_depth == 1)
            *pixel = argb(p[0], p[0], p[0], 255);
        else // blue, green, red and maybe alpha
            *pixel = argb(p[2], p[1], p[0], m_depth == 4 ? p[3] : 255);
        return true;
    }

    const QByteArray &m_bytes;
    qint64 m_at = 0;
    int m_depth = 0; // bytes per pixel
};

} // namespace

namespace TgaImage {

Picture decode(const QByteArray &bytes)
{
    return Reader(bytes).decode();
}

} // namespace TgaImage

// TestZip: zip archives written byte for byte, so a test can have any name, flag or damage it wants.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtEndian>
#include <initializer_list>

namespace TestZip {

struct RawEntry
{
    QByteArray name;
    QByteArray data = {}; // empty unless given
    bool deflate = false;
    bool encrypted = false; // only the flag: the data stays plain
    qint64 claimedSize = -1; // the uncompressed size the headers state; -1 for the data's
    quint32 unixMode = 0; // when not 0, made on Unix with this file mode (0120777: a symbolic link)
    bool utf8Flag = false; // the UTF-8 flag even on a name that isn't UTF-8
};

inline quint32 crc32(QByteArrayView data)
{
    quint32 crc = 0xffffffffu;
    for (const char c : data) {
        crc ^= quint8(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// Little-endian fields, each `width` bytes wide.
inline void put(QByteArray &out, std::initializer_list<quint32> values, int width)
{
    for (const quint32 v : values) {
        char bytes[4];
        qToLittleEndian(v, bytes);
        out.append(bytes, width);
    }
}

// A zip archive of the entries, all dated 2005-06-07 08:09:10. A name that isn't valid UTF-8 goes without
// the UTF-8 flag, so it reads as code page 437.
inline QByteArray zipBytes(const QList<RawEntry> &entries)
{
    const quint32 time = (8 << 11) | (9 << 5) | (10 / 2);
    const quint32 date = ((2005 - 1980) << 9) | (6 << 5) | 7;
    QByteArray local;
    QByteArray central;
    for (const RawEntry &e : entries) {
        // qCompress gives a length, a zlib header, the deflate stream and a checksum: keep the stream.
        const QByteArray packed = e.deflate ? qCompress(e.data).sliced(6).chopped(4) : e.data;
        const bool utf8 = e.utf8Flag || QString::fromUtf8(e.name).toUtf8() == e.name;
        const quint32 flags = (e.encrypted ? 1 : 0) | (utf8 ? 0x800 : 0);
        const quint32 size = quint32(e.claimedSize < 0 ? e.data.size() : e.claimedSize);
        QByteArray common; // the fields both headers have, from the version needed on
        put(common, { 20, flags, e.deflate ? 8u : 0u, time, date }, 2);
        put(common, { crc32(e.data), quint32(packed.size()), size }, 4);
        put(common, { quint32(e.name.size()), 0 }, 2);
        put(central, { 0x02014b50 }, 4);
        put(central, { e.unixMode ? 0x0314u : 20u }, 2); // made by: Unix or not
        central += common;
        put(central, { 0, 0, 0 }, 2); // comment, disk, internal attributes
        put(central, { e.unixMode << 16, quint32(local.size()) }, 4); // external attributes, where the entry starts
        central += e.name;
        put(local, { 0x04034b50 }, 4);
        local += common + e.name + packed;
    }
    QByteArray end;
    put(end, { 0x06054b50, 0 }, 4);
    put(end, { quint32(entries.size()), quint32(entries.size()) }, 2);
    put(end, { quint32(central.size()), quint32(local.size()) }, 4);
    put(end, { 0 }, 2);
    return local + central + end;
}

} // namespace TestZip

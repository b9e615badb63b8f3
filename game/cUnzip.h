// cUnzip: lists and extracts the entries of a PK3 (zip) archive, backed by libzip.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <functional>

class cUnzip
{
public:
    /// One file entry of the archive, in the order the archive holds them.
    struct ZipEntry
    {
        QString entryName; // the file name without its folder
        QString entryFolder; // "\"-separated, no trailing "\"; empty at the archive's root
        qint32 entrySize = 0; // uncompressed size in bytes
        qint32 entryRatio = 0; // compressed size × 100 ÷ uncompressed size; 0 for an empty entry
        quint16 entryMethod = 0xffff; // the zip format's number of the compression method
        quint32 entryCRC = 0;
        bool entryEncrypted = false;
        bool entrySelected = true;
        // When the entry last changed, as the archive keeps it: its DOS date and time (date << 16 | time), or
        // seconds since the epoch when entryTimeIsDos is false; -1 when unknown. Turned into a date only when one
        // is asked for: a listing never shows it.
        qint64 entryTime = -1;
        bool entryTimeIsDos = false;
    };

    /// The archive; setting it empties the entry list.
    QString ZipFile() const { return m_zipFile; }
    void setZipFile(const QString &path);
    /// Appends the archive's file entries in the archive's order; folder entries (names ending in "/") are
    /// skipped. Every "/" but a leading one separates folders, and so does a backslash. False when the
    /// archive can't be read (missing, not a zip, truncated, unreadable), with the reason and the archive's
    /// path in *error; the entries listed so far stay. `progress`, when given, is called every 1,024 entries (a
    /// window keeps its event loop turning through it).
    bool Directory(QString *error = nullptr, const std::function<void()> &progress = {});

    /// The archive's file entries as Directory lists them, each handed to `each` and not kept: a listing of the
    /// largest archive takes little memory. `each` sees them only once the archive is known to be readable; false
    /// (with the reason in *error, as Directory gives it) when it isn't, and then `each` has seen none.
    bool List(const std::function<void(const ZipEntry &)> &each, QString *error = nullptr) const;
    /// As List, but an everyday archive hands over only the entries whose full name (its bytes as stored, folders
    /// separated as written) `mayWant` accepts; the others are never made, so a scan for a few names among many
    /// skips the rest cheaply. `each` must still decide for itself: other archives hand over every entry.
    bool List(const std::function<void(const ZipEntry &)> &each, const std::function<bool(QByteArrayView)> &mayWant,
        QString *error = nullptr) const;

    int FileCount() const { return int(m_entries.size()); }
    /// Entries are numbered from 1 to FileCount().
    const ZipEntry &entry(int i) const { return m_entries.at(i - 1); }
    QString Filename(int i) const { return entry(i).entryName; }
    QString FileDirectory(int i) const { return entry(i).entryFolder; }
    bool FileEncrypted(int i) const { return entry(i).entryEncrypted; }
    qint32 FileSize(int i) const { return entry(i).entrySize; }
    qint32 FileCompressionRatio(int i) const { return entry(i).entryRatio; }
    /// Local time, seconds 0; invalid when the archive does not say.
    QDateTime FileDate(int i) const;
    quint32 FileCRC(int i) const { return entry(i).entryCRC; }
    /// "Stored", "Deflated", "BZip2", "LZMA", "XZ", "Zstd" or "Unknown".
    QString FileCompressionMethod(int i) const;
    /// entryRatio × entrySize ÷ 100.
    qint32 FilePackedSize(int i) const;
    bool FileSelected(int i) const { return entry(i).entrySelected; }
    void setFileSelected(int i, bool selected) { m_entries[i - 1].entrySelected = selected; }

    QString UnzipFolder;
    /// Whether Unzip replaces a file that already exists.
    bool OverwriteExisting = false;
    /// Extracts the selected entries into UnzipFolder, always keeping their folders (created as needed); the
    /// list is read first when it is empty. An existing file is replaced only with OverwriteExisting, else
    /// kept as it is, which is no failure. An entry that would land outside UnzipFolder (a "..", an absolute
    /// path, a drive letter) is refused, and so is one whose path meets a symbolic link below UnzipFolder (a
    /// folder or the file itself, dangling or not): nothing is created for it and nothing is written through
    /// a link. Every refused or failed entry gets one line "NAME: reason" in *error; false when nothing could
    /// be done or anything was refused or failed.
    bool Unzip(QString *error = nullptr);
    /// The bytes of entry i, read afresh from the archive; empty with the reason in *error when the archive or
    /// the entry can't be read, or the entry is larger than `limit` bytes.
    QByteArray FileData(int i, qint64 limit, QString *error = nullptr) const;
    /// The version of the zip library behind the reader.
    static QString GetVersion();

private:
    // The listing of an everyday archive read straight from its central directory; nothing when the archive is
    // anything else (ZIP64, names not in ASCII, damage of any kind), which libzip then lists or refuses.
    bool quickDirectory(const std::function<void()> &progress);

    QString m_zipFile;
    QList<ZipEntry> m_entries;
    QList<quint64> m_indexes; // each entry's position in the archive, folder entries counted
};

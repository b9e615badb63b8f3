// cUnzip: lists and extracts the entries of a PK3 (zip) archive, backed by libzip.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

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
        /// "Stored", "Deflated", "BZip2", "LZMA", "XZ", "Zstd" or "Unknown".
        QString entryMethod;
        QDateTime entryDate; // local time, seconds 0
        quint32 entryCRC = 0;
        bool entryEncrypted = false;
        bool entrySelected = true;
    };

    /// The archive; setting it empties the entry list.
    QString ZipFile() const { return m_zipFile; }
    void setZipFile(const QString &path);
    /// Appends the archive's file entries in the archive's order; folder entries (names ending in "/") are
    /// skipped. Every "/" but a leading one separates folders, and so does a backslash. False when the
    /// archive can't be read (missing, not a zip, truncated, unreadable), with the reason and the archive's
    /// path in *error; the entries listed so far stay.
    bool Directory(QString *error = nullptr);

    int FileCount() const { return int(m_entries.size()); }
    /// Entries are numbered from 1 to FileCount().
    const ZipEntry &entry(int i) const { return m_entries.at(i - 1); }
    QString Filename(int i) const { return entry(i).entryName; }
    QString FileDirectory(int i) const { return entry(i).entryFolder; }
    bool FileEncrypted(int i) const { return entry(i).entryEncrypted; }
    qint32 FileSize(int i) const { return entry(i).entrySize; }
    qint32 FileCompressionRatio(int i) const { return entry(i).entryRatio; }
    QDateTime FileDate(int i) const { return entry(i).entryDate; }
    quint32 FileCRC(int i) const { return entry(i).entryCRC; }
    QString FileCompressionMethod(int i) const { return entry(i).entryMethod; }
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
    QString m_zipFile;
    QList<ZipEntry> m_entries;
    QList<quint64> m_indexes; // each entry's position in the archive, folder entries counted
};

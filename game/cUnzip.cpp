#include "cUnzip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <zip.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

namespace {

struct ArchiveCloser
{
    void operator()(zip_t *archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;

struct FileCloser
{
    void operator()(zip_file_t *file) const { zip_fclose(file); }
};
using ArchiveFile = std::unique_ptr<zip_file_t, FileCloser>;

qint32 clamped(zip_uint64_t value)
{
    return qint32(std::min<zip_uint64_t>(value, std::numeric_limits<qint32>::max()));
}

QString errorText(zip_error_t *error)
{
    return QString::fromLocal8Bit(zip_error_strerror(error));
}

QString errorText(int code)
{
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const QString text = errorText(&error);
    zip_error_fini(&error);
    return text;
}

Archive openArchive(const QString &path, QString *reason)
{
    int code = ZIP_ER_OK;
    Archive archive(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code));
    if (!archive)
        *reason = errorText(code);
    return archive;
}

// An entry's details, its name in UTF-8.
bool statEntry(zip_t *archive, zip_uint64_t index, zip_stat_t *st)
{
    zip_stat_init(st);
    return zip_stat_index(archive, index, ZIP_FL_ENC_GUESS, st) == 0 && st->name;
}

// Zstandard's number in the zip format; older libzip headers lack it.
constexpr zip_uint16_t methodZstd = 93;

QString methodName(zip_uint16_t method)
{
    switch (method) {
    case ZIP_CM_STORE:
        return QStringLiteral("Stored");
    case ZIP_CM_DEFLATE:
        return QStringLiteral("Deflated");
    case ZIP_CM_BZIP2:
        return QStringLiteral("BZip2");
    case ZIP_CM_LZMA:
        return QStringLiteral("LZMA");
    case ZIP_CM_XZ:
        return QStringLiteral("XZ");
    case methodZstd:
        return QStringLiteral("Zstd");
    default:
        return QStringLiteral("Unknown");
    }
}

// Where the folder part of an entry's name ends: at the last "\", or the last "/" that isn't the first
// character (a leading "/" belongs to the folder). -1 when the name has no folder.
qsizetype folderEnd(QByteArrayView name)
{
    for (qsizetype i = name.size() - 1; i >= 0; --i) {
        if (name[i] == '\\' || (name[i] == '/' && i > 0))
            return i;
    }
    return -1;
}

// The entry's name as a path below the extraction folder, "/"-separated; empty when it would land
// outside it: a ".." component, a leading "/" or "\", a drive letter.
QString safeRelativePath(const QString &name)
{
    if (name.startsWith(u'/') || name.startsWith(u'\\'))
        return {};
    if (name.size() >= 2 && name[1] == u':' && name[0].isLetter())
        return {};
    QStringList parts;
    for (const QString &part : QString(name).replace(u'\\', u'/').split(u'/', Qt::SkipEmptyParts)) {
        if (part == u"..")
            return {};
        if (part != u".")
            parts.append(part);
    }
    return parts.join(u'/');
}

// Whether a symbolic link (a dangling one too) or a junction stands anywhere on `relative` below `root`: any
// of its folders that exists, or the file itself. Nothing is written through one, so nothing lands elsewhere.
bool meetsLink(const QString &root, const QString &relative)
{
    QString path = root;
    for (const QString &part : relative.split(u'/')) {
        path += u'/' + part;
        const QFileInfo info(path);
        if (info.isSymbolicLink() || info.isJunction())
            return true;
        if (!info.exists())
            return false; // nothing deeper exists yet
    }
    return false;
}

} // namespace

void cUnzip::setZipFile(const QString &path)
{
    m_zipFile = path;
    m_entries.clear();
    m_indexes.clear();
}

bool cUnzip::Directory(QString *error)
{
    QString reason;
    const Archive archive = openArchive(m_zipFile, &reason);
    if (!archive) {
        if (error)
            *error = QStringLiteral("Can't read the archive \"%1\": %2").arg(m_zipFile, reason);
        return false;
    }
    const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
    m_entries.reserve(m_entries.size() + qsizetype(count));
    m_indexes.reserve(m_indexes.size() + qsizetype(count));

    // Entries of one folder usually follow each other: they share one folder string.
    std::string lastFolderBytes;
    QString lastFolder;
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t st;
        if (!statEntry(archive.get(), zip_uint64_t(i), &st)) {
            if (error)
                *error = QStringLiteral("Can't read the archive \"%1\": %2")
                             .arg(m_zipFile, errorText(zip_get_error(archive.get())));
            return false;
        }
        const QByteArrayView full(st.name);
        const qsizetype cut = folderEnd(full);
        const QByteArrayView fileName = full.sliced(cut + 1);
        if (fileName.isEmpty() || full == "/")
            continue; // a folder entry

        ZipEntry e;
        e.entryName = QString::fromUtf8(fileName);
        if (cut > 0) {
            const QByteArrayView folder = full.first(cut);
            if (folder != QByteArrayView(lastFolderBytes.data(), qsizetype(lastFolderBytes.size()))) {
                lastFolderBytes.assign(folder.data(), size_t(folder.size()));
                lastFolder = QString::fromUtf8(folder);
                lastFolder.replace(u'/', u'\\');
                if (folder[0] == '/')
                    lastFolder[0] = u'/';
            }
            e.entryFolder = lastFolder;
        }
        const zip_uint64_t size = (st.valid & ZIP_STAT_SIZE) ? st.size : 0;
        const zip_uint64_t packed = (st.valid & ZIP_STAT_COMP_SIZE) ? st.comp_size : 0;
        e.entrySize = clamped(size);
        e.entryRatio = size == 0 ? 0 : clamped(packed * 100 / size);
        e.entryMethod = methodName((st.valid & ZIP_STAT_COMP_METHOD) ? st.comp_method : 0xffff);
        // Every zone has kept whole minutes off UTC since before zip times begin (1980): dropping the
        // seconds of the UTC time drops those of the local time.
        if (st.valid & ZIP_STAT_MTIME)
            e.entryDate = QDateTime::fromSecsSinceEpoch(qint64(st.mtime) - (qint64(st.mtime) % 60 + 60) % 60);
        e.entryCRC = (st.valid & ZIP_STAT_CRC) ? st.crc : 0;
        e.entryEncrypted = (st.valid & ZIP_STAT_ENCRYPTION_METHOD) && st.encryption_method != ZIP_EM_NONE;
        m_entries.append(std::move(e));
        m_indexes.append(zip_uint64_t(i));
    }
    return true;
}

qint32 cUnzip::FilePackedSize(int i) const
{
    const ZipEntry &e = entry(i);
    return qint32(qint64(e.entryRatio) * e.entrySize / 100);
}

bool cUnzip::Unzip(QString *error)
{
    QStringList problems;
    const auto finish = [&] {
        if (error)
            *error = problems.join(u'\n');
        return problems.isEmpty();
    };
    if (m_zipFile.isEmpty()) {
        problems.append(QStringLiteral("No archive to extract from"));
        return finish();
    }
    if (UnzipFolder.isEmpty()) {
        problems.append(QStringLiteral("No folder to extract into"));
        return finish();
    }
    if (m_entries.isEmpty()) {
        QString reason;
        if (!Directory(&reason)) {
            problems.append(reason);
            return finish();
        }
    }
    QString reason;
    const Archive archive = openArchive(m_zipFile, &reason);
    if (!archive) {
        problems.append(QStringLiteral("Can't read the archive \"%1\": %2").arg(m_zipFile, reason));
        return finish();
    }
    const QDir root(UnzipFolder);
    if (!root.mkpath(QStringLiteral("."))) {
        problems.append(QStringLiteral("Can't create the folder \"%1\"").arg(UnzipFolder));
        return finish();
    }
    const QString rootPath = root.absolutePath();

    QByteArray buffer(64 * 1024, Qt::Uninitialized);
    for (qsizetype k = 0; k < m_entries.size(); ++k) {
        const ZipEntry &e = m_entries[k];
        if (!e.entrySelected)
            continue;
        const zip_uint64_t index = m_indexes[k];
        zip_stat_t st;
        const bool there = statEntry(archive.get(), index, &st);
        const QString name = there ? QString::fromUtf8(st.name) : e.entryName;
        const QString relative = there ? safeRelativePath(name) : QString();
        // No more than the entry says it holds: a small entry that inflates to gigabytes fills no disk.
        const zip_uint64_t stated = (there && (st.valid & ZIP_STAT_SIZE)) ? st.size : 0;
        if (relative.isEmpty()) {
            problems.append(there
                    ? QStringLiteral("%1: refused, it would be written outside \"%2\"").arg(name, UnzipFolder)
                    : QStringLiteral("%1: no longer in the archive").arg(name));
            continue;
        }
        // Checked before anything of the entry is made: mkpath and QSaveFile would both follow a link.
        if (meetsLink(rootPath, relative)) {
            problems.append(
                QStringLiteral("%1: refused, its path below \"%2\" meets a symbolic link").arg(name, UnzipFolder));
            continue;
        }
        const QString target = root.absoluteFilePath(relative);
        if (QFileInfo::exists(target) && !OverwriteExisting)
            continue;
        if (!root.mkpath(QFileInfo(relative).path())) {
            problems.append(QStringLiteral("%1: can't create its folder").arg(name));
            continue;
        }

        const ArchiveFile in(zip_fopen_index(archive.get(), index, 0));
        if (!in) {
            problems.append(QStringLiteral("%1: %2").arg(name, errorText(zip_get_error(archive.get()))));
            continue;
        }
        QSaveFile out(target);
        if (!out.open(QIODevice::WriteOnly)) {
            problems.append(QStringLiteral("%1: %2").arg(name, out.errorString()));
            continue;
        }
        bool ok = true;
        zip_uint64_t written = 0;
        while (true) {
            const zip_int64_t n = zip_fread(in.get(), buffer.data(), zip_uint64_t(buffer.size()));
            if (n < 0) {
                problems.append(QStringLiteral("%1: %2").arg(name, errorText(zip_file_get_error(in.get()))));
                ok = false;
                break;
            }
            if (n == 0)
                break;
            written += zip_uint64_t(n);
            if (written > stated) {
                problems.append(QStringLiteral("%1: larger than its stated size").arg(name));
                ok = false;
                break;
            }
            if (out.write(buffer.constData(), n) != n) {
                problems.append(QStringLiteral("%1: %2").arg(name, out.errorString()));
                ok = false;
                break;
            }
        }
        // A buffered write that fails shows only when it is flushed: commit() alone would not notice.
        if (ok && (!out.flush() || !out.commit()))
            problems.append(QStringLiteral("%1: %2").arg(name, out.errorString()));
    }
    return finish();
}

QByteArray cUnzip::FileData(int i, qint64 limit, QString *error) const
{
    const ZipEntry &e = entry(i);
    const auto fail = [&](const QString &reason) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(e.entryName, reason);
        return QByteArray();
    };
    QString reason;
    const Archive archive = openArchive(m_zipFile, &reason);
    if (!archive)
        return fail(reason);
    zip_stat_t st;
    // The archive may have changed since it was listed: the entry must still be there by the same name.
    const zip_uint64_t index = m_indexes[i - 1];
    if (!statEntry(archive.get(), index, &st) || !QByteArrayView(st.name).endsWith(e.entryName.toUtf8()))
        return fail(QStringLiteral("no longer in the archive"));
    if (!(st.valid & ZIP_STAT_SIZE) || st.size > zip_uint64_t(limit))
        return fail(QStringLiteral("larger than %1 bytes").arg(limit));
    const ArchiveFile in(zip_fopen_index(archive.get(), index, 0));
    if (!in)
        return fail(errorText(zip_get_error(archive.get())));
    QByteArray bytes(qsizetype(st.size), Qt::Uninitialized);
    const zip_int64_t n = zip_fread(in.get(), bytes.data(), st.size);
    if (n < 0)
        return fail(errorText(zip_file_get_error(in.get())));
    if (zip_uint64_t(n) != st.size)
        return fail(QStringLiteral("shorter than its stated size"));
    return bytes;
}

QString cUnzip::GetVersion()
{
    return QString::fromLatin1(zip_libzip_version());
}

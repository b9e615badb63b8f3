#include "cUnzip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <zip.h>

#ifdef TARNWICK_LIBZIP_SONAME
#include <dlfcn.h>
#endif

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>

namespace {

// libzip reads what the program's own directory reader leaves to it (ZIP64, names that are not ASCII, damage).
// Where the build knows its file name it is loaded the first time an archive needs it, so the program starts
// without it and the cryptography library behind it.
namespace Zip {

#ifdef TARNWICK_LIBZIP_SONAME
    struct Functions
    {
        decltype(&::zip_discard) discard = nullptr;
        decltype(&::zip_error_fini) error_fini = nullptr;
        decltype(&::zip_error_init_with_code) error_init_with_code = nullptr;
        decltype(&::zip_error_strerror) error_strerror = nullptr;
        decltype(&::zip_fclose) fclose = nullptr;
        decltype(&::zip_file_get_error) file_get_error = nullptr;
        decltype(&::zip_fopen_index) fopen_index = nullptr;
        decltype(&::zip_fread) fread = nullptr;
        decltype(&::zip_get_error) get_error = nullptr;
        decltype(&::zip_get_num_entries) get_num_entries = nullptr;
        decltype(&::zip_libzip_version) libzip_version = nullptr;
        decltype(&::zip_open) open = nullptr;
        decltype(&::zip_stat_index) stat_index = nullptr;
        decltype(&::zip_stat_init) stat_init = nullptr;
        QString failure; // why the library could not be had; empty once loaded
    };

    const Functions &functions()
    {
        static const Functions loaded = [] {
            Functions f;
            void *library = ::dlopen(TARNWICK_LIBZIP_SONAME, RTLD_NOW | RTLD_LOCAL);
            if (!library) {
                f.failure = QStringLiteral("libzip could not be loaded: %1").arg(QString::fromLocal8Bit(::dlerror()));
                return f;
            }
            bool all = true;
            const auto resolve = [&](auto &pointer, const char *name) {
                pointer = reinterpret_cast<std::remove_reference_t<decltype(pointer)>>(::dlsym(library, name));
                all = all && pointer;
            };
            resolve(f.discard, "zip_discard");
            resolve(f.error_fini, "zip_error_fini");
            resolve(f.error_init_with_code, "zip_error_init_with_code");
            resolve(f.error_strerror, "zip_error_strerror");
            resolve(f.fclose, "zip_fclose");
            resolve(f.file_get_error, "zip_file_get_error");
            resolve(f.fopen_index, "zip_fopen_index");
            resolve(f.fread, "zip_fread");
            resolve(f.get_error, "zip_get_error");
            resolve(f.get_num_entries, "zip_get_num_entries");
            resolve(f.libzip_version, "zip_libzip_version");
            resolve(f.open, "zip_open");
            resolve(f.stat_index, "zip_stat_index");
            resolve(f.stat_init, "zip_stat_init");
            if (!all)
                f.failure = QStringLiteral("libzip (%1) lacks a function this program needs")
                                .arg(QString::fromLatin1(TARNWICK_LIBZIP_SONAME));
            return f;
        }();
        return loaded;
    }

    // An error code of our own: libzip itself could not be had.
    constexpr int NotLoaded = -1;

    zip_t *open(const char *path, int flags, int *code)
    {
        if (!functions().failure.isEmpty()) {
            *code = NotLoaded;
            return nullptr;
        }
        return functions().open(path, flags, code);
    }
    QString loadFailure()
    {
        return functions().failure;
    }
    void discard(zip_t *archive)
    {
        functions().discard(archive);
    }
    int fclose(zip_file_t *file)
    {
        return functions().fclose(file);
    }
    const char *error_strerror(zip_error_t *error)
    {
        return functions().error_strerror(error);
    }
    void error_init_with_code(zip_error_t *error, int code)
    {
        functions().error_init_with_code(error, code);
    }
    void error_fini(zip_error_t *error)
    {
        functions().error_fini(error);
    }
    int stat_index(zip_t *archive, zip_uint64_t index, zip_flags_t flags, zip_stat_t *st)
    {
        return functions().stat_index(archive, index, flags, st);
    }
    void stat_init(zip_stat_t *st)
    {
        functions().stat_init(st);
    }
    zip_int64_t get_num_entries(zip_t *archive, zip_flags_t flags)
    {
        return functions().get_num_entries(archive, flags);
    }
    zip_error_t *get_error(zip_t *archive)
    {
        return functions().get_error(archive);
    }
    zip_file_t *fopen_index(zip_t *archive, zip_uint64_t index, zip_flags_t flags)
    {
        return functions().fopen_index(archive, index, flags);
    }
    zip_int64_t fread(zip_file_t *file, void *buffer, zip_uint64_t size)
    {
        return functions().fread(file, buffer, size);
    }
    zip_error_t *file_get_error(zip_file_t *file)
    {
        return functions().file_get_error(file);
    }
    QString libzip_version()
    {
        return functions().failure.isEmpty() ? QString::fromLatin1(functions().libzip_version()) : functions().failure;
    }
#else
    constexpr int NotLoaded = -1;
    zip_t *open(const char *path, int flags, int *code)
    {
        return ::zip_open(path, flags, code);
    }
    QString loadFailure()
    {
        return QString();
    }
    void discard(zip_t *archive)
    {
        ::zip_discard(archive);
    }
    int fclose(zip_file_t *file)
    {
        return ::zip_fclose(file);
    }
    const char *error_strerror(zip_error_t *error)
    {
        return ::zip_error_strerror(error);
    }
    void error_init_with_code(zip_error_t *error, int code)
    {
        ::zip_error_init_with_code(error, code);
    }
    void error_fini(zip_error_t *error)
    {
        ::zip_error_fini(error);
    }
    int stat_index(zip_t *archive, zip_uint64_t index, zip_flags_t flags, zip_stat_t *st)
    {
        return ::zip_stat_index(archive, index, flags, st);
    }
    void stat_init(zip_stat_t *st)
    {
        ::zip_stat_init(st);
    }
    zip_int64_t get_num_entries(zip_t *archive, zip_flags_t flags)
    {
        return ::zip_get_num_entries(archive, flags);
    }
    zip_error_t *get_error(zip_t *archive)
    {
        return ::zip_get_error(archive);
    }
    zip_file_t *fopen_index(zip_t *archive, zip_uint64_t index, zip_flags_t flags)
    {
        return ::zip_fopen_index(archive, index, flags);
    }
    zip_int64_t fread(zip_file_t *file, void *buffer, zip_uint64_t size)
    {
        return ::zip_fread(file, buffer, size);
    }
    zip_error_t *file_get_error(zip_file_t *file)
    {
        return ::zip_file_get_error(file);
    }
    QString libzip_version()
    {
        return QString::fromLatin1(::zip_libzip_version());
    }
#endif

} // namespace Zip

struct ArchiveCloser
{
    void operator()(zip_t *archive) const { Zip::discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;

struct FileCloser
{
    void operator()(zip_file_t *file) const { Zip::fclose(file); }
};
using ArchiveFile = std::unique_ptr<zip_file_t, FileCloser>;

qint32 clamped(zip_uint64_t value)
{
    return qint32(std::min<zip_uint64_t>(value, std::numeric_limits<qint32>::max()));
}

QString errorText(zip_error_t *error)
{
    return QString::fromLocal8Bit(Zip::error_strerror(error));
}

QString errorText(int code)
{
    zip_error_t error;
    Zip::error_init_with_code(&error, code);
    const QString text = errorText(&error);
    Zip::error_fini(&error);
    return text;
}

Archive openArchive(const QString &path, QString *reason)
{
    int code = ZIP_ER_OK;
    Archive archive(Zip::open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code));
    if (!archive)
        *reason = code == Zip::NotLoaded ? Zip::loadFailure() : errorText(code);
    return archive;
}

// An entry's details, its name in UTF-8.
bool statEntry(zip_t *archive, zip_uint64_t index, zip_stat_t *st)
{
    Zip::stat_init(st);
    return Zip::stat_index(archive, index, ZIP_FL_ENC_GUESS, st) == 0 && st->name;
}

// Zstandard's number in the zip format; older libzip headers lack it.
constexpr zip_uint16_t methodZstd = 93;

QString methodName(quint16 method)
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

// Little-endian fields of the zip format.
quint16 u16(const uchar *p)
{
    return quint16(p[0] | p[1] << 8);
}

quint32 u32(const uchar *p)
{
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}

constexpr quint32 endSignature = 0x06054b50;
constexpr quint32 entrySignature = 0x02014b50;
constexpr quint32 zip64LocatorSignature = 0x07064b50;
constexpr qsizetype endSize = 22;
constexpr qsizetype entrySize = 46;
constexpr quint16 flagEncrypted = 0x0001;
constexpr quint16 methodAes = 99; // its real method sits in an extra field
constexpr quint16 fieldUnicodePath = 0x7075;

// Whether a stored name is ASCII without a NUL, eight bytes at a time: a scan checks every name of a thousand
// archives.
bool asciiName(const uchar *name, qsizetype size)
{
    constexpr quint64 ones = 0x0101010101010101, highs = 0x8080808080808080;
    quint64 seen = 0;
    qsizetype k = 0;
    for (; k + 8 <= size; k += 8) {
        quint64 word;
        std::memcpy(&word, name + k, 8);
        if ((word - ones) & ~word & highs) // a NUL byte among the eight
            return false;
        seen |= word;
    }
    for (; k < size; ++k) {
        if (name[k] == 0)
            return false;
        seen |= name[k];
    }
    return (seen & highs) == 0;
}

// Whether the extra fields of an entry are well formed (each field whole, nothing left over) and hold nothing
// that changes what the entry says: no ZIP64 sizes, no name of another encoding.
bool plainExtraFields(const uchar *p, qsizetype size)
{
    while (size > 0) {
        if (size < 4)
            return false;
        const quint16 id = u16(p);
        const qsizetype length = u16(p + 2);
        if (length > size - 4 || id == 0x0001 || id == fieldUnicodePath)
            return false;
        p += 4 + length;
        size -= 4 + length;
    }
    return true;
}

} // namespace

void cUnzip::setZipFile(const QString &path)
{
    m_zipFile = path;
    m_entries.clear();
    m_indexes.clear();
}

bool cUnzip::Directory(QString *error, const std::function<void()> &progress)
{
    if (quickDirectory(progress))
        return true;
    QString reason;
    const Archive archive = openArchive(m_zipFile, &reason);
    if (!archive) {
        if (error)
            *error = QStringLiteral("Can't read the archive \"%1\": %2").arg(m_zipFile, reason);
        return false;
    }
    const zip_int64_t count = Zip::get_num_entries(archive.get(), 0);
    m_entries.reserve(m_entries.size() + qsizetype(count));
    m_indexes.reserve(m_indexes.size() + qsizetype(count));

    // Entries of one folder usually follow each other: they share one folder string.
    std::string lastFolderBytes;
    QString lastFolder;
    for (zip_int64_t i = 0; i < count; ++i) {
        if (progress && i % 1024 == 1023)
            progress();
        zip_stat_t st;
        if (!statEntry(archive.get(), zip_uint64_t(i), &st)) {
            if (error)
                *error = QStringLiteral("Can't read the archive \"%1\": %2")
                             .arg(m_zipFile, errorText(Zip::get_error(archive.get())));
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
        e.entryMethod = (st.valid & ZIP_STAT_COMP_METHOD) ? st.comp_method : 0xffff;
        if (st.valid & ZIP_STAT_MTIME)
            e.entryTime = qint64(st.mtime);
        e.entryCRC = (st.valid & ZIP_STAT_CRC) ? st.crc : 0;
        e.entryEncrypted = (st.valid & ZIP_STAT_ENCRYPTION_METHOD) && st.encryption_method != ZIP_EM_NONE;
        m_entries.append(std::move(e));
        m_indexes.append(zip_uint64_t(i));
    }
    return true;
}

namespace {

// An archive opened for the directory reader, which asks it for its end and, where that does not hold it, its
// central directory. Those are read; only a central directory too large for a copy to pay is mapped.
constexpr qint64 firstRead = 8 * 1024; // the end first read: the end record and most archives' central directory
constexpr qint64 readAtMost = 128 * 1024;

#ifdef Q_OS_UNIX
// A scan opens a thousand archives, so on Unix the file is a bare descriptor: open, fstat, pread and close, where a
// QFile would stat twice and seek besides.
class DirectoryFile
{
public:
    enum Part { End, Directory };

    DirectoryFile() = default;
    DirectoryFile(const DirectoryFile &) = delete;
    DirectoryFile &operator=(const DirectoryFile &) = delete;
    ~DirectoryFile()
    {
        if (m_mapped)
            ::munmap(m_mapped, m_mappedSize);
        if (m_fd >= 0)
            ::close(m_fd);
    }

    bool open(const QString &path)
    {
        m_fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        struct stat st;
        if (m_fd < 0 || ::fstat(m_fd, &st) != 0 || !S_ISREG(st.st_mode))
            return false;
        m_size = st.st_size;
        return true;
    }
    qint64 size() const { return m_size; }
    // The file's bytes from `offset` on, kept while this lives, until the same part is asked for again; null when
    // they can't all be had.
    const uchar *bytes(qint64 offset, qint64 length, Part part)
    {
        if (part == Directory && length > readAtMost) {
            static const qint64 page = ::sysconf(_SC_PAGESIZE);
            const qint64 start = offset - offset % page;
            m_mappedSize = size_t(offset - start + length);
            m_mapped = ::mmap(nullptr, m_mappedSize, PROT_READ, MAP_PRIVATE, m_fd, off_t(start));
            if (m_mapped == MAP_FAILED) {
                m_mapped = nullptr;
                return nullptr;
            }
            return static_cast<const uchar *>(m_mapped) + (offset - start);
        }
        QByteArray &buffer = m_read[part];
        buffer.resize(length);
        qint64 done = 0;
        while (done < length) {
            const ssize_t got = ::pread(m_fd, buffer.data() + done, size_t(length - done), off_t(offset + done));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return nullptr;
            done += got;
        }
        return reinterpret_cast<const uchar *>(buffer.constData());
    }

private:
    int m_fd = -1;
    qint64 m_size = 0;
    QByteArray m_read[2];
    void *m_mapped = nullptr;
    size_t m_mappedSize = 0;
};
#else
class DirectoryFile
{
public:
    enum Part { End, Directory };

    bool open(const QString &path)
    {
        m_file.setFileName(path);
        return m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 size() const { return m_file.size(); }
    const uchar *bytes(qint64 offset, qint64 length, Part part)
    {
        if (part == Directory && length > readAtMost)
            return m_file.map(offset, length);
        QByteArray &buffer = m_read[part];
        buffer = m_file.seek(offset) ? m_file.read(length) : QByteArray();
        return buffer.size() == length ? reinterpret_cast<const uchar *>(buffer.constData()) : nullptr;
    }

private:
    QFile m_file;
    QByteArray m_read[2];
};
#endif

// The central directory of an everyday archive, checked whole.
struct PlainDirectory
{
    DirectoryFile file;
    const uchar *begin = nullptr;
    const uchar *end = nullptr;
    qsizetype count = 0;
};

// Whether `path` is an everyday archive whose listing can be read straight from its central directory: one end
// record, its comment reaching the end of the file, no ZIP64, every entry whole, with an ASCII name and plain
// extra fields, the last one ending at the end record. Anything else (damage of any kind too) is left to libzip,
// which lists it or says why it can't.
bool openPlain(const QString &path, PlainDirectory &d)
{
    DirectoryFile &file = d.file;
    if (!file.open(path))
        return false;
    const qint64 fileSize = file.size();
    if (fileSize < endSize || fileSize > std::numeric_limits<quint32>::max())
        return false;
    // The end record is nearly always the file's last 22 bytes, with the central directory just before it: the last
    // few KiB are read first, and the whole stretch an end record's comment may span (64 KiB) only when they hold
    // none. A large archive's end is never read whole just to find its last 22 bytes.
    const qint64 windowStart = std::max<qint64>(0, fileSize - endSize - 0xffff);
    qint64 tailStart = std::max(windowStart, fileSize - firstRead);
    const uchar *tail = nullptr;
    qsizetype at = -1;
    for (;;) {
        tail = file.bytes(tailStart, fileSize - tailStart, DirectoryFile::End);
        if (!tail)
            return false;
        // The end record's signature, once in what was read: where there are more, libzip weighs them against
        // each other.
        const qsizetype lastStart = fileSize - tailStart - endSize;
        // Looked for by its third byte, which is rarer than its first: every header of the archive begins with "PK".
        for (const uchar *p = tail + 2; p <= tail + lastStart + 2; ++p) {
            p = static_cast<const uchar *>(std::memchr(p, 5, size_t(tail + lastStart + 3 - p)));
            if (!p)
                break;
            if (u32(p - 2) == endSignature) {
                if (at >= 0)
                    return false;
                at = p - 2 - tail;
            }
        }
        // The 20 bytes before the record, where a ZIP64 locator would be, must have been read too.
        if ((at >= 0 && (at >= 20 || tailStart == 0)) || tailStart == windowStart)
            break;
        at = -1;
        tailStart = windowStart;
    }
    if (at < 0 || (at < 20 && tailStart > 0))
        return false;
    const qint64 end = tailStart + at;
    const uchar *const record = tail + at;
    if (end + endSize + u16(record + 20) != fileSize)
        return false;
    if (at >= 20 && u32(record - 20) == zip64LocatorSignature)
        return false;
    d.count = u16(record + 10);
    const qint64 directorySize = u32(record + 12);
    const qint64 directoryStart = u32(record + 16);
    if (u16(record + 4) != 0 || u16(record + 6) != 0 || u16(record + 8) != d.count
        || directoryStart + directorySize != end)
        return false;
    if (directoryStart >= tailStart) {
        d.begin = record - directorySize;
    } else {
        d.begin = file.bytes(directoryStart, directorySize, DirectoryFile::Directory);
        if (!d.begin)
            return false;
    }
    d.end = d.begin + directorySize;
    const uchar *p = d.begin;
    for (qsizetype i = 0; i < d.count; ++i) {
        if (d.end - p < entrySize || u32(p) != entrySignature)
            return false;
        const qsizetype nameSize = u16(p + 28);
        const qsizetype extraSize = u16(p + 30);
        const qsizetype commentSize = u16(p + 32);
        if (u16(p + 10) == methodAes || u32(p + 20) == 0xffffffff || u32(p + 24) == 0xffffffff || u16(p + 34) != 0
            || u32(p + 42) == 0xffffffff || d.end - p - entrySize < nameSize + extraSize + commentSize)
            return false;
        if (!asciiName(p + entrySize, nameSize)) // a NUL, or not ASCII: libzip's rules of encoding apply
            return false;
        if (!plainExtraFields(p + entrySize + nameSize, extraSize))
            return false;
        p += entrySize + nameSize + extraSize + commentSize;
    }
    return p == d.end;
}

// Hands each file entry of a checked central directory to `visit(entry, index)`, one ZipEntry used again and
// again, so a caller that keeps nothing allocates (almost) nothing per entry.
bool everyName(QByteArrayView)
{
    return true;
}

template <typename Visit, typename Want> void readPlain(const PlainDirectory &d, Visit visit, Want wanted)
{
    cUnzip::ZipEntry e;
    // Entries of one folder usually follow each other: they share one folder string.
    QByteArrayView lastFolderBytes;
    QString lastFolder;
    const uchar *p = d.begin;
    for (qsizetype i = 0; i < d.count; ++i) {
        const quint16 flags = u16(p + 8);
        const quint16 method = u16(p + 10);
        const quint32 dosTime = u32(p + 12); // time, then date
        const quint32 crc = u32(p + 16);
        const quint32 packed = u32(p + 20);
        const quint32 size = u32(p + 24);
        const qsizetype nameSize = u16(p + 28);
        const QByteArrayView full(reinterpret_cast<const char *>(p + entrySize), nameSize);
        p += entrySize + nameSize + u16(p + 30) + u16(p + 32);
        if (!wanted(full))
            continue;

        const qsizetype cut = folderEnd(full);
        const QByteArrayView fileName = full.sliced(cut + 1);
        if (fileName.isEmpty() || full == "/")
            continue; // a folder entry
        e.entryName = QLatin1StringView(fileName);
        if (cut > 0) {
            const QByteArrayView folder = full.first(cut);
            if (folder != lastFolderBytes) {
                lastFolderBytes = folder;
                lastFolder = QString::fromLatin1(folder);
                lastFolder.replace(u'/', u'\\');
                if (folder[0] == '/')
                    lastFolder[0] = u'/';
            }
            e.entryFolder = lastFolder;
        } else {
            e.entryFolder.clear();
        }
        e.entrySize = clamped(size);
        e.entryRatio = size == 0 ? 0 : clamped(zip_uint64_t(packed) * 100 / size);
        e.entryMethod = method;
        e.entryTime = dosTime; // the date in the high half
        e.entryTimeIsDos = true;
        e.entryCRC = crc;
        e.entryEncrypted = flags & flagEncrypted;
        visit(e, quint64(i));
    }
}

} // namespace

bool cUnzip::quickDirectory(const std::function<void()> &progress)
{
    PlainDirectory d;
    if (!openPlain(m_zipFile, d))
        return false;
    m_entries.reserve(m_entries.size() + d.count);
    m_indexes.reserve(m_indexes.size() + d.count);
    readPlain(
        d,
        [this, &progress](const ZipEntry &e, quint64 index) {
            m_entries.append(e);
            m_indexes.append(index);
            if (progress && m_entries.size() % 1024 == 0)
                progress();
        },
        everyName);
    return true;
}

bool cUnzip::List(const std::function<void(const ZipEntry &)> &each, QString *error) const
{
    return List(each, everyName, error);
}

bool cUnzip::List(const std::function<void(const ZipEntry &)> &each, const std::function<bool(QByteArrayView)> &mayWant,
    QString *error) const
{
    PlainDirectory d;
    if (openPlain(m_zipFile, d)) {
        readPlain(
            d, [&each](const ZipEntry &e, quint64) { each(e); }, mayWant);
        return true;
    }
    cUnzip reader;
    reader.setZipFile(m_zipFile);
    if (!reader.Directory(error))
        return false;
    for (const ZipEntry &e : std::as_const(reader.m_entries))
        each(e);
    return true;
}

QDateTime cUnzip::FileDate(int i) const
{
    const ZipEntry &e = entry(i);
    qint64 seconds = e.entryTime;
    if (e.entryTimeIsDos) {
        // As libzip reads it: the local time the DOS fields give, daylight saving as mktime decides.
        const auto date = quint16(e.entryTime >> 16);
        const auto time = quint16(e.entryTime);
        std::tm tm {};
        tm.tm_isdst = -1;
        tm.tm_year = ((date >> 9) & 127) + 1980 - 1900;
        tm.tm_mon = ((date >> 5) & 15) - 1;
        tm.tm_mday = date & 31;
        tm.tm_hour = (time >> 11) & 31;
        tm.tm_min = (time >> 5) & 63;
        tm.tm_sec = (time << 1) & 62;
        seconds = qint64(std::mktime(&tm));
    } else if (seconds < 0) {
        return QDateTime();
    }
    // Every zone has kept whole minutes off UTC since before zip times begin (1980): dropping the seconds of the
    // UTC time drops those of the local time.
    return QDateTime::fromSecsSinceEpoch(seconds - (seconds % 60 + 60) % 60);
}

QString cUnzip::FileCompressionMethod(int i) const
{
    return methodName(entry(i).entryMethod);
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

        const ArchiveFile in(Zip::fopen_index(archive.get(), index, 0));
        if (!in) {
            problems.append(QStringLiteral("%1: %2").arg(name, errorText(Zip::get_error(archive.get()))));
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
            const zip_int64_t n = Zip::fread(in.get(), buffer.data(), zip_uint64_t(buffer.size()));
            if (n < 0) {
                problems.append(QStringLiteral("%1: %2").arg(name, errorText(Zip::file_get_error(in.get()))));
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
    const ArchiveFile in(Zip::fopen_index(archive.get(), index, 0));
    if (!in)
        return fail(errorText(Zip::get_error(archive.get())));
    QByteArray bytes(qsizetype(st.size), Qt::Uninitialized);
    const zip_int64_t n = Zip::fread(in.get(), bytes.data(), st.size);
    if (n < 0)
        return fail(errorText(Zip::file_get_error(in.get())));
    if (zip_uint64_t(n) != st.size)
        return fail(QStringLiteral("shorter than its stated size"));
    return bytes;
}

QString cUnzip::GetVersion()
{
    return Zip::libzip_version();
}

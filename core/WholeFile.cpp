#include "WholeFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QSaveFile>
#include <QTemporaryFile>
#endif

namespace {

const QString leftoverMark = QStringLiteral(".tarnwick-");
constexpr qsizetype leftoverSuffix = 6;
bool unnamedFilesAllowed = true;

bool isSuffixCharacter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

#ifdef Q_OS_UNIX

// The file a path names once its symbolic links are followed: a save writes through a link and keeps it.
QString followLinks(const QString &path)
{
    QString current = QFileInfo(path).absoluteFilePath();
    for (int hop = 0; hop < 40; ++hop) { // a loop of links is left to fail when it is opened
        const QFileInfo info(current);
        if (!info.isSymLink())
            break;
        current = info.symLinkTarget();
    }
    return current;
}

QString leftoverName(const QString &target)
{
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    QString name = target + leftoverMark;
    for (qsizetype i = 0; i < leftoverSuffix; ++i)
        name += QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof letters) - 1)]);
    return name;
}

// What killed saves of the file left beside it. A save of the same file running at this very moment in another
// program would lose its temporary file and fail, saying so; the file itself stays whole either way.
void removeLeftovers(const QFileInfo &target)
{
    const QDir folder = target.absoluteDir();
    const QString prefix = target.fileName() + leftoverMark;
    for (const QString &name : folder.entryList({ prefix + u'*' }, QDir::Files | QDir::Hidden | QDir::System)) {
        if (WholeFile::isLeftover(name, target.fileName()) && !QFileInfo(folder.filePath(name)).isSymLink())
            QFile::remove(folder.filePath(name));
    }
}

bool writeAll(int fd, const QByteArray &bytes)
{
    const char *data = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, size_t(left));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        data += n;
        left -= n;
    }
    return true;
}

// A file without a name in the folder, which a killed process can't leave behind; -1 where the file system
// has none (or /proc, through which it gets its name).
int openUnnamed(const QByteArray &folder)
{
#ifdef O_TMPFILE
    static const bool procMounted = QFileInfo(QStringLiteral("/proc/self/fd")).isDir();
    if (unnamedFilesAllowed && procMounted)
        return ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
#else
    Q_UNUSED(folder);
#endif
    return -1;
}

QString writeUnix(const QString &path, const QByteArray &bytes, WholeFile::Existing existing)
{
    const bool replace = existing == WholeFile::Existing::Replace;
    const QString target = followLinks(path);
    const QFileInfo info(target);
    if (info.isDir())
        return qt_error_string(EISDIR);
    if (info.exists() && !replace)
        return qt_error_string(EEXIST);
    if (info.exists() && !info.isWritable())
        return qt_error_string(EACCES);
    const QByteArray targetName = QFile::encodeName(target);
    removeLeftovers(info);

    QString named; // the temporary file's name, when it has one
    int fd = openUnnamed(QFile::encodeName(info.absolutePath()));
    while (fd < 0) {
        named = leftoverName(target);
        fd = ::open(QFile::encodeName(named).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            return qt_error_string(errno);
    }
    const auto failWith = [&](int code) {
        ::close(fd);
        if (!named.isEmpty())
            ::unlink(QFile::encodeName(named).constData());
        return qt_error_string(code);
    };
    // The new file keeps the old one's permissions; a new one has the usual (0666 less the umask).
    struct stat old;
    if (info.exists() && ::stat(targetName.constData(), &old) == 0)
        ::fchmod(fd, old.st_mode & 07777);
    if (!writeAll(fd, bytes) || ::fsync(fd) != 0)
        return failWith(errno);

    if (named.isEmpty()) {
        // The unnamed file takes the target's name when there is none yet; otherwise a name of its own first,
        // then the target's in one step.
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(fd);
        if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, targetName.constData(), AT_SYMLINK_FOLLOW) == 0) {
            ::close(fd);
            return {};
        }
        if (errno != EEXIST || !replace)
            return failWith(errno);
        for (;;) {
            named = leftoverName(target);
            if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, QFile::encodeName(named).constData(), AT_SYMLINK_FOLLOW)
                == 0)
                break;
            if (errno != EEXIST) {
                named.clear();
                return failWith(errno);
            }
        }
    }
    ::close(fd); // its bytes are on disk: nothing is left to fail
    const QByteArray namedBytes = QFile::encodeName(named);
    // A link never replaces a file: the way to add a name that must not be there yet.
    const bool done = replace ? ::rename(namedBytes.constData(), targetName.constData()) == 0
                              : ::link(namedBytes.constData(), targetName.constData()) == 0;
    const int code = errno;
    if (!done || !replace)
        ::unlink(namedBytes.constData());
    return done ? QString() : qt_error_string(code);
}

#else

QString writeElsewhere(const QString &path, const QByteArray &bytes, WholeFile::Existing existing)
{
    if (existing == WholeFile::Existing::Keep) {
        if (QFileInfo::exists(path))
            return QStringLiteral("The file exists");
        QTemporaryFile file(path + leftoverMark + QStringLiteral("XXXXXX"));
        if (!file.open() || file.write(bytes) != bytes.size() || !file.flush() || !file.rename(path))
            return file.errorString();
        file.setAutoRemove(false);
        return {};
    }
    QSaveFile file(path);
    // A buffered write that fails shows only when it is flushed: commit() alone would not notice.
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() && file.commit())
        return {};
    const QString reason = file.errorString();
    file.cancelWriting();
    return reason;
}

#endif

} // namespace

namespace WholeFile {

QString write(const QString &path, const QByteArray &bytes, Existing existing)
{
#ifdef Q_OS_UNIX
    return writeUnix(path, bytes, existing);
#else
    return writeElsewhere(path, bytes, existing);
#endif
}

bool isLeftover(const QString &name, const QString &fileName)
{
    const qsizetype length = fileName.size() + leftoverMark.size() + leftoverSuffix;
    if (name.size() != length || !name.startsWith(fileName)
        || QStringView(name).mid(fileName.size(), leftoverMark.size()) != leftoverMark)
        return false;
    return std::all_of(name.end() - leftoverSuffix, name.end(), isSuffixCharacter);
}

void setUnnamedFiles(bool allowed)
{
    unnamedFilesAllowed = allowed;
}

} // namespace WholeFile

bool WriteWholeFile(const QString &path, const QByteArray &bytes, QString *error)
{
    const QString reason = WholeFile::write(path, bytes);
    if (!reason.isEmpty() && error) {
        *error = QStringLiteral("Could not write \"%1\": %2")
                     .arg(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()), reason);
    }
    return reason.isEmpty();
}

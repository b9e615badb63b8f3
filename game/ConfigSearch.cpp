#include "ConfigSearch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMutexLocker>
#include <QStorageInfo>
#include <QThread>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#ifdef Q_OS_WIN
#include <QDirIterator>
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr char separator = '/';

char lowerAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

bool sameNameAnyCase(std::string_view name, const QByteArray &pattern)
{
    if (name.size() != size_t(pattern.size()))
        return false;
    for (size_t i = 0; i < name.size(); ++i) {
        if (lowerAscii(name[i]) != lowerAscii(pattern[qsizetype(i)]))
            return false;
    }
    return true;
}

bool isAscii(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Name order without regard to case, as a player reads the names: ASCII names by their letters folded to lower
// case (what Unicode case folding gives them too, only cheaper), other names decoded and compared with case
// folding; names that still compare equal go by their bytes, so the order never depends on the listing's.
bool lessByName(std::string_view a, std::string_view b)
{
    if (isAscii(a) && isAscii(b)) {
        const size_t common = std::min(a.size(), b.size());
        for (size_t i = 0; i < common; ++i) {
            const char x = lowerAscii(a[i]);
            const char y = lowerAscii(b[i]);
            if (x != y)
                return x < y;
        }
        if (a.size() != b.size())
            return a.size() < b.size();
        return a < b;
    }
    const auto decoded = [](std::string_view name) {
        return ConfigSearch::shownPath(QByteArray::fromRawData(name.data(), qsizetype(name.size())));
    };
    if (const int order = QString::compare(decoded(a), decoded(b), Qt::CaseInsensitive); order != 0)
        return order < 0;
    return a < b;
}

// The names one folder listing gave, its matches or its subfolders, kept in one buffer; a subfolder with the
// folder it leads to.
class Names
{
public:
    void add(std::string_view name, ConfigSearch::Walker::FolderId id = {})
    {
        m_items.push_back({ m_text.size(), name.size(), id });
        m_text.append(name);
    }
    void clear() { m_text.clear(), m_items.clear(); }
    size_t size() const { return m_items.size(); }
    std::string_view name(size_t i) const { return text(m_items[i]); }
    ConfigSearch::Walker::FolderId id(size_t i) const { return m_items[i].id; }
    void sort()
    {
        std::sort(m_items.begin(), m_items.end(),
            [this](const Item &x, const Item &y) { return lessByName(text(x), text(y)); });
    }

private:
    struct Item
    {
        size_t offset;
        size_t length;
        ConfigSearch::Walker::FolderId id;
    };
    std::string_view text(const Item &item) const { return std::string_view(m_text).substr(item.offset, item.length); }
    std::string m_text;
    std::vector<Item> m_items;
};

// File systems that hold no files of the player's: the kernel's views, memory, packaged read-only images.
bool holdsRealFiles(const QStorageInfo &volume)
{
    static const QList<QByteArray> pseudo { "autofs", "binfmt_misc", "bpf", "cgroup", "cgroup2", "configfs", "debugfs",
        "devpts", "devtmpfs", "efivarfs", "fusectl", "fuse.gvfsd-fuse", "fuse.portal", "fuse.snapfuse", "hugetlbfs",
        "mqueue", "nsfs", "proc", "pstore", "ramfs", "rpc_pipefs", "securityfs", "selinuxfs", "squashfs", "sysfs",
        "tmpfs", "tracefs" };
    return volume.isValid() && volume.isReady() && !pseudo.contains(volume.fileSystemType())
        && QFileInfo(volume.rootPath()).isDir();
}

QString withSeparator(QString path)
{
    if (!path.endsWith(u'/'))
        path += u'/';
    return path;
}

QString describe(const QStorageInfo &volume)
{
    QStringList words;
    if (!volume.name().isEmpty())
        words << volume.name();
    if (!volume.fileSystemType().isEmpty())
        words << QString::fromUtf8(volume.fileSystemType());
    if (volume.bytesTotal() > 0)
        words << QLocale().formattedDataSize(volume.bytesTotal(), 0, QLocale::DataSizeSIFormat);
    return words.join(QStringLiteral(", "));
}

std::function<void(const QString &)> &folderHook()
{
    static std::function<void(const QString &)> hook;
    return hook;
}

} // namespace

namespace ConfigSearch {

QByteArray walkPath(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toUtf8();
#else
    return QFile::encodeName(path);
#endif
}

QString shownPath(const QByteArray &path)
{
#ifdef Q_OS_WIN
    return QString::fromUtf8(path);
#else
    return QFile::decodeName(path);
#endif
}

Walker::Walker(QByteArray pattern, Visitor &visitor)
    : m_pattern(std::move(pattern))
    , m_visitor(visitor)
{ }

#ifndef Q_OS_WIN

Walker::Outcome Walker::SearchDirs(const QByteArray &root)
{
    if (root.isEmpty())
        return Outcome::Unreadable;
    QByteArray start = root;
    if (!start.endsWith(separator))
        start += separator;
    const int rootFd = ::open(start.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    struct stat info;
    if (rootFd < 0)
        return Outcome::Unreadable;
    if (::fstat(rootFd, &info) != 0) {
        ::close(rootFd);
        return Outcome::Unreadable;
    }
    const FolderId rootId { quint64(info.st_dev), quint64(info.st_ino) };
    if (m_roots.contains(rootId)) { // walked already
        ::close(rootFd);
        return Outcome::Done;
    }
    m_roots.append(rootId);

    // Folders still to walk, the next on top, each with the folder it leads to and its depth. `chain` holds the
    // folders from the root down to the one being listed, so a folder mounted inside itself is not walked round
    // and round.
    struct Pending
    {
        QByteArray folder;
        FolderId id;
        size_t depth;
    };
    std::vector<Pending> pending { { start, rootId, 0 } };
    std::vector<FolderId> chain;
    Names matches;
    Names subfolders;
    while (!pending.empty()) {
        const Pending next = std::move(pending.back());
        pending.pop_back();
        chain.resize(next.depth);
        if (next.depth > 0
            && (m_roots.contains(next.id) || std::find(chain.begin(), chain.end(), next.id) != chain.end()))
            continue;
        chain.push_back(next.id);
        // Below the root, a folder that became a link since its parent was listed is not opened.
        const int fd = next.depth == 0
            ? rootFd
            : ::open(next.folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
        if (fd < 0)
            continue;
        if (!m_visitor.enter(next.folder)) {
            ::close(fd);
            return Outcome::Stopped;
        }
        DIR *dir = ::fdopendir(fd);
        if (!dir) {
            ::close(fd);
            continue;
        }
        matches.clear();
        subfolders.clear();
        while (const dirent *entry = ::readdir(dir)) {
            const std::string_view name(entry->d_name);
            if (name == "." || name == "..")
                continue;
            if (sameNameAnyCase(name, m_pattern))
                matches.add(name);
            if (entry->d_type != DT_DIR && entry->d_type != DT_UNKNOWN)
                continue;
            // Where the subfolder leads, without following a link or mounting anything: a folder on another
            // volume is never opened.
            struct stat entryInfo;
            if (::fstatat(fd, entry->d_name, &entryInfo, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0
                && S_ISDIR(entryInfo.st_mode) && quint64(entryInfo.st_dev) == rootId.device)
                subfolders.add(name, { quint64(entryInfo.st_dev), quint64(entryInfo.st_ino) });
        }
        ::closedir(dir);

        matches.sort();
        for (size_t i = 0; i < matches.size(); ++i) {
            const std::string_view name = matches.name(i);
            if (!m_visitor.found(next.folder + QByteArray(name.data(), qsizetype(name.size()))))
                return Outcome::Stopped;
        }
        subfolders.sort();
        for (size_t i = subfolders.size(); i-- > 0;) {
            const std::string_view name = subfolders.name(i);
            QByteArray folder;
            folder.reserve(next.folder.size() + qsizetype(name.size()) + 1);
            folder += next.folder;
            folder += QByteArrayView(name.data(), qsizetype(name.size()));
            folder += separator;
            pending.push_back({ std::move(folder), subfolders.id(i), next.depth + 1 });
        }
    }
    return Outcome::Done;
}

#else

// Windows: the same walk through Qt's listing. Folders beginning with "." are not entered there, and a link
// (a junction or a symbolic link) to a folder is not followed.
Walker::Outcome Walker::SearchDirs(const QByteArray &root)
{
    QString start = shownPath(root);
    if (start.isEmpty() || !QFileInfo(start).isDir())
        return Outcome::Unreadable;
    if (!start.endsWith(u'/'))
        start += u'/';
    const QStorageInfo volume(start);
    std::vector<QString> pending { start };
    Names matches;
    Names subfolders;
    while (!pending.empty()) {
        const QString folder = pending.back();
        pending.pop_back();
        if (folder != start && QStorageInfo(folder).rootPath() != volume.rootPath())
            continue;
        if (!m_visitor.enter(walkPath(folder)))
            return Outcome::Stopped;
        matches.clear();
        subfolders.clear();
        QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        while (it.hasNext()) {
            it.next();
            const QByteArray name = walkPath(it.fileName());
            const std::string_view view(name.constData(), size_t(name.size()));
            if (sameNameAnyCase(view, m_pattern))
                matches.add(view);
            if (it.fileInfo().isDir() && !it.fileInfo().isSymLink() && !it.fileInfo().isJunction()
                && !name.startsWith('.'))
                subfolders.add(view);
        }
        matches.sort();
        for (size_t i = 0; i < matches.size(); ++i) {
            const std::string_view name = matches.name(i);
            if (!m_visitor.found(walkPath(folder) + QByteArray(name.data(), qsizetype(name.size()))))
                return Outcome::Stopped;
        }
        subfolders.sort();
        for (size_t i = subfolders.size(); i-- > 0;) {
            const std::string_view name = subfolders.name(i);
            pending.push_back(folder + shownPath(QByteArray(name.data(), qsizetype(name.size()))) + QLatin1Char('/'));
        }
    }
    return Outcome::Done;
}

#endif

QList<Place> places()
{
    QList<Place> found;
#ifdef Q_OS_WIN
    for (const QFileInfo &drive : QDir::drives())
        found.append({ drive.absolutePath(), describe(QStorageInfo(drive.absolutePath())) });
#else
    found.append({ withSeparator(QDir::homePath()), QStringLiteral("home folder") });
    QList<QStorageInfo> volumes;
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        const bool listed = std::any_of(volumes.cbegin(), volumes.cend(),
            [&volume](const QStorageInfo &other) { return other.rootPath() == volume.rootPath(); });
        if (holdsRealFiles(volume) && !listed)
            volumes.append(volume);
    }
    std::sort(volumes.begin(), volumes.end(),
        [](const QStorageInfo &a, const QStorageInfo &b) { return a.rootPath() < b.rootPath(); });
    for (const QStorageInfo &volume : std::as_const(volumes))
        found.append({ withSeparator(volume.rootPath()), describe(volume) });
#endif
    return found;
}

class BackgroundWalk::Collector final : public Visitor
{
public:
    explicit Collector(BackgroundWalk &walk)
        : m_walk(walk)
    { }

    bool enter(const QByteArray &folder) override
    {
        {
            const QMutexLocker lock(&m_walk.m_lock);
            m_walk.m_folder = folder;
        }
        if (folderHook())
            folderHook()(shownPath(folder));
        return !m_walk.m_stop;
    }

    bool found(const QByteArray &path) override
    {
        {
            const QMutexLocker lock(&m_walk.m_lock);
            m_walk.m_found.append(path);
        }
        return !m_walk.m_stop;
    }

private:
    BackgroundWalk &m_walk;
};

BackgroundWalk::BackgroundWalk(QObject *parent)
    : QObject(parent)
{ }

BackgroundWalk::~BackgroundWalk()
{
    if (!m_thread)
        return;
    m_stop = true;
    m_thread->wait();
    delete m_thread;
}

void BackgroundWalk::start(const QByteArray &pattern, const QStringList &roots)
{
    if (m_thread)
        return;
    m_stop = false;
    m_found.clear();
    m_folder.clear();
    m_thread = QThread::create([this, pattern, roots] {
        Collector collector(*this);
        Walker walker(pattern, collector);
        for (const QString &root : roots) {
            if (walker.SearchDirs(walkPath(root)) == Walker::Outcome::Stopped)
                break;
        }
    });
    connect(m_thread, &QThread::finished, this, [this] {
        m_thread->wait();
        delete m_thread;
        m_thread = nullptr;
        Q_EMIT finished();
    });
    m_thread->start();
}

void BackgroundWalk::stop()
{
    m_stop = true;
}

QStringList BackgroundWalk::takeFound()
{
    QList<QByteArray> found;
    {
        const QMutexLocker lock(&m_lock);
        found.swap(m_found);
    }
    QStringList paths;
    paths.reserve(found.size());
    for (const QByteArray &path : std::as_const(found))
        paths.append(QDir::toNativeSeparators(shownPath(path)));
    return paths;
}

QString BackgroundWalk::currentFolder() const
{
    const QMutexLocker lock(&m_lock);
    return QDir::toNativeSeparators(shownPath(m_folder));
}

void BackgroundWalk::setFolderHook(std::function<void(const QString &)> hook)
{
    folderHook() = std::move(hook);
}

} // namespace ConfigSearch

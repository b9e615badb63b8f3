// ConfigSearch: the walk that finds the game's configuration files (q3config.cfg) on a disk, the places the
// search dialog offers to walk, and a walk on a thread of its own for the window. Nothing here draws; the
// dialog and `tarnwick-cli find` walk with the same rules.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

class QThread;

namespace ConfigSearch {

/// The name the search looks for.
inline constexpr char fileName[] = "q3config.cfg";

/// A path as the walk handles it, in the file system's own bytes (UTF-8 on Windows), and back.
QByteArray walkPath(const QString &path);
QString shownPath(const QByteArray &path);

/// A place to search: the player's home folder, or the root of a volume (on Windows, a drive).
struct Place
{
    QString path; // ends with a separator
    QString description; // a few words: "home folder", "ext4, 234 GB"
};

/// The places offered: the home folder first, then the root of every mounted volume that holds real files, by
/// path (pseudo file systems, memory file systems and snap images are left out). On Windows the drives, A: up.
QList<Place> places();

/// What a walk reports, on the thread it runs on. Either call returns false to stop the walk.
class Visitor
{
public:
    /// A folder is about to be listed: its full path, ending with a separator.
    virtual bool enter(const QByteArray &folder) = 0;
    /// A match: the folder's path and the name, as the file system spells it (a folder of that name too).
    virtual bool found(const QByteArray &path) = 0;

protected:
    ~Visitor() = default;
};

/// Walks one root after another, depth first: in each folder the entries named like the pattern (without regard
/// to case of ASCII letters), then each subfolder, both in name order without regard to case. Links to folders
/// are not followed, a walk stays on the volume of its root, and folders that cannot be read are skipped; a
/// folder an earlier root of the same Walker started at is not walked again. Folders beginning with "." are
/// walked, except on Windows.
class Walker
{
public:
    enum class Outcome { Done, Stopped, Unreadable };

    Walker(QByteArray pattern, Visitor &visitor);

    /// Walks the folder `root` (a link to a folder is followed here, and only here). Unreadable: the root is no
    /// folder that can be read; nothing was reported.
    Outcome SearchDirs(const QByteArray &root);

    /// Which folder a path leads to: its volume and its number there.
    struct FolderId
    {
        quint64 device = 0;
        quint64 inode = 0;
        bool operator==(const FolderId &) const = default;
    };

private:
    QByteArray m_pattern;
    Visitor &m_visitor;
    QList<FolderId> m_roots; // where the earlier walks started
};

/// A walk over some roots on a thread of its own. The window looks at its progress when it likes: the matches
/// found since it last looked, in walk order, and the folder being listed now.
class BackgroundWalk : public QObject
{
    Q_OBJECT

public:
    explicit BackgroundWalk(QObject *parent = nullptr);
    /// Stops a running walk and waits for its thread.
    ~BackgroundWalk() override;

    /// Starts walking `roots` in turn for `pattern`; nothing when a walk is still running.
    void start(const QByteArray &pattern, const QStringList &roots);
    /// Asks the walk to stop: it notices before its next folder or match, and `finished` follows.
    void stop();
    /// From start until `finished` is sent.
    bool isRunning() const { return m_thread != nullptr; }

    /// The matches found since the last call, in walk order, as full paths.
    QStringList takeFound();
    /// The folder the walk lists now (ends with a separator); empty before the first.
    QString currentFolder() const;

    /// Test hook: runs on the walk's thread as each folder is about to be listed, with its path.
    static void setFolderHook(std::function<void(const QString &folder)> hook);

Q_SIGNALS:
    /// The walk ended, done or stopped; takeFound holds the last of its matches.
    void finished();

private:
    class Collector;

    QThread *m_thread = nullptr;
    std::atomic_bool m_stop = false;
    mutable QMutex m_lock; // guards the two below, which the walk's thread writes
    QList<QByteArray> m_found;
    QByteArray m_folder;
};

} // namespace ConfigSearch

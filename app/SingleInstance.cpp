#include "SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QScopeGuard>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QThread>
#include <QTimer>

#ifndef Q_OS_UNIX
#include <QLocalServer>
#include <QLocalSocket>
#endif

#include <algorithm>
#include <optional>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#endif

namespace {

// What a later copy sends when it was started without a command line: "just come to the front".
const QByteArray restoreOnly(1, '\0');

QString defaultFolder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (!runtime.isEmpty())
        return runtime;
#ifdef Q_OS_UNIX
    // No runtime folder of the user's own (Qt refuses one another user made first): a folder of his own in the
    // temporary folder, never that shared folder itself, where another user's lock or socket could be waiting.
    return QDir::tempPath() + QStringLiteral("/tarnwick-") + QString::number(geteuid());
#else
    return QDir::tempPath();
#endif
}

// Whether the folder is the user's alone, made so when it is missing: his own, no link, and nobody else may put
// anything in it (a lock that keeps him out, a socket that reads his command lines).
bool isOwnFolder(const QString &folder)
{
#ifdef Q_OS_UNIX
    const QByteArray path = QFile::encodeName(folder);
    ::mkdir(path.constData(), 0700);
    struct stat st;
    if (::lstat(path.constData(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != geteuid()
        || (st.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return false;
    return (st.st_mode & 077) == 0 || ::chmod(path.constData(), 0700) == 0;
#else
    Q_UNUSED(folder);
    return true;
#endif
}

} // namespace

// The lock the first copy holds while it runs.
class SingleInstance::Lock
{
public:
    enum class Outcome { Taken, HeldByAnother, Failed };

#ifdef Q_OS_UNIX
    // An flock() on the lock file: the system lets go of it however the copy ends, a crash included, so there is
    // nothing stale to detect and nothing to sync to the disk. The file stays when the copy ends: removing it would
    // let a copy that opened it just before lock a file nobody else can see any more.
    static Outcome take(const QString &path, std::unique_ptr<Lock> *taken)
    {
        const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (fd < 0)
            return Outcome::Failed;
        if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
            const bool held = errno == EWOULDBLOCK;
            ::close(fd);
            return held ? Outcome::HeldByAnother : Outcome::Failed;
        }
        // Whose it is, for anyone looking into the folder: written over the last copy's number, then cut to length.
        // Emptying the file first would free its block, which a disk mounted with discard trims while we wait.
        const QByteArray pid = QByteArray::number(qint64(::getpid())) + '\n';
        if (::pwrite(fd, pid.constData(), size_t(pid.size()), 0) == pid.size()) {
            [[maybe_unused]] const int cut = ::ftruncate(fd, pid.size());
        }
        taken->reset(new Lock(fd));
        return Outcome::Taken;
    }
    ~Lock()
    {
        ::close(m_fd);
    }

private:
    explicit Lock(int fd)
        : m_fd(fd)
    { }
    int m_fd;
#else
    static Outcome take(const QString &path, std::unique_ptr<Lock> *taken)
    {
        auto file = std::make_unique<QLockFile>(path);
        // Never stale by age: only a lock whose process is gone (a crashed copy) is taken over.
        file->setStaleLockTime(0);
        if (file->tryLock(0)) {
            taken->reset(new Lock(std::move(file)));
            return Outcome::Taken;
        }
        return file->error() == QLockFile::LockFailedError ? Outcome::HeldByAnother : Outcome::Failed;
    }

private:
    explicit Lock(std::unique_ptr<QLockFile> file)
        : m_file(std::move(file))
    { }
    std::unique_ptr<QLockFile> m_file;
#endif
};

std::optional<QString> SingleInstance::decodePayload(const QByteArray &payload)
{
    if (payload == restoreOnly)
        return QString();
    if (payload.isEmpty() || payload.contains('\0'))
        return std::nullopt;
    QStringDecoder utf8(
        QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = utf8(payload);
    if (utf8.hasError())
        return std::nullopt;
    return text;
}

SingleInstance::SingleInstance(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_folder(folder.isEmpty() ? defaultFolder() : folder)
    , m_defaultFolder(folder.isEmpty())
{ }

SingleInstance::~SingleInstance()
{
    ReleaseInstanceMutex();
}

bool SingleInstance::IsFirstInstance()
{
    if (hasLock())
        return true;
    if (m_defaultFolder && !isOwnFolder(m_folder)) {
        qWarning("SingleInstance: %s is not the user's own folder; running without the lock", qUtf8Printable(m_folder));
        return true;
    }
    QDir().mkpath(m_folder);
    switch (Lock::take(QDir(m_folder).filePath(lockFileName()), &m_lock)) {
    case Lock::Outcome::Taken:
        listen();
        return true;
    case Lock::Outcome::HeldByAnother:
        return false;
    case Lock::Outcome::Failed:
        break;
    }
    qWarning("SingleInstance: cannot create the lock file in %s; running without it", qUtf8Printable(m_folder));
    return true;
}

bool SingleInstance::hasLock() const
{
    return m_lock != nullptr;
}

QString SingleInstance::socketName() const
{
#ifdef Q_OS_WIN
    // Pipe names are machine-wide: the user's name keeps each user's copy to himself, and a folder of its own gets a
    // pipe of its own.
    QString name = serverName() + u'-' + qEnvironmentVariable("USERNAME");
    if (!m_defaultFolder) {
        const QByteArray folderHash = QCryptographicHash::hash(m_folder.toUtf8(), QCryptographicHash::Sha1).toHex();
        name += u'-' + QString::fromLatin1(folderHash.left(16));
    }
    return name;
#else
    // A full path in the user's own folder, so two users sharing a temporary folder each have their own socket.
    return QDir(m_folder).filePath(serverName());
#endif
}

#ifdef Q_OS_UNIX

namespace {

bool socketAddress(const QString &name, sockaddr_un *address)
{
    const QByteArray path = QFile::encodeName(name);
    *address = {};
    address->sun_family = AF_UNIX;
    if (path.isEmpty() || size_t(path.size()) >= sizeof address->sun_path)
        return false;
    std::copy(path.cbegin(), path.cend(), address->sun_path);
    return true;
}

} // namespace

class SingleInstance::Peer : public QObject
{
public:
    Peer(int fd, QObject *parent)
        : QObject(parent)
        , m_fd(fd)
        , m_readable(fd, QSocketNotifier::Read, this)
        , m_timer(this)
    { }
    ~Peer() override
    {
        m_readable.setEnabled(false);
        ::close(m_fd);
    }
    int fd() const { return m_fd; }
    QSocketNotifier &readable() { return m_readable; }
    QTimer &timer() { return m_timer; }

private:
    int m_fd;
    QSocketNotifier m_readable;
    QTimer m_timer;
};

void SingleInstance::listen()
{
    const QString name = socketName();
    sockaddr_un address;
    if (!socketAddress(name, &address)) {
        qWarning("SingleInstance: cannot listen on %s: the path is too long", qUtf8Printable(name));
        return;
    }
    // Bound under a name of its own, made the user's alone, then moved to its place: no later copy meets a socket
    // others could reach. Whatever was at that place belongs to a copy that is gone: we hold the lock.
    sockaddr_un staging;
    socketAddress(name + u'.' + QString::number(qint64(::getpid())), &staging);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    ::unlink(staging.sun_path);
    const bool listening = fd >= 0 && ::bind(fd, reinterpret_cast<const sockaddr *>(&staging), sizeof staging) == 0
        && ::chmod(staging.sun_path, 0600) == 0 && ::listen(fd, 50) == 0
        && ::rename(staging.sun_path, address.sun_path) == 0;
    if (!listening) {
        qWarning("SingleInstance: cannot listen on %s: %s", qUtf8Printable(name), std::strerror(errno));
        if (fd >= 0) {
            ::unlink(staging.sun_path);
            ::close(fd);
        }
        return;
    }
    m_listener = fd;
    m_listening = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(m_listening, &QSocketNotifier::activated, this, &SingleInstance::acceptConnections);
}

void SingleInstance::acceptConnections()
{
    while (m_listener >= 0) {
        const int fd = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED)
                continue;
            return; // none waiting (or none to be had now: the next one wakes us again)
        }
        auto *peer = new Peer(fd, this);
        m_payloads.insert(peer, QByteArray());
        peer->timer().setSingleShot(true);
        connect(&peer->timer(), &QTimer::timeout, this, [this, peer] { drop(peer); });
        connect(&peer->readable(), &QSocketNotifier::activated, this, [this, peer] { readFrom(peer); });
        peer->timer().start(connectionTimeoutMs());
        readFrom(peer);
    }
}

void SingleInstance::readFrom(Peer *peer)
{
    const auto payload = m_payloads.find(peer);
    if (payload == m_payloads.end())
        return;
    char buffer[16384];
    for (;;) {
        const ssize_t got = ::read(peer->fd(), buffer, sizeof buffer);
        if (got > 0) {
            payload->append(buffer, got);
            if (payload->size() > maxPayload())
                return drop(peer);
        } else if (got == 0) {
            return finish(peer); // the later copy has sent all and closed its end
        } else if (errno != EINTR) {
            if (errno != EAGAIN && errno != EWOULDBLOCK)
                drop(peer);
            return;
        }
    }
}

void SingleInstance::finish(Peer *peer)
{
    const auto found = m_payloads.constFind(peer);
    if (found == m_payloads.constEnd())
        return; // already dropped
    const std::optional<QString> text = decodePayload(*found);
    m_payloads.erase(found);
    peer->readable().setEnabled(false);
    peer->deleteLater();
    if (text)
        Q_EMIT commandLineReceived(*text);
}

void SingleInstance::drop(Peer *peer)
{
    if (!m_payloads.remove(peer))
        return;
    peer->readable().setEnabled(false);
    peer->timer().stop();
    peer->deleteLater();
}

bool SingleInstance::sendToFirst(const QString &commandLine, int timeoutMs)
{
    const QByteArray payload = commandLine.isEmpty() ? restoreOnly : commandLine.toUtf8();
    if (payload.size() > maxPayload() || (!commandLine.isEmpty() && payload.contains('\0')))
        return false;
    const QDeadlineTimer deadline(timeoutMs);
    sockaddr_un address;
    if (!socketAddress(socketName(), &address))
        return false;
    int fd = -1;
    for (;;) {
        fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        if (fd < 0)
            return false;
        if (::connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
            break;
        ::close(fd);
        // The first copy may still be starting, or be busy with others: try again until the time is up.
        if (deadline.hasExpired())
            return false;
        QThread::msleep(std::min<qint64>(50, deadline.remainingTime()));
        if (deadline.hasExpired())
            return false;
    }
    const auto closeSocket = qScopeGuard([fd] { ::close(fd); });
    qsizetype sent = 0;
    while (sent < payload.size()) {
        const ssize_t wrote = ::send(fd, payload.constData() + sent, size_t(payload.size() - sent), MSG_NOSIGNAL);
        if (wrote > 0) {
            sent += wrote;
            continue;
        }
        if (wrote < 0 && errno == EINTR)
            continue;
        if (wrote < 0 && errno != EAGAIN && errno != EWOULDBLOCK)
            return false;
        // The first copy reads no faster: wait for room until the time is up.
        pollfd room { fd, POLLOUT, 0 };
        if (deadline.hasExpired() || ::poll(&room, 1, int(std::min<qint64>(deadline.remainingTime(), 1000))) < 0)
            return false;
    }
    return true;
}

void SingleInstance::ReleaseInstanceMutex()
{
    for (auto it = m_payloads.cbegin(); it != m_payloads.cend(); ++it)
        delete it.key();
    m_payloads.clear();
    if (m_listener >= 0) {
        delete m_listening;
        m_listening = nullptr;
        ::close(m_listener);
        m_listener = -1;
        // Gone with the copy, so a later copy does not wait on a socket nobody listens to.
        sockaddr_un address;
        if (socketAddress(socketName(), &address))
            ::unlink(address.sun_path);
    }
    m_lock.reset(); // unlocks
}

#else

void SingleInstance::listen()
{
    const QString name = socketName();
    // Whatever socket is left at that name belongs to a copy that is gone: we hold the lock.
    QLocalServer::removeServer(name);
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::acceptConnections);
    if (!m_server->listen(name)) {
        qWarning(
            "SingleInstance: cannot listen on %s: %s", qUtf8Printable(name), qUtf8Printable(m_server->errorString()));
        delete m_server;
        m_server = nullptr;
    }
}

void SingleInstance::acceptConnections()
{
    while (m_server && m_server->hasPendingConnections()) {
        QLocalSocket *socket = m_server->nextPendingConnection();
        m_payloads.insert(socket, QByteArray());
        auto *timer = new QTimer(socket);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this, socket] { drop(socket); });
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readFrom(socket); });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] { finish(socket); });
        timer->start(connectionTimeoutMs());
        if (socket->bytesAvailable() > 0)
            readFrom(socket);
        if (socket->state() == QLocalSocket::UnconnectedState)
            finish(socket);
    }
}

void SingleInstance::readFrom(QLocalSocket *socket)
{
    const auto payload = m_payloads.find(socket);
    if (payload == m_payloads.end())
        return;
    payload->append(socket->readAll());
    if (payload->size() > maxPayload())
        drop(socket);
}

void SingleInstance::finish(QLocalSocket *socket)
{
    readFrom(socket);
    const auto found = m_payloads.constFind(socket);
    if (found == m_payloads.constEnd())
        return; // already dropped
    const std::optional<QString> text = decodePayload(*found);
    m_payloads.erase(found);
    socket->deleteLater();
    if (text)
        Q_EMIT commandLineReceived(*text);
}

void SingleInstance::drop(QLocalSocket *socket)
{
    if (!m_payloads.remove(socket))
        return;
    socket->abort();
    socket->deleteLater();
}

bool SingleInstance::sendToFirst(const QString &commandLine, int timeoutMs)
{
    const QByteArray payload = commandLine.isEmpty() ? restoreOnly : commandLine.toUtf8();
    if (payload.size() > maxPayload() || (!commandLine.isEmpty() && payload.contains('\0')))
        return false;
    const QDeadlineTimer deadline(timeoutMs);
    QLocalSocket socket;
    const QString name = socketName();
    for (;;) {
        socket.connectToServer(name);
        if (socket.waitForConnected(int(deadline.remainingTime())))
            break;
        socket.abort();
        // The first copy may still be starting: try again until the time is up.
        if (deadline.hasExpired())
            return false;
        QThread::msleep(std::min<qint64>(50, deadline.remainingTime()));
        if (deadline.hasExpired())
            return false;
    }
    if (socket.write(payload) != payload.size())
        return false;
    while (socket.bytesToWrite() > 0) {
        if (deadline.hasExpired() || !socket.waitForBytesWritten(int(deadline.remainingTime())))
            return false;
    }
    socket.disconnectFromServer();
    return true;
}

void SingleInstance::ReleaseInstanceMutex()
{
    for (auto it = m_payloads.cbegin(); it != m_payloads.cend(); ++it) {
        it.key()->disconnect(this);
        it.key()->abort();
        it.key()->deleteLater();
    }
    m_payloads.clear();
    if (m_server) {
        m_server->close();
        delete m_server;
        m_server = nullptr;
    }
    m_lock.reset(); // unlocks
}

#endif

// SingleInstance: one copy of Tarnwick per user. The first copy holds a lock file and listens on a local socket; a
// later copy hands its command line over and ends.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QLocalServer;
class QLocalSocket;
class QSocketNotifier;

class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// `folder`: where the lock file and the socket live; empty for the user's runtime folder, or without one a
    /// folder of his own in the temporary folder (tarnwick-UID, made with no access for others).
    explicit SingleInstance(const QString &folder = QString(), QObject *parent = nullptr);
    ~SingleInstance() override; // releases the lock and stops listening

    /// Takes the lock. True for the first copy, which then listens for later copies; false when another live copy
    /// holds it. When the lock can't be created at all (e.g. the folder is not writable) this copy runs as a first
    /// copy without a lock and without listening: true, and hasLock() says false. The same happens when the default
    /// folder is not the user's alone (another user's, a link, one others may write in).
    bool IsFirstInstance();
    bool hasLock() const;
    /// A later copy: sends `commandLine` to the first copy. False when no first copy answered within `timeoutMs`,
    /// and at once for a command line the first copy would not accept (one holding a NUL character, or one longer
    /// than maxPayload() bytes in UTF-8).
    bool sendToFirst(const QString &commandLine, int timeoutMs = 3000);
    /// Lets go of the lock and stops listening (also done by the destructor); safe to call twice.
    void ReleaseInstanceMutex();

    static QString lockFileName() { return QStringLiteral("Tarnwick_APPLICATION_MUTEX"); }
    static QString serverName() { return QStringLiteral("Tarnwick_APPLICATION"); }
    /// The most bytes one later copy may send; a connection that sends more is dropped.
    static constexpr qsizetype maxPayload() { return 64 * 1024; }
    /// How long (ms) a later copy may stay connected; a connection open longer is dropped.
    static constexpr int connectionTimeoutMs() { return 2000; }
    /// The text a later copy sent (empty: only come to the front); nothing for a payload that is not one (empty,
    /// holding a zero byte other than the lone one, not UTF-8). Every character is kept, a byte order mark too.
    static std::optional<QString> decodePayload(const QByteArray &payload);

Q_SIGNALS:
    /// A later copy started with `commandLine`; empty when it only asks to be restored.
    void commandLineReceived(const QString &commandLine);

private:
#ifdef Q_OS_UNIX
    // A later copy's connection (a socket of the system's own: no network library is loaded for it).
    class Peer;
    using Connection = Peer;
#else
    using Connection = QLocalSocket;
#endif
    QString socketName() const;
    void listen();
    void acceptConnections();
    void readFrom(Connection *connection);
    void finish(Connection *connection);
    void drop(Connection *connection);

    QString m_folder;
    bool m_defaultFolder;
    class Lock;
    std::unique_ptr<Lock> m_lock;
#ifdef Q_OS_UNIX
    int m_listener = -1;
    QSocketNotifier *m_listening = nullptr;
#else
    QLocalServer *m_server = nullptr;
#endif
    QHash<Connection *, QByteArray> m_payloads; // the connections still being read
};

#include "app/RunningInstance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>
#include <QTimer>

#include <sys/socket.h>
#include <unistd.h>

namespace tidemark {

namespace {

/// So that twenty that start at once all find the first one.
constexpr int MOST_TIME_FOR_OTHER_STARTS_MS = 10000;
/// Thousands of paths fit; nobody who isn't this program sends more.
constexpr quint32 LARGEST_REQUEST = 1 << 24;
/// The answer to a request, and what confirms it: who has given up waiting doesn't.
const QByteArray TAKEN = QByteArrayLiteral("taken");
constexpr char CONFIRMED = '!';

QByteArray withLength(const QByteArray &bytes)
{
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    stream << bytes;
    return message;
}

/// The whole of what was sent; nothing while more is to come.
std::optional<QByteArray> messageIn(QLocalSocket &socket)
{
    QDataStream stream(&socket);
    stream.startTransaction();
    quint32 length = 0;
    stream >> length;
    if (length > LARGEST_REQUEST) {
        socket.abort();
        return {};
    }
    QByteArray bytes(qsizetype(length), Qt::Uninitialized);
    stream.readRawData(bytes.data(), int(length));
    return stream.commitTransaction() ? std::optional(bytes) : std::nullopt;
}

/// Whether the other end is a process of this user.
bool isOwn(const QLocalSocket &socket)
{
    const int descriptor = int(socket.socketDescriptor());
#ifdef SO_PEERCRED
    struct ucred peer = {};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::getuid();
#else
    uid_t user = 0;
    gid_t group = 0;
    return ::getpeereid(descriptor, &user, &group) == 0 && user == ::getuid();
#endif
}

} // namespace

QString RunningInstance::nameFor(const QString &settingsFile)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const char *variable : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        hash.addData(qgetenv(variable) + '\n');
    hash.addData(settingsFile.toUtf8());
    // In the temporary folder somebody else could lay a socket in wait.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        return {};
    return folder + QStringLiteral("/tidemark-") + QString::fromLatin1(hash.result().toHex()).first(16);
}

RunningInstance::RunningInstance(const QString &name, const LaunchRequest &request,
                                 std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent), _patience(patience)
{
    if (name.isEmpty())
        return;
    QLockFile starting(name + QStringLiteral(".lock"));
    (void)starting.tryLock(MOST_TIME_FOR_OTHER_STARTS_MS);
    const Answer answer = _handOver(name, request, patience);
    _hasHandedOver = answer == Answer::Taken;
    if (answer == Answer::Nobody)
        _listen(name);
}

RunningInstance::~RunningInstance() = default;

RunningInstance::Answer RunningInstance::_handOver(const QString &name, const LaunchRequest &request,
                                                   std::chrono::milliseconds patience)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(int(patience.count()))) {
        const bool isNobodyThere = socket.error() == QLocalSocket::ServerNotFoundError ||
                                   socket.error() == QLocalSocket::ConnectionRefusedError;
        return isNobodyThere ? Answer::Nobody : Answer::Silence;
    }
    if (!isOwn(socket))
        return Answer::Silence;
    socket.write(withLength(request.encoded()));
    while (socket.bytesAvailable() < TAKEN.size()) {
        if (!socket.waitForReadyRead(int(patience.count())))
            return Answer::Silence;
    }
    if (socket.readAll() != TAKEN)
        return Answer::Silence;
    socket.putChar(CONFIRMED);
    return socket.waitForBytesWritten(int(patience.count())) ? Answer::Taken : Answer::Silence;
}

void RunningInstance::_listen(const QString &name)
{
    _server = std::make_unique<QLocalServer>();
    _server->setSocketOptions(QLocalServer::UserAccessOption);
    // What lies there is left from a program that was ended hard.
    QLocalServer::removeServer(name);
    connect(_server.get(), &QLocalServer::newConnection, this, &RunningInstance::_answer);
    (void)_server->listen(name);
}

void RunningInstance::_answer()
{
    while (QLocalSocket *socket = _server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (!isOwn(*socket)) {
            socket->abort();
            continue;
        }
        QTimer::singleShot(_patience, socket, &QLocalSocket::abort);
        connect(
            socket, &QLocalSocket::readyRead, this,
            [this, socket, request = std::optional<LaunchRequest>()]() mutable { _read(*socket, request); });
    }
}

/// First the request, then that it is still wanted.
void RunningInstance::_read(QLocalSocket &socket, std::optional<LaunchRequest> &request)
{
    if (!request) {
        const std::optional<QByteArray> message = messageIn(socket);
        request = message ? LaunchRequest::decoded(*message) : std::nullopt;
        if (request) {
            socket.write(TAKEN);
            socket.flush();
        }
    }
    char confirmation = 0;
    if (!request || !socket.getChar(&confirmation) || confirmation != CONFIRMED)
        return;
    socket.disconnectFromServer();
    Q_EMIT requested(*request);
}

} // namespace tidemark

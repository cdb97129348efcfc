#include "app/RunningInstance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <unistd.h>

namespace tidemark {

namespace {

constexpr int PATIENCE_MS = 1000;
/// Thousands of paths fit; nobody who isn't this program sends more.
constexpr quint32 LARGEST_REQUEST = 1 << 24;
const QByteArray TAKEN = QByteArrayLiteral("taken");

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

} // namespace

QString RunningInstance::nameFor(const QString &settingsFile)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const char *variable : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        hash.addData(qgetenv(variable) + '\n');
    hash.addData(settingsFile.toUtf8());
    return QStringLiteral("tidemark-%1-%2")
        .arg(::getuid())
        .arg(QString::fromLatin1(hash.result().toHex()).first(16));
}

bool RunningInstance::takes(const QString &name, const LaunchRequest &request)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(PATIENCE_MS))
        return false;
    socket.write(withLength(request.encoded()));
    while (socket.bytesAvailable() < TAKEN.size()) {
        if (!socket.waitForReadyRead(PATIENCE_MS))
            return false;
    }
    return socket.readAll() == TAKEN;
}

RunningInstance::RunningInstance(const QString &name, QObject *parent)
    : QObject(parent), _server(std::make_unique<QLocalServer>())
{
    _server->setSocketOptions(QLocalServer::UserAccessOption);
    // Nobody has answered there: what lies there is left from a program that was ended hard.
    QLocalServer::removeServer(name);
    connect(_server.get(), &QLocalServer::newConnection, this, &RunningInstance::_answer);
    (void)_server->listen(name);
}

RunningInstance::~RunningInstance() = default;

void RunningInstance::_answer()
{
    while (QLocalSocket *socket = _server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(PATIENCE_MS, socket, &QLocalSocket::abort);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            const std::optional<QByteArray> message = messageIn(*socket);
            const auto request = message ? LaunchRequest::decoded(*message) : std::nullopt;
            if (!request)
                return;
            socket->write(TAKEN);
            socket->flush();
            socket->disconnectFromServer();
            Q_EMIT requested(*request);
        });
    }
}

} // namespace tidemark

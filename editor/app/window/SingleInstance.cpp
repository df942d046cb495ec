#include "SingleInstance.h"

#include <QDataStream>
#include <QDir>
#include <QLocalSocket>

namespace zelk {

namespace {

constexpr int patience = 2000; // milliseconds

} // namespace

SingleInstance::SingleInstance(const QString& name) : _name(QStringLiteral("%1-%2").arg(name, QDir::home().dirName())) {
    _server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&_server, &QLocalServer::newConnection, this, &SingleInstance::receive);
}

bool SingleInstance::handOver(const QStringList& files) {
    QLocalSocket socket;
    socket.connectToServer(_name);
    if (!socket.waitForConnected(patience)) {
        if (!_server.listen(_name)) { // A crashed program's socket is in the way.
            QLocalServer::removeServer(_name);
            _server.listen(_name);
        }
        return false;
    }
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    stream << files;
    socket.write(message);
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(patience))
            return false;
    }
    // The other one answers when it has them all; one that hangs does not keep the user from his files.
    return socket.waitForReadyRead(patience);
}

void SingleInstance::receive() {
    while (QLocalSocket* socket = _server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket] {
            QDataStream stream(socket);
            QStringList files;
            stream.startTransaction();
            stream >> files;
            if (!stream.commitTransaction())
                return; // The rest is still to come.
            socket->write("1");
            socket->flush();
            Q_EMIT filesReceived(files);
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        if (socket->bytesAvailable() > 0)
            read();
    }
}

} // namespace zelk

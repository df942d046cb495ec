#include "SingleInstance.h"

#include <QDataStream>
#include <QDir>
#include <QLocalSocket>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace zelk {

namespace {

constexpr int patience = 5000;                  // milliseconds
constexpr qint64 longestMessage = 16 << 20;     // bytes; a command line has 2 MB
constexpr QChar separator = QChar(QChar::Null); // which stands in no path

// Windows lets only the program that the user has just started come to the front, and those that it lets.
void letOthersComeToFront() {
#ifdef Q_OS_WIN
    AllowSetForegroundWindow(ASFW_ANY);
#endif
}

} // namespace

SingleInstance::SingleInstance() : _name(QStringLiteral("orvane-zelk-") + QDir::home().dirName()) {
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
    letOthersComeToFront();
    QDataStream stream(&socket);
    stream << files.join(separator).toUtf8();
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
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(*socket); });
        read(*socket); // what came before anyone listened
        if (socket->state() == QLocalSocket::UnconnectedState)
            socket->deleteLater();
    }
}

void SingleInstance::read(QLocalSocket& socket) {
    QDataStream stream(&socket);
    QByteArray names;
    stream.startTransaction();
    stream >> names;
    if (!stream.commitTransaction()) { // The rest is still to come.
        if (stream.status() == QDataStream::ReadCorruptData || socket.bytesAvailable() > longestMessage)
            socket.abort();
        return;
    }
    socket.write("1");
    socket.flush();
    if (socket.state() != QLocalSocket::ConnectedState)
        return; // The other one has lost patience and opens them itself.
    // Whoever takes the files may run an event loop, in which this socket goes.
    QMetaObject::invokeMethod(
        this,
        [this, files = QString::fromUtf8(names).split(separator, Qt::SkipEmptyParts)] { Q_EMIT filesReceived(files); },
        Qt::QueuedConnection);
}

} // namespace zelk

// One window for all starts: a later start hands its files to the first one.
#pragma once

#include <QLocalServer>
#include <QStringList>

class QLocalSocket;

namespace zelk {

class SingleInstance : public QObject {
    Q_OBJECT
public:
    SingleInstance();

    /// True when another program took the files, which are full paths. Otherwise this one is the first and receives.
    bool handOver(const QStringList& files);

Q_SIGNALS:
    /// Emitted from the event loop, never while a connection is being read. May be empty: the window is to come to the
    /// front.
    void filesReceived(const QStringList& files);

private:
    void receive();
    void read(QLocalSocket& socket);

    QString _name; // starts of other users have their own
    QLocalServer _server;
};

} // namespace zelk

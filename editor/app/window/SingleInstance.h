// One window for all starts: a later start hands its files to the first one.
#pragma once

#include <QLocalServer>
#include <QStringList>

namespace zelk {

class SingleInstance : public QObject {
    Q_OBJECT
public:
    /// `name` tells programs apart; starts of other users have their own.
    explicit SingleInstance(const QString& name);

    /// True when another program took the files, which are full paths. Otherwise this one is the first and receives.
    bool handOver(const QStringList& files);

Q_SIGNALS:
    /// May be empty: the window is to come to the front.
    void filesReceived(const QStringList& files);

private:
    void receive();

    QString _name;
    QLocalServer _server;
};

} // namespace zelk

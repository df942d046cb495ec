// Requests that do not come from the user wait here until no dialog is open and no job runs.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <deque>
#include <functional>

namespace zelk {

/// The one way for other starts, drops, file watchers, timers and programs that have ended to open, close or change a
/// document, or to open a dialog. A dialog, a menu, a drag and a job run an event loop of their own with documents on
/// the stack below it, so that what the loop lets in must not touch any. [GUI thread]
class RequestQueue : public QObject {
    Q_OBJECT
public:
    using Request = std::function<void()>; ///< throws nothing

    RequestQueue();

    /// Carries the request out from the program's event loop, at once if nothing is open, but never before this has
    /// returned; one at a time, in the order in which they were added. Dropped if `owner` is deleted before.
    void add(const QObject* owner, Request request);
    /// The same for an owner that asks repeatedly: replaces its request of this name that is still waiting.
    void addLatest(const QObject* owner, const QString& name, Request request);

    /// True while anything modal or with an event loop of its own is open.
    bool isBusy() const;

private:
    struct Waiting {
        QPointer<const QObject> owner;
        QString name;
        Request request;
    };

    void serve();

    std::deque<Waiting> _waiting;
    bool _isServing = false;
    QTimer _timer;
};

} // namespace zelk

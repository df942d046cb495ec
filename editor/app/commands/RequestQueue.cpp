#include "RequestQueue.h"

#include <QApplication>
#include <QThread>

#include <algorithm>

namespace zelk {

using namespace std::chrono_literals;

namespace {

constexpr auto pause = 50ms; // between looks whether the user is done

} // namespace

RequestQueue::RequestQueue() {
    _timer.setSingleShot(true);
    connect(&_timer, &QTimer::timeout, this, &RequestQueue::serve);
}

void RequestQueue::add(const QObject* owner, Request request) {
    _waiting.push_back({owner, {}, std::move(request)});
    _timer.start(0ms);
}

void RequestQueue::addLatest(const QObject* owner, const QString& name, Request request) {
    const auto same = std::ranges::find_if(
        _waiting, [&](const Waiting& waiting) { return waiting.owner == owner && waiting.name == name; });
    if (same != _waiting.end())
        same->request = std::move(request);
    else
        _waiting.push_back({owner, name, std::move(request)});
    _timer.start(0ms);
}

// Level 1 is the program's own loop; whatever runs another one, known here or not, is not to be disturbed. Dialogs that
// are modal without a loop of their own count as well.
bool RequestQueue::isBusy() const {
    return QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr ||
           thread()->loopLevel() > 1;
}

void RequestQueue::serve() {
    std::erase_if(_waiting, [](const Waiting& waiting) { return waiting.owner.isNull(); });
    if (_waiting.empty())
        return;
    if (_isServing || isBusy()) {
        _timer.start(pause);
        return;
    }
    const Waiting next = std::move(_waiting.front());
    _waiting.pop_front();
    _isServing = true;
    next.request();
    _isServing = false;
    _timer.start(0ms);
}

} // namespace zelk

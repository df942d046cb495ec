// Builds previews beside the GUI thread.
#pragma once

#include <QObject>
#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <thread>

#include "PreviewRequest.h"

namespace zelk {

class TagPreview;

/// The preview is no longer wanted.
class PreviewDropped : public std::exception {};

/// One at a time; the last request wins. The thread never waits for a lock, and the GUI thread waits for it only when
/// the worker goes.
class PreviewWorker : public QObject {
    Q_OBJECT
public:
    explicit PreviewWorker(QObject* parent = nullptr) : QObject(parent) {}
    ~PreviewWorker() override { drop(); }

    void start(PreviewRequest request);
    /// Nothing that was asked for is shown any more.
    void drop();
    bool isBusy() const { return _order != nullptr; }

Q_SIGNALS:
    void done(std::shared_ptr<zelk::TagPreview> preview);

private:
    struct Order {
        PreviewRequest request; // its definitions are asked for by the GUI thread only
        std::atomic<bool> isDropped = false;
    };

    void run(std::shared_ptr<Order> order);
    void finish(const std::shared_ptr<Order>& order, const std::shared_ptr<TagPreview>& preview);
    std::string definition(const std::shared_ptr<Order>& order, uint16_t id);

    std::shared_ptr<Order> _order;
    std::optional<PreviewRequest> _next;
    std::jthread _thread; // last, so that it ends first
};

} // namespace zelk

#include "PreviewWorker.h"

#include <chrono>
#include <future>

#include "TagPreview.h"

namespace zelk {

void PreviewWorker::start(PreviewRequest request) {
    drop();
    if (_order != nullptr) { // The thread looks at this flag between its steps.
        _next = std::move(request);
        return;
    }
    _order = std::make_shared<Order>();
    _order->request = std::move(request);
    _thread = std::jthread([this, order = _order] { run(order); });
}

void PreviewWorker::drop() {
    _next.reset();
    if (_order != nullptr)
        _order->isDropped = true;
}

// [worker thread]
void PreviewWorker::run(std::shared_ptr<Order> order) {
    std::shared_ptr<TagPreview> preview;
    try {
        PreviewRequest request = {order->request.element, nullptr, order->request.jpegTables, order->request.layout};
        request.definition = [this, &order](uint16_t id) { return definition(order, id); };
        preview = std::make_shared<TagPreview>(request);
    } catch (const std::exception&) { // dropped, or out of memory
    }
    QMetaObject::invokeMethod(
        this, [this, order, preview] { finish(order, preview); }, Qt::QueuedConnection);
}

// [worker thread] Asks the GUI thread; if the order is dropped meanwhile, there is no answer.
std::string PreviewWorker::definition(const std::shared_ptr<Order>& order, uint16_t id) {
    using namespace std::chrono_literals;
    auto answer = std::make_shared<std::promise<std::string>>();
    std::future<std::string> text = answer->get_future();
    QMetaObject::invokeMethod(
        this,
        [order, answer, id] {
            const bool isAsked = !order->isDropped && order->request.definition;
            answer->set_value(isAsked ? order->request.definition(id) : std::string());
        },
        Qt::QueuedConnection);
    answer.reset();
    while (text.wait_for(10ms) != std::future_status::ready) {
        if (order->isDropped)
            throw PreviewDropped();
    }
    return text.get();
}

void PreviewWorker::finish(const std::shared_ptr<Order>& order, const std::shared_ptr<TagPreview>& preview) {
    _thread.join();
    _order.reset();
    std::optional<PreviewRequest> next;
    next.swap(_next);
    if (next)
        start(std::move(*next));
    else if (!order->isDropped && preview != nullptr)
        Q_EMIT done(preview);
}

} // namespace zelk

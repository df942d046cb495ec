#include "SwfInOrder.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace libswf {

namespace {

class InOrder {
public:
    InOrder(const SwfPartedWork& parts, size_t threads)
        : _parts(parts), _results(parts.count), _ahead(2 * threads + 1) {
        _helpers.reserve(threads);
        try {
            while (_helpers.size() + 1 < threads)
                _helpers.emplace_back([this] { help(); });
        } catch (const std::exception&) {
            // No more threads to be had: the work is done by fewer.
        }
    }
    ~InOrder() {
        {
            const std::lock_guard lock(_mutex);
            _next = _parts.count;
        }
        _changed.notify_all();
        for (std::thread& helper : _helpers)
            helper.join();
    }
    InOrder(const InOrder&) = delete;
    InOrder& operator=(const InOrder&) = delete;

    void run() {
        for (size_t part = 0; part < _parts.count; ++part) {
            finish(part);
            _parts.take(part);
            if (_results[part].error)
                std::rethrow_exception(_results[part].error);
            const std::lock_guard lock(_mutex);
            _taken = part + 1;
            _changed.notify_all();
        }
    }

private:
    struct Result {
        bool isDone = false;
        std::exception_ptr error;
    };

    // Does other parts while another thread is still at this one.
    void finish(size_t part) {
        std::unique_lock lock(_mutex);
        while (!_results[part].isDone) {
            if (mayBegin())
                doNext(lock);
            else
                _changed.wait(lock);
        }
    }

    // [helper thread]
    void help() {
        std::unique_lock lock(_mutex);
        for (;;) {
            _changed.wait(lock, [this] { return mayBegin() || _next == _parts.count; });
            if (_next == _parts.count)
                return;
            doNext(lock);
        }
    }

    bool mayBegin() const { return _next < _parts.count && _next < _taken + _ahead; }

    void doNext(std::unique_lock<std::mutex>& lock) {
        Result& result = _results[_next];
        const size_t part = _next++;
        lock.unlock();
        std::exception_ptr error;
        try {
            _parts.work(part);
        } catch (...) {
            error = std::current_exception();
        }
        lock.lock();
        result = {true, error};
        _changed.notify_all();
    }

    const SwfPartedWork& _parts;
    std::vector<Result> _results;
    const size_t _ahead;
    std::mutex _mutex;
    std::condition_variable _changed;
    size_t _next = 0;  // the part to begin; behind the last one to end
    size_t _taken = 0; // so many parts
    std::vector<std::thread> _helpers;
};

} // namespace

void workInOrder(const SwfPartedWork& parts, uint32_t threads) {
    InOrder(parts, std::min<size_t>(threads, parts.count)).run();
}

uint32_t threadsFor(bool isBig, uint32_t asked) {
    constexpr uint32_t most = 4; // what one thread does alone leaves no work for more
    if (!isBig)
        return 1;
    return asked != 0 ? asked : std::clamp(std::thread::hardware_concurrency(), 1u, most);
}

} // namespace libswf

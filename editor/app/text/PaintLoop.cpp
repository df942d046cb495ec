#include "PaintLoop.h"

#include <QEventLoop>
#include <QTimer>

#include <exception>
#include <thread>

namespace zelk {

void untilDone(const std::function<bool()>& work) {
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (work())
            loop.quit();
    });
    timer.start(0);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void besideWindow(const std::function<void()>& work) {
    QEventLoop loop;
    std::exception_ptr problem;
    std::thread thread([&] {
        try {
            work();
        } catch (...) {
            problem = std::current_exception();
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    thread.join();
    if (problem != nullptr)
        std::rethrow_exception(problem);
}

} // namespace zelk

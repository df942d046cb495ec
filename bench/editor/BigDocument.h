// What the measurements of the editor have in common.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

#include <ctime>

#include <algorithm>
#include <cstdio>
#include <string>

namespace bench {

/// Shapes as a conversion shows them, and a payload of 1 MB in one line now and then.
std::string bigText(size_t size = 100'000'000, bool hasPayloads = true);
/// What is done with such a document beside typing.
void measureTools();

/// Megabytes of "VmRSS" or "VmHWM".
double memory(const std::string& what);

inline void handleEvents() {
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

// The time that has passed, and what this thread has used of the processor: on a machine that others use, that is what
// counts. In milliseconds.
struct Times {
    double passed = 0, used = 0;

    static Times now() {
        const auto of = [](clockid_t clock) {
            timespec time{};
            clock_gettime(clock, &time);
            return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
        };
        return {of(CLOCK_MONOTONIC), of(CLOCK_THREAD_CPUTIME_ID)};
    }
    /// Keeps the longer of each, and starts again.
    void take(Times& since) {
        const Times end = now();
        passed = std::max(passed, end.passed - since.passed);
        used = std::max(used, end.used - since.used);
        since = end;
    }
    void print(const char* name) const {
        std::printf("%-44s %9.1f ms %9.1f ms\n", name, passed, used);
        std::fflush(stdout);
    }
};

// The longest of some runs, with all that the step makes the window do.
template <class Step>
void measure(const char* name, int runs, Step step) {
    Times longest;
    for (int i = 0; i < runs; ++i) {
        Times since = Times::now();
        step();
        handleEvents();
        longest.take(since);
    }
    longest.print(name);
}

// The longest that the window waits for its next event, while a step runs a loop of its own.
template <class Step>
void measureWaits(const char* name, Step step) {
    Times longest, since = Times::now();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { longest.take(since); });
    timer.start(0);
    step();
    handleEvents();
    longest.take(since);
    longest.print(name);
}

// Until something holds, or a minute has passed.
template <class Holds>
void handleEventsUntil(Holds holds) {
    QElapsedTimer timer;
    for (timer.start(); !holds() && timer.elapsed() < 60'000;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
}

inline void press(QWidget& widget, int key, const QString& text, Qt::KeyboardModifiers modifiers = {}) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&widget, &event);
}

inline void showBig(QWidget& view) {
    view.resize(1000, 700);
    view.show();
}

} // namespace bench

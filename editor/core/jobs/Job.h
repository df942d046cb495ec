// Long work on a thread of its own, and what it shares with the thread that waits for it.
#pragma once

#include <atomic>
#include <chrono>
#include <exception>
#include <string>
#include <thread>

#include "Conversion.h"

namespace zelk {

/// The work was stopped at the user's wish. Nothing is reported then.
class JobCancelled : public std::exception {
public:
    const char* what() const noexcept override { return "cancelled"; }
};

/// How far a job is and whether it shall go on. Every member may be called from both threads.
class JobProgress : public xml2swf::IProgressReporter {
public:
    static constexpr int range = 100;

    /// [worker thread] Throws JobCancelled once the job is cancelled.
    void report(double fraction) override;
    /// [worker thread] The same without a report.
    void checkCancelled() const;

    void cancel() { _isCancelled = true; }
    bool isCancelled() const { return _isCancelled; }
    int position() const { return _position; } ///< 0 to `range`
    /// What the dialog shows below the bar; empty before the first step.
    std::string estimate() const;

private:
    const std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
    std::atomic<int> _position = 0;
    std::atomic<int64_t> _firstReport = -1; // milliseconds from the start
    std::atomic<bool> _isCancelled = false;
};

/// "%d sec" for the time that is left, from the time to the first report; empty at position 0.
std::string estimateText(int position, int64_t millisecondsToFirstReport);

/// Inputs and outputs of one job, and all that its two threads share. The worker writes its results before it ends; the
/// other thread reads them after that.
struct ThreadParams {
    JobProgress progress;
    std::exception_ptr failure;
};

/// [worker thread] The work on params of its own kind. A function and no closure: there is nothing else that it could
/// reach.
using JobWork = void (*)(ThreadParams& params);

/// Runs a job's work on its own thread.
class Worker {
public:
    Worker(ThreadParams& params, JobWork work);
    /// Waits for the work to end.
    ~Worker() = default;

    /// Never waits.
    bool hasEnded() const { return _hasEnded; }
    /// Joins the thread and rethrows what the work threw; JobCancelled when it was cancelled, whatever it failed with.
    void finish();

private:
    ThreadParams& _params;
    std::atomic<bool> _hasEnded = false;
    std::jthread _thread; // last, so that it ends first
};

} // namespace zelk

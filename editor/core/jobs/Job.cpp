#include "Job.h"

#include <algorithm>

namespace zelk {

void JobProgress::report(double fraction) {
    using namespace std::chrono;
    checkCancelled();
    const int64_t elapsed = duration_cast<milliseconds>(steady_clock::now() - _start).count();
    int64_t none = -1;
    _firstReport.compare_exchange_strong(none, elapsed);
    _position = std::clamp(static_cast<int>(fraction * range), 0, range);
}

void JobProgress::checkCancelled() const {
    if (_isCancelled)
        throw JobCancelled();
}

std::string JobProgress::estimate() const { return estimateText(_position, _firstReport); }

std::string estimateText(int position, int64_t millisecondsToFirstReport) {
    if (position <= 0)
        return {};
    return std::to_string((JobProgress::range - position) * millisecondsToFirstReport / 1000) + " sec";
}

Worker::Worker(ThreadParams& params, JobWork work)
    : _params(params), _thread([this, work] {
          try {
              work(_params);
          } catch (...) {
              _params.failure = std::current_exception();
          }
          _hasEnded = true;
      }) {}

void Worker::finish() {
    _thread.join();
    if (!_params.failure)
        return;
    _params.progress.checkCancelled();
    std::rethrow_exception(_params.failure);
}

} // namespace zelk

#pragma once

#include <algorithm>
#include <ctime>
#include <limits>

// Times that can be compared within one run of a benchmark.
namespace anomalis {

/// Processor time of this process: other programs do not count.
inline double cpu_seconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// The best of several turns of one piece of work. Pieces that are compared take turns with each other, so
/// that a busy machine slows all of them.
class BestTime {
  public:
    template <class Work>
    double take(Work&& work) {
        const double start = cpu_seconds();
        work();
        const double seconds = cpu_seconds() - start;
        best_ = std::min(best_, seconds);
        return seconds;
    }
    double seconds() const { return best_; }

  private:
    double best_ = std::numeric_limits<double>::max();
};

}  // namespace anomalis

#include "core/threads.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace anomalis {

namespace {

/// The machine is one for the whole process, and so is the share of it that a person gives.
std::atomic<int>& chosen_limit() {
    static std::atomic<int> limit{0};
    return limit;
}

}  // namespace

int thread_count() {
    if (const int limit = chosen_limit()) return limit;
    // Asked once: the system reads a file for it.
    static const int cores = static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
    return cores;
}

void limit_threads(int most) {
    chosen_limit() = std::max(most, 0);
}

}  // namespace anomalis

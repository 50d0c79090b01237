#include "forward/polyhedron/station_blocks.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace anomalis::forward {

namespace {

constexpr double worth_a_thread = 5e5;  ///< nanoseconds; starting a thread takes a tenth of it

}  // namespace

int worker_count(double estimated_nanoseconds, std::size_t blocks, int asked) {
    const auto most = static_cast<double>(std::max<std::size_t>(blocks, 1));
    if (asked > 0) return static_cast<int>(std::min<double>(asked, most));
    if (!(estimated_nanoseconds > 2 * worth_a_thread)) return 1;
    const auto cores = static_cast<double>(std::max(1U, std::thread::hardware_concurrency()));
    return static_cast<int>(std::min({estimated_nanoseconds / worth_a_thread, cores, most}));
}

void for_each_block(std::size_t blocks, int workers, const std::function<void(int, std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    const auto run = [&](int worker) {
        for (std::size_t block = next++; block < blocks; block = next++) work(worker, block);
    };
    std::vector<std::jthread> helpers;
    try {
        for (int worker = 1; worker < workers; ++worker) helpers.emplace_back(run, worker);
    } catch (const std::system_error&) {
        // No more threads to be had; those that run take all blocks.
    }
    run(0);
}

}  // namespace anomalis::forward

#include "forward/polyhedron/station_blocks.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "core/pacer.h"
#include "core/threads.h"

namespace anomalis::forward {

namespace {

constexpr double worth_a_thread = 5e5;  ///< nanoseconds; starting a thread takes a tenth of it
constexpr std::chrono::milliseconds wait_pause{10};

}  // namespace

int worker_count(double estimated_nanoseconds, std::size_t blocks, int asked) {
    const auto most = static_cast<double>(std::max<std::size_t>(blocks, 1));
    if (asked > 0) return static_cast<int>(std::min<double>(asked, most));
    if (!(estimated_nanoseconds > 2 * worth_a_thread)) return 1;
    const auto cores = static_cast<double>(thread_count());
    return static_cast<int>(std::min({estimated_nanoseconds / worth_a_thread, cores, most}));
}

namespace {

/// The helpers of one job and what they share with its caller.
class Helpers {
  public:
    using Run = std::function<void(BlockWorker&)>;

    Helpers(int count, const Run& run) {
        try {
            for (int number = 1; number <= count; ++number) {
                threads_.emplace_back([this, number, &run] { help(number, run); });
                ++started_;
            }
        } catch (const std::system_error&) {
            // No more threads to be had; those that run take all blocks.
        }
    }
    ~Helpers() { leave(); }  // on the way out of a stop; the threads are joined after it
    Helpers(const Helpers&) = delete;
    Helpers& operator=(const Helpers&) = delete;

    const std::atomic<bool>& left() const { return left_; }
    void leave() { left_ = true; }

    /// Whoever waits is served until the last block of the others is done.
    void wait_for_all(Pacer& pacer) {
        std::unique_lock lock(mutex_);
        while (!ended_.wait_for(lock, wait_pause, [this] { return done_ == started_; })) {
            lock.unlock();
            pacer.waiting();
            lock.lock();
        }
    }

  private:
    void help(int number, const Run& run) {
        BlockWorker worker(number, nullptr, 0, left_);
        run(worker);
        const std::lock_guard lock(mutex_);
        ++done_;
        ended_.notify_one();
    }

    std::atomic<bool> left_{false};
    std::mutex mutex_;
    std::condition_variable ended_;
    int started_ = 0;
    int done_ = 0;
    std::vector<std::jthread> threads_;  // last: joined before what they use is gone
};

}  // namespace

bool BlockWorker::goes_on(double units) {
    if (pacer_) pacer_->done(units * speaks_for_);
    return !left_;
}

void for_each_block(std::size_t blocks, int workers, Pacer& pacer,
                    const std::function<void(BlockWorker&, std::size_t)>& work) {
    if (workers <= 1) {
        const std::atomic<bool> left{false};
        BlockWorker worker(0, &pacer, 1, left);
        for (std::size_t block = 0; block < blocks; ++block) work(worker, block);
        return;
    }
    std::atomic<std::size_t> next{0};
    const Helpers::Run run = [&](BlockWorker& worker) {
        // Asked before a block is taken: who waits is heard even where the others took them all.
        while (worker.goes_on(0)) {
            const std::size_t block = next++;
            if (block >= blocks) return;
            work(worker, block);
        }
    };
    Helpers helpers(workers - 1, run);
    BlockWorker caller(0, &pacer, workers, helpers.left());
    run(caller);
    helpers.wait_for_all(pacer);
}

}  // namespace anomalis::forward

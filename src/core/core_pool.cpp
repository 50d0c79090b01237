#include "core/core_pool.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace anomalis {

struct PoolJob {
    std::function<void(int)> run;
    int given = 0;    ///< to the pool, in all
    int waiting = 0;  ///< not begun yet
    int running = 0;
    std::condition_variable ended;
};

namespace {

thread_local bool is_pool_thread = false;

/// Has as many threads as were ever asked for at one time.
class CorePool {
  public:
    /// Ends when no job is left: who gives one waits for it.
    ~CorePool() {
        const std::lock_guard lock(mutex_);
        closing_ = true;
        called_.notify_all();
    }

    void give(const std::shared_ptr<PoolJob>& job, int count) {
        const std::lock_guard lock(mutex_);
        for (int number = 1; number <= count; ++number) {
            if (idle_ <= tickets_.size() && !add_thread()) return;
            tickets_.push_back({job, number});
            ++job->given;
            ++job->waiting;
            called_.notify_one();
        }
    }

    void take_back(PoolJob& job) {
        const std::lock_guard lock(mutex_);
        job.waiting -= static_cast<int>(
            std::erase_if(tickets_, [&](const Ticket& ticket) { return ticket.job.get() == &job; }));
    }

    bool wait_for(PoolJob& job, std::chrono::milliseconds pause) {
        std::unique_lock lock(mutex_);
        return job.ended.wait_for(lock, pause, [&] { return job.waiting + job.running == 0; });
    }

  private:
    struct Ticket {
        std::shared_ptr<PoolJob> job;
        int number;
    };

    bool add_thread() {
        try {
            threads_.emplace_back([this] { serve(); });
        } catch (const std::system_error&) {
            return !threads_.empty();
        }
        ++idle_;
        return true;
    }

    void serve() {
        is_pool_thread = true;
        std::unique_lock lock(mutex_);
        while (true) {
            called_.wait(lock, [this] { return closing_ || !tickets_.empty(); });
            if (closing_) return;
            const Ticket ticket = std::move(tickets_.front());
            tickets_.pop_front();
            PoolJob& job = *ticket.job;
            --idle_;
            --job.waiting;
            ++job.running;
            lock.unlock();
            job.run(ticket.number);
            lock.lock();
            ++idle_;
            --job.running;
            job.ended.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable called_;
    std::deque<Ticket> tickets_;
    std::size_t idle_ = 0;
    bool closing_ = false;
    std::vector<std::jthread> threads_;  // last: joined before what they use is gone
};

CorePool& core_pool() {
    static CorePool pool;
    return pool;
}

}  // namespace

bool on_pool_thread() {
    return is_pool_thread;
}

PoolHelpers::PoolHelpers(int count, std::function<void(int)> run) : job_(std::make_shared<PoolJob>()) {
    job_->run = std::move(run);
    if (count > 0 && !is_pool_thread) core_pool().give(job_, count);
}

PoolHelpers::~PoolHelpers() {
    take_back();
    while (!wait_for(std::chrono::hours(1))) {
    }
}

int PoolHelpers::count() const {
    return job_->given;
}

void PoolHelpers::take_back() {
    if (job_->given > 0) core_pool().take_back(*job_);
}

bool PoolHelpers::wait_for(std::chrono::milliseconds pause) {
    return job_->given == 0 || core_pool().wait_for(*job_, pause);
}

}  // namespace anomalis

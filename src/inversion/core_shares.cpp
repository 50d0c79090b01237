#include "inversion/core_shares.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "core/threads.h"

namespace anomalis::inversion {

namespace {

/// Leaves the work when it is asked to.
class SharedPacer : public Pacer {
  public:
    explicit SharedPacer(const std::atomic<bool>& leave) : leave_(leave) {}
    void done(double) override { look(); }
    void waiting() override { look(); }

  private:
    void look() const {
        if (leave_) throw Stopped();
    }
    const std::atomic<bool>& leave_;
};

class Cores {
  public:
    explicit Cores(const SharedWork& work) : work_(work), next_(work.first) {}
    ~Cores() {
        leave_ = true;
        for (std::thread& thread : threads_) thread.join();
    }
    Cores(const Cores&) = delete;
    Cores& operator=(const Cores&) = delete;

    bool run(Pacer& pacer) {
        const int cores = std::min(work_.cores > 0 ? work_.cores : thread_count(), work_.last - work_.first);
        for (int i = 0; i < cores; ++i) {
            ++running_;
            threads_.emplace_back([this] { work(); });
        }
        wait(pacer);
        for (std::thread& thread : threads_) thread.join();
        threads_.clear();
        if (failure_) std::rethrow_exception(failure_);
        return !leave_;
    }

  private:
    class Share : public CoreShare {
      public:
        explicit Share(Cores& cores) : cores_(cores), pacer_(cores.leave_) {}
        std::optional<int> next() override {
            const int number = cores_.next_++;
            return number < cores_.work_.last ? std::optional(number) : std::nullopt;
        }
        Pacer& pacer() override { return pacer_; }

      private:
        Cores& cores_;
        SharedPacer pacer_;
    };

    void wait(Pacer& pacer) {
        std::unique_lock lock(mutex_);
        while (!ended_.wait_for(lock, std::chrono::milliseconds(20), [this] { return running_ == 0; })) {
            lock.unlock();
            pacer.waiting();
            if (work_.leave && work_.leave()) leave_ = true;
            lock.lock();
        }
    }

    void work() {
        try {
            Share share(*this);
            work_.core(share);
        } catch (const Stopped&) {  // what is ready stays
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = std::current_exception();
        }
        const std::lock_guard lock(mutex_);
        --running_;
        ended_.notify_all();
    }

    const SharedWork& work_;
    std::vector<std::thread> threads_;
    std::mutex mutex_;
    std::condition_variable ended_;
    int running_ = 0;
    std::atomic<int> next_;
    std::atomic<bool> leave_ = false;
    std::exception_ptr failure_;
};

}  // namespace

bool share_among_cores(const SharedWork& work, Pacer& pacer) {
    return Cores(work).run(pacer);
}

}  // namespace anomalis::inversion

#include "core/core_shares.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>

#include "core/core_pool.h"
#include "core/threads.h"

namespace anomalis {

namespace {

constexpr std::chrono::milliseconds wait_pause{20};

/// Leaves the work when it is asked to.
class LeavingPacer : public Pacer {
  public:
    explicit LeavingPacer(const std::atomic<bool>& leave) : leave_(leave) {}
    void done(double) override { look(); }
    void waiting() override { look(); }

  private:
    void look() const {
        if (leave_) throw Stopped();
    }
    const std::atomic<bool>& leave_;
};

/// Asks who waits for the work too, where the one who does it is the one who gave it.
class AskingPacer : public Pacer {
  public:
    AskingPacer(Pacer& pacer, const SharedWork& work, std::atomic<bool>& leave)
        : pacer_(pacer), work_(work), leave_(leave) {}
    void done(double units) override {
        pacer_.done(units);
        look();
    }
    void waiting() override {
        pacer_.waiting();
        look();
    }

  private:
    void look() {
        if (work_.leave && work_.leave()) leave_ = true;
        if (leave_) throw Stopped();
    }
    Pacer& pacer_;
    const SharedWork& work_;
    std::atomic<bool>& leave_;
};

class Cores {
  public:
    explicit Cores(const SharedWork& work) : work_(work), next_(work.first) {}

    bool run(Pacer& pacer) {
        const int cores = std::min(work_.cores > 0 ? work_.cores : thread_count(), work_.last - work_.first);
        {
            PoolHelpers helpers(cores, [this](int) { help(); });
            const LeaveAtEnd leave(*this);
            if (helpers.count() == 0) {
                work_alone(pacer);
            } else {
                wait(helpers, pacer);
            }
        }
        if (failure_) std::rethrow_exception(failure_);
        return !left_early_;
    }

  private:
    class Share : public CoreShare {
      public:
        Share(Cores& cores, Pacer& pacer) : cores_(cores), pacer_(pacer) {}
        std::optional<int> next() override {
            const int number = cores_.next_++;
            return number < cores_.work_.last ? std::optional(number) : std::nullopt;
        }
        Pacer& pacer() override { return pacer_; }

      private:
        Cores& cores_;
        Pacer& pacer_;
    };

    /// On the way out of a stop too.
    class LeaveAtEnd {
      public:
        explicit LeaveAtEnd(Cores& cores) : cores_(cores) {}
        ~LeaveAtEnd() {
            cores_.left_early_ = cores_.leave_.load();
            cores_.leave_ = true;
        }
        LeaveAtEnd(const LeaveAtEnd&) = delete;
        LeaveAtEnd& operator=(const LeaveAtEnd&) = delete;

      private:
        Cores& cores_;
    };

    void wait(PoolHelpers& helpers, Pacer& pacer) {
        while (!helpers.wait_for(wait_pause)) {
            pacer.waiting();
            if (work_.leave && work_.leave()) leave_ = true;
            if (leave_) helpers.take_back();
        }
    }

    void work_alone(Pacer& pacer) {
        AskingPacer asking(pacer, work_, leave_);
        try {
            Share share(*this, asking);
            work_.core(share);
        } catch (const Stopped&) {
            if (!leave_) throw;  // the caller's own stop; else what is ready stays
        }
    }

    void help() {
        try {
            LeavingPacer pacer(leave_);
            Share share(*this, pacer);
            work_.core(share);
        } catch (const Stopped&) {  // what is ready stays
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = std::current_exception();
        }
    }

    const SharedWork& work_;
    std::mutex mutex_;
    std::atomic<int> next_;
    std::atomic<bool> leave_ = false;
    bool left_early_ = false;
    std::exception_ptr failure_;
};

}  // namespace

bool share_among_cores(const SharedWork& work, Pacer& pacer) {
    return Cores(work).run(pacer);
}

}  // namespace anomalis

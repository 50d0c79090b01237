#pragma once

#include <chrono>
#include <functional>
#include <memory>

// The threads that all long work of this process shares. They sleep between jobs, so that even a job of some
// hundred microseconds is worth them.
namespace anomalis {

struct PoolJob;

/// True on a thread of the pool. Work there that would ask for helpers goes on alone: the cores are taken.
bool on_pool_thread();

/// The helpers of one job. A helper that nobody has begun when its job ends never runs, so a job waits for no
/// other one; whoever gives it must be able to do all of it alone.
class PoolHelpers {
  public:
    /// Has run(1) to run(count) called on threads of the pool, each as soon as one is free; none of them on a
    /// thread of the pool, and fewer where the system grants no more threads. `run` must not throw.
    PoolHelpers(int count, std::function<void(int)> run);
    /// Takes back what has not begun and waits for the rest.
    ~PoolHelpers();
    PoolHelpers(const PoolHelpers&) = delete;
    PoolHelpers& operator=(const PoolHelpers&) = delete;

    /// How many were given to the pool.
    int count() const;
    /// Those that have not begun never will.
    void take_back();
    /// Waits no longer than this. True: all have ended, or were taken back.
    bool wait_for(std::chrono::milliseconds pause);

  private:
    std::shared_ptr<PoolJob> job_;
};

}  // namespace anomalis

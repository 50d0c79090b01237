#pragma once

#include <atomic>
#include <cstddef>
#include <functional>

namespace anomalis {
class Pacer;
}  // namespace anomalis

namespace anomalis::forward {

/// How many threads a job is worth: one below a millisecond, else one for each half millisecond, no more than
/// the processor has. `asked` above 0 overrules this. Never more than there are blocks.
int worker_count(double estimated_nanoseconds, std::size_t blocks, int asked);

/// One of those that take blocks. Only the caller of `for_each_block` may speak to the pacer.
class BlockWorker {
  public:
    /// `speaks_for` workers do about the same as this one.
    BlockWorker(int number, Pacer* pacer, int speaks_for, const std::atomic<bool>& left)
        : number_(number), pacer_(pacer), speaks_for_(speaks_for), left_(left) {}

    /// Counts from 0 and tells apart what runs at one time, for scratch memory.
    int number() const { return number_; }
    /// `units` of core/pacer.h were done. False when the work is to be left.
    bool goes_on(double units);

  private:
    int number_;
    Pacer* pacer_;  ///< null for a helper
    int speaks_for_;
    const std::atomic<bool>& left_;
};

/// Calls work(worker, block) once for every block, spread over `workers` threads of which the caller is one.
/// `work` must not throw by itself and should ask `goes_on` within a few milliseconds. Fewer threads are used
/// when the system grants no more. Raises Stopped when the pacer has the work left; no thread works on then.
void for_each_block(std::size_t blocks, int workers, Pacer& pacer,
                    const std::function<void(BlockWorker&, std::size_t)>& work);

}  // namespace anomalis::forward

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>

#include "core/pacer.h"

// Numbered pieces of work, of some hundred microseconds each, that whoever needs them does with the help of
// the pool's threads.
namespace anomalis {

/// How many threads a job is worth: one below half a millisecond, else one for each quarter of one, no more
/// than the processor has, and one on a thread of the pool or within a piece of shared work. `asked` above 0
/// overrules this. Never more than there are pieces.
int worker_count(double estimated_nanoseconds, std::size_t pieces, int asked = 0);

/// One of those that take pieces. Only the caller of `for_each_piece` may speak to the pacer.
class PieceWorker {
  public:
    /// `speaks_for` workers do about the same as this one.
    PieceWorker(int number, Pacer* pacer, int speaks_for, const std::atomic<bool>& left)
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

/// The worker of a piece as a pacer, for work that is left from deep inside: raises Stopped then.
class PiecePacer : public Pacer {
  public:
    explicit PiecePacer(PieceWorker& worker) : worker_(worker) {}
    void done(double units) override {
        if (!worker_.goes_on(units)) throw Stopped();
    }

  private:
    PieceWorker& worker_;
};

/// Calls work(worker, piece) once for every piece, spread over `workers` threads of which the caller is one.
/// `work` should ask `goes_on` within a few milliseconds. Fewer threads are used when the system grants no
/// more. What a piece throws is raised here once all have ended, of several any one of them. Raises Stopped
/// when the pacer has the work left; no thread works on then. A piece that throws Stopped because others had
/// the work left is no failure.
void for_each_piece(std::size_t pieces, int workers, Pacer& pacer,
                    const std::function<void(PieceWorker&, std::size_t)>& work);

}  // namespace anomalis

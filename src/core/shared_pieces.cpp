#include "core/shared_pieces.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <mutex>
#include <utility>

#include "core/core_pool.h"
#include "core/pacer.h"
#include "core/threads.h"

namespace anomalis {

namespace {

constexpr double worth_a_thread = 2.5e5;  ///< nanoseconds; waking a thread takes a tenth of it
constexpr std::chrono::milliseconds wait_pause{10};

/// This thread is at a piece that it shares with others.
thread_local bool within_piece = false;

class WithinPiece {
  public:
    WithinPiece() : before_(within_piece) { within_piece = true; }
    ~WithinPiece() { within_piece = before_; }
    WithinPiece(const WithinPiece&) = delete;
    WithinPiece& operator=(const WithinPiece&) = delete;

  private:
    bool before_;
};

}  // namespace

int worker_count(double estimated_nanoseconds, std::size_t pieces, int asked) {
    const auto most = static_cast<double>(std::max<std::size_t>(pieces, 1));
    if (asked > 0) return static_cast<int>(std::min<double>(asked, most));
    if (on_pool_thread() || within_piece || !(estimated_nanoseconds > 2 * worth_a_thread)) return 1;
    const auto cores = static_cast<double>(thread_count());
    return static_cast<int>(std::min({estimated_nanoseconds / worth_a_thread, cores, most}));
}

namespace {

using Work = std::function<void(PieceWorker&, std::size_t)>;

/// Pieces that several threads take.
class SharedPieces {
  public:
    SharedPieces(std::size_t pieces, const Work& work) : pieces_(pieces), work_(work) {}

    const std::atomic<bool>& left() const { return left_; }
    void leave() { left_ = true; }

    void take(PieceWorker& worker) {
        // Asked before a piece is taken: who waits is heard even where the others took them all.
        while (worker.goes_on(0)) {
            const std::size_t piece = next_++;
            if (piece >= pieces_) return;
            const WithinPiece within;
            work_(worker, piece);
        }
    }

    void help(int number) {
        try {
            PieceWorker worker(number, nullptr, 0, left_);
            take(worker);
        } catch (const Stopped&) {
            // A helper hears of a stop from those who had the work left.
            leave();
        } catch (...) {
            fail(std::current_exception());
        }
    }

    /// What the caller does of it. A stop of its own goes on to whoever gave the work; not so one that a
    /// failure of a helper has made.
    void take_part(PieceWorker& caller) {
        try {
            take(caller);
        } catch (const Stopped&) {
            if (!failed_) throw;
        }
    }

    /// After the last helper.
    void raise_failure() const {
        if (failure_) std::rethrow_exception(failure_);
    }

  private:
    void fail(std::exception_ptr failure) {
        const std::lock_guard lock(mutex_);
        failure_ = std::move(failure);
        failed_ = true;
        leave();
    }

    std::size_t pieces_;
    const Work& work_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> left_{false};
    std::atomic<bool> failed_{false};
    std::mutex mutex_;
    std::exception_ptr failure_;
};

/// Lets the helpers know when the caller is on its way out.
class LeaveAtEnd {
  public:
    explicit LeaveAtEnd(SharedPieces& shared) : shared_(shared) {}
    ~LeaveAtEnd() { shared_.leave(); }
    LeaveAtEnd(const LeaveAtEnd&) = delete;
    LeaveAtEnd& operator=(const LeaveAtEnd&) = delete;

  private:
    SharedPieces& shared_;
};

void take_alone(std::size_t pieces, Pacer& pacer, const Work& work) {
    const std::atomic<bool> left{false};
    PieceWorker worker(0, &pacer, 1, left);
    for (std::size_t piece = 0; piece < pieces; ++piece) work(worker, piece);
}

}  // namespace

bool PieceWorker::goes_on(double units) {
    if (pacer_) pacer_->done(units * speaks_for_);
    return !left_;
}

void for_each_piece(std::size_t pieces, int workers, Pacer& pacer, const Work& work) {
    if (workers <= 1) return take_alone(pieces, pacer, work);
    SharedPieces shared(pieces, work);
    {
        PoolHelpers helpers(workers - 1, [&](int number) { shared.help(number); });
        const LeaveAtEnd leave(shared);
        PieceWorker caller(0, &pacer, helpers.count() + 1, shared.left());
        shared.take_part(caller);
        helpers.take_back();
        while (!helpers.wait_for(wait_pause)) pacer.waiting();
    }
    shared.raise_failure();
}

}  // namespace anomalis

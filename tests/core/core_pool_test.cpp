#include "core/core_pool.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "core/core_shares.h"
#include "core/pacer.h"
#include "core/shared_pieces.h"
#include "core/threads.h"

namespace anomalis {
namespace {

class StoppingPacer : public Pacer {
  public:
    explicit StoppingPacer(int after) : left_(after) {}
    void done(double) override { turn(); }
    void waiting() override { turn(); }

  private:
    void turn() {
        if (--left_ < 0) throw Stopped();
    }
    int left_;
};

TEST(CorePool, PiecesAreDoneOnceEachWhateverTheWorkers) {
    for (const int workers : {1, 2, 3, 9}) {
        std::vector<std::atomic<int>> done(1000);
        for_each_piece(done.size(), workers, no_pace(), [&](PieceWorker& worker, std::size_t piece) {
            EXPECT_LT(worker.number(), workers);
            ++done[piece];
        });
        for (const auto& times : done) EXPECT_EQ(times, 1);
    }
}

TEST(CorePool, ThreadsAreKeptFromJobToJob) {
    std::mutex mutex;
    std::vector<std::thread::id> seen;
    for (int job = 0; job < 50; ++job) {
        PoolHelpers helpers(1, [&](int) {
            const std::lock_guard lock(mutex);
            seen.push_back(std::this_thread::get_id());
        });
        while (!helpers.wait_for(std::chrono::milliseconds(10))) {
        }
    }
    ASSERT_EQ(seen.size(), 50U);
    std::ranges::sort(seen);
    EXPECT_LT(std::unique(seen.begin(), seen.end()) - seen.begin(), 50);
}

TEST(CorePool, WorkOnItsThreadsAsksForNoMoreOfThem) {
    std::atomic<int> inner = 0;
    for_each_piece(8, 3, no_pace(), [&](PieceWorker& worker, std::size_t) {
        EXPECT_EQ(on_pool_thread(), worker.number() > 0);
        for_each_piece(5, on_pool_thread() ? worker_count(1e9, 5) : 1, no_pace(),
                       [&](PieceWorker& own, std::size_t) {
                           EXPECT_EQ(own.number(), 0);
                           ++inner;
                       });
        SharedWork shares;
        shares.last = 3;
        shares.core = [&](CoreShare& share) {
            while (share.next()) ++inner;
        };
        if (on_pool_thread())
            EXPECT_TRUE(share_among_cores(shares, no_pace()));
        else
            inner += 3;
    });
    EXPECT_EQ(inner, 8 * 8);
}

TEST(CorePool, WorkWithinAPieceIsDoneOnItsOwnThread) {
    for_each_piece(8, 3, no_pace(), [](PieceWorker&, std::size_t) { EXPECT_EQ(worker_count(1e9, 5), 1); });
    limit_threads(4);
    EXPECT_EQ(worker_count(1e9, 5), 4) << "and outside as before";
    limit_threads(0);
}

TEST(CorePool, AFailureDeepInAPieceIsRaisedAndNotTheStopThatItMakesElsewhere) {
    for (int turn = 0; turn < 20; ++turn)
        EXPECT_THROW(for_each_piece(50, 3, no_pace(),
                                    [](PieceWorker& worker, std::size_t piece) {
                                        PiecePacer pacer(worker);
                                        if (piece == 7) throw std::runtime_error("seventh");
                                        for (int i = 0; i < 100; ++i) pacer.done(1);
                                    }),
                     std::runtime_error);
}

TEST(CorePool, AFailureOfAPieceIsRaisedToWhoGaveTheWork) {
    for (const int workers : {1, 4})
        EXPECT_THROW(for_each_piece(100, workers, no_pace(),
                                    [](PieceWorker&, std::size_t piece) {
                                        if (piece == 37) throw std::runtime_error("piece 37");
                                    }),
                     std::runtime_error);
}

TEST(CorePool, AStopLeavesNoThreadAtWork) {
    std::atomic<int> at_work = 0;
    StoppingPacer pacer(3);
    EXPECT_THROW(for_each_piece(100000, 4, pacer,
                                [&](PieceWorker& worker, std::size_t) {
                                    ++at_work;
                                    std::this_thread::sleep_for(std::chrono::microseconds(50));
                                    --at_work;
                                    worker.goes_on(1);
                                }),
                 Stopped);
    EXPECT_EQ(at_work, 0);
}

TEST(CorePool, SharesAreLeftWhenTheyAreAskedTo) {
    std::atomic<int> begun = 0;
    SharedWork work;
    work.last = 1000000;
    work.cores = 3;
    work.core = [&](CoreShare& share) {
        while (share.next()) {
            ++begun;
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            share.pacer().done(1e5);
        }
    };
    work.leave = [&] { return begun > 50; };
    EXPECT_FALSE(share_among_cores(work, no_pace()));
    EXPECT_LT(begun, 1000000);
    const int at_end = begun;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(begun, at_end);
}

TEST(CorePool, SmallWorkStaysWithItsCaller) {
    EXPECT_EQ(worker_count(1e5, 100), 1);
    EXPECT_EQ(worker_count(1e12, 1), 1);
    EXPECT_EQ(worker_count(1e12, 100, 7), 7);
}

}  // namespace
}  // namespace anomalis

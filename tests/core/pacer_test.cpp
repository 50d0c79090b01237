#include "core/pacer.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/scripted_prompts.h"
#include "support/step_pacer.h"

namespace anomalis {

TEST(Pacer, takes_a_turn_for_each_stretch_of_work_and_tells_how_much_it_was) {
    StepPacer pacer(0, 100);
    for (int i = 0; i < 9; ++i) pacer.done(11);
    EXPECT_EQ(pacer.turns, 0);
    pacer.done(11);
    EXPECT_EQ(pacer.turns, 1);
    EXPECT_EQ(pacer.longest, 110);
    pacer.done(1000);
    EXPECT_EQ(pacer.turns, 2) << "a long piece is one turn";
    EXPECT_EQ(pacer.units, 1110);
    pacer.waiting();
    EXPECT_EQ(pacer.turns, 3) << "who waits for other threads serves as well";
}

TEST(Pacer, leaves_the_work_in_the_turn_that_asks_for_it) {
    StepPacer pacer(2, 100);
    pacer.done(100);
    EXPECT_THROW(pacer.done(100), Stopped);
    StepPacer waiting(1);
    EXPECT_THROW(waiting.waiting(), Stopped);
}

TEST(Pacer, of_a_watched_calculation_asks_the_watcher_from_its_beginning_to_its_end) {
    struct Watcher : CalculationWatcher {
        std::string story;
        void begins(double units) override { story += "begins " + std::to_string(std::lround(units)); }
        bool turn(double) override {
            story += ", turn";
            return story.size() > 25;
        }
        void ended() override { story += ", ended"; }
    } watcher;
    ScriptedPrompts prompts;
    prompts.set_watcher(&watcher);
    const auto work = [&] {
        WatchedCalculation calculation(prompts, 70);
        for (int i = 0; i < 10; ++i) calculation.done(TurnPacer::usual_turn);
    };
    EXPECT_THROW(work(), Stopped);
    EXPECT_EQ(watcher.story, "begins 70, turn, turn, turn, ended");
    EXPECT_EQ(prompts.yields, 0) << "serving is the watcher's";
}

TEST(Pacer, that_nobody_watches_lets_the_event_loop_run_and_never_leaves_by_itself) {
    ScriptedPrompts prompts;
    WatchedCalculation pacer(prompts, 0);
    for (int i = 0; i < 10; ++i) pacer.done(TurnPacer::usual_turn);
    EXPECT_EQ(prompts.yields, 10);
}

TEST(Pacer, for_work_that_nobody_waits_for_does_nothing) {
    no_pace().done(1e300);
    no_pace().waiting();
}

}  // namespace anomalis

// A refresh that the person has left.

#include <gtest/gtest.h>

#include "core/pacer.h"
#include "core/threads.h"
#include "inversion/line_session.h"
#include "model/refresh_model.h"
#include "support/stale_body.h"

namespace anomalis::model {
namespace {

/// Leaves the calculation at a turn; 0 never does.
struct Leaving : CalculationWatcher {
    int turns = 0, leave_at = 0, ends = 0;
    double expected = 0;
    void begins(double units) override {
        expected = units;
        turns = 0;
    }
    bool turn(double) override { return ++turns == leave_at; }
    void ended() override { ++ends; }
};

/// Turns can be counted where no other core takes a part.
struct OneCore {
    OneCore() { limit_threads(1); }
    ~OneCore() { limit_threads(0); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;
};

}  // namespace

TEST(RefreshModel, that_is_left_keeps_rows_and_misfit_and_is_a_failure_without_a_message) {
    inversion::LineSession line;
    line.add_body(thick_sheet);
    Workspace& w = line.workspace();
    const MisfitPair before = line.refresh();
    const ChannelTable mag = w.mag.data, grav = w.grav.data;

    ModelBody& body = w.body(1);
    body.type = pipe;
    body.num_sectors = 20000;
    body.length.value = 300;
    body.dip.value = 0;
    Leaving watcher;
    watcher.leave_at = 2;
    line.prompts.set_watcher(&watcher);
    EXPECT_THROW(refresh_model(line.session), CalculationStopped);
    EXPECT_GT(watcher.expected, 1e7);
    EXPECT_EQ(watcher.turns, 2);
    EXPECT_EQ(watcher.ends, 1);
    EXPECT_EQ(w.mag.data, mag);
    EXPECT_EQ(w.grav.data, grav);
    EXPECT_TRUE(line.prompts.messages.empty());
    EXPECT_FALSE(body.mag_response_valid && body.grav_response_valid);

    watcher.leave_at = 0;
    EXPECT_NE(refresh_model(line.session), before);
    EXPECT_TRUE(body.mag_response_valid && body.grav_response_valid);
    EXPECT_EQ(watcher.ends, 2);
    EXPECT_NE(w.mag.data, mag);
}

TEST(RefreshModel, that_is_left_among_the_filters_keeps_all_rows_of_before) {
    constexpr int stations = 50000;
    inversion::LineSession line(stations);
    Workspace& w = line.workspace();
    w.mag.float_base = 1;
    w.processing.display_total_gradient = 1;
    line.add_body(thick_sheet);
    const OneCore one;
    const MisfitPair before = line.refresh();
    const ChannelTable mag = w.mag.data;
    const float base = w.mag.base, calc_base = w.mag.calc_base;

    w.body(1).susc.value *= 2;
    w.processing.smooth_filter_type = 1;
    w.processing.residual_filter_width = 30000;
    w.processing.vg_filter_width = 1000;
    Leaving watcher;
    line.prompts.set_watcher(&watcher);
    const Workspace changed = w;
    refresh_model(line.session);
    const int turns = watcher.turns;
    EXPECT_GE(turns, 2) << "or there is nothing to leave";
    const ChannelTable fresh = w.mag.data;
    for (const int turn : {1, turns}) {
        w = changed;
        watcher.leave_at = turn;
        EXPECT_THROW(refresh_model(line.session), CalculationStopped) << turn;
        EXPECT_EQ(w.mag.data, mag) << turn;
        EXPECT_EQ(w.mag.base, base);
        EXPECT_EQ(w.mag.calc_base, calc_base);
        watcher.leave_at = 0;
        EXPECT_NE(refresh_model(line.session), before);
        EXPECT_EQ(w.mag.data, fresh) << turn;
    }
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST(RefreshModel, that_is_left_among_the_filters_of_a_step_puts_back_what_the_step_has_written) {
    constexpr int stations = 20000;
    inversion::LineSession line(stations);
    Workspace& w = line.workspace();
    w.mag.regional_degree = 2;
    w.mag.float_base = w.grav.float_base = 1;
    w.processing.vg_filter_width = 2000;
    line.add_body(thick_sheet).length.value = 0;
    line.refresh();
    const Workspace before = w;
    ASSERT_TRUE(w.mag.observed_filtered && w.mag.calculated_filtered);

    w.body(1).dip.value += 10;
    struct : Leaving {
        bool turn(double units) override { return units >= TurnPacer::usual_turn && leave_at > 0; }
    } watcher;  // which leaves no endless sheet at so few stations
    watcher.leave_at = 1;
    line.prompts.set_watcher(&watcher);
    EXPECT_THROW(refresh_model(line.session), CalculationStopped);
    ASSERT_TRUE(w.body(1).mag_response_valid) << "or it was not left among the filters";
    for (const int code : {channel_mag, channel_grav}) {
        const Channel& now = w.channel(code);
        const Channel& then = before.channel(code);
        EXPECT_EQ(now.data, then.data) << code;
        EXPECT_EQ(now.work, then.work) << code;
        EXPECT_EQ(now.summed, then.summed) << code;
        EXPECT_EQ(now.calc_base, then.calc_base) << code;
        EXPECT_EQ(now.regional.coefficients, then.regional.coefficients) << code;
        EXPECT_EQ(now.observed_filtered, then.observed_filtered) << code;
    }
    watcher.leave_at = 0;
    const MisfitPair misfit = refresh_model(line.session);
    inversion::LineSession fresh(stations);
    fresh.workspace() = w;
    fresh.workspace().known_settings.reset();
    EXPECT_EQ(fresh.refresh(), misfit);
    EXPECT_EQ(fresh.workspace().mag.data, w.mag.data);
}

}  // namespace anomalis::model

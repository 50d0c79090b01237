#include "flow/limit_bars.h"

#include <gtest/gtest.h>

#include "flow/desk_line.h"

namespace anomalis::flow {

namespace {

/// A line of 1000 m in a strip of 1000 twips: one twip a metre.
class LimitBarsTest : public ::testing::Test {
  protected:
    LimitBarsTest() {
        line.refresh();
        bars.set_bar_width(40);
        show(1, 1000, 500);
    }
    void show(double zoom, double span, double centre) {
        bars.update_inversion_limit_display({0, 1000}, {zoom, span, centre});
    }
    void window(int first, int last) {
        w.first_station = first;
        w.last_station = last;
        w.first_distance = w.distances[first];
        w.last_distance = w.distances[last];
        show(1, 1000, 500);
    }

    inversion::LineSession line;
    Workspace& w = line.session.workspace;
    LimitBars bars{w, line.prompts};
};

/// The same line before a desk.
class DraggedBars : public DeskLine {
  protected:
    DraggedBars() {
        line.refresh();
        desk.bars().set_bar_width(40);
        desk.bars().update_inversion_limit_display({0, 1000}, {1, 1000, 500});
    }
};

}  // namespace

TEST_F(LimitBarsTest, over_the_whole_line_the_bars_stand_at_the_edges) {
    EXPECT_TRUE(bars.bar(0).in_use && bars.bar(1).in_use);
    EXPECT_EQ(bars.bar(0).left, -30);
    EXPECT_EQ(bars.bar(1).left, 1000 - 40 - 30);
}

TEST_F(LimitBarsTest, inside_the_line_they_stand_at_their_distances) {
    window(21, 71);
    EXPECT_DOUBLE_EQ(bars.bar(0).left, 200 - 20);
    EXPECT_DOUBLE_EQ(bars.bar(1).left, 700 - 40 - 30);
}

TEST_F(LimitBarsTest, zoomed_in_they_follow_the_visible_span) {
    window(21, 71);
    show(2, 500, 450);
    EXPECT_DOUBLE_EQ(bars.bar(0).left, (200.0 - 200) / 500 * 1000 - 20);
    EXPECT_DOUBLE_EQ(bars.bar(1).left, (700.0 - 200) / 500 * 1000 - 40 - 30);
}

TEST_F(LimitBarsTest, a_limit_out_of_sight_takes_its_bar_out_of_use_and_leaves_it) {
    window(21, 71);
    const double left = bars.bar(0).left;
    show(4, 250, 400);
    EXPECT_FALSE(bars.bar(0).in_use);
    EXPECT_FALSE(bars.bar(1).in_use);
    EXPECT_EQ(bars.bar(0).left, left);
    show(4, 250, 326);
    EXPECT_TRUE(bars.bar(0).in_use) << "one metre outside still shows";
    show(1, 250, 400);
    EXPECT_TRUE(bars.bar(0).in_use) << "without zoom a bar is never out of use";
}

TEST_F(LimitBarsTest, without_stations_nothing_moves) {
    window(21, 71);
    const double left = bars.bar(0).left;
    w.station_count = 0;
    bars.update_inversion_limit_display({0, 500}, {1, 1000, 500});
    EXPECT_EQ(bars.bar(0).left, left);
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST_F(LimitBarsTest, a_span_of_0_is_told) {
    window(21, 71);
    show(1, 0, 300);
    EXPECT_TRUE(
        line.prompts.told("An error occurred while updating the inversion limits display: Division by zero"));
}

TEST_F(LimitBarsTest, a_drag_moves_the_first_station) {
    bars.mouse_down(0, 5);
    EXPECT_TRUE(bars.mouse_move(0, 5 + 310));  // centre from -10 to 300
    EXPECT_EQ(w.first_station, 31);
    EXPECT_DOUBLE_EQ(w.first_distance, 300);
    EXPECT_DOUBLE_EQ(bars.bar(0).left, 280);
    EXPECT_TRUE(bars.moved());
}

TEST_F(LimitBarsTest, a_drag_moves_the_last_station) {
    bars.mouse_down(1, 0);
    bars.mouse_move(1, -350);  // centre from 950 to 600
    EXPECT_EQ(w.last_station, 61);
    EXPECT_DOUBLE_EQ(w.last_distance, 600);
}

TEST_F(LimitBarsTest, a_centre_beyond_the_line_takes_its_end) {
    window(21, 71);
    bars.mouse_down(0, 0);
    bars.mouse_move(0, -5000);
    EXPECT_EQ(w.first_station, 1);
    bars.mouse_up(0);
    bars.mouse_down(1, 0);
    bars.mouse_move(1, 5000);
    EXPECT_EQ(w.last_station, 101);
}

TEST_F(LimitBarsTest, a_bar_stops_20_short_of_the_other) {
    window(21, 71);
    const double other = bars.bar(1).left;
    bars.mouse_down(0, 0);
    const double allowed = other - 20 - 40 - bars.bar(0).left;
    bars.mouse_move(0, allowed + 1);
    EXPECT_EQ(w.first_station, 21) << "dropped";
    bars.mouse_move(0, 2000);
    EXPECT_EQ(w.first_station, 21) << "nor across it";
    bars.mouse_move(0, allowed);
    EXPECT_GT(w.first_station, 50);
    EXPECT_LE(bars.bar(0).left + 40, other - 20 + 10);
}

TEST_F(LimitBarsTest, the_last_bar_stops_20_right_of_the_first) {
    window(21, 71);
    bars.mouse_down(1, 0);
    bars.mouse_move(1, bars.bar(0).left + 40 + 19 - bars.bar(1).left);
    EXPECT_EQ(w.last_station, 71);
    bars.mouse_move(1, bars.bar(0).left + 40 + 20 - bars.bar(1).left);
    EXPECT_LT(w.last_station, 71);
    EXPECT_GT(w.last_station, w.first_station);
}

TEST_F(LimitBarsTest, stations_may_not_meet) {
    // Narrow bars on a short visible span can come closer than a station.
    window(50, 52);
    bars.set_bar_width(1);
    show(1, 1000000, 500);
    bars.mouse_down(0, 0);
    bars.mouse_move(0, 0.5);
    EXPECT_LT(w.first_station, w.last_station);
}

TEST_F(LimitBarsTest, nothing_moves_without_a_press_or_a_change) {
    EXPECT_FALSE(bars.mouse_move(0, 300));
    EXPECT_EQ(w.first_station, 1);
    bars.mouse_down(0, 10);
    EXPECT_FALSE(bars.mouse_move(0, 10));
    EXPECT_FALSE(bars.moved());
}

TEST_F(LimitBarsTest, a_bar_out_of_use_cannot_be_dragged) {
    window(21, 71);
    show(4, 250, 400);
    bars.mouse_down(0, 0);
    EXPECT_FALSE(bars.dragging());
    bars.mouse_move(0, 100);
    EXPECT_EQ(w.first_station, 21);
}

TEST_F(LimitBarsTest, a_drag_ends_once) {
    EXPECT_FALSE(bars.mouse_up(0));
    bars.mouse_down(0, 0);
    EXPECT_TRUE(bars.mouse_up(0));
    EXPECT_FALSE(bars.dragging());
    EXPECT_FALSE(bars.mouse_up(0));
}

TEST_F(DraggedBars, a_move_draws_the_charts_and_forgets_the_best_misfit) {
    inversion.best_misfit = {1, 1};
    desk.press_bar(0, 5);
    desk.move_bar(0, 5);
    EXPECT_EQ(chart_draws, 0) << "the same place";
    desk.move_bar(0, 5 + 310);
    EXPECT_EQ(w.first_station, 31);
    EXPECT_EQ(chart_draws, edit::model_chart_count);
    EXPECT_TRUE(calls.empty()) << "nothing is calculated";
    EXPECT_EQ(inversion.best_misfit[0], unset);
}

TEST_F(DraggedBars, nothing_moves_while_a_run_goes_on) {
    line.sheet_off_by(20000);
    desk.press_bar(0, 10);
    bool seen = false;
    on_iteration = [&](int) {
        seen = true;
        desk.move_bar(0, 300);
        EXPECT_EQ(w.first_station, 1);
    };
    desk.type_max_iterations("1");
    desk.command_invert(1);
    EXPECT_TRUE(seen);
    desk.release_bar(0);
    on_iteration = [&](int) { desk.press_bar(0, 10); };
    desk.command_invert(1);
    EXPECT_FALSE(desk.bars().dragging());
}

TEST_F(DraggedBars, release_filters_anew_because_base_levels_hang_on_the_window) {
    desk.press_bar(0, 0);
    desk.move_bar(0, 310);
    line.session.model_changed = false;
    w.mag.base = 7;  // the filtered rows do not know it
    const float before = w.mag.data(10, row_residual, stage_observed);
    desk.release_bar(0);
    EXPECT_FALSE(desk.bars().dragging());
    EXPECT_NE(w.mag.data(10, row_residual, stage_observed), before);
    EXPECT_EQ(calls, std::vector<std::string>{"model"});
    EXPECT_TRUE(line.session.model_changed);
    desk.release_bar(0);
    EXPECT_EQ(calls.size(), 1U);
}

TEST_F(DraggedBars, a_press_alone_changes_no_model) {
    line.session.model_changed = false;
    desk.press_bar(0, 0);
    desk.release_bar(0);
    EXPECT_FALSE(line.session.model_changed);
}

}  // namespace anomalis::flow

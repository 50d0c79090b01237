#include "edit/zoom.h"

#include <gtest/gtest.h>

#include "edit/line_sample.h"

namespace anomalis::edit {

namespace {

struct Zoomed : LineSample {
    Zoomed() {
        load();
        view().charts[chart_mag] = {-100, 300, 400, 100};
        view().charts[chart_section] = {-500, 100, 600, -200};
    }
    ViewState& view() { return workbench.view; }
    ChartWindow& window(int chart) { return view().charts.at(static_cast<std::size_t>(chart)); }
    void zoom(float factor) { choose_zoom(workspace(), view(), factor, prompts); }
};

}  // namespace

TEST(Zoom, a_load_shows_the_whole_line) {
    Zoomed sample;
    EXPECT_EQ(sample.view().zoom_factor, 1);
    EXPECT_EQ(sample.view().profile_window_min, 0);
    EXPECT_EQ(sample.view().window_span, LineSample::length);
    EXPECT_EQ(sample.view().window_centre, LineSample::length / 2);
    EXPECT_EQ(sample.view().pan_limit, 0);
}

TEST(Zoom, the_pan_bar_reaches_both_ends_of_the_line_and_not_beyond) {
    Zoomed sample;
    sample.zoom(4);
    EXPECT_EQ(sample.view().pan_limit, 80);
    EXPECT_FLOAT_EQ(sample.view().window_span, 625);
    pan_window(sample.view(), 80);
    EXPECT_FLOAT_EQ(sample.view().window_centre + sample.view().window_span / 2, 2500);
    pan_window(sample.view(), -80);
    EXPECT_FLOAT_EQ(sample.view().window_centre - sample.view().window_span / 2, 0);
    pan_window(sample.view(), 4000);
    EXPECT_EQ(sample.view().window_pan, 80);
}

TEST(Zoom, another_factor_keeps_the_centre_where_it_can) {
    Zoomed sample;
    sample.zoom(4);
    pan_window(sample.view(), 40);
    const float centre = sample.view().window_centre;
    sample.zoom(8);
    EXPECT_NEAR(sample.view().window_centre, centre, 2500.0 / 160);
    pan_window(sample.view(), sample.view().pan_limit);
    sample.zoom(2);
    EXPECT_FLOAT_EQ(sample.view().window_centre + sample.view().window_span / 2, 2500)
        << "the end stays in view";
    sample.zoom(1);
    EXPECT_EQ(sample.view().window_pan, 0);
    EXPECT_EQ(sample.view().window_centre, 1250);
}

TEST(Zoom, without_a_line_there_is_nothing_to_zoom) {
    Zoomed sample;
    drop_stations(sample.workspace());
    sample.zoom(4);
    EXPECT_EQ(sample.view().zoom_factor, 1);
    EXPECT_EQ(sample.view().window_span, 0);
    EXPECT_EQ(sample.view().pan_limit, 0);
    EXPECT_TRUE(sample.prompts.messages.empty());
}

TEST(Zoom, vertical_steps_in_and_out_again_give_the_same_limits) {
    Zoomed sample;
    ChartWindow& window = sample.window(chart_mag);
    step_vertical_zoom(sample.view(), chart_mag, 1);
    EXPECT_FLOAT_EQ(window.chart_span, 320);
    EXPECT_FLOAT_EQ(window.chart_centre, 100);
    EXPECT_FALSE(scales_itself(window));
    step_vertical_zoom(sample.view(), chart_mag, -1);
    EXPECT_FLOAT_EQ(window.chart_span, 400);
    EXPECT_TRUE(scales_itself(window));
}

TEST(Zoom, vertical_steps_end_at_1_and_8) {
    Zoomed sample;
    for (int i = 0; i < 20; ++i) step_vertical_zoom(sample.view(), chart_mag, 1);
    EXPECT_EQ(sample.window(chart_mag).chart_zoom_index, 8);
    EXPECT_FLOAT_EQ(sample.window(chart_mag).chart_span, 400.0F / 8);
    for (int i = 0; i < 20; ++i) step_vertical_zoom(sample.view(), chart_mag, 0);
    EXPECT_EQ(sample.window(chart_mag).chart_zoom_index, 1);
}

TEST(Zoom, the_section_keeps_its_top) {
    Zoomed sample;
    ChartWindow& window = sample.window(chart_section);
    for (const int direction : {1, 1, 1, -1}) {
        step_vertical_zoom(sample.view(), chart_section, direction);
        EXPECT_FLOAT_EQ(window.chart_centre + window.chart_span / 2, 100);
    }
}

TEST(Zoom, a_pan_step_moves_a_quarter_and_stops_automatic_scaling) {
    Zoomed sample;
    step_vertical_pan(sample.view(), chart_mag, 1);
    EXPECT_FLOAT_EQ(sample.window(chart_mag).chart_centre, 0);
    EXPECT_FALSE(scales_itself(sample.window(chart_mag)));
    step_vertical_pan(sample.view(), chart_mag, -1);
    EXPECT_FLOAT_EQ(sample.window(chart_mag).chart_centre, 100);
    reset_view(sample.workspace(), sample.view(), sample.prompts);
    EXPECT_TRUE(scales_itself(sample.window(chart_mag)));
}

TEST(Zoom, a_zoom_by_hand_tells_its_factor_and_pans_on) {
    Zoomed sample;
    const double whole = sample.view().profile_window_max;
    EXPECT_FALSE(shown_window(sample.view(), {}).by_hand);
    EXPECT_EQ(shown_window(sample.view(), {}).pan_limit, 0);
    // The second quarter of the line, by hand.
    const HandZoom hand{4, 0.375};
    const ShownWindow shown = shown_window(sample.view(), hand);
    EXPECT_TRUE(shown.by_hand);
    EXPECT_DOUBLE_EQ(shown.factor, 4);
    EXPECT_EQ(shown.pan_limit, 80);
    EXPECT_EQ(shown.pan, -27);
    EXPECT_NEAR(pan_hand_zoom(sample.view(), hand, 80).centre, 0.875, 1e-6);
    EXPECT_NEAR(pan_hand_zoom(sample.view(), hand, -80).centre, 0.125, 1e-6);
    EXPECT_EQ(sample.view().window_span, whole) << "the window is the whole line";
}

TEST(Zoom, a_zoom_by_hand_inside_a_window_takes_the_window_along) {
    Zoomed sample;
    sample.zoom(2);
    const double whole = sample.view().profile_window_max;
    HandZoom hand{3, 0.5};
    EXPECT_DOUBLE_EQ(shown_window(sample.view(), hand).factor, 6);
    EXPECT_EQ(shown_window(sample.view(), hand).pan_limit, 120);
    for (const int pan : {-120, -77, 0, 31, 119, 120}) {
        hand = pan_hand_zoom(sample.view(), hand, pan);
        EXPECT_EQ(shown_window(sample.view(), hand).pan, pan);
        const double centre = sample.view().window_centre + (hand.centre - 0.5) * sample.view().window_span;
        EXPECT_NEAR(centre, whole / 2 + whole * (1 - 1 / 6.0) * pan / 240, whole * 1e-5);
        EXPECT_GE(hand.centre, 1 / 6.0 - 1e-5) << "inside the window";
        EXPECT_LE(hand.centre, 5 / 6.0 + 1e-5);
    }
}

}  // namespace anomalis::edit

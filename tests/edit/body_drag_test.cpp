#include "edit/body_drag.h"

#include <cmath>
#include <gtest/gtest.h>

#include "edit/body_sample.h"
#include "edit/change.h"
#include "edit/parameter_bars.h"
#include "edit/pipe_tie.h"
#include "model/refresh_model.h"

namespace anomalis::edit {

namespace {

struct Dragged : LineSample {
    explicit Dragged(std::int32_t type = thick_sheet) {
        load();
        add_body(1260, 60, type);
        add_body(400, 20);
        workbench.view.current_body = 1;
        start_history(workbench);
    }
    ModelBody& body() { return workspace().body(1); }
};

using Wanted = std::vector<ParameterValue>;

}  // namespace

TEST(BodyDrag, every_setting_starts_from_where_the_hand_took_hold) {
    Dragged sample;
    BodyDrag hand(sample.workbench);
    EXPECT_TRUE(hand.set(Wanted{{param_distance, 1300}, {param_width, 40}}));
    EXPECT_FALSE(hand.set(Wanted{{param_distance, 1300}, {param_width, 40}}));
    EXPECT_TRUE(hand.set(Wanted{{param_distance, 1310}}));
    EXPECT_EQ(sample.body().width.value, 100);
    EXPECT_EQ(sample.body().east, 501310);
    EXPECT_TRUE(hand.moved());
    EXPECT_TRUE(hand.set({}));
    EXPECT_FALSE(hand.moved());
    EXPECT_EQ(sample.workbench.history.steps(), 0U);
}

TEST(BodyDrag, all_of_it_is_one_step) {
    Dragged sample;
    BodyDrag hand(sample.workbench);
    for (int i = 1; i <= 5; ++i) hand.set(Wanted{{param_distance, 1260.0 + i}, {param_top, 60.0 - i}});
    hand.keep("place");
    EXPECT_EQ(sample.workbench.history.steps(), 1U);
    EXPECT_EQ(sample.workbench.history.undo_name(), "place of body 1");
    BodyDrag idle(sample.workbench);
    idle.set({});
    idle.keep("place");
    EXPECT_EQ(sample.workbench.history.steps(), 1U);
    undo_change(sample.workbench);
    EXPECT_EQ(sample.body().distance.value, 1260);
    EXPECT_EQ(sample.body().top.value, 60);
}

TEST(BodyDrag, given_up_it_leaves_every_bit_as_it_was) {
    Dragged sample;
    sample.body().distance = {1234.5678F, 0, 1000, 1500};
    sample.body().east = 501234.56789012345;
    const ModelBody before = shape_of(sample.body());
    BodyDrag hand(sample.workbench);
    hand.set(Wanted{{param_distance, 900}, {param_top, -300}, {param_dip, 30}, {param_length, 55}});
    hand.give_up();
    for (const BodyParameter& row : body_parameters())
        EXPECT_EQ(sample.body().*row.slot, before.*row.slot) << row.name;
    EXPECT_EQ(sample.body().east, before.east);
    EXPECT_EQ(sample.body().north, before.north);
    EXPECT_EQ(sample.workbench.history.steps(), 0U);
}

TEST(BodyDrag, values_stay_inside_what_a_person_may_give) {
    Dragged sample;
    BodyDrag hand(sample.workbench);
    hand.set(Wanted{{param_dip, 200}, {param_width, -5}, {param_strike, 361}});
    EXPECT_EQ(sample.body().dip.value, 180);
    EXPECT_EQ(sample.body().width.value, 0);
    EXPECT_EQ(sample.body().strike.value, 360);
    hand.set(Wanted{{param_top, std::nan("")}});
    EXPECT_EQ(sample.body().top.value, 60);
}

TEST(BodyDrag, what_is_fixed_and_limited_for_the_fit_is_free_for_the_hand) {
    Dragged sample;
    sample.body().vary = 0;
    sample.body().top = {60, 0, 59, 61};
    BodyDrag hand(sample.workbench);
    EXPECT_TRUE(hand.set(Wanted{{param_top, -40}}));
    EXPECT_EQ(sample.body().top.value, -40);
    EXPECT_EQ(sample.body().top.vary, 0);
    EXPECT_EQ(sample.body().top.max, 61);
}

TEST(BodyDrag, a_tied_pipe_ends_as_a_bar_would_leave_it_however_the_hand_went) {
    Dragged by_bar(pipe), by_hand(pipe);
    for (Dragged* sample : {&by_bar, &by_hand}) {
        sample->workspace().display.tie_pipe_depth_susc = true;
        sample->workspace().display.tie_factor = 3;
    }
    tie_susceptibility(by_bar.workbench, by_bar.body(), -30);
    BodyDrag hand(by_hand.workbench);
    for (const double top : {58.0, 20.0, 71.5, 44.0, 30.0})
        hand.set(Wanted{{param_distance, 1400}, {param_top, top}});
    EXPECT_EQ(by_hand.body().susc.value, by_bar.body().susc.value);
    EXPECT_NE(by_hand.body().susc.value, hand.start().susc.value);
    hand.set(Wanted{{param_distance, 1400}, {param_top, 60}});
    EXPECT_EQ(by_hand.body().susc.value, hand.start().susc.value);
}

TEST(BodyDrag, whether_a_fit_stands_is_asked_anew_while_the_body_is_elsewhere) {
    Dragged sample;
    BodyDrag hand(sample.workbench);
    sample.workbench.fit_stands = true;
    sample.workbench.ensemble_stands = true;
    hand.set(Wanted{{param_top, -40}});
    EXPECT_FALSE(sample.workbench.fit_stands.has_value());
    EXPECT_FALSE(sample.workbench.ensemble_stands.has_value());
    sample.workbench.fit_stands = false;
    hand.give_up();
    EXPECT_FALSE(sample.workbench.fit_stands.has_value());
}

}  // namespace anomalis::edit

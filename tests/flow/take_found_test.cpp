#include "flow/take_found.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "core/model_mark.h"
#include "edit/body_palette.h"
#include "edit/body_sample.h"
#include "edit/change.h"
#include "inversion/find/find_bodies.h"
#include "model/refresh_model.h"
#include "support/fresh_load.h"

namespace anomalis::flow {

namespace {

/// A line with three bodies, calculated, and a model that was found beside them.
struct FoundOnLine : edit::BodySample {
    FoundOnLine() {
        reset_calculated_data(workspace(), prompts);
        model::refresh_model(session);
        edit::start_history(workbench);
        const Workspace& w = workspace();
        for (int i = 1; i <= w.body_count; ++i) found.bodies.push_back(w.body(i));
        for (const float distance : {300.0F, 1500.0F}) {
            ModelBody& body = found.bodies.emplace_back(w.body(1));
            body = ModelBody();
            body.type = thick_sheet;
            body.distance.value = distance;
            body.top.value = 30;
            body.dip.value = 75;
            body.width.value = 40;
            body.susc.value = 8000;
            ++found.found;
        }
        found.mag_degree = 2;
        found.grav_degree = 3;
        found.record.channel = channel_mag;
        found.record.outcome = "found";
    }
    inversion::FoundModel found;
};

}  // namespace

TEST(TakeFound, the_workspace_is_as_fitted_and_equals_a_fresh_load) {
    FoundOnLine line;
    take_found(line.workspace(), line.found);
    EXPECT_TRUE(as_fitted(line.workspace()));
    model::refresh_model(line.session);
    EXPECT_TRUE(as_fitted(line.workspace()));
    EXPECT_EQ(line.workspace().body_count, 5);
    EXPECT_EQ(line.workspace().fit->outcome, "found");
    EXPECT_EQ(difference_from_fresh_load(line.workspace()), "");
    line.body(5).dip.value += 1;
    EXPECT_FALSE(as_fitted(line.workspace()));
}

TEST(TakeFound, bodies_that_stayed_keep_their_responses_and_moved_ones_do_not) {
    FoundOnLine line;
    line.found.bodies[1].distance.value += 30;
    const double east = line.body(2).east;
    take_found(line.workspace(), line.found);
    EXPECT_EQ(line.cleared(1), edit::Cleared(false, false));
    EXPECT_EQ(line.cleared(2), edit::Cleared(true, true));
    EXPECT_EQ(line.cleared(4), edit::Cleared(true, true));
    EXPECT_NEAR(line.body(2).east, east + 30, 1e-6);
}

TEST(TakeFound, new_bodies_get_a_place_on_the_map_a_name_and_colours_that_differ) {
    FoundOnLine line;
    line.body(1).colour = edit::body_palette()[0];
    line.body(2).colour = edit::body_palette()[1];
    line.body(3).colour = edit::body_palette()[2];
    for (int i = 1; i <= 3; ++i) line.found.bodies[static_cast<std::size_t>(i - 1)] = line.body(i);
    line.found.bodies[4].name = "Dolerite";
    take_found(line.workspace(), line.found);
    EXPECT_EQ(line.body(4).name, "Body 4");
    EXPECT_EQ(line.body(5).name, "Dolerite");
    EXPECT_EQ(line.body(4).colour, edit::body_palette()[3]);
    EXPECT_EQ(line.body(5).colour, edit::body_palette()[4]);
    EXPECT_DOUBLE_EQ(line.body(4).east, 500300);
    EXPECT_DOUBLE_EQ(line.body(4).north, 7000000);
}

TEST(TakeFound, the_regional_of_a_channel_that_was_not_looked_at_stays) {
    FoundOnLine line;
    line.workspace().grav.regional_degree = 1;
    take_found(line.workspace(), line.found);
    EXPECT_EQ(line.workspace().mag.regional_degree, 2);
    EXPECT_EQ(line.workspace().grav.regional_degree, 1);
    line.found.record.channel = channel_joint;
    take_found(line.workspace(), line.found);
    EXPECT_EQ(line.workspace().grav.regional_degree, 3);
}

TEST(TakeFound, what_magnetics_find_leaves_the_curve_of_the_gravity) {
    FoundOnLine line;
    ASSERT_TRUE(line.workspace().has_grav());
    for (ModelBody& body : line.found.bodies) body.density.value = 2.67F;
    take_found(line.workspace(), line.found);
    EXPECT_FLOAT_EQ(line.body(3).density.value, 2.67F) << "one that was there";
    EXPECT_EQ(line.body(4).density.value, 0);
    EXPECT_EQ(line.body(5).density.value, 0);
    line.found.record.channel = channel_joint;
    take_found(line.workspace(), line.found);
    EXPECT_FLOAT_EQ(line.body(4).density.value, 2.67F);
}

TEST(TakeFound, models_can_be_flipped_through_and_one_step_takes_it_back) {
    FoundOnLine line;
    inversion::FoundModel other = line.found;
    other.bodies.pop_back();
    --other.found;
    other.mag_degree = 0;
    take_found(line.workspace(), line.found);
    take_found(line.workspace(), other);
    EXPECT_EQ(line.workspace().body_count, 4);
    EXPECT_TRUE(as_fitted(line.workspace()));
    edit::note_change(line.workbench, {"find bodies", "", true});
    EXPECT_TRUE(edit::undo_change(line.workbench).moved);
    model::refresh_model(line.session);
    EXPECT_EQ(line.workspace().body_count, 3);
    EXPECT_EQ(line.workspace().mag.regional_degree, no_regional);
    EXPECT_EQ(difference_from_fresh_load(line.workspace()), "");
    EXPECT_FALSE(edit::undo_change(line.workbench).moved);
}

TEST(TakeFound, more_bodies_than_there_is_room_for_make_room) {
    FoundOnLine line;
    const ModelBody last = line.found.bodies.back();
    for (int i = 0; i < 40; ++i) {
        line.found.bodies.push_back(last);
        ++line.found.found;
    }
    take_found(line.workspace(), line.found);
    EXPECT_EQ(line.workspace().body_count, 45);
    EXPECT_GE(line.workspace().body_capacity, 45);
    EXPECT_EQ(line.workspace().body(45).response.rows(), edit::LineSample::stations);
}

}  // namespace anomalis::flow

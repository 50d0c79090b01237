#include "edit/add_bodies.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <span>

#include "edit/body_list.h"
#include "edit/body_sample.h"
#include "edit/change.h"
#include "model/refresh_model.h"

namespace anomalis::edit {

namespace {

std::vector<std::string> names(BodySample& sample) {
    std::vector<std::string> result;
    for (int i = 1; i <= sample.workspace().body_count; ++i) result.push_back(sample.body(i).name);
    return result;
}

bool from_menu(BodySample& sample, AddMode mode) {
    return add_body_from_menu(sample.workbench, mode);
}

/// The procedure alone, without what suits the line.
bool plainly(BodySample& sample, AddMode mode) {
    Workbench& workbench = sample.workbench;
    return MAGINV_add_body(workbench, mode, 300, 0, 0, 100, workbench.view.current_body);
}

double range_of(std::span<const float> row) {
    const auto [low, high] = std::ranges::minmax(row);
    return static_cast<double>(high) - static_cast<double>(low);
}

}  // namespace

TEST(AddBodies, a_new_body_stands_in_the_view_on_the_ground_of_the_middle_station) {
    BodySample sample;
    sample.workbench.view.window_centre = 300;
    EXPECT_TRUE(from_menu(sample, AddMode::add));
    ASSERT_EQ(sample.workspace().body_count, 4);
    EXPECT_EQ(sample.workbench.view.current_body, 4);
    const ModelBody& body = sample.body(4);
    EXPECT_EQ(body.type, thick_sheet);
    EXPECT_EQ(body.distance.value, 300);
    EXPECT_DOUBLE_EQ(body.east, 500300);
    EXPECT_EQ(body.top.value, static_cast<float>(sample.workspace().stations(50, column_ground)));
    EXPECT_EQ(body.strike.value, 0);
    EXPECT_EQ(body.name, "Body 4");
    EXPECT_EQ(body.response.rows(), LineSample::stations);
    EXPECT_EQ(sample.cleared(4), Cleared(true, true));
    EXPECT_TRUE(sample.changed());
}

TEST(AddBodies, the_middle_station_rounds_ties_to_even) {
    EXPECT_EQ(middle_station(101), 50);
    EXPECT_EQ(middle_station(3), 2);
    EXPECT_EQ(middle_station(5), 2);
    EXPECT_EQ(middle_station(2), 1);
    EXPECT_EQ(middle_station(1), 1);
}

TEST(AddBodies, the_strike_is_across_the_line) {
    for (const auto& [azimuth_degrees, strike] :
         std::vector<std::pair<double, float>>{{-90, 0.0F}, {180, 270.0F}, {-135, -45.0F}}) {
        BodySample sample;
        sample.workspace().azimuth = static_cast<float>(azimuth_degrees * 0.017453292519943295);
        EXPECT_TRUE(from_menu(sample, AddMode::add));
        EXPECT_NEAR(sample.body(4).strike.value, strike, 2e-4);
        EXPECT_FALSE(std::signbit(sample.body(4).strike.value) && sample.body(4).strike.value == 0);
    }
}

TEST(AddBodies, settings_choose_type_and_sizes_but_not_the_colour) {
    BodySample sample;
    sample.session.settings.set(settings_section, "Type", "17");
    sample.session.settings.set(settings_section, "Thick", "12.5");
    sample.session.settings.set(settings_section, "Colour", "255");
    EXPECT_TRUE(plainly(sample, AddMode::add));
    EXPECT_EQ(sample.body(4).type, wire);
    EXPECT_EQ(sample.body(4).dip.value, 90);
    EXPECT_EQ(sample.body(4).width.value, 12.5F);
    EXPECT_EQ(sample.body(4).colour, 0xFF0000);
}

TEST(AddBodies, the_procedure_alone_gives_the_usual_sizes_and_the_usual_colour) {
    BodySample sample;
    EXPECT_TRUE(plainly(sample, AddMode::add));
    const ModelBody& body = sample.body(4);
    EXPECT_EQ(body.width.value, 100);
    EXPECT_EQ(body.depth_extent.value, 250);
    EXPECT_EQ(body.length.value, 250);
    EXPECT_EQ(body.susc.value, default_susceptibility);
    EXPECT_EQ(body.density.value, default_density);
    EXPECT_EQ(body.colour, 0xFF0000);
    EXPECT_TRUE(plainly(sample, AddMode::copy));
    EXPECT_EQ(sample.body(5).colour, 0xFF0000);
}

TEST(AddBodies, a_new_body_is_as_large_as_the_view_and_the_stations_ask_for) {
    for (const auto& [span, width] : {std::pair{2500.0F, 100.0F}, {600.0F, 50.0F}, {100.0F, 50.0F}}) {
        BodySample sample;
        sample.workbench.view.window_centre = 1250;
        sample.workbench.view.window_span = span;
        EXPECT_TRUE(from_menu(sample, AddMode::add));
        const ModelBody& body = sample.body(4);
        EXPECT_EQ(body.width.value, width) << span << ": a thirtieth of it, two spacings of 25 m at least";
        EXPECT_GT(body.depth_extent.value, body.width.value);
        EXPECT_EQ(body.length.value, body.depth_extent.value);
    }
}

TEST(AddBodies, the_anomaly_of_a_new_body_can_be_seen_against_the_data) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
        BodySample sample(false);
        sample.workspace().formulas = formulas;
        sample.workbench.view.window_centre = 1250;
        sample.workbench.view.window_span = 2500;
        model::refresh_model(sample.session);
        EXPECT_TRUE(from_menu(sample, AddMode::add));
        model::refresh_model(sample.session);
        const Workspace& w = sample.workspace();
        for (const Channel* channel : {&w.mag, &w.grav}) {
            const double observed = range_of(channel->data.row(row_raw, stage_observed));
            const double calculated = range_of(channel->data.row(row_raw, stage_calculated));
            EXPECT_GT(calculated, observed / 6);
            EXPECT_LT(calculated, observed);
        }
    }
}

TEST(AddBodies, what_the_settings_keep_of_new_bodies_is_not_suited_to_the_line) {
    BodySample sample;
    const std::vector<std::pair<const char*, const char*>> kept{
        {"Thick", "12.5"}, {"Depth", "77"}, {"StrikeLength", "33"}, {"Susc", "1234"}, {"Density", "0.25"}};
    for (const auto& [key, value] : kept) sample.session.settings.set(settings_section, key, value);
    EXPECT_TRUE(from_menu(sample, AddMode::add));
    const ModelBody& body = sample.body(4);
    EXPECT_EQ(body.width.value, 12.5F);
    EXPECT_EQ(body.depth_extent.value, 77);
    EXPECT_EQ(body.length.value, 33);
    EXPECT_EQ(body.susc.value, 1234);
    EXPECT_EQ(body.density.value, 0.25F);
}

TEST(AddBodies, a_flat_line_leaves_the_usual_susceptibility_and_no_density_contrast) {
    BodySample sample;
    for (Channel* channel : {&sample.workspace().mag, &sample.workspace().grav})
        for (float& value : channel->data.row(row_raw, stage_observed)) value = 5;
    invalidate_filtered_data(0, sample.workspace());
    model::refresh_model(sample.session);
    EXPECT_TRUE(from_menu(sample, AddMode::add));
    EXPECT_EQ(sample.body(4).susc.value, default_susceptibility);
    EXPECT_EQ(sample.body(4).density.value, 0);
}

TEST(AddBodies, new_bodies_and_copies_bear_colours_that_are_told_apart) {
    BodySample sample(false);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(from_menu(sample, AddMode::add));
    EXPECT_TRUE(from_menu(sample, AddMode::copy));
    EXPECT_TRUE(from_menu(sample, AddMode::split));
    std::set<std::int32_t> colours;
    for (int i = 1; i <= 5; ++i) colours.insert(sample.body(i).colour);
    EXPECT_EQ(colours.size(), 5U);
}

TEST(AddBodies, adding_is_one_step_of_the_history) {
    BodySample sample;
    start_history(sample.workbench);
    EXPECT_TRUE(from_menu(sample, AddMode::add));
    const float width = sample.body(4).width.value;
    EXPECT_TRUE(undo_change(sample.workbench).moved);
    EXPECT_EQ(sample.workspace().body_count, 3);
    EXPECT_FALSE(undo_change(sample.workbench).moved);
    EXPECT_TRUE(redo_change(sample.workbench).moved);
    EXPECT_EQ(sample.body(4).width.value, width);
}

TEST(AddBodies, a_place_used_before_passes_nothing_on) {
    BodySample sample;
    ModelBody& last = sample.body(3);
    last.plunge = {10, 1, -5, 20};
    last.slope = last.length = last.offset = {30, 1, 1, 2};
    last.turned_off = 1;
    last.rock_type = "granite";
    sample.workbench.view.current_body = 3;
    delete_current_body(sample.workbench);
    EXPECT_TRUE(from_menu(sample, AddMode::add));
    const ModelBody& body = sample.body(3);
    for (const BodyParam* param : {&body.plunge, &body.slope, &body.length, &body.offset}) {
        EXPECT_EQ(param->vary, 0);
        EXPECT_EQ(param->min, unset);
    }
    EXPECT_EQ(body.turned_off, 0);
    EXPECT_EQ(body.rock_type, "");
}

TEST(AddBodies, a_body_at_the_pointer_has_its_top_there) {
    BodySample sample;
    EXPECT_TRUE(add_body_at(sample.workbench, 777, -35.5));
    EXPECT_EQ(sample.body(4).distance.value, 777);
    EXPECT_EQ(sample.body(4).top.value, -35.5F);
    EXPECT_DOUBLE_EQ(sample.body(4).east, 500777);
}

TEST(AddBodies, body_33_gives_room_for_48) {
    BodySample sample(false);
    for (int i = 0; i < 33; ++i) EXPECT_TRUE(from_menu(sample, AddMode::add));
    EXPECT_EQ(sample.workspace().body_capacity, 48);
    EXPECT_EQ(sample.body(1).name, "Body 1");
    EXPECT_EQ(sample.body(48).response.rows(), LineSample::stations);
}

TEST(AddBodies, a_copy_stands_behind_the_current_body_and_beside_it) {
    BodySample sample;
    sample.body(2).susc.value = 1234;
    sample.calm();
    EXPECT_TRUE(from_menu(sample, AddMode::copy));
    EXPECT_EQ(names(sample), (std::vector<std::string>{"Body 1", "Body 2", "Body 3", "Body 3"}));
    EXPECT_EQ(sample.workbench.view.current_body, 3);
    const ModelBody& copy = sample.body(3);
    EXPECT_EQ(copy.distance.value, 1200 + 100 + 2500 / 20);
    EXPECT_DOUBLE_EQ(copy.east, 501425);
    EXPECT_EQ(copy.susc.value, 1234);
    EXPECT_EQ(copy.top.value, 40);
    EXPECT_EQ(sample.body(4).distance.value, 1900);
    EXPECT_EQ(sample.cleared(2), Cleared(false, false)) << "the original is what it was";
    EXPECT_EQ(sample.cleared(3), Cleared(true, true));
    EXPECT_EQ(sample.cleared(4), Cleared(false, false));
}

TEST(AddBodies, responses_move_with_their_bodies) {
    BodySample sample;
    for (int i = 1; i <= 3; ++i) sample.body(i).response(5, 1) = static_cast<float>(10 * i);
    EXPECT_TRUE(from_menu(sample, AddMode::copy));
    EXPECT_EQ(sample.body(1).response(5, 1), 10);
    EXPECT_EQ(sample.body(4).response(5, 1), 30);
    EXPECT_EQ(sample.body(4).response.rows(), LineSample::stations);
}

TEST(AddBodies, the_halves_of_a_split_lie_side_by_side) {
    BodySample sample;
    EXPECT_TRUE(from_menu(sample, AddMode::split));
    EXPECT_EQ(sample.body(2).width.value, 50);
    EXPECT_EQ(sample.body(3).width.value, 50);
    EXPECT_EQ(sample.body(2).distance.value, 1200);
    EXPECT_NEAR(sample.body(3).distance.value, 1250, 0.01);
    EXPECT_EQ(sample.workbench.view.current_body, 3);
}

TEST(AddBodies, a_split_divides_by_the_sine_of_the_present_dip) {
    BodySample sample;
    sample.body(2).dip.value = 60;
    sample.body(2).sin_dip = 0;  // never calculated
    EXPECT_TRUE(from_menu(sample, AddMode::split));
    EXPECT_NEAR(sample.body(3).distance.value, 1200 + 50 / std::sin(60 * 0.017453292), 0.01);
}

TEST(AddBodies, a_flat_body_splits_as_if_it_stood_upright) {
    BodySample sample;
    sample.body(2).type = pipe;
    sample.body(2).dip.value = 0;
    EXPECT_TRUE(from_menu(sample, AddMode::split));
    EXPECT_NEAR(sample.body(3).distance.value, 1250, 0.01);
    EXPECT_TRUE(sample.prompts.messages.empty());
}

TEST(AddBodies, a_body_along_the_line_is_neither_copied_nor_split) {
    BodySample sample;
    sample.body(2).strike.value = 90.4F;
    EXPECT_FALSE(from_menu(sample, AddMode::copy));
    EXPECT_FALSE(from_menu(sample, AddMode::split));
    EXPECT_EQ(sample.workspace().body_count, 3);
    EXPECT_FALSE(sample.changed());
    sample.body(2).strike.value = 91;
    EXPECT_TRUE(from_menu(sample, AddMode::copy));
}

TEST(AddBodies, without_a_current_body_nothing_is_copied) {
    BodySample sample;
    delete_all_bodies(sample.workbench);
    sample.calm();
    EXPECT_FALSE(from_menu(sample, AddMode::copy));
    EXPECT_FALSE(from_menu(sample, AddMode::split));
    EXPECT_EQ(sample.workspace().body_count, 0);
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    EXPECT_FALSE(sample.changed());
}

TEST(AddBodies, without_a_line_nothing_is_added) {
    BodySample sample;
    drop_stations(sample.workspace());
    for (const auto mode : {AddMode::add, AddMode::copy, AddMode::split})
        EXPECT_FALSE(from_menu(sample, mode));
    EXPECT_FALSE(add_body_at(sample.workbench, 10, 10));
    EXPECT_EQ(sample.workspace().body_count, 3);
    EXPECT_FALSE(sample.changed());
}

TEST(AddBodies, a_fault_is_told_and_leaves_the_list) {
    BodySample sample;
    EXPECT_FALSE(add_body_at(sample.workbench, 1e300, 0));
    EXPECT_EQ(sample.prompts.messages,
              std::vector<std::string>{"An error occurred while adding the new body: "
                                       "Overflow"});
    EXPECT_EQ(sample.workspace().body_count, 3);
    EXPECT_EQ(sample.workbench.view.current_body, 2);
    sample.body(2).width.value = sample.body(2).distance.value = 3e38F;
    EXPECT_FALSE(from_menu(sample, AddMode::copy));
    EXPECT_EQ(sample.prompts.messages.size(), 2u);
    EXPECT_EQ(sample.workspace().body_count, 3);
    EXPECT_FALSE(sample.changed());
}

TEST(AddBodies, the_run_of_another_list_is_forgotten) {
    BodySample sample;
    sample.session.inversion.inversion_params.assign(2);
    sample.session.inversion.best_model_available = true;
    EXPECT_TRUE(from_menu(sample, AddMode::copy));
    EXPECT_EQ(sample.session.inversion.inversion_params.count(), 0);
    EXPECT_FALSE(sample.session.inversion.best_model_available);
}

}  // namespace anomalis::edit

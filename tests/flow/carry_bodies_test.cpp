#include "flow/carry_bodies.h"

#include <cmath>
#include <gtest/gtest.h>

#include "core/angles.h"
#include "core/body_parameters.h"
#include "edit/line_sample.h"
#include "forward/shape/reference_point.h"
#include "model/refresh_model.h"

namespace anomalis::flow {

namespace {

/// Two eastward lines 300 m apart; the ground of the second lies 20 m higher. A sheet stands on the first.
struct TwoLines {
    static constexpr double apart = 300;
    edit::LineSample first, next;

    TwoLines() {
        first.load();
        first.workspace().model_file = "first.axm";
        ModelBody& body = first.add_body(1200, 60);
        forward::update_body_reference_point(first.workspace(), 1200, body.east, body.north);
        load_next(apart, 20);
    }
    /// The second line `north` m north of the first, `east` m along it, its ground `up` m higher.
    void load_next(double north, double up, double east = 0) {
        std::string text = "line east north sensor ground mag grav\n";
        for (int i = 0; i < edit::LineSample::stations; ++i)
            text += "2 " + std::to_string(500000 + east + 25 * i) + " " + std::to_string(7000000 + north) +
                    " " + std::to_string(180 + i % 7) + " " + std::to_string(100 + i % 5 + up) +
                    " 51000 12\n";
        next.folder.write("line.dat", text);
        next.load();
        next.workspace().model_file = "next.axm";
    }
    ModelBody& sheet() { return first.workspace().body(1); }
    CarriedModel carry() { return carry_bodies(first.workspace(), next.workspace()); }
};

}  // namespace

TEST(CarryBodies, place_follows_the_strike_and_depth_the_ground) {
    TwoLines lines;
    lines.sheet().strike.value = 30;
    const CarriedModel model = lines.carry();
    ASSERT_EQ(model.bodies.size(), 1U);
    const CarriedBody& carried = model.bodies[0];
    EXPECT_EQ(carried.first_number, 1);
    EXPECT_NEAR(carried.body.distance.value, 1200 + 300 * std::tan(30 * radians_per_degree), 0.01);
    EXPECT_NEAR(carried.along_strike, 300 / std::cos(30 * radians_per_degree), 0.01);
    EXPECT_NEAR(carried.body.north, 7000300, 1e-6);
    EXPECT_NEAR(carried.body.east, 501200 + 300 * std::tan(30 * radians_per_degree), 0.01);
    // Both grounds go up and down by a few m.
    EXPECT_NEAR(carried.body.top.value, 60 + 20, 4);
    EXPECT_EQ(carried.before.distance.value, 1200);
    EXPECT_TRUE(model.doubts.empty());
    EXPECT_TRUE(model.remarks.empty());
}

TEST(CarryBodies, keyed_limits_of_place_and_top_move_along) {
    TwoLines lines;
    lines.sheet().distance.min = 1100;
    lines.sheet().top.max = 90;
    const ModelBody carried = lines.carry().bodies.at(0).body;
    EXPECT_EQ(carried.distance.min, 1100) << "the sheet strikes north: its place is the same";
    EXPECT_EQ(carried.distance.max, unset);
    EXPECT_NEAR(carried.top.max - carried.top.value, 30, 1e-4);
    EXPECT_EQ(carried.top.min, unset);
}

TEST(CarryBodies, a_sheet_of_limited_length_gives_the_same_field_from_its_new_reference_point) {
    TwoLines lines;
    lines.load_next(TwoLines::apart, 0);
    ModelBody& sheet = lines.sheet();
    sheet.strike.value = 20;
    sheet.length.value = 500;
    sheet.offset.value = 40;
    const CarriedModel model = lines.carry();
    ASSERT_EQ(model.bodies.size(), 1U);
    EXPECT_EQ(model.remarks.size(), 1U) << "it ends before the next line";
    // On one line, once as it was and once from the other reference point.
    Session& session = lines.first.session;
    Workspace& w = session.workspace;
    w.formulas = Formulas::exact;
    model::refresh_model(session);
    const auto calculated = [&] {
        const auto row = w.mag.data.row(row_raw, stage_calculated);
        return std::vector<float>(row.begin(), row.end());
    };
    const std::vector<float> before = calculated();
    const double along = model.bodies[0].along_strike;
    ModelBody& body = w.body(1);
    body.offset.value = model.bodies[0].body.offset.value + static_cast<float>(along);
    model::refresh_model(session);
    EXPECT_EQ(calculated(), before) << "carried there and back";
    EXPECT_NEAR(model.bodies[0].body.offset.value, 40 - along, 0.01);
}

TEST(CarryBodies, a_strike_line_that_misses_the_line_is_told_with_its_miss) {
    TwoLines lines;
    lines.load_next(TwoLines::apart, 0, 5000);
    const CarriedModel model = lines.carry();
    EXPECT_TRUE(model.bodies.empty());
    ASSERT_EQ(model.doubts.size(), 1U);
    EXPECT_EQ(
        model.doubts[0],
        "Body 1 strikes 0.0 degrees: its line passes 3800 m beside next.axm and does not cross it. The body "
        "was not carried");
}

TEST(CarryBodies, a_line_far_away_is_told_and_carried_to_all_the_same) {
    TwoLines lines;
    lines.load_next(40000, 0);
    const CarriedModel model = lines.carry();
    EXPECT_EQ(model.bodies.size(), 1U);
    ASSERT_EQ(model.doubts.size(), 1U);
    EXPECT_NE(model.doubts[0].find("40000 m along strike from body 1"), std::string::npos) << model.doubts[0];
}

TEST(CarryBodies, bodies_that_are_off_stay_behind) {
    TwoLines lines;
    lines.first.add_body(500, 40).turned_off = 1;
    ModelBody& third = lines.first.add_body(800, 40);
    forward::update_body_reference_point(lines.first.workspace(), 800, third.east, third.north);
    const CarriedModel model = lines.carry();
    ASSERT_EQ(model.bodies.size(), 2U);
    EXPECT_EQ(model.bodies[1].first_number, 3);
}

TEST(CarryBodies, where_a_line_does_not_know_its_ground_the_depth_below_the_sensor_is_carried) {
    TwoLines lines;
    lines.load_next(TwoLines::apart, 300);
    lines.next.workspace().definition.dtm_column = 0;
    lines.next.load();
    const CarriedModel model = lines.carry();
    ASSERT_EQ(model.remarks.size(), 1U);
    EXPECT_NE(model.remarks[0].find("next.axm names no column of the ground"), std::string::npos);
    EXPECT_NEAR(model.bodies.at(0).body.top.value, 60, 1e-3) << "both sensors fly at one height there";
}

}  // namespace anomalis::flow

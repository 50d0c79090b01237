#include "inversion/find/find_bodies.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "find_line.h"

namespace anomalis::inversion {
namespace {

TEST(FindBodies, one_sheet_is_found_with_intervals_and_stands_across_the_line) {
    FindLine line;
    line.add_dyke(620, 60, 30, 70, 40000);
    line.bury();
    const FindResult result = line.find(at_most(2));
    ASSERT_EQ(result.models.size(), 1U);
    const FoundModel& model = result.models.front();
    ASSERT_EQ(model.found, 1);
    EXPECT_EQ(result.label, "1 body found");
    expect_sheet(model.bodies.front(), 620, 60);
    EXPECT_EQ(model.bodies.front().name, "Body 1");
    EXPECT_NEAR(model.bodies.front().strike.value, line.across(), 10);
    EXPECT_LT(model.rms, 1.3 * sigma);
    ASSERT_FALSE(model.record.parameters.empty());
    const auto top =
        std::ranges::find(model.record.parameters, static_cast<int>(param_top), &FittedParameter::param_code);
    ASSERT_NE(top, model.record.parameters.end());
    EXPECT_EQ(top->value, model.bodies.front().top.value);
    EXPECT_LT(top->lower, top->value);
    EXPECT_GT(top->upper, top->value);
    EXPECT_NEAR(static_cast<double>(top->value), -50, 3 * top->error);
    EXPECT_EQ(line.workspace().body_count, 0);
    EXPECT_TRUE(result.faults.empty());
}

TEST(FindBodies, two_sheets_are_found_and_come_by_distance) {
    FindLine line;
    line.add_dyke(850, 70, 30, 110, 50000);
    line.add_dyke(300, 50, 20, 80, 40000);
    line.bury();
    const FindResult result = line.find(at_most(3));
    ASSERT_FALSE(result.models.empty());
    ASSERT_EQ(result.models.front().found, 2);
    expect_sheet(result.models.front().bodies[0], 300, 50);
    expect_sheet(result.models.front().bodies[1], 850, 70);
    EXPECT_EQ(result.models.front().bodies[1].name, "Body 2");
}

TEST(FindBodies, alternatives_differ_in_kind_and_the_best_comes_first) {
    FindLine line;
    line.add_dyke(620, 60, 30, 70, 40000);
    line.bury();
    FindRequest request = at_most(2);
    request.alternatives = 3;
    const FindResult result = line.find(request);
    ASSERT_GT(result.models.size(), 1U);
    ASSERT_LE(result.models.size(), 3U);
    for (std::size_t i = 1; i < result.models.size(); ++i) {
        EXPECT_LE(result.models[i - 1].criterion, result.models[i].criterion);
        for (std::size_t k = 0; k < i; ++k) EXPECT_NE(result.models[k].kind, result.models[i].kind);
    }
}

TEST(FindBodies, so_many_bodies_as_asked_for_are_given) {
    FindLine line;
    line.add_dyke(620, 60, 30, 70, 40000);
    line.bury();
    FindRequest request = at_most(8);
    request.bodies = 2;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    for (const FoundModel& model : result.models) EXPECT_EQ(model.found, 2);
}

TEST(FindBodies, thin_sheets_alone_are_given_where_thick_ones_are_not_wanted) {
    FindLine line;
    line.add_dyke(620, 60, 10, 70, 80000);
    line.bury();
    FindRequest request = at_most(1);
    request.thick = false;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    for (const ModelBody& body : result.models.front().bodies) EXPECT_EQ(body.type, thin_sheet);
}

TEST(FindBodies, a_body_that_stands_there_is_not_found_again_and_stays) {
    FindLine line;
    line.add_dyke(300, 50, 20, 80, 40000);
    line.add_dyke(850, 70, 30, 110, 50000);
    line.bury();
    const ModelBody present = line.add_dyke(300, 50, 20, 80, 40000);
    line.renew();
    const FindResult result = line.find(at_most(2));
    ASSERT_FALSE(result.models.empty());
    const FoundModel& model = result.models.front();
    ASSERT_EQ(model.found, 1);
    ASSERT_EQ(model.bodies.size(), 2U);
    EXPECT_EQ(model.bodies.front().distance.value, present.distance.value);
    EXPECT_EQ(model.bodies.front().susc.value, present.susc.value);
    expect_sheet(model.bodies.back(), 850, 70);
}

TEST(FindBodies, a_body_that_stands_there_is_fitted_when_it_is_free) {
    FindLine line;
    line.add_dyke(300, 50, 20, 80, 40000);
    line.add_dyke(850, 70, 30, 110, 50000);
    line.bury();
    line.add_dyke(310, 60, 20, 80, 30000);
    line.renew();
    FindRequest request = at_most(1);
    request.free_present = true;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    ASSERT_EQ(result.models.front().bodies.size(), 2U);
    expect_sheet(result.models.front().bodies.front(), 300, 50);
}

TEST(FindBodies, the_degree_of_the_regional_is_found_where_nobody_chose_one) {
    FindLine line;
    line.add_dyke(620, 60, 30, 70, 40000);
    line.bury();
    Workspace& w = line.workspace();
    for (int i = 1; i <= stations; ++i) {
        const double t = (i - 31) / 30.0;
        w.mag.data(i, row_raw, stage_observed) += static_cast<float>(200 + 80 * t - 150 * t * t);
    }
    w.mag.regional_degree = no_regional;
    line.renew();
    const FindResult result = line.find(at_most(2));
    ASSERT_FALSE(result.models.empty());
    EXPECT_GE(result.models.front().mag_degree, 2);
    EXPECT_EQ(w.mag.regional_degree, no_regional);
}

TEST(FindBodies, gravity_alone_finds_by_density_contrast) {
    FindLine line;
    line.workspace().definition.mag_column = 0;
    line.workspace().definition.grav_column = 6;
    line.workspace().grav.regional_degree = 1;
    line.add_dyke(620, 60, 60, 90, 0).density.value = -0.4F;
    line.workspace().body(1).depth_extent.value = 200;
    line.bury();
    FindRequest request = at_most(1);
    request.channel = channel_grav;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    const ModelBody& body = result.models.front().bodies.front();
    EXPECT_NEAR(static_cast<double>(body.distance.value), 620, 40);
    EXPECT_LT(body.density.value, 0);
}

TEST(FindBodies, both_channels_are_explained_by_the_same_bodies) {
    FindLine line;
    line.workspace().definition.grav_column = 6;
    line.workspace().grav.regional_degree = 1;
    line.add_dyke(620, 60, 40, 80, 40000).depth_extent.value = 300;
    line.bury();
    FindRequest request = at_most(1);
    request.channel = channel_joint;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    const ModelBody& body = result.models.front().bodies.front();
    expect_sheet(body, 620, 60);
    EXPECT_GT(body.density.value, 0);
    EXPECT_TRUE(result.models.front().record.mag && result.models.front().record.grav);
}

TEST(FindBodies, joint_on_a_line_with_one_channel_is_that_channel) {
    FindLine line;
    line.add_dyke(620, 60, 30, 70, 40000);
    line.bury();
    FindRequest request = at_most(1);
    request.channel = channel_joint;
    const FindResult result = line.find(request);
    EXPECT_EQ(result.models.size(), 1U);
    EXPECT_TRUE(says(result.remarks, "The line has no gravity"));
}

TEST(FindBodies, a_line_without_the_channel_is_refused) {
    FindLine line;
    line.bury();
    FindRequest request = at_most(1);
    request.channel = channel_grav;
    EXPECT_TRUE(tells(line.find(request).faults, "The line has no gravity"));
}

}  // namespace
}  // namespace anomalis::inversion

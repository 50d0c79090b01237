#include "survey/map/results_map_tops.h"

#include <cmath>
#include <gtest/gtest.h>

#include "edit/colour_ramp.h"
#include "support/example_results.h"
#include "survey/map/results_map_scales.h"

namespace anomalis::survey {

TEST(ResultsMapScales, depths_have_round_ends_and_ticks_between) {
    const DepthScale scale = depth_scale({43, 51, 118});
    EXPECT_EQ(scale.low, 40);
    EXPECT_EQ(scale.high, 120);
    EXPECT_FALSE(scale.logarithmic);
    EXPECT_EQ(scale.ticks, (std::vector<double>{40, 60, 80, 100, 120}));
    EXPECT_EQ(scale.part(40), 0);
    EXPECT_EQ(scale.part(80), 0.5);
    EXPECT_EQ(scale.part(500), 1);
    EXPECT_FALSE(scale.under || scale.over);
}

TEST(ResultsMapScales, depths_far_apart_are_logarithmic) {
    const DepthScale scale = depth_scale({0, 7, 60, 900});
    EXPECT_TRUE(scale.logarithmic);
    EXPECT_EQ(scale.low, 5);
    EXPECT_EQ(scale.high, 1000);
    EXPECT_NEAR(scale.part(std::sqrt(5.0 * 1000)), 0.5, 1e-12);
    EXPECT_EQ(scale.part(0), 0);
    EXPECT_TRUE(scale.under);
    EXPECT_EQ(scale.ticks.front(), 5);
    EXPECT_EQ(scale.ticks.back(), 1000);
    EXPECT_LE(scale.ticks.size(), 8U);
}

TEST(ResultsMapScales, a_few_strange_depths_do_not_take_the_scale) {
    std::vector<double> depths(200, 50);
    for (std::size_t i = 0; i < depths.size(); ++i) depths[i] += static_cast<double>(i) / 10;
    depths[7] = 1e6;
    const DepthScale scale = depth_scale(depths);
    EXPECT_LE(scale.high, 100);
    EXPECT_TRUE(scale.over);
}

TEST(ResultsMapScales, one_depth_or_none_has_a_scale) {
    for (const std::vector<double>& depths :
         {std::vector<double>{}, {unknown}, {40}, {40, 40}, {0}, {-3, -3}, {1e9, 1e9}}) {
        const DepthScale scale = depth_scale(depths);
        EXPECT_LT(scale.low, scale.high);
        EXPECT_GE(scale.ticks.size(), 2U);
        for (const double depth : depths)
            if (std::isfinite(depth)) {
                EXPECT_TRUE(scale.low <= depth && depth <= scale.high) << depth;
            }
    }
}

TEST(ResultsMapScales, the_ends_of_the_ramp_are_the_ends_of_the_colours) {
    const DepthScale scale = depth_scale({40, 120});
    EXPECT_EQ(depth_colour(40, scale), edit::ramp_colour(1));
    EXPECT_EQ(depth_colour(120, scale), edit::ramp_colour(0));
    EXPECT_EQ(depth_colour(-1, scale), edit::ramp_colour(1));
    EXPECT_EQ(depth_colour(1e9, scale), edit::ramp_colour(0));
    EXPECT_EQ(depth_colour(unknown, scale), 0xB4B4B4);
}

TEST(ResultsMapScales, sizes_rise_by_factors_between_round_ends) {
    const SizeScale scale = size_scale({1800, 30000, 45000});
    EXPECT_EQ(scale.low, 1000);
    EXPECT_EQ(scale.high, 50000);
    EXPECT_EQ(scale.samples, (std::vector<double>{1000, 5000, 50000}));
    EXPECT_EQ(scale.part(1000), 0.4);
    EXPECT_EQ(scale.part(50000), 1);
    EXPECT_EQ(scale.part(1e9), 1);
    EXPECT_EQ(scale.part(unknown), 0.4);
    EXPECT_GT(scale.part(20000), scale.part(5000));
}

TEST(ResultsMapScales, one_size_or_none_has_a_scale) {
    for (const std::vector<double>& values : {std::vector<double>{}, {0, unknown}, {20000}, {0.3, 0.3}}) {
        const SizeScale scale = size_scale(values);
        EXPECT_LT(scale.low, scale.high);
        for (const double value : values)
            if (value > 0) {
                EXPECT_GT(scale.part(value), 0.4);
                EXPECT_LT(scale.part(value), 1);
            }
    }
}

TEST(ResultsMapTops, a_top_says_where_how_deep_and_how_sure) {
    SurveyResults results = example_results(2);
    BodyResult& body = results.lines[0].bodies[0];
    body.profile_azimuth = 90;
    body.distance = {1000, 990, 1030};
    const MapTops tops = map_tops(results);
    ASSERT_FALSE(tops.tops.empty());
    const MapTop& top = tops.tops.front();
    EXPECT_EQ(top.place, (chart::Point{body.east, body.north}));
    EXPECT_EQ(top.depth, 40);
    EXPECT_FALSE(top.below_sensor);
    EXPECT_EQ(top.doubt, DepthDoubt::small);
    ASSERT_TRUE(top.interval);
    EXPECT_NEAR((*top.interval)[0].x, body.east - 10, 1e-4);
    EXPECT_NEAR((*top.interval)[1].x, body.east + 30, 1e-4);
    EXPECT_NEAR((*top.interval)[1].y, body.north, 1e-4);
}

TEST(ResultsMapTops, an_interval_of_a_place_ends_where_the_line_ends) {
    SurveyResults results = example_results(2);
    BodyResult& body = results.lines[0].bodies[0];
    body.distance = {1000, -20000, 30000};
    const MapTop top = map_tops(results).tops.front();
    ASSERT_TRUE(top.interval);
    EXPECT_NEAR((*top.interval)[0].x, 450000, 1e-3);
    EXPECT_NEAR((*top.interval)[1].x, 454000, 1e-3);
    body.distance = {1000, unknown, 1100};
    EXPECT_FALSE(map_tops(results).tops.front().interval);
}

TEST(ResultsMapTops, a_depth_without_an_interval_is_in_large_doubt) {
    SurveyResults results = example_results(3);
    results.lines[0].bodies[0].depth_below_ground = {40, 20, 52};
    results.lines[0].bodies[1].depth_below_ground = {40, 30, unknown};
    results.lines[1].bodies[0].depth_below_ground = {0, 0, 1};
    const MapTops tops = map_tops(results);
    EXPECT_EQ(tops.tops[0].doubt, DepthDoubt::middle);
    EXPECT_EQ(tops.tops[1].doubt, DepthDoubt::large);
    EXPECT_EQ(tops.tops[2].doubt, DepthDoubt::large);
}

TEST(ResultsMapTops, without_a_ground_the_depth_is_below_the_sensor) {
    SurveyResults results = example_results(3);
    results.lines[0].bodies[0].depth_below_ground = {};
    results.lines[0].bodies[1].depth_below_ground = {};
    results.lines[0].bodies[1].depth_below_sensor = {};
    const MapTops tops = map_tops(results);
    EXPECT_TRUE(tops.tops[0].below_sensor);
    EXPECT_EQ(tops.tops[0].depth, 100);
    EXPECT_EQ(tops.below_sensor, 1U);
    EXPECT_EQ(tops.without_depth, 1U);
    EXPECT_EQ(tops.below_ground + 2, tops.tops.size());
}

TEST(ResultsMapTops, of_gravity_alone_the_size_is_the_contrast) {
    SurveyResults results = example_results(2);
    for (LineResult& line : results.lines)
        for (BodyResult& body : line.bodies) {
            body.susceptibility = {};
            body.density_contrast = {-0.3, -0.4, -0.2};
        }
    const MapTops tops = map_tops(results);
    EXPECT_EQ(tops.amount, MapAmount::density);
    EXPECT_EQ(tops.tops.front().amount, 0.3);
}

TEST(ResultsMapTops, one_map_has_one_system_and_counts_what_is_left_out) {
    SurveyResults results = example_results(5);
    results.lines[1].coordinate_system = "EPSG:32755";
    results.lines[2].track.clear();
    results.lines[3].bodies[0].east = unknown;
    const MapTops tops = map_tops(results);
    EXPECT_EQ(tops.system, "EPSG:32754");
    EXPECT_EQ(tops.lines, (std::vector<std::size_t>{0, 3, 4}));
    EXPECT_EQ(tops.in_other_systems, 1U);
    EXPECT_EQ(tops.without_track, 1U);
    EXPECT_EQ(tops.without_place, 1U);
    EXPECT_EQ(tops.failed, 1U);
}

}  // namespace anomalis::survey

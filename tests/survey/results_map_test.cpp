#include "survey/map/results_map.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "chart/ax_grapher.h"
#include "edit/colour_ramp.h"
#include "show/map_parts.h"
#include "support/example_results.h"
#include "support/recording_device.h"
#include "survey/map/results_map_looks.h"

namespace anomalis::survey {

namespace {

using Kind = chart::RecordingDevice::Kind;

struct MapSample {
    MapSample() {
        map.SetSurface(&map_device);
        key.SetSurface(&key_device);
        set_up_results_map(map, key);
    }
    /// What is drawn at once, after a display from nothing.
    void show(const SurveyResults& results, ResultsMapMarks marks = {}) {
        results_map.show(&results, std::move(marks));
    }
    std::vector<chart::RecordingDevice::Entry> dots_at(chart::Point place) const {
        std::vector<chart::RecordingDevice::Entry> found;
        const chart::Point at = map.UserToSurface(place);
        for (const auto& entry : map_device.of_kind(Kind::markers))
            for (const chart::Point& p : entry.points)
                if (std::hypot(p.x - at.x, p.y - at.y) < 1) found.push_back(entry);
        return found;
    }
    bool says(const std::string& words) const { return key_device.find_text(words) != nullptr; }
    std::size_t drawn_in(chart::Colour colour, double width) const {
        const auto lines = map_device.of_kind(Kind::polyline);
        return static_cast<std::size_t>(std::ranges::count_if(lines, [&](const auto& entry) {
            return entry.pen.colour == colour && entry.pen.width == width;
        }));
    }

    chart::RecordingDevice map_device{18000, 12000}, key_device{2850, 12000};
    chart::AX_Grapher map, key;
    ResultsMap results_map{map, key};
};

chart::Point place_of(const BodyResult& body) {
    return {body.east, body.north};
}

}  // namespace

TEST(ResultsMap, a_metre_is_as_long_to_the_east_as_to_the_north) {
    MapSample sample;
    sample.show(example_results());
    EXPECT_NEAR(sample.map.XAxisScale() / sample.map.YAxisScale(), 1, 1e-9);
    EXPECT_TRUE(sample.map.ViewLimits().contains({450000, 7550000}));
    EXPECT_TRUE(sample.map.ViewLimits().contains({454000, 7552200}));
}

TEST(ResultsMap, every_top_is_a_dot_of_its_depth_and_size) {
    MapSample sample;
    const SurveyResults results = example_results();
    sample.show(results);
    std::size_t dots = 0;
    for (const LineResult& line : results.lines)
        for (const BodyResult& body : line.bodies) {
            const auto drawn = sample.dots_at(place_of(body));
            ASSERT_FALSE(drawn.empty()) << line.line;
            EXPECT_EQ(drawn.front().fill,
                      depth_colour(body.depth_below_ground.value, sample.results_map.depths()));
            ++dots;
        }
    EXPECT_EQ(dots, 17U);
    const auto small = sample.dots_at(place_of(results.lines[0].bodies[0])).front();
    const auto large = sample.dots_at(place_of(results.lines[0].bodies[1])).front();
    EXPECT_LT(small.radius, large.radius);
}

TEST(ResultsMap, the_white_in_a_dot_grows_with_the_doubt_of_its_depth) {
    MapSample sample;
    SurveyResults results = example_results(3);
    results.lines[0].bodies[0].depth_below_ground = {40, 38, 42};
    results.lines[0].bodies[1].depth_below_ground = {120, 80, 160};
    results.lines[1].bodies[0].depth_below_ground = {40, 5, 90};
    sample.show(results);
    const auto hole = [&](const BodyResult& body) {
        const auto drawn = sample.dots_at(place_of(body));
        return drawn.size() < 2 ? 0 : drawn[1].radius / drawn[0].radius;
    };
    EXPECT_EQ(hole(results.lines[0].bodies[0]), 0);
    EXPECT_NEAR(hole(results.lines[0].bodies[1]), 0.36, 1e-9);
    EXPECT_NEAR(hole(results.lines[1].bodies[0]), 0.64, 1e-9);
    EXPECT_EQ(sample.dots_at(place_of(results.lines[1].bodies[0]))[1].fill, chart::white);
    EXPECT_TRUE(sample.says("within ± 20 %"));
}

TEST(ResultsMap, lines_are_thin_and_grey_and_failed_ones_are_named) {
    MapSample sample;
    sample.show(example_results());
    EXPECT_EQ(sample.drawn_in(line_grey, line_width), 11U);
    EXPECT_EQ(sample.drawn_in(failed_orange, failed_width), 1U);
    EXPECT_TRUE(sample.map_device.find_text("L1110 failed"));
    EXPECT_TRUE(sample.map_device.find_text("L1000"));
    EXPECT_EQ(sample.results_map.named().size(), 12U);
    EXPECT_TRUE(sample.says("line that failed"));
}

TEST(ResultsMap, of_a_part_lines_are_named_where_they_come_in) {
    MapSample sample;
    const SurveyResults results = example_results();
    sample.show(results, {.area = chart::Rect{452000, 453000, 7550300, 7550900}});
    const chart::Rect shown = sample.map.ViewLimits();
    EXPECT_TRUE(shown.contains({452000, 7550300}) && shown.contains({453000, 7550900}));
    EXPECT_LT(shown.width(), 2500);
    EXPECT_TRUE(sample.map_device.find_text("L1020"));
    EXPECT_FALSE(sample.map_device.find_text("L1110 failed"));
}

TEST(ResultsMap, without_a_failed_line_the_key_speaks_of_none) {
    MapSample sample;
    SurveyResults results = example_results(3);
    results.lines.pop_back();
    sample.show(results);
    EXPECT_FALSE(sample.says("line that failed"));
    EXPECT_FALSE(sample.says("body on several lines"));
}

TEST(ResultsMap, the_interval_of_a_place_lies_along_its_line) {
    MapSample sample;
    SurveyResults results = example_results(1);
    results.lines[0].status = LineStatus::done;
    results.lines[0].bodies = {example_body(1, 451000, 7550000, 40, 80)};
    results.lines[0].bodies[0].distance = {1000, 900, 1200};
    sample.show(results);
    std::size_t found = 0;
    for (const auto& entry : sample.map_device.of_kind(Kind::polyline))
        if (entry.pen.colour == interval_grey && entry.pen.width == stroke_looks(135).interval) {
            EXPECT_NEAR(entry.points.front().x, sample.map.UserToSurface({450900, 7550000}).x, 0.01);
            EXPECT_NEAR(entry.points.back().x, sample.map.UserToSurface({451200, 7550000}).x, 0.01);
            ++found;
        }
    EXPECT_EQ(found, 1U);
}

TEST(ResultsMap, bodies_on_several_lines_are_joined_by_a_stroke) {
    MapSample sample;
    JoinedBody body;
    body.start = {453000, 7550000};
    body.end = {453000, 7551000};
    body.coordinate_system = "EPSG:32754";
    JoinedBody elsewhere = body;
    elsewhere.coordinate_system = "EPSG:32755";
    const SurveyResults results = example_results();
    sample.show(results, {.strikes = strike_traces({body, elsewhere})});
    EXPECT_EQ(sample.drawn_in(strike_black, strike_width), 1U);
    EXPECT_TRUE(sample.says("body on several lines"));
}

TEST(ResultsMap, flags_stand_at_the_ends_of_lines_and_rejected_bodies_are_crosses) {
    MapSample sample;
    const SurveyResults results = example_results();
    sample.show(results,
                {.flags = {LineFlag::accept, LineFlag::reject, LineFlag::none, LineFlag::look_again}});
    const auto signs_of = [&](LineFlag flag) {
        std::size_t count = 0;
        for (const auto& entry : sample.map_device.of_kind(Kind::markers))
            count += entry.style == flag_marker(flag) && entry.pen.colour == flag_colour(flag) ? 1U : 0U;
        return count;
    };
    for (const LineFlag flag : {LineFlag::accept, LineFlag::reject, LineFlag::look_again})
        EXPECT_EQ(signs_of(flag), 1U);
    const auto rejected = sample.dots_at(place_of(results.lines[1].bodies[0]));
    ASSERT_EQ(rejected.size(), 1U);
    EXPECT_EQ(rejected.front().fill, chart::no_colour);
    EXPECT_EQ(rejected.front().pen.colour, depth_colour(41, sample.results_map.depths()));
    for (const char* words : {"accepted", "to be looked at again", "rejected"})
        EXPECT_TRUE(sample.says(words));
}

TEST(ResultsMap, the_key_has_units_ticks_and_what_is_beyond) {
    MapSample sample;
    SurveyResults results = example_results(40);
    results.lines[0].bodies[0].depth_below_ground = {900, 890, 910};
    sample.show(results);
    EXPECT_TRUE(sample.says("Depth below ground (m)"));
    EXPECT_TRUE(sample.says("Susceptibility (micro SI)"));
    const DepthScale& depths = sample.results_map.depths();
    ASSERT_TRUE(depths.over);
    EXPECT_TRUE(sample.says("≥ " + scale_number(depths.high)));
    EXPECT_TRUE(sample.says(scale_number(depths.low)));
    const auto fills = sample.key_device.of_kind(Kind::polygon_fill);
    ASSERT_GE(fills.size(), static_cast<std::size_t>(depth_shades));
    EXPECT_EQ(fills.front().pen.colour, edit::ramp_colour(1));
}

TEST(ResultsMap, the_shallow_end_of_the_key_is_above) {
    MapSample sample;
    sample.show(example_results());
    const auto* low = sample.key_device.find_text(scale_number(sample.results_map.depths().low));
    const auto* high = sample.key_device.find_text(scale_number(sample.results_map.depths().high));
    ASSERT_TRUE(low && high);
    EXPECT_GT(low->points.front().y, high->points.front().y);
}

TEST(ResultsMap, the_key_tells_what_is_below_the_sensor) {
    MapSample sample;
    SurveyResults results = example_results(3);
    results.lines[0].bodies[0].depth_below_ground = {};
    sample.show(results);
    EXPECT_TRUE(sample.says("Depth below ground (m)"));
    EXPECT_TRUE(sample.says("depth below the sensor"));
    for (LineResult& line : results.lines)
        for (BodyResult& body : line.bodies) body.depth_below_ground = {};
    sample.key_device.forget();
    sample.show(results);
    EXPECT_TRUE(sample.says("Depth below sensor (m)"));
    EXPECT_FALSE(sample.says("depth below the sensor"));
}

TEST(ResultsMap, a_press_on_a_dot_means_its_body_and_one_beside_it_the_line) {
    MapSample sample;
    const SurveyResults results = example_results();
    sample.show(results);
    chart::Point at = sample.map.UserToSurface(place_of(results.lines[3].bodies[1]));
    EXPECT_EQ(sample.results_map.hit(at), (ResultsMap::Hit{3, 1}));
    at.x += 40 * 15;
    EXPECT_EQ(sample.results_map.hit(at), (ResultsMap::Hit{3, {}}));
    at.y += 8 * 15;
    EXPECT_EQ(sample.results_map.hit(at), (ResultsMap::Hit{3, {}}));
    EXPECT_FALSE(sample.results_map.hit({-5, -5}).has_value());
    EXPECT_FALSE(sample.results_map.hit(sample.map.UserToSurface({453500, 7552600})).has_value());
}

TEST(ResultsMap, of_dots_that_lie_on_each_other_the_nearest_is_meant) {
    MapSample sample;
    SurveyResults results = example_results(2);
    std::vector<BodyResult>& bodies = results.lines[0].bodies;
    sample.show(results);
    const double unit = 1 / sample.map.XAxisScale();
    bodies.push_back(bodies.front());
    bodies.back().east += 2 * unit;
    sample.show(results);
    const auto hit = sample.results_map.hit(
        sample.map.UserToSurface({bodies.back().east + 3 * unit, bodies.back().north}));
    EXPECT_EQ(hit, (ResultsMap::Hit{0, results.lines[0].bodies.size() - 1}));
}

TEST(ResultsMap, a_chosen_line_lies_on_top_and_the_rest_is_not_drawn_again) {
    MapSample sample;
    const SurveyResults results = example_results();
    sample.show(results);
    EXPECT_EQ(sample.drawn_in(show::chosen_red, 3), 0U);
    sample.map_device.forget();
    sample.results_map.choose(2, 1);
    EXPECT_EQ(sample.drawn_in(show::chosen_red, 3), 1U);
    EXPECT_TRUE(sample.map_device.of_kind(Kind::markers).empty());
    EXPECT_EQ(sample.drawn_in(line_grey, line_width), 0U);
    EXPECT_EQ(sample.results_map.chosen_line(), 2U);
    EXPECT_EQ(sample.results_map.chosen_body(), 1U);
    EXPECT_EQ(sample.results_map.named().front(), 2U);
    // Its bodies lie on it.
    const auto fills = sample.map_device.of_kind(Kind::polygon_fill);
    EXPECT_GE(fills.size(), 2U);
}

TEST(ResultsMap, what_is_chosen_stays_while_its_line_is_there) {
    MapSample sample;
    SurveyResults results = example_results();
    sample.show(results);
    sample.results_map.choose(3, 1);
    results.lines[3].bodies.pop_back();
    sample.show(results);
    EXPECT_EQ(sample.results_map.chosen_line(), 3U);
    EXPECT_FALSE(sample.results_map.chosen_body());
    results.lines.resize(2);
    sample.show(results);
    EXPECT_FALSE(sample.results_map.chosen_line());
    sample.results_map.choose(7);
    EXPECT_FALSE(sample.results_map.chosen_line());
}

TEST(ResultsMap, results_that_come_in_leave_the_view_where_it_is) {
    MapSample sample;
    const SurveyResults results = example_results();
    sample.show(results);
    sample.map.SetZoomValues(4, 0.5, 4, 0.5);
    sample.results_map.view_changed();
    const chart::Rect before = sample.map.ViewLimits();
    sample.results_map.show(&results, {}, true);
    EXPECT_EQ(sample.map.ViewLimits(), before);
    sample.results_map.show(&results);
    EXPECT_NE(sample.map.ViewLimits(), before);
}

TEST(ResultsMap, dots_of_lines_close_together_are_small_until_they_are_looked_at_closely) {
    MapSample sample;
    const SurveyResults results = example_results(400);
    sample.show(results);
    const auto largest = [&] {
        double radius = 0;
        for (const auto& entry : sample.map_device.of_kind(Kind::markers))
            radius = std::max(radius, entry.radius);
        return radius;
    };
    const double before = largest();
    EXPECT_LT(before, 5 * 15);
    sample.map_device.forget();
    sample.map.SetZoomValues(16, 0.5, 16, 0.5);
    sample.results_map.view_changed();
    EXPECT_GT(largest(), before);
}

TEST(ResultsMap, a_survey_without_bodies_lines_or_anything_is_shown) {
    MapSample sample;
    SurveyResults results = example_results(4);
    for (LineResult& line : results.lines) {
        line.bodies.clear();
        line.status = LineStatus::failed;
    }
    sample.show(results);
    EXPECT_TRUE(sample.map.HasPlotDefined());
    EXPECT_EQ(sample.drawn_in(failed_orange, failed_width), 4U);
    EXPECT_FALSE(sample.says("Depth below ground (m)"));
    results.lines.resize(1);
    results.lines[0].track.resize(1);
    sample.show(results);
    sample.results_map.choose(0);
    results.lines.clear();
    sample.show(results);
    sample.results_map.show(nullptr);
    EXPECT_FALSE(sample.results_map.hit({6000, 4500}).has_value());
}

}  // namespace anomalis::survey

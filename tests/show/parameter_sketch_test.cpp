#include "show/sketch/parameter_sketch.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "core/angles.h"
#include "core/body_parameters.h"
#include "edit/line_sample.h"
#include "forward/shape/body_solid.h"
#include "forward/shape/plan_outline.h"
#include "model/refresh_model.h"
#include "show/section_shapes.h"
#include "show/sketch/sample_shapes.h"

namespace anomalis::show {

namespace {

constexpr std::array named_types{thin_sheet, thick_sheet, edge, sloping_step, sphere, pipe, wire};
constexpr std::array both_formulas{Formulas::classic, Formulas::exact};

/// A line due east: a strike of 0 has the + side of a body to the right of its section, one of 180 to the
/// left.
struct Sketched {
    Sketched() { workspace.azimuth = static_cast<float>(-90 * radians_per_degree); }

    ModelBody body(std::int32_t type, float strike) const {
        ModelBody body;
        body.type = type;
        body.strike.value = strike;
        body.distance.value = 700;
        body.top.value = -40;
        body.dip.value = type == pipe ? 0 : 65;
        body.width.value = 80;
        body.depth_extent.value = 300;
        return body;
    }
    std::optional<ParameterSketch> of(std::int32_t type, int code, float strike = 0) const {
        return parameter_sketch(workspace, body(type, strike), code);
    }

    Workspace workspace;
};

const SketchLine& last_measure(const ParameterSketch& sketch) {
    const SketchLine* found = nullptr;
    for (const SketchLine& line : sketch.lines)
        if (line.role == SketchLine::Role::measure) found = &line;
    if (!found) throw std::runtime_error("nothing is measured");
    return *found;
}

/// How its sides and its middle move when a polygon becomes another one: -1, 0 or 1 for each.
std::vector<int> moves(const SketchPoints& before, const SketchPoints& after) {
    const auto sign = [](double v) { return std::abs(v) < 1e-3 ? 0 : v < 0 ? -1 : 1; };
    const auto [left, right] = std::ranges::minmax(before, {}, &chart::Point::x);
    const auto [left2, right2] = std::ranges::minmax(after, {}, &chart::Point::x);
    const auto [low, high] = std::ranges::minmax(before, {}, &chart::Point::y);
    const auto [low2, high2] = std::ranges::minmax(after, {}, &chart::Point::y);
    return {sign(left2.x - left.x), sign(right2.x - right.x), sign(low2.y - low.y), sign(high2.y - high.y)};
}

SketchPoints section_points(const Workspace& workspace, const ModelBody& body) {
    const SectionShape shape = section_shape(workspace, body, {-600, 2000});
    SketchPoints points;
    for (std::size_t i = 0; i < shape.xs.size(); ++i) points.push_back({shape.xs[i], shape.ys[i]});
    return points;
}

/// Of two points on one line with a third.
double off_line(chart::Point a, chart::Point b, chart::Point p) {
    return std::abs((b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x)) / std::hypot(b.x - a.x, b.y - a.y);
}

}  // namespace

TEST(ParameterSketch, every_parameter_of_the_types_on_offer_is_drawn) {
    const Sketched sample;
    for (const BodyType type : offered_body_types)
        for (const BodyParameter& row : body_parameters())
            EXPECT_EQ(sample.of(type, row.code).has_value(),
                      has_parameter(type, row.code) && !(type == wire && row.code == param_length))
                << type << " " << row.name << "; no formulas end a wire";
}

TEST(ParameterSketch, what_does_not_change_how_a_body_lies_is_not_drawn) {
    Sketched sample;
    sample.workspace.formulas = Formulas::exact;
    for (const int code : {param_width, param_slope, param_plunge})
        EXPECT_FALSE(sample.of(edge, code)) << param_name(code);
    for (const int code : {param_strike, param_dip, param_length}) EXPECT_FALSE(sample.of(sphere, code));
    EXPECT_FALSE(sample.of(9, param_top)) << "a code without a name";
    EXPECT_TRUE(sample.of(edge, param_dip));
    EXPECT_TRUE(sample.of(sphere, param_width));
}

TEST(ParameterSketch, all_that_is_drawn_lies_in_its_frame) {
    Sketched sample;
    for (const Formulas formulas : both_formulas) {
        sample.workspace.formulas = formulas;
        for (const std::int32_t type : named_types)
            for (const BodyParameter& row : body_parameters())
                for (const float strike : {0.0F, 180.0F}) {
                    const auto sketch = sample.of(type, row.code, strike);
                    if (!sketch) continue;
                    std::vector<SketchPoints> drawn = sketch->bodies;
                    // Bodies without end leave the frame where the section does.
                    if (is_step(type)) drawn.clear();
                    for (const SketchLine& line : sketch->lines) drawn.push_back(line.points);
                    for (const SketchText& text : sketch->texts) drawn.push_back({text.at});
                    for (const SketchPoints& points : drawn)
                        for (const chart::Point& point : points)
                            EXPECT_TRUE(sketch->frame.contains(point, 1e-3))
                                << type << " " << row.name << " " << point.x << " " << point.y;
                }
    }
}

TEST(ParameterSketch, more_of_a_parameter_moves_the_sketch_as_it_moves_the_section) {
    Sketched sample;
    for (const Formulas formulas : both_formulas) {
        sample.workspace.formulas = formulas;
        for (const std::int32_t type : {thin_sheet, thick_sheet, edge, pipe})
            for (const int code :
                 {param_distance, param_top, param_dip, param_slope, param_width, param_depth_extent})
                for (const float strike : {20.0F, 200.0F}) {
                    const auto sketch = sample.of(type, code, strike);
                    if (!sketch || (type == pipe && code == param_dip)) continue;
                    ModelBody body = sample.body(type, strike);
                    const SketchPoints before = section_points(sample.workspace, body);
                    body_param(body, code).value += 8;
                    EXPECT_EQ(moves(sketch->bodies.at(0), sketch->grown.at(0)),
                              moves(before, section_points(sample.workspace, body)))
                        << type << " " << param_name(code) << " strike " << strike;
                }
    }
}

TEST(ParameterSketch, a_dip_is_measured_to_the_wall_and_a_slope_to_the_top) {
    Sketched sample;
    for (const Formulas formulas : both_formulas)
        for (const float strike : {0.0F, 180.0F}) {
            sample.workspace.formulas = formulas;
            const auto dip = sample.of(thick_sheet, param_dip, strike);
            ASSERT_TRUE(dip);
            const SketchPoints& walls = dip->bodies.at(0);
            EXPECT_LT(off_line(walls[0], walls[3], last_measure(*dip).points.back()), 0.01);
            EXPECT_LT(last_measure(*dip).points.back().y, dip->reference->y) << "downward";
            const auto slope = sample.of(thick_sheet, param_slope, strike);
            ASSERT_TRUE(slope);
            const SketchPoints& top = slope->bodies.at(0);
            EXPECT_LT(off_line(top[0], top[1], last_measure(*slope).points.back()), 0.01);
            const bool rises = last_measure(*slope).points.back().y > slope->reference->y;
            EXPECT_EQ(rises, top[1].y > top[0].y) << "as the section has it";
            EXPECT_TRUE(rises || (formulas == Formulas::classic && strike == 180)) << "to the + side";
        }
}

TEST(ParameterSketch, strike_turns_from_north_to_east_and_an_offset_goes_along_it) {
    const Sketched sample;
    const auto strike = sample.of(thick_sheet, param_strike);
    ASSERT_TRUE(strike);
    const SketchPoints& arc = last_measure(*strike).points;
    EXPECT_NEAR(arc.front().x, 0, 1e-4);
    EXPECT_GT(arc.front().y, 0) << "from north";
    EXPECT_GT(arc.back().x, 0) << "to the east of it";
    // The outline of the plan lies along the end of the arc.
    const SketchPoints& outline = strike->bodies.at(0);
    EXPECT_LT(off_line(outline[0], outline[1], arc.back()), 0.01);
    const auto offset = sample.of(thick_sheet, param_offset);
    ASSERT_TRUE(offset);
    const chart::Point before = offset->bodies.at(0)[0], after = offset->grown.at(0)[0];
    EXPECT_GT(arc.back().x * (after.x - before.x) + arc.back().y * (after.y - before.y), 0);
    EXPECT_NEAR(off_line(offset->bodies.at(0)[0], offset->bodies.at(0)[1], after), 0, 0.01);
}

TEST(ParameterSketch, a_plunge_falls_along_the_strike) {
    const Sketched sample;
    const auto plunge = sample.of(thick_sheet, param_plunge);
    ASSERT_TRUE(plunge);
    const SketchPoints& top = plunge->bodies.at(0);
    const auto [start, end] = std::minmax(top[0], top[1], [](auto a, auto b) { return a.x < b.x; });
    EXPECT_LT(end.y, start.y);
    EXPECT_LT(last_measure(*plunge).points.back().y, plunge->reference->y);
}

TEST(ParameterSketch, a_pair_of_wires_is_where_its_anomaly_comes_from) {
    for (const float strike : {0.0F, 180.0F}) {
        edit::LineSample line;
        line.load();
        ModelBody& pair = line.add_body(1250, 60, wire);
        pair.strike.value = strike;
        pair.dip.value = 35;
        pair.offset.value = 40;
        pair.susc.value = 500;
        const WirePair at = wire_pair(pair, strike == 0 ? 1 : -1);
        for (const auto& [place, sign] : {std::pair{at.first, 1}, std::pair{at.second, -1}}) {
            ModelBody& single = line.add_body(place.x, place.y, wire);
            single.strike.value = strike;
            single.offset.value = 0;
            single.susc.value = static_cast<float>(500 * sign);
        }
        model::refresh_model(line.session);
        double largest = 0;
        Workspace& w = line.workspace();
        for (int i = 1; i <= w.station_count; ++i) {
            const double both = w.body(2).response(i, 1) + w.body(3).response(i, 1);
            EXPECT_NEAR(w.body(1).response(i, 1), both, 0.002) << strike << " " << i;
            largest = std::max(largest, std::abs(both));
        }
        EXPECT_GT(largest, 0.1) << "something is compared";
    }
}

TEST(ParameterSketch, a_classic_pipe_lies_in_the_sketch_as_its_solid_does) {
    ModelBody body = sample_body(pipe, 1);
    body.strike.value = 0;  // along strike is north
    body.length.value = 130;
    body.width.value = 40;
    body.num_sectors = 32;
    for (const float dip : {0.0F, 18.0F, -30.0F})
        for (const float offset : {0.0F, 25.0F}) {
            body.dip.value = dip;
            body.offset.value = offset;
            BodySolid solid;
            Faults faults;
            ASSERT_EQ(forward::setup_cylinder_body(body, solid, faults), 0);
            const auto [south, north] = std::ranges::minmax(solid.transformed_points, {}, &Point3::y);
            const auto [low, high] = std::ranges::minmax(solid.transformed_points, {}, &Point3::z);
            const SketchPoints drawn = side_outlines(Formulas::classic, body).at(0);
            const auto [left, right] = std::ranges::minmax(drawn, {}, &chart::Point::x);
            const auto [bottom, top] = std::ranges::minmax(drawn, {}, &chart::Point::y);
            EXPECT_NEAR(left.x, south.y, 0.2) << dip << " " << offset;
            EXPECT_NEAR(right.x, north.y, 0.2) << dip << " " << offset;
            EXPECT_NEAR(bottom.y, low.z, 0.2) << dip << " " << offset;
            EXPECT_NEAR(top.y, high.z, 0.2) << dip << " " << offset;
        }
}

}  // namespace anomalis::show

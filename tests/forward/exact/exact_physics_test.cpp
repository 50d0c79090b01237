// Laws that every field of a body obeys, and its sum over many small pieces.

#include <functional>
#include <gtest/gtest.h>

#include "exact_line.h"
#include "forward/exact/exact_column.h"
#include "forward/exact/exact_point.h"
#include "forward/exact/exact_solid.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {
namespace {

constexpr double newton = 0.00667;

TEST(ExactPhysics, a_vertically_magnetised_body_shows_the_vertical_gradient_of_its_gravity) {
    for (const BodySample& sample : body_samples) {
        ExactLine line(61, 15);
        line.workspace.field.inclination = 90;
        add_sample(line, sample);
        const std::vector<double> magnetic = line.curve(Curve::magnetic);
        const double step = 0.02;
        line.lift(step);
        const std::vector<double> above = line.curve(Curve::gravity);
        line.lift(-2 * step);
        const std::vector<double> gradient = times(minus(line.curve(Curve::gravity), above), 1 / (2 * step));
        const ModelBody& body = line.body();
        const double j = body.susc.value * 1e-6 * line.workspace.field.intensity / (4 * exact_pi);
        EXPECT_LT(relative_difference(times(gradient, j / (newton * body.density.value)), magnetic), 1e-6)
            << sample.name;
    }
}

/// The three components of a body's magnetic field at one place, from its own formula.
using Component = std::function<void(const ExactPlace&, const ExactField&, std::span<double>)>;

Point3 field_at(const Component& component, const Point3& at) {
    const ExactPlace place{{&at.x, &at.y, &at.z, 1}, {1, 0, 0, 0, 0, 1}};
    ExactField field;
    field.magnetisation = {3, -2, 5};
    Point3 result;
    for (double Point3::*axis : {&Point3::x, &Point3::y, &Point3::z}) {
        field.direction = {};
        field.direction.*axis = 1;
        component(place, field, {&(result.*axis), 1});
    }
    return result;
}

TEST(ExactPhysics, the_field_has_no_sources_and_no_curl_outside_the_body) {
    SheetShape sheet;
    sheet.cotangent = 0.6;
    sheet.width = 60;
    sheet.rise = 8;
    sheet.near_end = -90;
    sheet.far_end = 120;
    sheet.plunge = 0.2;
    SheetShape deep = sheet;
    deep.depth = 150;
    PipeShape ring;
    ring.outer = 30;
    ring.inner = 20;
    Polyhedron polyhedron;
    const std::vector<std::pair<const char*, Component>> bodies{
        {"endless sheet", [&](auto& p, auto& f, auto v) { fill_plane_sheet_anomaly(p, sheet, f, v); }},
        {"sheet", [&](auto& p, auto& f, auto v) { fill_plane_sheet_anomaly(p, deep, f, v); }},
        {"step",
         [](auto& p, auto& f, auto v) {
             fill_step_anomaly(p, {40, 100}, f, v);
         }},
        {"pipe", [&](auto& p, auto& f, auto v) { fill_plane_pipe_anomaly(p, ring, f, v); }},
        {"column", [&](auto& p, auto& f, auto v) { fill_column_anomaly(p, sheet, f, v); }},
        {"sphere", [](auto& p, auto& f, auto v) { fill_sphere_anomaly(p, 30, f, v); }},
        {"prism", [&](auto& p, auto& f, auto v) {
             assign_prism(p.frame, deep, polyhedron);
             fill_solid_anomaly(p, f, polyhedron, v);
         }}};
    for (const auto& [name, component] : bodies)
        for (const Point3& at : {Point3{-45, 30, 35}, Point3{80, -70, 60}, Point3{20, 5, 45}}) {
            const double step = 0.01;
            // Named in the capture: clang 14 captures no structured binding otherwise.
            const auto slope = [&, &component = component](const Point3& along) {
                return (field_at(component, at + along * step) - field_at(component, at - along * step)) *
                       (1 / (2 * step));
            };
            const Point3 dx = slope({1, 0, 0}), dy = slope({0, 1, 0}), dz = slope({0, 0, 1});
            const double scale = length(dx) + length(dy) + length(dz);
            EXPECT_LT(std::abs(dx.x + dy.y + dz.z), 1e-6 * scale) << name;
            EXPECT_LT(std::abs(dx.y - dy.x), 1e-6 * scale) << name;
            EXPECT_LT(std::abs(dx.z - dz.x), 1e-6 * scale) << name;
            EXPECT_LT(std::abs(dy.z - dz.y), 1e-6 * scale) << name;
        }
}

/// Sums what a small piece of matter gives at each station over a body that is cut into pieces.
struct Pieces {
    explicit Pieces(ExactLine& the_line) : line(the_line), frame(exact_frame(line.body())) {
        field = exact_field(line.workspace, line.body(), frame);
        magnetic.assign(static_cast<std::size_t>(line.workspace.station_count), 0.0);
        gravity = magnetic;
    }

    void add(const Point3& in_body, double volume) {
        const Point3 at = placed(frame, in_body);
        const Point3 j = turned_out(frame, field.magnetisation), f = turned_out(frame, field.direction);
        for (int i = 1; i <= line.workspace.station_count; ++i) {
            const StationTable& s = line.workspace.stations;
            const Point3 r = Point3{s(i, column_east), s(i, column_north), s(i, column_sensor)} - at;
            const double d = length(r);
            const auto k = static_cast<std::size_t>(i - 1);
            magnetic[k] += volume * (3 * dot(j, r) * dot(f, r) / (d * d) - dot(j, f)) / (d * d * d);
            gravity[k] += volume * newton * line.body().density.value * r.z / (d * d * d);
        }
    }

    ExactLine& line;
    BodyFrame frame;
    ExactField field;
    std::vector<double> magnetic, gravity;
};

std::vector<double> steps(double from, double to, int count) {
    std::vector<double> values;
    for (int i = 0; i <= count; ++i) values.push_back(from + (to - from) * i / count);
    return values;
}

/// From 0 outward: even steps, then each a little longer than the one before.
std::vector<double> growing(double even_to, double step, double factor, double to) {
    std::vector<double> values{0};
    while (values.back() < to) {
        if (values.back() >= even_to) step *= factor;
        values.push_back(values.back() + step);
    }
    return values;
}

std::vector<double> both_ways(const std::vector<double>& outward) {
    std::vector<double> values;
    for (std::size_t i = outward.size(); i-- > 1;) values.push_back(-outward[i]);
    values.insert(values.end(), outward.begin(), outward.end());
    return values;
}

/// Two Gauss points in each stretch between breaks, which a sum over pieces of smooth fields needs.
struct Rule {
    std::vector<double> at, weight;

    explicit Rule(const std::vector<double>& breaks) {
        for (std::size_t i = 0; i + 1 < breaks.size(); ++i)
            for (const double side : {-1.0, 1.0}) {
                const double half = (breaks[i + 1] - breaks[i]) / 2;
                at.push_back((breaks[i] + breaks[i + 1]) / 2 + side * half / std::sqrt(3.0));
                weight.push_back(half);
            }
    }
};

/// Sums over a box of three rules whose points `put` places in the body, where it has `spread` its volume.
void add_box(Pieces& pieces, double spread, const Rule& across, const Rule& along, const Rule& down,
             const std::function<Point3(double, double, double)>& put) {
    for (std::size_t i = 0; i < across.at.size(); ++i)
        for (std::size_t j = 0; j < along.at.size(); ++j)
            for (std::size_t k = 0; k < down.at.size(); ++k)
                pieces.add(put(across.at[i], along.at[j], down.at[k]),
                           spread * across.weight[i] * along.weight[j] * down.weight[k]);
}

void expect_pieces_agree(ExactLine& line, const Pieces& pieces) {
    EXPECT_LT(relative_difference(line.curve(Curve::magnetic), pieces.magnetic), 1e-4);
    EXPECT_LT(relative_difference(line.curve(Curve::gravity), pieces.gravity), 1e-4);
}

struct ExactPieces : testing::Test {
    ExactLine line{7, 90, 20, 60};
    ModelBody& body = line.add(thick_sheet, 250, 65);

    void SetUp() override {
        body.dip.value = 60;
        body.width.value = 60;
        body.slope.value = 10;
        body.depth_extent.value = 100;
        body.length.value = 160;
        body.plunge.value = 12;
        body.offset.value = 25;
        body.rem_q.value = 0.7F;
        body.rem_i.value = 30;
        body.rem_d.value = 200;
        line.curve(Curve::magnetic);
    }

    void add_sheet(Pieces& pieces, const std::vector<double>& ys, const std::vector<double>& downs,
                   double plunge) const {
        const double cot = 1 / std::tan(exact_radians(60));
        const double slope = std::tan(exact_radians(10));
        const double width = 60 / (1 + slope * cot);
        add_box(pieces, 60 / width, Rule(steps(0, width, 6)), Rule(ys), Rule(downs),
                [=](double x, double y, double down) {
                    return Point3{x + down * cot, y, x * slope - down - y * plunge};
                });
    }
    const double fall = std::sin(exact_radians(12));
};

TEST_F(ExactPieces, a_prism_is_the_sum_of_its_pieces) {
    Pieces pieces(line);
    add_sheet(pieces, steps(25 - 80, 25 + 80, 18), steps(0, 100, 12), fall);
    expect_pieces_agree(line, pieces);
}

TEST_F(ExactPieces, a_column_is_the_sum_of_its_pieces_all_the_way_down) {
    body.depth_extent.value = 0;
    Pieces pieces(line);
    add_sheet(pieces, steps(25 - 80, 25 + 80, 18), growing(80, 8, 1.2, 3e7), fall);
    expect_pieces_agree(line, pieces);
}

TEST_F(ExactPieces, an_endless_sheet_is_the_sum_of_its_pieces_both_ways_along_strike) {
    body.length.value = 0;
    Pieces pieces(line);
    add_sheet(pieces, both_ways(growing(80, 10, 1.2, 1e6)), steps(0, 100, 12), 0);
    expect_pieces_agree(line, pieces);
}

TEST_F(ExactPieces, a_step_is_the_sum_of_its_pieces_as_far_as_its_side_reaches) {
    body.type = sloping_step;
    const double cot = 1 / std::tan(exact_radians(60));
    Pieces pieces(line);
    add_box(pieces, 1, Rule(growing(500, 10, 1.2, 1e8)), Rule(both_ways(growing(80, 10, 1.2, 1e8))),
            Rule(steps(0, 100, 10)), [=](double x, double y, double down) {
                return Point3{x + down * cot, y, -down};
            });
    expect_pieces_agree(line, pieces);
}

/// A pipe of many corners is its circle to far better than the pieces are.
TEST_F(ExactPieces, a_pipe_is_the_sum_of_its_pieces) {
    body.type = pipe;
    body.top.value = -90;
    body.num_sectors = 48;
    const double angle = exact_radians(72), c = std::cos(angle), s = std::sin(angle);
    Pieces pieces(line);
    const Rule radial(steps(0, 30, 4)), along(steps(25 - 80, 25 + 80, 20));
    constexpr int around = 24;
    for (std::size_t i = 0; i < radial.at.size(); ++i)
        for (std::size_t j = 0; j < along.at.size(); ++j)
            for (int k = 0; k < around; ++k) {
                const double turn = 2 * exact_pi * (k + 0.5) / around;
                const double x = radial.at[i] * std::cos(turn), up = radial.at[i] * std::sin(turn);
                pieces.add({x, along.at[j] * c + up * s, up * c - along.at[j] * s},
                           radial.weight[i] * radial.at[i] * 2 * exact_pi / around * along.weight[j]);
            }
    expect_pieces_agree(line, pieces);
}

TEST_F(ExactPieces, a_sphere_is_the_sum_of_its_pieces) {
    body.type = sphere;
    body.top.value = -30;
    Pieces pieces(line);
    const Rule radial(steps(0, 30, 4)), polar(steps(-1, 1, 16));
    constexpr int around = 24;
    for (std::size_t i = 0; i < radial.at.size(); ++i)
        for (std::size_t j = 0; j < polar.at.size(); ++j)
            for (int k = 0; k < around; ++k) {
                const double turn = 2 * exact_pi * (k + 0.5) / around, r = radial.at[i];
                const double level = r * std::sqrt(1 - polar.at[j] * polar.at[j]);
                pieces.add({level * std::cos(turn), level * std::sin(turn), r * polar.at[j]},
                           radial.weight[i] * r * r * polar.weight[j] * 2 * exact_pi / around);
            }
    expect_pieces_agree(line, pieces);
}

TEST(ExactPhysics, a_slab_of_100_m_weighs_4_19_mGal_on_every_route) {
    ExactLine line(3, 10);
    ModelBody& body = line.add(thick_sheet, 10, 90);
    body.density.value = 1;
    body.depth_extent.value = 100;
    const auto weight = [&] { return line.curve(Curve::gravity)[1]; };
    const double slab = 2 * exact_pi * newton * 100;
    EXPECT_NEAR(slab, 4.19, 0.002);
    // The line runs north; a body of strike 90 lies to the south of its reference point.
    body.width.value = 2e7F;
    body.distance.value = 1e7F;
    body.length.value = 0;
    EXPECT_NEAR(weight(), slab, 1e-4);
    body.length.value = 2e7F;
    EXPECT_NEAR(weight(), slab, 1e-4);
    body.width.value = 100;
    body.distance.value = 1e7F;
    body.type = sloping_step;
    EXPECT_NEAR(weight(), slab, 1e-4);
    body.distance.value = 10;
    EXPECT_NEAR(weight(), slab / 2, 1e-9);
    body.type = edge;
    body.distance.value = -1e7F;
    EXPECT_NEAR(weight(), 0, 1e-4);
}

TEST(ExactPhysics, a_sheet_without_lower_end_has_the_level_of_one_that_ends_100_km_down) {
    ExactLine line(201, 10);
    ModelBody& body = line.add(thick_sheet, 1050, 90);
    body.density.value = 1;
    body.depth_extent.value = body.length.value = 0;
    const std::vector<double> curve = line.curve(Curve::gravity);
    // Over an upright sheet, from the attraction of its plane strips down to the depth of the level.
    const auto upright = [](double x) {
        const auto strip = [](double u) {
            return u * std::log(u * u + 3600) - 2 * u + 120 * std::atan(u / 60);
        };
        return newton * (100 * 2 * std::log(1e5) - strip(x + 50) + strip(x - 50));
    };
    EXPECT_NEAR(curve[100], upright(0), 1e-9);
    EXPECT_NEAR(curve[60], upright(400), 1e-9);
    EXPECT_NEAR(curve[180], upright(800), 1e-9);
}

TEST(ExactPhysics, a_sheet_that_is_cut_in_two_still_weighs_the_same) {
    for (const float length : {0.0F, 240.0F})
        for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
            ExactLine line;
            const auto part = [&](double distance, float top, float width, float depth) {
                ModelBody& body = line.add(thick_sheet, distance, 90);
                body.dip.value = 45;
                body.top.value = top;
                body.width.value = width;
                body.depth_extent.value = depth;
                body.length.value = length;
                return line.curve(kind, line.workspace.body_count);
            };
            const std::vector<double> whole = part(500, 0, 80, 0);
            // The line runs north and the body strikes east, so that x across strike is towards the south.
            EXPECT_LT(relative_difference(plus(part(500, 0, 30, 0), part(470, 0, 50, 0)), whole), 1e-9);
            EXPECT_LT(relative_difference(plus(part(500, 0, 80, 100), part(400, -100, 80, 0)), whole), 1e-9);
        }
}

}  // namespace
}  // namespace anomalis::forward

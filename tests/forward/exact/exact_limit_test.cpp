// Bodies of limited size against polyhedra made here, and what they tend to as they grow.

#include <gtest/gtest.h>

#include "exact_line.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {
namespace {

/// The curve of a body that a test has built itself out of triangles.
std::vector<double> polyhedron_curve(ExactLine& line, Curve kind, const std::vector<Point3>& points,
                                     const std::vector<Facet>& facets) {
    Polyhedron polyhedron(points, facets);
    const Workspace& w = line.workspace;
    std::vector<double> values(static_cast<std::size_t>(w.station_count));
    const StationSpans stations{w.stations.column(column_east), w.stations.column(column_north),
                                w.stations.column(column_sensor)};
    const ModelBody& body = line.body();
    if (kind == Curve::gravity) {
        polyhedron.gravity(stations, body.density.value, values);
        return values;
    }
    const double i = exact_radians(w.field.inclination), d = exact_radians(w.field.declination);
    const Point3 f{std::cos(i) * std::sin(d), std::cos(i) * std::cos(d), -std::sin(i)};
    const double size = body.susc.value * 1e-6 * w.field.intensity / (4 * exact_pi);
    polyhedron.total_field(stations, f * size, f, values);
    return values;
}

/// A point by its distances across and along strike and up, from the reference point at the top.
Point3 in_survey(const ModelBody& body, double x, double y, double z) {
    const double s = std::sin(exact_radians(body.strike.value)),
                 c = std::cos(exact_radians(body.strike.value));
    return {body.east + x * c + y * s, body.north - x * s + y * c, body.top.value + z};
}

TEST(ExactLimited, a_sheet_is_the_parallelepiped_that_plan_and_section_draw) {
    ExactLine line;
    ModelBody& body = add_sample(line, body_samples[5]);
    line.curve(Curve::magnetic);  // finds the reference point
    const double cot = 1 / std::tan(exact_radians(70)), t = std::tan(exact_radians(-10));
    const double fall = std::sin(exact_radians(15));
    const double width = 60 / (1 + t * cot), depth = 140;
    std::vector<Point3> points;
    for (const double y : {40 - 115.0, 40 + 115.0})
        for (const double down : {0.0, depth})
            for (const double across : {0.0, width})
                points.push_back(in_survey(body, across + down * cot, y,
                                           (across > 0 ? width * t : 0.0) - down - y * fall));
    const std::vector<Facet> facets{{0, 1, 3}, {0, 3, 2}, {4, 7, 5}, {4, 6, 7}, {0, 5, 1}, {0, 4, 5},
                                    {2, 3, 7}, {2, 7, 6}, {0, 2, 6}, {0, 6, 4}, {1, 7, 3}, {1, 5, 7}};
    for (const Curve kind : {Curve::magnetic, Curve::gravity})
        EXPECT_LT(relative_difference(line.curve(kind), polyhedron_curve(line, kind, points, facets)), 1e-9);
}

TEST(ExactLimited, a_pipe_is_the_prism_of_its_ring_along_its_falling_axis) {
    ExactLine line;
    ModelBody& body = add_sample(line, body_samples[7]);
    body.num_sectors = 6;
    line.curve(Curve::magnetic);
    const double fall = exact_radians(35),
                 radius = 30 * std::sqrt(2 * exact_pi / (6 * std::sin(exact_pi / 3)));
    std::vector<Point3> points;
    for (const double at : {20 - 100.0, 20 + 100.0})
        for (int k = 0; k < 6; ++k) {
            const double x = radius * std::cos(k * exact_pi / 3), up = radius * std::sin(k * exact_pi / 3);
            points.push_back(in_survey(body, x, at * std::cos(fall) + up * std::sin(fall),
                                       up * std::cos(fall) - at * std::sin(fall)));
        }
    std::vector<Facet> facets;
    for (int k = 0; k < 6; ++k) {
        const int next = (k + 1) % 6;
        facets.insert(facets.end(), {{k, next + 6, next}, {k, k + 6, next + 6}});
        if (k >= 1 && k < 5) facets.insert(facets.end(), {{0, k, k + 1}, {6, 7 + k, 6 + k}});
    }
    for (const Curve kind : {Curve::magnetic, Curve::gravity})
        EXPECT_LT(relative_difference(line.curve(kind), polyhedron_curve(line, kind, points, facets)), 1e-9);
}

TEST(ExactLimited, a_hollow_pipe_is_what_a_thinner_one_leaves_of_a_thick_one) {
    for (const float cap : {0.0F, 12.0F})
        for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
            ExactLine line;
            ModelBody& body = add_sample(line, body_samples[7]);
            const std::vector<double> solid = line.curve(kind);
            body.shell_thickness = 5;
            body.end_thickness = cap;
            const std::vector<double> hollow = line.curve(kind);
            body.shell_thickness = body.end_thickness = 0;
            body.width.value = 50;
            body.length.value -= 2 * cap;
            EXPECT_LT(relative_difference(minus(solid, line.curve(kind)), hollow), 1e-9);
        }
}

/// Ratio of the differences from the endless form at a length and at twice it.
double gain_of_doubling(BodySample sample, Curve kind, bool demagnetised, float length) {
    ExactLine line;
    ModelBody& body = add_sample(line, sample);
    body.offset.value = body.plunge.value = 0;
    if (sample.type == pipe) body.dip.value = 0;
    body.include_demagnetisation = demagnetised ? 1 : 0;
    body.susc.value = 500000;
    body.length.value = 0;
    const std::vector<double> endless = line.curve(kind);
    body.length.value = length;
    const double once = largest_difference(line.curve(kind), endless);
    body.length.value = 2 * length;
    return once / largest_difference(line.curve(kind), endless);
}

TEST(ExactLimited, grown_long_a_body_tends_to_its_endless_form_with_the_square_of_its_length) {
    for (const std::size_t which : {1U, 5U, 7U})
        for (const Curve kind : {Curve::magnetic, Curve::gravity})
            EXPECT_NEAR(gain_of_doubling(body_samples[which], kind, false, 20000), 4, 0.1) << which;
}

TEST(ExactLimited, with_unlimited_depth_or_demagnetisation_with_the_length_itself) {
    EXPECT_NEAR(gain_of_doubling(body_samples[6], Curve::magnetic, false, 40000), 2, 0.1);
    EXPECT_NEAR(gain_of_doubling(body_samples[5], Curve::magnetic, true, 40000), 2, 0.15);
    EXPECT_NEAR(gain_of_doubling(body_samples[7], Curve::magnetic, true, 40000), 2, 0.1);
}

TEST(ExactLimited, a_deep_prism_tends_to_the_column) {
    ExactLine line;
    ModelBody& body = add_sample(line, body_samples[6]);
    for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
        body.depth_extent.value = 0;
        const std::vector<double> column = line.curve(kind);
        body.depth_extent.value = 50000;
        const double at_50 = largest_difference(line.curve(kind), column);
        body.depth_extent.value = 100000;
        const double at_100 = largest_difference(line.curve(kind), column);
        EXPECT_LT(at_50, 1e-2 * peak_of(column));
        EXPECT_NEAR(at_50 / at_100, kind == Curve::magnetic ? 4 : 2, 0.2);
    }
}

TEST(ExactLimited, a_deep_sheet_tends_to_the_one_without_end) {
    ExactLine line;
    ModelBody& body = add_sample(line, body_samples[0]);
    const std::vector<double> endless = line.curve(Curve::magnetic);
    body.depth_extent.value = 100000;
    EXPECT_LT(relative_difference(line.curve(Curve::magnetic), endless), 1e-3);
    // Gravity of such depth grows with its logarithm; at 100 km it has the level it is given.
    const std::vector<double> deep = line.curve(Curve::gravity);
    body.depth_extent.value = 0;
    EXPECT_LT(relative_difference(line.curve(Curve::gravity), deep), 5e-3);
}

TEST(ExactLimited, a_thin_sheet_is_a_thick_one_of_its_thickness_over_the_sine_of_its_dip) {
    for (const float dip : {90.0F, 60.0F, 25.0F, 140.0F})
        for (const float length : {0.0F, 250.0F})
            for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
                ExactLine line;
                ModelBody& body = line.add(thin_sheet, 500, 70);
                body.dip.value = dip;
                body.width.value = 0.5F;
                body.length.value = length;
                const std::vector<double> thin = line.curve(kind);
                body.type = thick_sheet;
                body.width.value = static_cast<float>(0.5 / std::sin(exact_radians(dip)));
                EXPECT_LT(relative_difference(thin, line.curve(kind)), 2e-7) << dip;
            }
}

}  // namespace
}  // namespace anomalis::forward

// Stations in places where formulas like to fail.

#include <gtest/gtest.h>

#include "exact_line.h"

namespace anomalis::forward {
namespace {

/// One station at a place in the axes of a body of strike 90 whose reference point is the origin: x to the
/// south, y to the east.
struct Probe : ExactLine {
    Probe() : ExactLine(3, 1, 0, 0) {
        turn(0);
        for (int i = 1; i <= 3; ++i) workspace.stations(i, column_north) -= 1;
        workspace.stations(2, column_north) = 0;
    }

    /// The third station is the probe; the reference point stands on the second.
    double at(Curve kind, double x, double y, double z) {
        workspace.stations(3, column_east) = y;
        workspace.stations(3, column_north) = -x;
        workspace.stations(3, column_sensor) = z;
        return curve(kind)[2];
    }
};

constexpr double pole_jump = 4 * exact_pi;

void place_sample(Probe& probe, const BodySample& sample) {
    ModelBody& body = add_sample(probe, sample, 1);
    body.strike.value = 90;
    body.top.value = 0;
}

TEST(ExactPlaces, every_place_in_and_about_a_body_has_a_finite_value) {
    for (const BodySample& sample : body_samples) {
        Probe probe;
        place_sample(probe, sample);
        for (const double x : {-30.0, 0.0, 1e-12, 4.0, 30.0, 90.0, 1e6})
            for (const double y : {-75.0, 0.0, 1e-10, 155.0, 1e6})
                for (const double z : {-1e5, -140.0, -60.0, -1e-12, 0.0, 35.0, 1e6})
                    for (const Curve kind : {Curve::magnetic, Curve::gravity})
                        ASSERT_TRUE(std::isfinite(probe.at(kind, x, y, z)))
                            << sample.name << " " << x << " " << y << " " << z;
    }
}

TEST(ExactPlaces, gravity_does_not_jump_anywhere) {
    for (const BodySample& sample : body_samples) {
        Probe probe;
        place_sample(probe, sample);
        for (const double x : {-20.0, 0.0, 30.0})
            for (const double y : {-75.0, 0.0, 30.0})
                for (const double z : {-40.0, -1.0, 0.0, 10.0}) {
                    const double there = probe.at(Curve::gravity, x, y, z);
                    for (const double step : {1e-7, -1e-7})
                        for (int axis = 0; axis < 3; ++axis)
                            EXPECT_NEAR(probe.at(Curve::gravity, x + (axis == 0 ? step : 0),
                                                 y + (axis == 1 ? step : 0), z + (axis == 2 ? step : 0)),
                                        there, 2e-6)
                                << sample.name << " " << x << " " << y << " " << z;
                }
    }
}

/// A body that is upright and has a level top from x = 0 to 60, as sheets of every kind.
struct UprightBody {
    const char* name;
    float depth_extent, length;
};
constexpr UprightBody upright_bodies[] = {
    {"sheet", 90, 0}, {"endless sheet", 0, 0}, {"prism", 90, 150}, {"column", 0, 150}};

TEST(ExactPlaces, the_field_jumps_by_the_poles_of_a_face_and_on_the_face_the_outside_holds) {
    for (const UprightBody& upright : upright_bodies) {
        Probe probe;
        ModelBody& body = probe.add(thick_sheet, 1, 90);
        body.width.value = 60;
        body.depth_extent.value = upright.depth_extent;
        body.length.value = upright.length;
        probe.workspace.field.inclination = 90;
        const double j = body.susc.value * 1e-6 * probe.workspace.field.intensity / (4 * exact_pi);
        const double outside = probe.at(Curve::magnetic, 30, 10, 1e-6);
        const double on_face = probe.at(Curve::magnetic, 30, 10, 0);
        const double inside = probe.at(Curve::magnetic, 30, 10, -1e-6);
        EXPECT_NEAR(on_face, outside, 1e-4) << upright.name;
        // Closed forms and triangles have the same hair's breadth for a face.
        EXPECT_NEAR(probe.at(Curve::magnetic, 30, 10, -5e-10), outside, 1e-4) << upright.name;
        // H of the poles: inside, 4 pi J less.
        EXPECT_NEAR(outside - inside, pole_jump * j, 1e-4) << upright.name;
        // The side walls carry no poles.
        EXPECT_NEAR(probe.at(Curve::magnetic, 1e-6, 10, -40), probe.at(Curve::magnetic, -1e-6, 10, -40),
                    1e-3);
    }
}

TEST(ExactPlaces, a_nanometre_inside_a_wall_or_an_end_face_the_outside_holds_too) {
    for (const UprightBody& upright : upright_bodies) {
        Probe probe;
        ModelBody& body = probe.add(thick_sheet, 1, 90);
        body.width.value = 60;
        body.depth_extent.value = upright.depth_extent;
        body.length.value = upright.length;
        probe.workspace.field.inclination = 0;
        const double j = body.susc.value * 1e-6 * probe.workspace.field.intensity / (4 * exact_pi);
        const auto jumps_after_a_hair = [&](const Point3& face, const Point3& inward) {
            const auto at = [&](double depth) {
                return probe.at(Curve::magnetic, face.x + inward.x * depth, face.y + inward.y * depth,
                                face.z);
            };
            EXPECT_NEAR(at(0), at(-1e-6), 1e-4) << upright.name;
            EXPECT_NEAR(at(9e-10), at(-1e-6), 1e-4) << upright.name;
            EXPECT_NEAR(at(-1e-6) - at(1e-6), pole_jump * j, 1e-3) << upright.name;
        };
        probe.workspace.field.declination = 180;
        jumps_after_a_hair({60, 10, -40}, {-1, 0, 0});
        jumps_after_a_hair({0, 10, -40}, {1, 0, 0});
        if (upright.length == 0) continue;
        probe.workspace.field.declination = 90;
        jumps_after_a_hair({25, 75, -40}, {0, -1, 0});
        jumps_after_a_hair({25, -75, -40}, {0, 1, 0});
    }
}

TEST(ExactPlaces, within_a_millimetre_of_an_edge_the_field_grows_no_more) {
    for (const UprightBody& upright : upright_bodies) {
        Probe probe;
        ModelBody& body = probe.add(thick_sheet, 1, 90);
        body.width.value = 60;
        body.depth_extent.value = upright.depth_extent;
        body.length.value = upright.length;
        for (const double x : {0.0, 60.0}) {
            const double at_edge = std::abs(probe.at(Curve::magnetic, x, 10, 0));
            EXPECT_LT(at_edge, 6 * body.susc.value * 1e-6 * probe.workspace.field.intensity) << upright.name;
        }
    }
}

TEST(ExactPlaces, stations_level_with_the_top_and_below_it_are_not_lifted) {
    for (const UprightBody& upright : upright_bodies) {
        Probe probe;
        ModelBody& body = probe.add(thick_sheet, 1, 90);
        body.width.value = 60;
        body.depth_extent.value = upright.depth_extent;
        body.length.value = upright.length;
        for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
            const double level = probe.at(kind, -40, 10, 0);
            EXPECT_NEAR(level, (probe.at(kind, -40, 10, 0.01) + probe.at(kind, -40, 10, -0.01)) / 2,
                        1e-5 * std::abs(level))
                << upright.name;
            EXPECT_GT(std::abs(probe.at(kind, -40, 10, -60) - level), 1e-3 * std::abs(level));
        }
    }
}

TEST(ExactPlaces, inside_a_sphere_the_field_is_uniform_and_gravity_grows_from_its_centre) {
    Probe probe;
    ModelBody& body = probe.add(sphere, 1, 90);
    body.width.value = 50;
    probe.workspace.field.inclination = 90;
    const double j = body.susc.value * 1e-6 * probe.workspace.field.intensity / (4 * exact_pi);
    for (const double x : {0.0, 10.0, 24.9})
        EXPECT_NEAR(probe.at(Curve::magnetic, x, 0, 0), -pole_jump * j / 3, 1e-9);
    EXPECT_NEAR(probe.at(Curve::magnetic, 0, 0, 25), 2 * pole_jump * j / 3, 1e-9);
    EXPECT_EQ(probe.at(Curve::gravity, 0, 0, 0), 0);
    EXPECT_NEAR(probe.at(Curve::gravity, 0, 0, 10) * 2, probe.at(Curve::gravity, 0, 0, 20), 1e-12);
    EXPECT_NEAR(probe.at(Curve::gravity, 0, 0, 25 - 1e-7), probe.at(Curve::gravity, 0, 0, 25), 1e-7);
}

TEST(ExactPlaces, far_away_a_body_is_its_dipole) {
    // Errors that grow with distance show here: the field has lost 15 digits to the size of its parts.
    Probe probe;
    ModelBody& body = probe.add(thick_sheet, 1, 90);
    body.width.value = 0.125F;
    body.depth_extent.value = 1;
    body.length.value = 0;
    probe.workspace.field.inclination = 90;
    const double j = body.susc.value * 1e-6 * probe.workspace.field.intensity / (4 * exact_pi);
    for (const double r : {1e3, 1e5}) {
        const double line_dipole = 2 * j * 0.125 / (r * r);
        EXPECT_NEAR(probe.at(Curve::magnetic, 0.0625, 0, r - 0.5), line_dipole, 2e-6 * line_dipole);
        EXPECT_NEAR(probe.at(Curve::magnetic, 0.0625 + r, 0, -0.5), -line_dipole, 2e-6 * line_dipole);
    }
}

TEST(ExactPlaces, the_field_of_a_wire_falls_off_within_a_millimetre_of_it) {
    Probe probe;
    ModelBody& body = probe.add(wire, 1, 90);
    body.susc.value = 5000;
    const double near = probe.at(Curve::magnetic, 0, 0, 1e-3);
    EXPECT_NEAR(probe.at(Curve::magnetic, 0, 0, 0), 0, 1e-12);
    EXPECT_LT(std::abs(probe.at(Curve::magnetic, 0, 0, 5e-4)), std::abs(near));
    EXPECT_EQ(probe.at(Curve::gravity, 0, 0, 5), 0);
}

}  // namespace
}  // namespace anomalis::forward

#include "forward/classic/limited_response.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/line.h"
#include "support/stale_body.h"

namespace anomalis::forward {

namespace {

/// The anomaly of a dipole with its whole moment at a point, nT.
double dipole(const Workspace& workspace, const Magnetisation& m, double volume, const Point3& at,
              int station) {
    const double n = workspace.stations(station, column_north) - at.y;
    const double e = workspace.stations(station, column_east) - at.x;
    const double d = at.z - workspace.stations(station, column_sensor);
    const double r = std::sqrt(n * n + e * e + d * d);
    const double along = (m.north * n + m.east * e + m.down * d) / (r * r);
    const AmbientField f = ambient_field(workspace);
    const double projected = (3 * along * n - m.north) * f.north + (3 * along * e - m.east) * f.east +
                             (3 * along * d - m.down) * f.down;
    return volume * projected / (r * r * r);
}

double pipe_volume(const ModelBody& body) {
    const double radius = body.width.value / 4;
    return 6 * std::sin(2 * std::acos(-1.0) / 12) * radius * radius * body.length.value;
}

}  // namespace

TEST(LimitedSheet, by_faces_is_the_polyhedron) {
    for (const double strike : {75.0, -60.0}) {
        Line line(151, 10, 5);
        ModelBody& body = line.add(thick_sheet, 703.3, strike);
        body.dip.value = 60;
        body.plunge.value = 8;
        body.slope.value = 12;
        body.offset.value = -40;
        body.rem_q.value = 0.8F;
        body.rem_d.value = 100;
        body.rem_i.value = 15;
        const std::vector<double> whole = line.response();
        body.include_demagnetisation = -1;
        const std::vector<double> by_faces = line.response();
        EXPECT_GT(peak_of(whole), 10);
        EXPECT_LT(largest_difference(whole, by_faces), 1e-5 * peak_of(whole));
        EXPECT_NE(body.response(70, 4), 0) << "the components stay in their columns";
    }
}

TEST(LimitedSheet, is_calculated_without_demagnetisation_whatever_the_mark_says) {
    Line line(51);
    ModelBody& body = line.add(thick_sheet, 250);
    body.susc.value = 2e6F;
    const std::vector<double> plain = line.response();
    body.include_demagnetisation = 1;
    EXPECT_EQ(plain, line.response());
}

TEST(LimitedSheet, rebuilds_its_moment_in_north_east_down) {
    Line line(11);
    ModelBody& body = line.add(thick_sheet, 50);
    body.rem_q.value = 1;
    body.rem_d.value = 90;
    line.calculate();
    const Magnetisation m = plain_magnetisation(line.workspace, body);
    EXPECT_FLOAT_EQ(body.moment_x, static_cast<float>(m.north));
    EXPECT_FLOAT_EQ(body.moment_y, static_cast<float>(m.east));
    EXPECT_FLOAT_EQ(body.moment_z, static_cast<float>(m.down));
    EXPECT_GT(body.moment_y, 100);
}

TEST(LimitedSheet, a_strike_of_180_more_is_the_same_prism_on_the_other_side) {
    Line line(101);
    line.workspace.field.inclination = 90;
    ModelBody& body = line.add(thick_sheet, 500, 90);
    const std::vector<double> curve = line.response();
    body.strike.value = -90;
    EXPECT_LT(largest_difference(curve, reversed(line.response())), 1e-4 * peak_of(curve));
    EXPECT_GT(largest_difference(curve, line.response()), 0.1 * peak_of(curve));
}

TEST(LimitedSheet, cut_in_two_along_strike_adds_up) {
    Line line(101);
    ModelBody& whole = line.add(thick_sheet, 503.3, 80);
    whole.length.value = 300;
    const std::vector<double> mag = line.response(), grav = line.response(2);
    whole.length.value = 100;
    whole.offset.value = -100;
    line.add(thick_sheet, 503.3, 80).length.value = 200;
    line.body(2).offset.value = 50;
    invalidate_body(line.body(1));
    line.calculate();
    for (int i = 1; i <= 101; ++i) {
        const auto at = static_cast<std::size_t>(i - 1);
        EXPECT_NEAR(line.workspace.mag.data(i, row_raw, stage_calculated), mag[at], 1e-4 * peak_of(mag));
        EXPECT_NEAR(line.workspace.grav.data(i, row_raw, stage_calculated), grav[at], 1e-4 * peak_of(grav));
    }
}

TEST(LimitedSheet, far_away_is_a_dipole) {
    Line line(51, 10, 0, 5000);
    ModelBody& body = line.add(thick_sheet, 250);
    body.susc.value = 1e6F;
    const std::vector<double> curve = line.response();
    const Magnetisation m = plain_magnetisation(line.workspace, body);
    for (int i = 1; i <= 51; i += 10) {
        // Width reaches south of the reference point for a strike of 90.
        const double expected =
            dipole(line.workspace, m, 100.0 * 250 * 250, {body.east, body.north - 50, -125}, i);
        EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)], expected, 0.01 * peak_of(curve));
    }
}

TEST(Pipe, far_away_is_a_dipole_and_a_point_mass_of_half_the_diameter) {
    Line line(51, 10, 0, 4000);
    ModelBody& body = line.add(pipe, 250);
    body.susc.value = 1e6F;
    const std::vector<double> mag = line.response(), grav = line.response(2);
    const Magnetisation m = plain_magnetisation(line.workspace, body);
    for (int i = 1; i <= 51; i += 10) {
        const auto at = static_cast<std::size_t>(i - 1);
        EXPECT_NEAR(mag[at], dipole(line.workspace, m, pipe_volume(body), {body.east, body.north, 0}, i),
                    0.01 * peak_of(mag));
        EXPECT_NEAR(grav[at], 0.00667 * 2.67 * pipe_volume(body) / (4000.0 * 4000), 0.02 * peak_of(grav));
    }
}

TEST(Pipe, its_offset_acts_against_the_one_of_a_sheet) {
    Line line(101, 10, 90);
    // Half below the line, half beyond it: the side matters for an inclined field.
    ModelBody& body = line.add(pipe, 500, 0);
    body.offset.value = 80;
    const std::vector<double> shifted = line.response();
    EXPECT_NEAR(body.solid.placement.origin.y, 6500000 - 125 - 80, 1e-6);
    body.offset.value = -80;
    EXPECT_GT(largest_difference(shifted, line.response()), 0.1 * peak_of(shifted));
}

TEST(Pipe, of_any_fineness_gives_about_the_same) {
    Line line(101);
    ModelBody& body = line.add(pipe, 500, 70);
    body.dip.value = 15;
    const std::vector<double> coarse = line.response();
    body.num_segments = 6;
    EXPECT_LT(largest_difference(coarse, line.response()), 1e-6 * peak_of(coarse)) << "cut along the axis";
    body.num_sectors = 60;
    // 12 corners hold 95.5 % of the circle.
    EXPECT_LT(largest_difference(times(coarse, 1 / 0.9549), line.response()), 0.01 * peak_of(coarse));
}

TEST(Pipe, a_shell_and_its_filling_are_the_full_pipe) {
    Line line(101);
    ModelBody& shell = line.add(pipe, 500, 70);
    const std::vector<double> full = line.response(), mass = line.response(2);
    shell.shell_thickness = 20;
    // The wall is taken off the diameter, which is half the width.
    line.add(pipe, 500, 70).width.value = 60;
    invalidate_body(line.body(1));
    line.calculate();
    for (int i = 1; i <= 101; ++i) {
        const auto at = static_cast<std::size_t>(i - 1);
        EXPECT_NEAR(line.workspace.mag.data(i, row_raw, stage_calculated), full[at], 1e-5 * peak_of(full));
        EXPECT_NEAR(line.workspace.grav.data(i, row_raw, stage_calculated), mass[at], 1e-5 * peak_of(mass));
    }
}

TEST(Pipe, an_impossible_shell_is_zero_without_a_message) {
    Line line(11);
    line.add(pipe, 50, 70).shell_thickness = 60;
    EXPECT_EQ(peak_of(line.response()), 0);
    EXPECT_EQ(peak_of(line.response(2)), 0);
    EXPECT_TRUE(line.faults.empty());
}

TEST(Pipe, without_length_is_a_sheet_for_magnetics_and_nothing_for_gravity) {
    Line line(11);
    ModelBody& body = line.add(pipe, 50, 70);
    body.length.value = 0;
    body.dip.value = 60;
    line.calculate();
    EXPECT_GT(std::abs(body.response(6, 1)), 1);
    EXPECT_EQ(body.response(6, 2), 0);
    ASSERT_EQ(line.faults.entries().size(), 1U);
    EXPECT_EQ(texts_of(line.faults)[0],
              "An error occurred while creating the graphic object: Division by zero");
}

TEST(Pipe, segments_change_no_curve) {
    for (const int column : {1, 2})
        for (const float shell : {0.0F, 5.0F}) {
            Line line(101);
            ModelBody& body = line.add(pipe, 503, 70);
            body.dip.value = 20;
            body.shell_thickness = shell;
            const std::vector<double> one = line.response(column);
            body.num_segments = 40;
            EXPECT_LT(largest_difference(one, line.response(column)), 2e-7 * peak_of(one));
            EXPECT_GT(body.solid.facets.size(), 900U) << "what is drawn and exported has them";
        }
}

TEST(Pipe, too_many_facets_are_told_and_zero) {
    Line line(11);
    ModelBody& body = line.add(pipe, 50, 70);
    body.max_triangle_size = 0.002F;
    line.calculate();
    EXPECT_TRUE(told(line.faults, "An error occurred while setting up the cylinder body: "));
    EXPECT_TRUE(told(line.faults, "facets, the limit is 2000000 ("));
    EXPECT_TRUE(told(line.faults, "cost less) (2 times)")) << "magnetics and gravity";
    EXPECT_EQ(body.response(6, 1), 0);
    EXPECT_EQ(body.response(6, 2), 0);
}

}  // namespace anomalis::forward

#include "forward/classic/demagnetisation.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

namespace {

struct Case {
    Faults faults;
    ModelBody body;
    Polyhedron polyhedron;

    Case() {
        body.type = pipe;
        body.width.value = 200;
        body.length.value = 100;
        body.num_sectors = 60;
        body.susc.value = 1e6F;
    }
    Magnetisation run(const Magnetisation& plain) {
        EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
        return demagnetised_pipe(body, plain, polyhedron);
    }
};

}  // namespace

TEST(Demagnetisation, factors_of_a_full_pipe_sum_to_one) {
    for (const float length : {10.0F, 100.0F, 3000.0F}) {
        Case c;
        c.body.length.value = length;
        c.run({1, 0, 0});
        const auto& factors = c.body.solid.demagnetisation;
        EXPECT_TRUE(factors.known);
        EXPECT_NEAR(factors.along + 2 * factors.across, 1, 1e-9);
    }
}

TEST(Demagnetisation, at_the_centroid_of_a_cylinder_is_its_closed_formula) {
    // On the axis of a uniformly magnetised cylinder, half way along: N = 1 - cos of the half angle of its
    // ends.
    Case c;
    c.run({1, 0, 0});
    // Length 100, physical diameter 100: the polygon of 60 corners is a circle to 0.2 %.
    EXPECT_NEAR(c.body.solid.demagnetisation.along, 1 - 1 / std::sqrt(2.0), 1e-3);
}

TEST(Demagnetisation, long_pipes_have_a_half_across_and_flat_ones_one_along) {
    Case c;
    c.body.length.value = 1e5F;
    c.run({1, 0, 0});
    EXPECT_NEAR(c.body.solid.demagnetisation.across, 0.5, 1e-6);
    c.body.length.value = 0.1F;
    c.run({1, 0, 0});
    EXPECT_NEAR(c.body.solid.demagnetisation.along, 1, 2e-3);
}

TEST(Demagnetisation, reduces_along_and_across_the_axis_by_their_own_factor) {
    Case c;
    c.body.strike.value = 90;
    const Magnetisation m = c.run({100, 60, 30});
    const auto& n = c.body.solid.demagnetisation;
    // The axis points east.
    EXPECT_NEAR(m.east, 60 / (1 + n.along), 1e-4);
    EXPECT_NEAR(m.north, 100 / (1 + n.across), 1e-4);
    EXPECT_NEAR(m.down, 30 / (1 + n.across), 1e-4);
}

TEST(Demagnetisation, follows_an_axis_that_dips) {
    Case c;
    c.body.dip.value = 90;
    const Magnetisation m = c.run({100, 60, 30});
    const auto& n = c.body.solid.demagnetisation;
    EXPECT_NEAR(m.down, 30 / (1 + n.along), 1e-4);
    EXPECT_NEAR(m.north, 100 / (1 + n.across), 1e-4);
    c.body.dip.value = 30;
    c.body.strike.value = 20;
    const Magnetisation oblique = c.run({100, 60, 30});
    const double axis[3] = {std::cos(20 * radians_per_degree) * std::cos(30 * radians_per_degree),
                            std::sin(20 * radians_per_degree) * std::cos(30 * radians_per_degree),
                            std::sin(30 * radians_per_degree)};
    const double before = 100 * axis[0] + 60 * axis[1] + 30 * axis[2];
    EXPECT_NEAR(oblique.north * axis[0] + oblique.east * axis[1] + oblique.down * axis[2],
                before / (1 + n.along), 1e-4);
}

TEST(Demagnetisation, of_a_hollow_pipe_is_the_mean_over_its_wall) {
    Case c;
    c.body.num_sectors = 12;
    c.body.num_segments = 4;
    c.body.shell_thickness = 30;
    c.run({1, 0, 0});
    // All mid-wall points, asked one by one.
    Polyhedron shell(c.body.solid.points, c.body.solid.facets);
    double along = 0, across = 0, trace = 0;
    for (int segment = 0; segment < 4; ++segment)
        for (int sector = 0; sector < 12; ++sector) {
            const double angle = (sector + 0.5) * std::acos(-1.0) / 6;
            const double radius = (50 + 35) / 2.0 * std::cos(std::acos(-1.0) / 12);
            const Tensor3 n = shell.demagnetising_tensor(
                {radius * std::sin(angle), (segment + 0.5) * 25, radius * std::cos(angle)});
            along += n.yy / 48;
            across += (n.xx + n.zz) / 96;
            trace += n.trace() / 48;
        }
    EXPECT_NEAR(trace, 1, 1e-9) << "the points lie in the wall";
    EXPECT_NEAR(c.body.solid.demagnetisation.along, along, 1e-7);
    EXPECT_NEAR(c.body.solid.demagnetisation.across, across, 1e-7);
}

TEST(Demagnetisation, of_a_pipe_of_many_segments_is_that_of_its_whole_solid_at_every_point) {
    for (const float cap : {0.0F, 20.0F})
        for (const std::int32_t segments : {2, 7, 50}) {
            Case c;
            c.body.num_sectors = 12;
            c.body.num_segments = segments;
            c.body.shell_thickness = 30;
            c.body.end_thickness = cap;
            c.run({1, 0, 0});
            // The surface with all its segments, asked at one point after the other.
            Polyhedron shell(c.body.solid.points, c.body.solid.facets);
            double along = 0, across = 0;
            for (int segment = 0; segment < segments; ++segment) {
                const double at = (segment + 0.5) * 100 / segments;
                const double middle = (at + cap + at * (100 - 2 * cap) / 100) / 2;
                const double step = std::acos(-1.0) / 6, radius = (50 + 35) / 2.0;
                const Tensor3 n = shell.demagnetising_tensor(
                    {-radius * (1 + std::cos(step)) / 2, middle, radius * std::sin(step) / 2});
                along += n.yy / segments;
                across += (n.xx + n.zz) / 2 / segments;
            }
            EXPECT_NEAR(c.body.solid.demagnetisation.along, along, 1e-12) << segments;
            EXPECT_NEAR(c.body.solid.demagnetisation.across, across, 1e-12) << segments;
        }
}

TEST(Demagnetisation, of_a_capped_pipe_takes_points_in_its_wall_too) {
    Case c;
    c.body.num_segments = 5;
    c.body.shell_thickness = 30;
    c.body.end_thickness = 20;
    c.run({1, 0, 0});
    const auto& factors = c.body.solid.demagnetisation;
    EXPECT_NEAR(factors.along + 2 * factors.across, 1, 1e-9);
}

TEST(Demagnetisation, is_kept_until_the_shape_changes) {
    Case c;
    c.run({1, 0, 0});
    c.body.solid.demagnetisation.along = 0.25;
    c.body.strike.value = 30;
    c.run({1, 0, 0});
    EXPECT_EQ(c.body.solid.demagnetisation.along, 0.25);
    c.body.length.value = 120;
    c.run({1, 0, 0});
    EXPECT_NE(c.body.solid.demagnetisation.along, 0.25);
}

TEST(Demagnetisation, with_a_factor_of_zero_is_a_fault) {
    Case c;
    c.run({1, 0, 0});
    c.body.solid.demagnetisation.along = 0.5;
    c.body.susc.value = -2e6F;
    EXPECT_THROW(c.run({1, 0, 0}), Fault);
}

TEST(Demagnetisation, of_a_weak_pipe_is_small_and_of_a_strong_one_is_not) {
    Line line(101);
    ModelBody& body = line.add(pipe, 500, 70);
    body.susc.value = 100;
    const std::vector<double> weak = line.response();
    body.include_demagnetisation = 1;
    EXPECT_LT(largest_difference(weak, line.response()), 2e-4 * peak_of(weak));
    body.susc.value = 1e6F;
    const std::vector<double> with = line.response();
    body.include_demagnetisation = 0;
    EXPECT_LT(peak_of(with), 0.8 * peak_of(line.response()));
}

TEST(Demagnetisation, any_mark_but_zero_demagnetises_a_pipe) {
    Line line(31);
    ModelBody& body = line.add(pipe, 150, 70);
    body.susc.value = 1e6F;
    body.include_demagnetisation = 1;
    const std::vector<double> with = line.response();
    body.include_demagnetisation = -1;
    EXPECT_EQ(with, line.response());
}

}  // namespace anomalis::forward

#include "forward/exact/shape_demagnetisation.h"

#include <cmath>
#include <gtest/gtest.h>

#include "exact_line.h"
#include "forward/exact/face_potential_kernel.h"

namespace anomalis::forward {
namespace {

void expect_tensor(const Tensor3& n, const Tensor3& m, double tolerance) {
    for (double Tensor3::*part :
         {&Tensor3::xx, &Tensor3::xy, &Tensor3::xz, &Tensor3::yy, &Tensor3::yz, &Tensor3::zz})
        EXPECT_NEAR(n.*part, m.*part, tolerance);
}

/// N up of a rectangle of height / width p.
double rectangle(double p) {
    return ((1 - p * p) / (2 * p) * std::log(1 + p * p) + p * std::log(p) + 2 * std::atan(1 / p)) / exact_pi;
}

TEST(ShapeDemagnetisation, rectangles_have_their_closed_form) {
    for (const double p : {0.02, 0.3, 1.0, 5.0, 40.0}) {
        const auto [xx, xz, zz] = plane_demagnetisation({30, 0}, {0, -30 * p});
        EXPECT_NEAR(zz, rectangle(p), 1e-12);
        EXPECT_NEAR(xx + zz, 1, 1e-12);
        EXPECT_NEAR(xz, 0, 1e-12);
    }
    EXPECT_NEAR(rectangle(1), 0.5, 1e-12);
    // Thin sheets tend to 1 across.
    EXPECT_NEAR(plane_demagnetisation({0.2, 0}, {0, 1})[0], 0.802, 0.0005);
    EXPECT_NEAR(plane_demagnetisation({0.01, 0}, {0, 1})[0], 0.981, 0.0005);
}

TEST(ShapeDemagnetisation, a_plane_section_turns_with_its_tensor_and_keeps_its_trace) {
    const auto straight = plane_demagnetisation({50, 0}, {20, -80});
    const double c = std::cos(0.7), s = std::sin(0.7);
    const auto turned = plane_demagnetisation({50 * c, 50 * s}, {20 * c + 80 * s, 20 * s - 80 * c});
    EXPECT_NEAR(straight[0] + straight[2], 1, 1e-12);
    EXPECT_NEAR(turned[0], c * c * straight[0] - 2 * c * s * straight[1] + s * s * straight[2], 1e-12);
    EXPECT_NEAR(turned[2], s * s * straight[0] + 2 * c * s * straight[1] + c * c * straight[2], 1e-12);
}

TEST(ShapeDemagnetisation, a_square_has_its_potential_over_its_centre_and_its_corner) {
    const double corners[12] = {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0}, normal[3] = {0, 0, 1};
    // Nine places, so that the last one stands alone behind every width of vectors.
    const std::vector<double> x{1, 0, 0, 1, 1, 1, 1, 1, 1}, y{1, 0, 2, 1, 1, 1, 1, 1, 1},
        z{0, 0, 0, 1, -1, 1, -1, 1, 1};
    const auto run = [&](vector::VectorLevel level) {
        std::vector<double> potential(x.size());
        face_potentials_at(level)({corners, 4, normal}, {x.data(), y.data(), z.data(), x.size()},
                                  potential.data());
        return potential;
    };
    const std::vector<double> potential = run(vector::VectorLevel::baseline);
    const double side = std::log(1 + std::sqrt(2.0));
    EXPECT_NEAR(potential[0], 8 * side, 1e-14);
    EXPECT_NEAR(potential[1], 4 * side, 1e-14);
    EXPECT_NEAR(potential[2], 4 * side, 1e-14);
    // Eight triangles of the height 1: of each ln((1 + sqrt 3) / sqrt 2) less the angle.
    const double above = 8 * std::log((1 + std::sqrt(3.0)) / std::sqrt(2.0)) - 2 * exact_pi / 3;
    for (std::size_t i = 3; i < x.size(); ++i) EXPECT_NEAR(potential[i], above, 1e-14);
    for (const vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512})
        if (level <= vector::widest_vector_level()) {
            EXPECT_EQ(run(level), potential) << vector::vector_level_name(level);
        }
}

TEST(ShapeDemagnetisation, a_cube_has_a_third_each_way) {
    expect_tensor(prism_demagnetisation({Point3{7, 0, 0}, Point3{0, 7, 0}, Point3{0, 0, 7}}),
                  sphere_demagnetisation(), 1e-8);
}

TEST(ShapeDemagnetisation, a_skew_prism_has_trace_1_whatever_the_order_of_its_edges) {
    const Point3 a{60, 0, 5}, b{0, 150, -30}, c{40, 0, -90};
    const Tensor3 n = prism_demagnetisation({a, b, c});
    EXPECT_NEAR(n.trace(), 1, 1e-7);
    expect_tensor(prism_demagnetisation({c, a, b}), n, 1e-7);
    expect_tensor(prism_demagnetisation({Point3{-40, 0, 90}, b, a}), n, 1e-7);
}

TEST(ShapeDemagnetisation, flat_plates_tend_to_1_across) {
    const auto across = [](double thickness) {
        return prism_demagnetisation({Point3{thickness, 0, 0}, Point3{0, 1, 0}, Point3{0, 0, 1}}).xx;
    };
    EXPECT_LT(across(0.2), across(0.05));
    EXPECT_GT(across(0.001), 0.995);
    EXPECT_LT(across(0.001), 1);
}

TEST(ShapeDemagnetisation, veins_and_flakes_have_a_tensor_of_trace_1) {
    for (const double width : {1e-3, 0.01, 0.1, 1.0, 1000.0})
        for (const double size : {1.0, 30.0, 2000.0})
            for (const double lean : {0.0, 0.9}) {
                const Tensor3 n =
                    prism_demagnetisation({Point3{width, 0, 0.3 * width}, Point3{0, size, -0.2 * size},
                                           Point3{lean * size, 0, -size}});
                EXPECT_NEAR(n.trace(), 1, 2e-4) << width << " by " << size << " leaning " << lean;
            }
}

TEST(ShapeDemagnetisation, a_long_prism_tends_to_its_section_and_a_deep_one_to_its_column) {
    SheetShape sheet;
    sheet.cotangent = 0.5;
    sheet.width = 40;
    sheet.rise = 6;
    sheet.depth = 70;
    const Tensor3 section = sheet_demagnetisation(sheet);
    EXPECT_NEAR(section.xx + section.zz, 1, 1e-12);
    sheet.limited = true;
    sheet.near_end = -20000;
    sheet.far_end = 20000;
    expect_tensor(sheet_demagnetisation(sheet), section, 1e-3);
    sheet.near_end = -60;
    sheet.far_end = 60;
    sheet.plunge = 0.2;
    sheet.depth = 0;
    const Tensor3 column = sheet_demagnetisation(sheet);
    EXPECT_NEAR(column.trace(), 1, 1e-12);
    sheet.depth = 40000;
    expect_tensor(sheet_demagnetisation(sheet), column, 1e-3);
    sheet.depth = 0;
    sheet.limited = false;
    EXPECT_NEAR(sheet_demagnetisation(sheet).trace(), 1, 1e-12);
}

PipeShape level_pipe(double radius, double length, double hole = 0, double cap = 0) {
    PipeShape pipe;
    pipe.sectors = 96;
    const double share = std::sqrt(exact_pi / ring_area(96, 1));
    pipe.outer = radius * share;
    pipe.inner = hole * share;
    pipe.cap = cap;
    pipe.limited = true;
    pipe.far_end = length;
    return pipe;
}

TEST(ShapeDemagnetisation, pipes_have_the_factors_of_cylinders) {
    const Tensor3 equal = pipe_demagnetisation(level_pipe(25, 50));
    EXPECT_NEAR(equal.yy, 0.3116, 0.0001);
    EXPECT_NEAR(equal.trace(), 1, 1e-12);
    EXPECT_LT(pipe_demagnetisation(level_pipe(25, 50000)).yy, 1e-3);
    EXPECT_NEAR(pipe_demagnetisation(level_pipe(25, 50, 1e-4)).yy, equal.yy, 1e-6);
    EXPECT_NEAR(pipe_demagnetisation(level_pipe(25, 50, 1e-4, 5)).yy, equal.yy, 1e-6);
    // A shell is magnetised across its ends more easily than the full bar.
    EXPECT_LT(pipe_demagnetisation(level_pipe(25, 50, 20)).yy, equal.yy);
    expect_tensor(pipe_demagnetisation(PipeShape{}), {0.5, 0, 0, 0, 0, 0.5}, 0);
}

TEST(ShapeDemagnetisation, a_sphere_loses_a_third_of_its_susceptibility) {
    ExactLine line;
    ModelBody& body = line.add(sphere, 500, 0);
    body.top.value = -60;
    body.susc.value = 600000;
    body.rem_q.value = 1.5F;
    body.rem_i.value = 10;
    body.rem_d.value = 75;
    const std::vector<double> plain = line.curve(Curve::magnetic);
    body.include_demagnetisation = 1;
    EXPECT_LT(relative_difference(times(line.curve(Curve::magnetic), 1 + 0.6 / 3), plain), 1e-7);
    for (const int flag : {2, -1}) {
        body.include_demagnetisation = flag;
        EXPECT_EQ(line.curve(Curve::magnetic), plain);
    }
}

TEST(ShapeDemagnetisation, no_magnetisation_is_made_of_a_susceptibility_of_minus_1_and_below) {
    for (const double chi : {-1.0, -2.0})
        EXPECT_EQ(demagnetised(slab_demagnetisation(), chi, {1, 2, 3}), (Point3{1, 2, 3}));
    const Point3 j = demagnetised(slab_demagnetisation(), -0.5, {1, 2, 3});
    EXPECT_NEAR(j.z, 6, 1e-12);
    EXPECT_NEAR(j.x, 1, 1e-12);
}

TEST(ShapeDemagnetisation, the_tensor_is_kept_while_the_shape_stays) {
    ExactLine line;
    ModelBody& body = add_sample(line, body_samples[5]);
    const double before = body_demagnetisation(body).xx;
    body.demagnetisation.tensor[0] = 0.125;
    body.susc.value = 90000;
    body.strike.value = 12;
    body.top.value = -30;
    body.offset.value = 5;
    EXPECT_EQ(body_demagnetisation(body).xx, 0.125);
    body.width.value += 1;
    EXPECT_NE(body_demagnetisation(body).xx, 0.125);
    body.width.value -= 1;
    EXPECT_EQ(body_demagnetisation(body).xx, before);
}

}  // namespace
}  // namespace anomalis::forward

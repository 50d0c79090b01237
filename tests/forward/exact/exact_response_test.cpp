#include "forward/exact/exact_response.h"

#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "exact_line.h"
#include "support/stale_body.h"

namespace anomalis::forward {
namespace {

TEST(ExactResponse, the_driver_takes_the_route_that_the_workspace_chooses) {
    Line line(41, 25, 90, 60);
    ModelBody& body = line.add(thick_sheet, 503, 0);
    body.length.value = 0;
    body.dip.value = 70;
    const std::vector<double> classic = line.response();
    line.use(Formulas::exact);
    const std::vector<double> exact = line.response();
    EXPECT_GT(relative_difference(classic, exact), 0.2);
    line.use(Formulas::classic);
    EXPECT_EQ(line.response(), classic);
    EXPECT_TRUE(line.faults.empty());
}

TEST(ExactResponse, the_table_holds_the_curve_in_single_precision) {
    ExactLine line;
    add_sample(line, body_samples[5]);
    for (const auto& [kind, column] : {std::pair{Curve::magnetic, 1}, std::pair{Curve::gravity, 2}})
        EXPECT_LT(relative_difference(line.response(column), line.curve(kind)), 6e-8);
}

TEST(ExactResponse, only_bodies_out_of_date_are_calculated_and_one_switched_off_gives_zero) {
    ExactLine line;
    for (const std::size_t which : {0U, 3U}) add_sample(line, body_samples[which]);
    line.calculate();
    line.body(1).response(7, 1) = 12345;
    line.body(2).turned_off = 1;
    invalidate_body(line.body(2));
    line.calculate();
    EXPECT_EQ(line.workspace.mag.data(7, row_raw, stage_calculated), 12345);
    EXPECT_EQ(line.body(2).response(7, 1), 0);
}

TEST(ExactResponse, what_has_no_shape_is_told_once_a_calculation) {
    ExactLine line;
    for (int i = 0; i < 3; ++i) line.add(polygon, 300);
    for (int i = 0; i < 2; ++i) {
        ModelBody& body = line.add(thick_sheet, 300);
        body.dip.value = 135;
        body.slope.value = 50;
    }
    line.calculate();
    EXPECT_EQ(texts_of(line.faults),
              (std::vector<std::string>{
                  "A Polygon body has no shape in this version: its response is zero",
                  "The sloping top of the body does not meet its far wall: its response is zero"}));
    for (int number = 1; number <= 5; ++number)
        EXPECT_EQ(peak_of(line.curve(Curve::magnetic, number)) + peak_of(line.curve(Curve::gravity, number)),
                  0);
}

TEST(ExactResponse, a_slope_of_90_never_meets_its_wall) {
    ExactLine line;
    ModelBody& body = line.add(thick_sheet, 300);
    for (const float slope : {90.0F, -90.0F, 135.0F}) {
        body.slope.value = slope;
        line.notes = {};
        EXPECT_EQ(peak_of(line.curve(Curve::gravity)), 0);
        EXPECT_TRUE(line.notes.steep_top);
    }
}

TEST(ExactResponse, no_parameter_is_overwritten) {
    for (const BodySample& sample : body_samples) {
        ExactLine line;
        ModelBody& body = add_sample(line, sample);
        const ModelBody before = body;
        line.calculate();
        for (const BodyParameter& row : body_parameters())
            EXPECT_EQ(body.*row.slot, before.*row.slot) << sample.name;
    }
}

TEST(ExactResponse, the_sign_of_the_susceptibility_and_of_the_density_is_the_sign_of_the_curve) {
    for (const BodySample& sample : body_samples) {
        ExactLine line;
        ModelBody& body = add_sample(line, sample);
        body.rem_q.value = -0.8F;
        body.rem_i.value = 45;
        const std::vector<double> magnetic = line.curve(Curve::magnetic),
                                  gravity = line.curve(Curve::gravity);
        body.susc.value *= -1;
        body.density.value *= -1;
        EXPECT_LT(relative_difference(times(line.curve(Curve::magnetic), -1), magnetic), 1e-14);
        EXPECT_LT(relative_difference(times(line.curve(Curve::gravity), -1), gravity), 1e-14);
        body.susc.value = 1e-9F;
        body.density.value = 1e-7F;
        EXPECT_GT(peak_of(line.curve(Curve::magnetic)), 0) << "nothing is too small to count";
        EXPECT_GT(peak_of(line.curve(Curve::gravity)), 0);
    }
}

TEST(ExactResponse, a_body_without_width_gives_nothing) {
    for (const BodySample& sample : body_samples) {
        if (sample.type == edge || sample.type == sloping_step) continue;
        ExactLine line;
        add_sample(line, sample).width.value = 0;
        EXPECT_EQ(peak_of(line.curve(Curve::magnetic)) + peak_of(line.curve(Curve::gravity)), 0)
            << sample.name;
    }
}

TEST(ExactResponse, a_negative_width_lies_on_the_other_side_and_a_negative_extent_upward) {
    for (const float length : {0.0F, 200.0F})
        for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
            ExactLine line(101, 10, 0, 160);
            ModelBody& body = line.add(thick_sheet, 500, 90);
            body.dip.value = 70;
            body.width.value = -50;
            body.depth_extent.value = 100;
            body.length.value = length;
            const std::vector<double> other_side = line.curve(kind);
            body.width.value = 50;
            body.distance.value = 550;
            EXPECT_LT(relative_difference(line.curve(kind), other_side), 1e-9);
            // Upward from the lower end of the same sheet: its cotangent leads back over the reference point.
            body.depth_extent.value = -100;
            body.top.value = -100;
            body.distance.value = static_cast<float>(550 - 100 / std::tan(exact_radians(70)));
            EXPECT_LT(relative_difference(line.curve(kind), other_side), 1e-6);
        }
}

TEST(ExactResponse, flat_dips_lean_to_their_own_side) {
    EXPECT_EQ(dip_cotangent(0), 100);
    EXPECT_EQ(dip_cotangent(360), 100);
    EXPECT_EQ(dip_cotangent(180), -100);
    EXPECT_EQ(dip_cotangent(0.1), 100);
    EXPECT_EQ(dip_cotangent(179.9), -100);
    EXPECT_NEAR(dip_cotangent(90), 0, 1e-15);
    EXPECT_NEAR(dip_cotangent(45), 1, 1e-15);
    EXPECT_NEAR(dip_cotangent(135), -1, 1e-15);
    EXPECT_NEAR(dip_cotangent(-45), -1, 1e-14);
    EXPECT_NEAR(dip_cotangent(225), 1, 1e-14);
}

TEST(ExactResponse, a_parameter_that_is_no_number_is_told_and_counts_as_zero) {
    for (const BodySample& sample : body_samples) {
        ExactLine line;
        ModelBody& body = add_sample(line, sample);
        body.top.value = std::nanf("");
        body.include_demagnetisation = 1;
        line.calculate();
        EXPECT_TRUE(told(line.faults, "top is not a number")) << sample.name;
        EXPECT_EQ(peak_of({body.response(50, 1), body.response(50, 2)}), 0);
    }
}

TEST(ExactResponse, the_weakest_wire_keeps_its_digits_and_a_pair_cancels_from_afar) {
    ExactLine line;
    ModelBody& body = line.add(wire, 500, 60);
    body.susc.value = 1e-6F;
    const std::vector<double> weak = line.curve(Curve::magnetic);
    body.susc.value = 1e-3F;
    EXPECT_LT(relative_difference(times(weak, 1000), line.curve(Curve::magnetic)), 1e-6);
    body.susc.value = 3000;
    const double single = peak_of(line.curve(Curve::magnetic));
    body.offset.value = 0.5F;
    EXPECT_LT(peak_of(line.curve(Curve::magnetic)), 0.02 * single);
}

}  // namespace
}  // namespace anomalis::forward

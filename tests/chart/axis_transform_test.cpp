#include "chart/detail/axis_transform.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace anomalis::chart {
namespace {

AxisTransform logarithmic(double cutoff = 1.0, double base = 10.0) {
    AxisTransform scale;
    scale.type = 1;
    scale.set_base(base);
    scale.set_cutoff(cutoff);
    return scale;
}

TEST(AxisTransform, a_linear_axis_changes_nothing) {
    const AxisTransform scale;
    for (const double value : {-1e32, -5.0, 0.0, 7.25, 1e20}) {
        EXPECT_EQ(scale.forward(value), value);
        EXPECT_EQ(scale.inverse(value), value);
    }
}

TEST(AxisTransform, the_linear_band_maps_to_minus_one_to_one) {
    const AxisTransform scale = logarithmic(0.01);
    EXPECT_DOUBLE_EQ(scale.forward(0.01), 1.0);
    EXPECT_DOUBLE_EQ(scale.forward(-0.01), -1.0);
    EXPECT_DOUBLE_EQ(scale.forward(0.005), 0.5);
    EXPECT_DOUBLE_EQ(scale.forward(0.0), 0.0);
    EXPECT_NEAR(scale.forward(10.0), 4.0, 1e-12);
    EXPECT_NEAR(scale.forward(-10.0), -4.0, 1e-12);
    EXPECT_EQ(scale.forward(null_value), null_value);
}

TEST(AxisTransform, the_inverse_takes_every_value_back) {
    for (const double base : {2.0, 10.0, 2.5}) {
        const AxisTransform scale = logarithmic(1.0, base);
        for (const double value : {-12345.0, -1.5, -1.0, -0.3, 0.0, 0.7, 1.0, 3.0, 1e6})
            EXPECT_NEAR(scale.inverse(scale.forward(value)), value, std::abs(value) * 1e-12);
    }
}

TEST(AxisTransform, an_unknown_type_has_no_inverse) {
    AxisTransform scale;
    scale.type = 2;
    EXPECT_EQ(scale.inverse(5.0), 0.0);
    EXPECT_EQ(scale.inverse(-1e32), -1e32);
}

TEST(AxisTransform, a_base_without_a_logarithm_to_divide_by_is_refused) {
    AxisTransform scale;
    ASSERT_TRUE(scale.set_base(2.0));
    for (const double base : {0.0, -10.0, 1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(scale.set_base(base));
        EXPECT_EQ(scale.base(), 2.0);
    }
}

TEST(AxisTransform, a_cutoff_snaps_down_to_a_power_of_the_base) {
    EXPECT_EQ(logarithmic(5.0).cutoff(), 1.0);
    EXPECT_EQ(logarithmic(999.0).cutoff(), 100.0);
    EXPECT_EQ(logarithmic(1000.0).cutoff(), 1000.0);
    EXPECT_EQ(logarithmic(0.001).cutoff(), 0.001);
    EXPECT_EQ(logarithmic(1e-9).cutoff(), 1e-6);
    EXPECT_EQ(logarithmic(5.0, 2.0).cutoff(), 4.0);
    for (const double none : {0.0, -3.0, std::nan("")}) EXPECT_EQ(logarithmic(none).cutoff(), 1.0);
}

TEST(AxisTransform, what_is_missing_becomes_null_on_every_axis) {
    for (const int type : {0, 1}) {
        AxisTransform scale;
        scale.type = type;
        const double endless = std::numeric_limits<double>::infinity();
        for (const double missing : {-999.0, -1e30, -1e35, std::nan(""), endless, -endless})
            EXPECT_EQ(forward_or_null(scale, missing, -999.0), null_value) << missing;
        EXPECT_FALSE(is_null(forward_or_null(scale, -998.0, -999.0)));
    }
}

}  // namespace
}  // namespace anomalis::chart

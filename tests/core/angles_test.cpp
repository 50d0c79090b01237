#include "core/angles.h"

#include <gtest/gtest.h>

namespace anomalis {
namespace {

TEST(GuardedAtan2, is_the_usual_angle_in_all_quadrants) {
    for (int degrees = -179; degrees <= 179; ++degrees) {
        const double angle = degrees * pi / 180;
        EXPECT_NEAR(guarded_atan2(3 * std::sin(angle), 3 * std::cos(angle)), angle, 1e-9) << degrees;
    }
}

TEST(GuardedAtan2, an_x_of_zero_counts_as_a_small_one) {
    EXPECT_DOUBLE_EQ(guarded_atan2(1, 0), std::atan(1e9));
    EXPECT_DOUBLE_EQ(guarded_atan2(-1, 0), -std::atan(1e9));
    EXPECT_EQ(guarded_atan2(0, 0), 0);
    EXPECT_DOUBLE_EQ(guarded_atan2(1, -0.0), std::atan(1e9));
}

TEST(GuardedAtan2, the_axes_are_exact) {
    EXPECT_EQ(guarded_atan2(0, 5), 0);
    EXPECT_EQ(guarded_atan2(0, -5), pi);
}

TEST(GuardedAcos, is_the_arc_cosine_and_takes_any_number) {
    for (double v = -0.999; v < 1; v += 0.037) EXPECT_NEAR(guarded_acos(v), std::acos(v), 1e-13);
    EXPECT_EQ(guarded_acos(1), 0);
    EXPECT_EQ(guarded_acos(1.5), 0);
    EXPECT_EQ(guarded_acos(-1), pi);
    EXPECT_EQ(guarded_acos(-7), pi);
}

TEST(SignOf, has_three_values) {
    EXPECT_EQ(sign_of(-2), -1);
    EXPECT_EQ(sign_of(0), 0);
    EXPECT_EQ(sign_of(-0.0), 0);
    EXPECT_EQ(sign_of(1e-300), 1);
}

}  // namespace
}  // namespace anomalis

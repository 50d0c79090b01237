#include "inversion/physical_limits.h"

#include <gtest/gtest.h>

#include "inversion/line_session.h"

namespace anomalis::inversion {

namespace {

ParameterLimits of(LineSession& line, int param_code,
                   InversionMethod method = InversionMethod::least_squares) {
    return limits_in_force(line.workspace(), line.workspace().body(1), param_code, method);
}

}  // namespace

TEST(PhysicalLimits, a_keyed_limit_stands_in_both_methods) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    body.susc.min = 7;
    body.susc.max = 70000;
    for (const auto method : {InversionMethod::least_squares, InversionMethod::sweep}) {
        EXPECT_EQ(of(line, param_susc, method).lower, 7);
        EXPECT_EQ(of(line, param_susc, method).upper, 70000);
    }
}

TEST(PhysicalLimits, a_blank_one_is_that_of_physics_or_of_the_sweep) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    EXPECT_EQ(of(line, param_susc).upper, unset);
    EXPECT_GT(of(line, param_susc).lower, 0);
    EXPECT_FLOAT_EQ(of(line, param_susc, InversionMethod::sweep).upper, 1.1F * body.susc.value);
    EXPECT_GT(of(line, param_width).lower, 0);
    EXPECT_EQ(of(line, param_width).upper, unset);
    EXPECT_EQ(of(line, param_rem_q).lower, 0);
    EXPECT_EQ(of(line, param_rem_i).lower, -90);
    EXPECT_EQ(of(line, param_rem_i).upper, 90);
    EXPECT_EQ(of(line, param_density).lower, unset);
    EXPECT_EQ(of(line, param_density).upper, unset);
    EXPECT_EQ(of(line, param_top, InversionMethod::sweep).lower, unset);
}

TEST(PhysicalLimits, a_top_stays_below_the_ground_unless_it_was_set_above) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    const auto ground = static_cast<float>(line.workspace().stations(51, column_ground));
    EXPECT_FLOAT_EQ(of(line, param_top).upper, ground);
    EXPECT_EQ(of(line, param_top).lower, unset);
    body.top.value = ground + 3;
    EXPECT_EQ(of(line, param_top).upper, unset);
}

TEST(PhysicalLimits, every_parameter_is_in_the_list) {
    ASSERT_EQ(physical_limits().size(), body_parameter_count);
    for (const BodyParameter& row : body_parameters()) {
        bool listed = false;
        for (const PhysicalLimit& limit : physical_limits()) listed |= limit.code == row.code;
        EXPECT_TRUE(listed) << row.name;
    }
}

}  // namespace anomalis::inversion

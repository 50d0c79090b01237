#include "flow/shown_limits.h"

#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "edit/body_grid.h"
#include "edit/line_sample.h"

namespace anomalis::flow {

namespace {

struct LimitSample : edit::LineSample {
    LimitSample() {
        load();
        ModelBody& body = add_body(1250, 60);
        workbench.view.current_body = 1;
        for (const BodyParameter& row : body_parameters()) {
            (body.*row.slot).vary = 1;
            (body.*row.slot).min = (body.*row.slot).max = unset;
        }
    }
    ShownLimit limit(int row, int column, InversionMethod method = InversionMethod::least_squares) {
        return shown_limit(workbench, row, column, method);
    }
};

}  // namespace

TEST(ShownLimits, a_bound_of_physics_stands_where_nothing_was_keyed) {
    LimitSample sample;
    EXPECT_EQ(sample.limit(param_dip, edit::grid_min).text, "0");
    EXPECT_EQ(sample.limit(param_dip, edit::grid_max).text, "180");
    EXPECT_EQ(sample.limit(param_width, edit::grid_min).text, "0.01");
    EXPECT_NE(sample.limit(param_width, edit::grid_min).tip.find("physical bound"), std::string::npos);
    EXPECT_EQ(sample.limit(param_width, edit::grid_max).text, "") << "a fit is free to widen a body";
}

TEST(ShownLimits, the_sweep_has_defaults_of_its_own) {
    LimitSample sample;
    const ShownLimit limit = sample.limit(param_width, edit::grid_min, InversionMethod::sweep);
    EXPECT_NE(limit.text, "");
    EXPECT_NE(limit.tip.find("default of the sweep"), std::string::npos);
}

TEST(ShownLimits, a_keyed_limit_and_a_held_parameter_show_none) {
    LimitSample sample;
    ModelBody& body = sample.workspace().body(1);
    body.dip.min = 30;
    body.top.vary = 0;
    EXPECT_EQ(sample.limit(param_dip, edit::grid_min).text, "");
    EXPECT_EQ(sample.limit(param_top, edit::grid_max).text, "");
    EXPECT_EQ(sample.limit(param_dip, edit::grid_value).text, "");
    EXPECT_EQ(sample.limit(edit::row_type, edit::grid_min).text, "");
    sample.workbench.view.current_body = 7;
    EXPECT_EQ(sample.limit(param_dip, edit::grid_min).text, "");
}

}  // namespace anomalis::flow

#include "edit/parameter_bars.h"

#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

#include "core/body_parameters.h"
#include "core/paths.h"
#include "edit/body_sample.h"

namespace anomalis::edit {

namespace {

const ParameterBar& bar_of(ParamCode code) {
    for (const ParameterBar& bar : parameter_bars())
        if (bar.code == code) return bar;
    throw std::runtime_error("no bar");
}

bool step(BodySample& sample, ParamCode code, int direction, bool fine = false) {
    return step_parameter(sample.workbench, bar_of(code), fine, direction);
}

double coarse(BodySample& sample, ParamCode code) {
    return bar_step(sample.workspace(), sample.body(2), code, false);
}

}  // namespace

TEST(ParameterBars, there_is_one_for_each_parameter) {
    EXPECT_EQ(parameter_bars().size(), 15u);
    for (const BodyParameter& row : body_parameters()) EXPECT_EQ(bar_of(row.code).code, row.code);
    EXPECT_EQ(bar_of(param_rem_d).control, std::string("VScroll_RemJ"));
    EXPECT_EQ(bar_of(param_rem_d).first_member, 4);
    EXPECT_EQ(bar_of(param_top).control, std::string("VScroll_depth"));
}

TEST(ParameterBars, angles_ratio_and_density_have_steps_of_their_own) {
    BodySample sample;
    for (const auto& [code, size] : std::vector<std::pair<ParamCode, double>>{{param_dip, 5},
                                                                              {param_plunge, 5},
                                                                              {param_strike, 5},
                                                                              {param_slope, 2},
                                                                              {param_density, 0.1},
                                                                              {param_rem_q, 0.01},
                                                                              {param_rem_i, 2.5},
                                                                              {param_rem_d, 2.5}}) {
        EXPECT_DOUBLE_EQ(coarse(sample, code), size);
        EXPECT_DOUBLE_EQ(bar_step(sample.workspace(), sample.body(2), code, true), size / 10);
    }
}

TEST(ParameterBars, lengths_step_by_their_value) {
    BodySample sample;
    for (const auto code : {param_length, param_width, param_depth_extent})
        for (const auto& [value, size] : std::vector<std::pair<float, double>>{
                 {501, 50}, {500, 25}, {251, 25}, {250, 5}, {26, 5}, {25, 1}, {1, 1}, {0, 1}}) {
            body_param(sample.body(2), code).value = value;
            EXPECT_DOUBLE_EQ(coarse(sample, code), size) << code << " " << value;
        }
}

TEST(ParameterBars, offsets_step_by_their_size_and_wires_always_alike) {
    BodySample sample;
    for (const auto& [value, size] : std::vector<std::pair<float, double>>{
             {500, 50}, {-500, 50}, {499, 25}, {250, 25}, {249, 5}, {-25, 5}, {24, 1}, {0, 1}}) {
        sample.body(2).offset.value = value;
        EXPECT_DOUBLE_EQ(coarse(sample, param_offset), size) << value;
    }
    sample.body(2).type = wire;
    sample.body(2).offset.value = 700;
    EXPECT_DOUBLE_EQ(coarse(sample, param_offset), 0.1);
}

TEST(ParameterBars, the_distance_steps_by_the_length_of_the_line) {
    BodySample sample;
    for (const auto& [length, size] : std::vector<std::pair<double, double>>{{0.5, 0.05},
                                                                             {1, 0.1},
                                                                             {5, 0.25},
                                                                             {10, 0.5},
                                                                             {100, 1},
                                                                             {200, 5},
                                                                             {499, 5},
                                                                             {500, 10},
                                                                             {9000, 10}}) {
        sample.workspace().distances[sample.workspace().station_count] = length;
        EXPECT_DOUBLE_EQ(coarse(sample, param_distance), size) << length;
    }
}

TEST(ParameterBars, top_and_susceptibility_step_by_part_of_their_value) {
    BodySample sample;
    for (const auto& [value, size] :
         std::vector<std::pair<float, double>>{{100, 4}, {-100, 4}, {1, 0.1}, {0, 0.1}}) {
        sample.body(2).top.value = value;
        EXPECT_DOUBLE_EQ(coarse(sample, param_top), size);
    }
    sample.body(2).type = pipe;
    EXPECT_DOUBLE_EQ(coarse(sample, param_top), 1);
    for (const auto& [value, size] :
         std::vector<std::pair<float, double>>{{50000, 1000}, {-50000, 1000}, {100, 10}, {0, 10}}) {
        sample.body(2).susc.value = value;
        EXPECT_DOUBLE_EQ(coarse(sample, param_susc), size);
    }
}

TEST(ParameterBars, a_step_raises_or_lowers_and_clears_what_hangs_on_it) {
    BodySample sample;
    EXPECT_TRUE(step(sample, param_dip, 1));
    EXPECT_EQ(sample.body(2).dip.value, 95);
    EXPECT_EQ(sample.cleared(2), Cleared(true, true));
    EXPECT_EQ(sample.cleared(1), Cleared(false, false));
    EXPECT_TRUE(sample.changed() && sample.workbench.unsaved);
    EXPECT_TRUE(step(sample, param_dip, -1, true));
    EXPECT_EQ(sample.body(2).dip.value, 94.5F);
    sample.calm();
    EXPECT_TRUE(step(sample, param_density, -1));
    EXPECT_EQ(sample.cleared(2), Cleared(false, true));
    EXPECT_TRUE(step(sample, param_top, 1));
    EXPECT_GT(sample.body(2).top.value, 40);
}

TEST(ParameterBars, a_step_along_the_line_moves_the_body_on_the_map) {
    BodySample sample;
    EXPECT_TRUE(step(sample, param_distance, 1));
    EXPECT_DOUBLE_EQ(sample.body(2).east, 501210);
    EXPECT_EQ(sample.cleared(2), Cleared(true, true));
}

TEST(ParameterBars, steps_stay_inside_the_range_of_their_row) {
    BodySample sample;
    ModelBody& body = sample.body(2);
    body.dip.value = 178;
    EXPECT_FALSE(step(sample, param_dip, 1));
    EXPECT_TRUE(step(sample, param_dip, 1, true));
    body.strike.value = -358;
    EXPECT_FALSE(step(sample, param_strike, -1));
    body.plunge.value = 45;
    EXPECT_FALSE(step(sample, param_plunge, 1, true));
    body.slope.value = -80;
    EXPECT_FALSE(step(sample, param_slope, -1));
    body.type = pipe;
    body.dip.value = 44;
    EXPECT_FALSE(step(sample, param_dip, 1));
}

TEST(ParameterBars, a_value_outside_its_range_may_come_nearer) {
    BodySample sample;
    sample.body(2).dip.value = 200;
    EXPECT_FALSE(step(sample, param_dip, 1));
    EXPECT_TRUE(step(sample, param_dip, -1));
    EXPECT_EQ(sample.body(2).dip.value, 195);
}

TEST(ParameterBars, lengths_never_reach_0) {
    BodySample sample;
    ModelBody& body = sample.body(2);
    for (const auto code : {param_length, param_width, param_depth_extent}) {
        body_param(body, code).value = 1;
        EXPECT_FALSE(step(sample, code, -1));
        EXPECT_TRUE(step(sample, code, -1, true));
        body_param(body, code).value = 0;
        EXPECT_FALSE(step(sample, code, -1));
        EXPECT_TRUE(step(sample, code, 1));
        EXPECT_EQ(body_param(body, code).value, 1);
    }
}

TEST(ParameterBars, a_susceptibility_keeps_its_sign_and_leaves_0) {
    BodySample sample;
    BodyParam& susc = sample.body(2).susc;
    susc.value = 10;
    EXPECT_FALSE(step(sample, param_susc, -1));
    susc.value = 8;
    EXPECT_FALSE(step(sample, param_susc, -1));
    EXPECT_TRUE(step(sample, param_susc, -1, true));
    EXPECT_EQ(susc.value, 7);
    susc.value = -8;
    EXPECT_FALSE(step(sample, param_susc, 1));
    susc.value = 0;
    EXPECT_TRUE(step(sample, param_susc, -1));
    EXPECT_EQ(susc.value, -10);
}

TEST(ParameterBars, bars_of_rows_that_the_type_has_not_do_nothing) {
    BodySample sample;
    sample.body(2).type = pipe;
    for (const auto code : {param_depth_extent, param_plunge, param_slope}) {
        EXPECT_FALSE(bar_usable(sample.workbench, code));
        EXPECT_FALSE(step(sample, code, 1));
    }
    EXPECT_TRUE(bar_usable(sample.workbench, param_rem_q));
    sample.body(2).type = wire;
    EXPECT_FALSE(bar_usable(sample.workbench, param_rem_q));
    EXPECT_FALSE(bar_usable(sample.workbench, param_density));
    EXPECT_FALSE(sample.changed());
}

TEST(ParameterBars, nothing_happens_without_a_line_or_a_body) {
    BodySample sample;
    sample.workbench.view.current_body = 0;
    for (const ParameterBar& bar : parameter_bars()) {
        EXPECT_FALSE(bar_usable(sample.workbench, bar.code));
        EXPECT_FALSE(step_parameter(sample.workbench, bar, false, 1));
        EXPECT_EQ(bar_tip(sample.workbench, bar, false), "The body has no such parameter");
    }
    sample.workbench.view.current_body = 2;
    drop_stations(sample.workspace());
    for (const ParameterBar& bar : parameter_bars())
        EXPECT_FALSE(step_parameter(sample.workbench, bar, false, 1));
    EXPECT_FALSE(sample.changed());
}

TEST(ParameterBars, numbers_too_large_for_a_file_are_not_reached) {
    BodySample sample;
    sample.body(2).susc.value = std::numeric_limits<float>::max();
    EXPECT_FALSE(step(sample, param_susc, 1));
    sample.body(2).distance.value = 1e30F;  // a step is lost in the rounding
    EXPECT_FALSE(step(sample, param_distance, 1));
    EXPECT_FALSE(sample.changed());
}

TEST(ParameterBars, a_thousand_steps_up_and_down_end_near_the_start) {
    BodySample sample;
    for (int i = 0; i < 1000; ++i) EXPECT_TRUE(step(sample, param_rem_q, 1));
    for (int i = 0; i < 1000; ++i) EXPECT_TRUE(step(sample, param_rem_q, -1));
    EXPECT_NEAR(sample.body(2).rem_q.value, 0, 1e-3);
}

TEST(ParameterBars, the_log_tells_the_new_value) {
    BodySample sample;
    const std::string before = current_folder();
    change_to_folder(sample.folder.path(""));
    sample.session.log.turn_on(sample.prompts);
    step(sample, param_dip, 1, true);
    step(sample, param_rem_i, -1);
    std::ifstream file(sample.session.log.path());
    std::stringstream text;
    text << file.rdbuf();
    change_to_folder(before);
    EXPECT_NE(text.str().find("HScroll_dip_Scroll Index: 1 Value: 90.5"), std::string::npos) << text.str();
    EXPECT_NE(text.str().find("VScroll_RemJ_Scroll Index: 2 Value: -2.5"), std::string::npos);
}

TEST(ParameterBars, tips_tell_step_unit_and_range) {
    BodySample sample;
    EXPECT_EQ(bar_tip(sample.workbench, bar_of(param_dip), false),
              "Dip, coarse steps of 5°, from 0 to 180\nArrow keys take coarse steps, with Shift fine ones");
    EXPECT_NE(
        bar_tip(sample.workbench, bar_of(param_width), true).find("Width, fine steps of 0.5 m, above 0"),
        std::string::npos);
    sample.body(2).susc.value = 50000;
    sample.session.preferences.susceptibility_unit = SusceptibilityUnit::si;
    EXPECT_NE(bar_tip(sample.workbench, bar_of(param_susc), false).find("coarse steps of 0.001 SI"),
              std::string::npos);
}

}  // namespace anomalis::edit

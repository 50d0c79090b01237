#include "inversion/parameters.h"

#include <gtest/gtest.h>
#include <limits>

#include "core/body_parameters.h"
#include "inversion/line_session.h"
#include "model/stale.h"

namespace anomalis::inversion {

namespace {

void free_all(ModelBody& body) {
    for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 1;
}

class Parameters : public ::testing::Test {
  protected:
    /// The list of a channel as codes; the arrays are sized to it.
    std::vector<int> codes(int channel = channel_mag) {
        int count = 0;
        setup_all_body_parameters(0, channel, count, line.fitted());
        inversion.inversion_params.assign(count);
        inversion.inversion_param_map.assign(count);
        int filled = 0;
        setup_all_body_parameters(1, channel, filled, line.fitted());
        EXPECT_EQ(filled, count);
        std::vector<int> list;
        for (int i = 1; i <= count; ++i) list.push_back(inversion.inversion_param_map[i].param_code);
        return list;
    }
    /// The one free parameter after `codes`.
    const InversionParam& only() { return inversion.inversion_params[1]; }
    void free_one(ModelBody& body, BodyParam ModelBody::*slot, int channel = channel_mag) {
        for (const BodyParameter& other : body_parameters()) (body.*other.slot).vary = 0;
        (body.*slot).vary = 1;
        ASSERT_EQ(codes(channel).size(), 1U);
    }

    LineSession line;
    Workspace& w = line.session.workspace;
    InversionState& inversion = line.session.inversion;
};

}  // namespace

TEST_F(Parameters, the_order_of_a_thick_sheet_is_fixed) {
    ModelBody& body = line.add_body(thick_sheet);
    free_all(body);
    body.offset.value = 5;
    body.rem_q.value = 2;
    EXPECT_EQ(codes(), (std::vector<int>{4, 7, 5, 6, 13, 14, 9, 8, 10, 15, 11, 17, 18}));
    EXPECT_EQ(codes(channel_grav), (std::vector<int>{4, 7, 5, 6, 13, 14, 9, 8, 10, 15, 12}));
    EXPECT_EQ(codes(channel_joint), (std::vector<int>{4, 7, 5, 6, 13, 14, 9, 8, 10, 15, 11, 17, 18, 12}));
}

TEST_F(Parameters, only_a_mark_of_exactly_1_frees_a_parameter) {
    ModelBody& body = line.add_body(thick_sheet);
    body.top.vary = 0.5F;
    body.dip.vary = 2;
    EXPECT_TRUE(codes().empty());
}

TEST_F(Parameters, a_pipe_offers_no_plunge_slope_or_depth_extent) {
    free_all(line.add_body(pipe));
    EXPECT_EQ(codes(), (std::vector<int>{4, 7, 5, 6, 9, 11}));
}

TEST_F(Parameters, a_wire_offers_no_width) {
    free_all(line.add_body(wire));
    EXPECT_EQ(codes(), (std::vector<int>{4, 7, 5, 6, 11}));
}

TEST_F(Parameters, length_and_offset_belong_to_thick_sheets) {
    ModelBody& body = line.add_body(thin_sheet);
    free_all(body);
    body.offset.value = 5;
    EXPECT_EQ(codes(), (std::vector<int>{4, 7, 5, 6, 13, 14, 9, 8, 11}));
}

TEST_F(Parameters, extents_of_0_cannot_be_inverted) {
    ModelBody& body = line.add_body(thick_sheet);
    body.depth_extent.vary = body.length.vary = body.offset.vary = 1;
    body.depth_extent.value = body.length.value = body.offset.value = 0;
    EXPECT_TRUE(codes().empty());
    body.offset.value = -5;
    EXPECT_TRUE(codes().empty());
}

TEST_F(Parameters, a_marked_susceptibility_shuts_out_the_remanence_ratio) {
    ModelBody& body = line.add_body(thick_sheet);
    body.rem_q.vary = 1;
    body.rem_q.value = 0.5F;
    EXPECT_EQ(codes(), std::vector<int>{param_rem_q});
    body.susc.vary = 1;
    EXPECT_EQ(codes(), std::vector<int>{param_susc});
    body.rem_i.vary = 1;
    EXPECT_EQ(codes(), (std::vector<int>{param_susc, param_rem_i}));
}

TEST_F(Parameters, remanence_directions_need_a_ratio_and_a_sheet) {
    ModelBody& body = line.add_body(thick_sheet);
    body.rem_i.vary = body.rem_d.vary = 1;
    EXPECT_TRUE(codes().empty());
    body.rem_q.value = 1;
    EXPECT_EQ(codes(), (std::vector<int>{param_rem_i, param_rem_d}));
    body.type = pipe;
    EXPECT_TRUE(codes().empty());
}

TEST_F(Parameters, fixed_and_disabled_bodies_add_nothing) {
    ModelBody& fixed = line.add_body(thick_sheet);
    ModelBody& off = line.add_body(thick_sheet);
    free_all(w.body(1));
    free_all(off);
    w.body(1).vary = 0;
    off.turned_off = 1;
    EXPECT_TRUE(codes().empty());
    EXPECT_EQ(&fixed, &w.body(1));
}

TEST_F(Parameters, start_steps_follow_type_and_size) {
    ModelBody& body = line.add_body(thick_sheet);
    const auto step = [&](BodyParam ModelBody::*slot, int channel = channel_mag) {
        free_one(body, slot, channel);
        return only().step;
    };
    EXPECT_EQ(step(&ModelBody::distance), 10.0F);
    EXPECT_EQ(step(&ModelBody::top), 5.0F);
    EXPECT_EQ(step(&ModelBody::dip), 2.5F);
    EXPECT_EQ(step(&ModelBody::width), 2.5F);
    EXPECT_EQ(step(&ModelBody::depth_extent), 5.0F);
    body.depth_extent.value = 100;
    EXPECT_EQ(step(&ModelBody::depth_extent), 1.0F);
    EXPECT_EQ(step(&ModelBody::density, channel_grav), 0.025F);
    body.type = pipe;
    EXPECT_EQ(step(&ModelBody::distance), 0.5F);
    EXPECT_EQ(step(&ModelBody::top), 0.1F);
    EXPECT_EQ(step(&ModelBody::dip), 0.5F);
    EXPECT_EQ(step(&ModelBody::strike), 2.5F);
    EXPECT_EQ(step(&ModelBody::width), 0.05F);
    EXPECT_EQ(only().lower, 0.1F);
}

TEST_F(Parameters, the_step_of_the_susceptibility_grows_with_it) {
    ModelBody& body = line.add_body(thick_sheet);
    for (const auto& [value, step] :
         {std::pair{999.0F, 10.0F}, std::pair{1000.0F, 25.0F}, std::pair{10000.0F, 250.0F},
          std::pair{100000.0F, 2500.0F}, std::pair{2000000.0F, 20000.0F}, std::pair{-5000.0F, 10.0F}}) {
        body.susc.value = value;
        free_one(body, &ModelBody::susc);
        EXPECT_FLOAT_EQ(only().step, step) << value;
        EXPECT_FLOAT_EQ(only().upper, 1.1F * value);
        EXPECT_EQ(only().lower, 100.0F);
    }
}

TEST_F(Parameters, unset_limits_take_defaults_and_set_ones_stand) {
    ModelBody& body = line.add_body(thick_sheet);
    w.z_max = 120;
    free_one(body, &ModelBody::top);
    EXPECT_EQ(only().lower, -1e32F);
    EXPECT_EQ(only().upper, 119.0F);
    body.top.min = -99998;
    body.top.max = -10;
    free_one(body, &ModelBody::top);
    EXPECT_EQ(only().lower, -99998.0F);
    EXPECT_EQ(only().upper, -10.0F);
    body.top.min = -99999;
    body.top.max = -1e32F;
    free_one(body, &ModelBody::top);
    EXPECT_EQ(only().lower, -1e32F);
    EXPECT_EQ(only().upper, 119.0F);
}

TEST_F(Parameters, default_limits_of_the_angles) {
    ModelBody& body = line.add_body(thick_sheet);
    body.rem_q.value = 1;
    const auto expect = [&](BodyParam ModelBody::*slot, float limit) {
        free_one(body, slot);
        EXPECT_EQ(only().lower, -limit);
        EXPECT_EQ(only().upper, limit);
    };
    expect(&ModelBody::strike, 360);
    expect(&ModelBody::dip, 175);
    expect(&ModelBody::plunge, 45);
    expect(&ModelBody::slope, 80);
    expect(&ModelBody::rem_i, 90);
    expect(&ModelBody::rem_d, 360);
}

TEST_F(Parameters, a_value_outside_its_limits_enters_as_it_stands) {
    ModelBody& body = line.add_body(thick_sheet);
    body.dip.value = 200;
    free_one(body, &ModelBody::dip);
    EXPECT_EQ(only().value, 200.0F);
}

TEST_F(Parameters, a_body_just_left_of_the_window_still_takes_part) {
    ModelBody& body = line.add_body(thick_sheet);
    body.top.vary = 1;
    w.first_station = 31;
    w.first_distance = 300;
    for (const auto& [distance, takes_part] :
         {std::pair{290.0F, true}, std::pair{289.9F, false}, std::pair{300.0F, true}}) {
        body.distance.value = distance;
        EXPECT_EQ(codes().size(), takes_part ? 1U : 0U) << distance;
    }
}

TEST_F(Parameters, a_body_right_of_the_window_still_takes_part) {
    ModelBody& body = line.add_body(thick_sheet);
    body.top.vary = 1;
    w.last_station = 40;
    w.last_distance = 390;
    for (const auto& [distance, takes_part] :
         {std::pair{800.0F, true}, std::pair{1010.0F, true}, std::pair{1010.5F, false}}) {
        body.distance.value = distance;
        EXPECT_EQ(codes().size(), takes_part ? 1U : 0U) << distance;
    }
}

TEST_F(Parameters, with_the_whole_line_in_the_window_every_place_takes_part) {
    ModelBody& body = line.add_body(thick_sheet, -5000);
    body.top.vary = 1;
    EXPECT_EQ(codes().size(), 1U);
}

TEST_F(Parameters, the_running_index_goes_over_the_bodies) {
    line.add_body(thick_sheet).top.vary = 1;
    line.add_body(thin_sheet);
    line.add_body(pipe).width.vary = 1;
    codes();
    EXPECT_EQ(inversion.inversion_param_map[1], (InversionParamPlace{1, param_top}));
    EXPECT_EQ(inversion.inversion_param_map[2], (InversionParamPlace{3, param_width}));
}

TEST_F(Parameters, a_value_that_is_no_number_is_named) {
    ModelBody& body = line.add_body(thick_sheet);
    body.width.vary = 1;
    body.width.value = std::numeric_limits<float>::quiet_NaN();
    inversion.inversion_params.assign(1);
    inversion.inversion_param_map.assign(1);
    int count = 0;
    setup_all_body_parameters(1, channel_mag, count, line.fitted());
    EXPECT_EQ(count, 0);
    show_faults(line.faults, line.prompts);
    EXPECT_EQ(line.prompts.messages,
              std::vector<std::string>{"An error occurred while setting up the inversion parameters: "
                                       "width of body 1 is not a number"});
}

TEST_F(Parameters, a_list_that_is_too_short_is_a_subscript_fault) {
    line.add_body(thick_sheet).width.vary = 1;
    inversion.inversion_params.assign(0);
    int count = 0;
    setup_body_parameters(1, channel_mag, 1, count, line.fitted());
    show_faults(line.faults, line.prompts);
    EXPECT_TRUE(line.prompts.told("Subscript out of range"));
}

TEST_F(Parameters, what_hangs_on_an_applied_parameter_is_found_out_of_date) {
    struct Row {
        BodyParam ModelBody::*slot;
        bool mag, grav;
    };
    const Row rows[] = {
        {&ModelBody::distance, true, true}, {&ModelBody::top, true, true},
        {&ModelBody::width, true, true},    {&ModelBody::length, true, true},
        {&ModelBody::offset, true, true},   {&ModelBody::depth_extent, true, true},
        {&ModelBody::strike, true, true},   {&ModelBody::dip, true, true},
        {&ModelBody::plunge, true, true},   {&ModelBody::slope, true, true},
        {&ModelBody::susc, true, false},    {&ModelBody::rem_q, true, false},
        {&ModelBody::rem_i, true, false},   {&ModelBody::rem_d, true, false},
        {&ModelBody::density, false, true},
    };
    ModelBody& body = line.add_body(thick_sheet);
    body.offset.value = 5;
    for (const Row& row : rows) {
        body.rem_q.value = row.slot == &ModelBody::rem_q ? 0.0F : 1.0F;
        free_one(body, row.slot, row.slot == &ModelBody::density ? channel_grav : channel_mag);
        model::find_stale(line.workspace());
        body.mag_response_valid = body.grav_response_valid = true;
        double penalty = 0;
        apply_parameter(1, penalty, line.fitted());
        model::find_stale(line.workspace());
        EXPECT_TRUE(body.mag_response_valid) << "an equal value changes nothing";
        inversion.inversion_params[1].value += 1;
        apply_parameter(1, penalty, line.fitted());
        model::find_stale(line.workspace());
        const int code = inversion.inversion_param_map[1].param_code;
        EXPECT_EQ((body.*row.slot).value, inversion.inversion_params[1].value) << code;
        EXPECT_EQ(body.mag_response_valid, !row.mag) << code;
        EXPECT_EQ(body.grav_response_valid, !row.grav) << code;
    }
}

TEST_F(Parameters, sheet_parameters_are_not_applied_to_pipes) {
    ModelBody& body = line.add_body(thick_sheet);
    free_one(body, &ModelBody::depth_extent);
    body.type = pipe;
    body.mag_response_valid = true;
    inversion.inversion_params[1].value = 77;
    double penalty = 0;
    apply_parameter(1, penalty, line.fitted());
    EXPECT_EQ(body.depth_extent.value, 250.0F);
    EXPECT_TRUE(body.mag_response_valid);
}

TEST_F(Parameters, the_penalty_is_a_maximum_over_the_parameters) {
    ModelBody& body = line.add_body(thick_sheet);
    body.top.vary = body.dip.vary = 1;
    body.top.min = -60;
    body.dip.max = 100;
    codes();
    inversion.inversion_params[1].value = -59.5F;
    inversion.inversion_params[2].value = 99;
    double penalty = 5;
    apply_all_parameters(penalty, line.fitted());
    EXPECT_NEAR(penalty, 2500, 1e-6);
    apply_all_parameters(penalty, line.fitted());
    EXPECT_EQ(penalty, 0) << "equal values are not applied";
}

TEST(BarrierPenalty, it_climbs_from_one_step_to_a_ten_thousandth) {
    Faults faults;
    const auto barrier = [&](float value, float min, float max) {
        double penalty = 0;
        barrier_penalty({value, 1, min, max}, 2, penalty, faults);
        return penalty;
    };
    EXPECT_EQ(barrier(12, 10, unset), 0);
    EXPECT_NEAR(barrier(10.2F, 10, unset), 2500, 0.1);
    EXPECT_EQ(barrier(10, 10, unset), 10000);
    EXPECT_EQ(barrier(9, 10, unset), 10000);
    EXPECT_NEAR(barrier(9.8F, unset, 10), 2500, 0.1);
    EXPECT_EQ(barrier(11, unset, 10), 10000);
    EXPECT_EQ(barrier(9, unset, unset), 0);
    EXPECT_EQ(barrier(9, -99999, -99999), 0);
    EXPECT_NEAR(barrier(10.2F, 10, 10.202F), 7500, 10) << "the nearer limit decides";
    EXPECT_TRUE(faults.empty());
}

TEST(BarrierPenalty, it_never_lowers_what_was_found_before_and_bears_a_step_of_0) {
    Faults faults;
    double penalty = 9000;
    barrier_penalty({10.2F, 1, 10, unset}, 2, penalty, faults);
    EXPECT_EQ(penalty, 9000);
    barrier_penalty({12, 1, 10, 13}, 0, penalty, faults);
    EXPECT_EQ(penalty, 9000);
    EXPECT_TRUE(faults.empty());
}

TEST(SmallMathematics, larger_of_and_log10_abs) {
    EXPECT_EQ(larger_of(2, 3), 3);
    EXPECT_EQ(larger_of(3, 2), 3);
    EXPECT_NEAR(log10_abs(-1000), 3, 1e-12);
    EXPECT_EQ(log10_abs(0), 0);
}

TEST(ForgetRun, the_list_is_empty_afterwards) {
    LineSession line;
    line.session.inversion.inversion_params.assign(3);
    line.session.inversion.best_model_available = true;
    forget_run(line.session.inversion);
    EXPECT_EQ(line.session.inversion.inversion_params.count(), 0);
    EXPECT_FALSE(line.session.inversion.best_model_available);
}

}  // namespace anomalis::inversion

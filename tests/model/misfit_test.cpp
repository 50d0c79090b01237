#include "model/misfit.h"

#include <gtest/gtest.h>
#include <limits>

#include "inversion/line_session.h"
#include "support/stale_body.h"
#include "support/told.h"

namespace anomalis::model {

namespace {

/// Three stations whose residuals are 3, 4 and 0.
ChannelTable three_residuals() {
    ChannelTable data;
    data.assign(3);
    data(1, row_residual, stage_calculated) = 3;
    data(2, row_residual, stage_observed) = 4;
    data(3, row_residual, stage_calculated) = data(3, row_residual, stage_observed) = 7;
    return data;
}

}  // namespace

TEST(ResidualNorm, the_root_is_taken_before_the_division_by_the_intervals) {
    Faults faults;
    EXPECT_DOUBLE_EQ(calculate_residual_norm(1, 3, row_residual, three_residuals(), faults), 2.5);
    EXPECT_DOUBLE_EQ(calculate_residual_norm(2, 3, row_residual, three_residuals(), faults), 4.0);
    EXPECT_TRUE(faults.empty());
}

TEST(ResidualNorm, a_station_without_a_reading_is_as_if_it_were_not_there) {
    Faults faults;
    ChannelTable data;
    data.assign(4);
    const ChannelTable three = three_residuals();
    for (const int to : {1, 2, 4}) {
        const int from = to == 4 ? 3 : to;
        for (const Stage stage : {stage_observed, stage_calculated})
            data(to, row_residual, stage) = three(from, row_residual, stage);
    }
    data(3, row_residual, stage_observed) = -1e32F;
    data(3, row_residual, stage_calculated) = 1000;
    EXPECT_DOUBLE_EQ(calculate_residual_norm(1, 4, row_residual, data, faults), 2.5);
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(calculate_residual_norm(3, 4, row_residual, data, faults), 0);
    EXPECT_FALSE(faults.empty()) << "one reading has no interval";
}

TEST(ResidualNorm, it_falls_with_the_root_of_the_length) {
    Faults faults;
    ChannelTable data;
    data.assign(401);
    for (int i = 1; i <= 401; ++i) data(i, row_residual, stage_calculated) = 2;
    EXPECT_NEAR(calculate_residual_norm(1, 401, row_residual, data, faults), 2 * std::sqrt(401.0) / 400,
                1e-12);
}

TEST(ResidualNorm, one_station_is_a_division_by_zero_and_reads_0) {
    Faults faults;
    EXPECT_EQ(calculate_residual_norm(2, 2, row_residual, three_residuals(), faults), 0);
    EXPECT_EQ(texts_of(faults),
              std::vector<std::string>{
                  "An error occurred while calculating the model residual norm: Division by zero"});
}

TEST(ResidualNorm, a_window_beyond_the_row_is_a_subscript_fault_and_reads_0) {
    Faults faults;
    for (const auto& [first, last] : {std::pair{0, 3}, std::pair{1, 4}, std::pair{-5, 2147483647}})
        EXPECT_EQ(calculate_residual_norm(first, last, row_residual, three_residuals(), faults), 0);
    EXPECT_TRUE(
        told(faults, "An error occurred while calculating the model residual norm: Subscript out of range"));
}

TEST(ResidualNorm, a_reversed_window_holds_no_station) {
    Faults faults;
    EXPECT_EQ(calculate_residual_norm(3, 1, row_residual, three_residuals(), faults), 0);
    EXPECT_TRUE(faults.empty());
}

TEST(MisfitScale, magnetics_have_1_and_10_and_gravity_10_and_100) {
    EXPECT_EQ(misfit_scale_of(channel_mag), (MisfitPair{1, 10}));
    EXPECT_EQ(misfit_scale_of(channel_grav), (MisfitPair{10, 100}));
    InversionState inversion;
    inversion.inversion_channel = channel_grav;
    set_misfit_scale(inversion);
    EXPECT_EQ(inversion.misfit_scale, (MisfitPair{10, 100}));
}

TEST(Misfit, the_norm_is_divided_by_the_scale) {
    Faults faults;
    Workspace w;
    w.first_station = 1;
    w.last_station = 3;
    w.grav.data = three_residuals();
    w.grav.data(1, row_gradient, stage_calculated) = 8;
    InversionState inversion;
    inversion.inversion_channel = channel_grav;
    set_misfit_scale(inversion);
    EXPECT_EQ(calculate_misfit(w, inversion, faults), (MisfitPair{0.25F, 0.04F}));
}

TEST(Misfit, the_flag_of_the_total_gradient_chooses_the_row) {
    Faults faults;
    Workspace w;
    w.first_station = 1;
    w.last_station = 3;
    w.mag.data.assign(3);
    w.mag.data(1, row_gradient, stage_calculated) = 2;
    w.mag.data(1, row_total_gradient, stage_calculated) = 6;
    const InversionState inversion;
    EXPECT_FLOAT_EQ(calculate_misfit(w, inversion, faults)[1], 0.1F);
    w.processing.display_total_gradient = 1;
    EXPECT_FLOAT_EQ(calculate_misfit(w, inversion, faults)[1], 0.3F);
}

TEST(EvaluateMisfit, a_perfect_fit_is_0) {
    inversion::LineSession line;
    line.add_body(thick_sheet);
    line.take_model_as_data();
    const MisfitPair misfit = line.refresh();
    EXPECT_EQ(misfit, (MisfitPair{0, 0}));
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST(EvaluateMisfit, the_other_channel_has_no_effect) {
    inversion::LineSession line;
    Faults faults;
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    line.refresh();
    body.density.value = 3.5F;
    body.grav_response_valid = false;
    Workspace& w = line.workspace();
    EXPECT_EQ(evaluate_model_misfit(w, line.session.inversion, w.mag.data, w.grav.data, faults),
              (MisfitPair{0, 0}));
    line.session.inversion.inversion_channel = channel_grav;
    EXPECT_GT(evaluate_model_misfit(w, line.session.inversion, w.mag.data, w.grav.data, faults)[0], 0);
}

TEST(EvaluateMisfit, the_calculated_rows_are_filtered) {
    inversion::LineSession line;
    Faults faults;
    line.add_body(thick_sheet);
    line.refresh();
    Workspace& w = line.workspace();
    w.processing.display_total_gradient = 1;
    reset_calculated_data(w, line.prompts);
    evaluate_model_misfit(w, line.session.inversion, w.mag.data, w.grav.data, faults);
    EXPECT_NE(w.mag.data(40, row_residual, stage_calculated), 0);
    EXPECT_NE(w.mag.data(40, row_total_gradient, stage_calculated), 0);
    EXPECT_NE(w.grav.data(40, row_residual, stage_calculated), 0);
}

TEST(EvaluateMisfit, a_channel_without_a_column_is_left_alone) {
    inversion::LineSession line;
    Faults faults;
    line.add_body(thick_sheet);
    line.workspace().definition.grav_column = 0;
    line.refresh();
    Workspace& w = line.workspace();
    reset_calculated_data(w, line.prompts);
    evaluate_model_misfit(w, line.session.inversion, w.mag.data, w.grav.data, faults);
    EXPECT_TRUE(w.mag.calculated_filtered);
    EXPECT_FALSE(w.grav.calculated_filtered);
    EXPECT_EQ(w.grav.data(40, row_residual, stage_calculated), 0);
}

TEST(EvaluateMisfit, trial_rows_take_the_place_of_the_true_ones) {
    inversion::LineSession line;
    Faults faults;
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    line.refresh();
    Workspace& w = line.workspace();
    w.mag.work = w.mag.data;
    w.grav.work = w.grav.data;
    const ChannelTable before = w.mag.data;
    body.susc.value *= 2;
    invalidate_body(body);
    EXPECT_GT(evaluate_model_misfit(w, line.session.inversion, w.mag.work, w.grav.work, faults)[0], 0);
    EXPECT_EQ(w.mag.data, before);
    EXPECT_FLOAT_EQ(w.mag.work(40, row_raw, stage_calculated), 2 * before(40, row_raw, stage_calculated));
}

TEST(EvaluateMisfit, nothing_is_reallocated) {
    inversion::LineSession line;
    Faults faults;
    ModelBody& body = line.add_body(thick_sheet);
    line.workspace().processing.smooth_filter_width = 3;
    line.refresh();
    Workspace& w = line.workspace();
    const float* const rows = w.mag.data.span().data();
    const float* const taps = w.filter_scratch.coefficients.data();
    for (int i = 0; i < 3; ++i) {
        invalidate_body(body);
        evaluate_model_misfit(w, line.session.inversion, w.mag.data, w.grav.data, faults);
    }
    EXPECT_EQ(w.mag.data.span().data(), rows);
    EXPECT_EQ(w.filter_scratch.coefficients.data(), taps);
}

}  // namespace anomalis::model

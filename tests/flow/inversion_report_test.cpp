#include "flow/inversion_report.h"

#include <gtest/gtest.h>

#include "inversion/line_session.h"

namespace anomalis::flow {

using inversion::InversionMethod;
using inversion::InversionProgress;
using inversion::LineSession;
using inversion::run_limit;

namespace {

ModelBody& prepare(LineSession& line) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    return body;
}

}  // namespace

TEST(RunInversion, the_report_holds_start_limits_step_and_final_value) {
    LineSession line;
    prepare(line);
    const InversionReport report =
        run_inversion(line.session, {.method = InversionMethod::sweep, .iterations = 2});
    EXPECT_EQ(report.label, "Iteration limit reached");
    ASSERT_EQ(report.parameters.size(), 1U);
    const ReportedParameter& p = report.parameters[0];
    EXPECT_EQ(p.body, 1);
    EXPECT_EQ(p.param_code, 11);
    EXPECT_EQ(p.name, "susc");
    EXPECT_EQ(p.start, 60000.0F);
    EXPECT_EQ(p.final, 59500.0F);
    EXPECT_EQ(p.lower, 100.0F);
    EXPECT_FLOAT_EQ(p.upper, 66000.0F);
    EXPECT_EQ(p.step, 250.0F);
}

TEST(RunInversion, it_takes_the_scale_of_its_own_channel) {
    LineSession line;
    ModelBody& body = prepare(line);
    body.density.value = 3;
    body.density.vary = 1;
    run_inversion(line.session, {.channel = channel_grav, .iterations = 1});
    EXPECT_EQ(line.session.inversion.misfit_scale, (MisfitPair{10, 100}));
}

TEST(RunInversion, a_channel_without_a_column_gives_way) {
    for (const std::int32_t wanted : {channel_mag, channel_joint}) {
        LineSession line;
        ModelBody& body = prepare(line);
        body.density.vary = 1;
        body.density.value = 3;
        line.workspace().definition.mag_column = 0;
        const InversionReport report = run_inversion(
            line.session, {.channel = wanted, .method = InversionMethod::least_squares, .iterations = 30});
        ASSERT_EQ(report.parameters.size(), 1U);
        EXPECT_EQ(report.parameters[0].name, "density");
    }
    LineSession line;
    prepare(line);
    line.workspace().definition.grav_column = 0;
    EXPECT_EQ(run_inversion(line.session, {.channel = channel_grav, .iterations = 1}).parameters[0].name,
              "susc");
}

TEST(RunInversion, one_body_can_be_inverted_alone) {
    LineSession line;
    prepare(line);
    ModelBody& second = line.add_body(thick_sheet, 200);
    second.top.vary = 1;
    const InversionReport report = run_inversion(line.session, {.iterations = 1, .body = 2});
    ASSERT_EQ(report.parameters.size(), 1U);
    EXPECT_EQ(report.parameters[0].body, 2);
    EXPECT_EQ(run_inversion(line.session, {.iterations = 1}).parameters.size(), 2U);
}

TEST(RunInversion, a_refused_run_has_no_parameters_and_no_misfit) {
    LineSession line;
    const InversionReport report = run_inversion(line.session, {});
    EXPECT_EQ(report.label, "Inversion failed: -1");
    EXPECT_TRUE(report.parameters.empty());
    EXPECT_FALSE(report.result.initial_misfit);
}

TEST(RunInversion, a_body_that_does_not_exist_is_refused) {
    LineSession line;
    prepare(line);
    EXPECT_EQ(run_inversion(line.session, {.body = 7}).label, "Inversion failed: -1");
}

TEST(RunInversion, an_old_stop_request_is_forgotten_and_a_new_one_served) {
    LineSession line;
    prepare(line);
    line.session.inversion.stop_inversion = true;
    int calls = 0;
    const InversionReport report = run_inversion(
        line.session, {.method = InversionMethod::sweep, .iterations = 50}, [&](const InversionProgress&) {
            if (++calls == 3) line.session.inversion.stop_inversion = true;
        });
    EXPECT_EQ(report.result.iterations, 4);
    EXPECT_EQ(report.label, "Iteration limit reached");
}

TEST(RunInversion, a_stop_request_ends_a_least_squares_fit_too) {
    LineSession line;
    ModelBody& body = prepare(line);
    body.distance.value = 430;
    body.distance.vary = body.top.vary = 1;
    body.top.value = -80;
    const InversionReport report =
        run_inversion(line.session, {.method = InversionMethod::least_squares, .iterations = 50},
                      [&](const InversionProgress&) { line.session.inversion.stop_inversion = true; });
    EXPECT_EQ(report.result.iterations, 1);
    EXPECT_EQ(report.result.status, run_limit);
    EXPECT_LT(report.result.misfit_pair[0], (*report.result.initial_misfit)[0]);
}

TEST(RunInversion, the_session_is_refreshed_at_its_end) {
    LineSession line;
    prepare(line);
    const InversionReport report = run_inversion(line.session, {.iterations = 3});
    EXPECT_NEAR(line.refresh()[0], report.result.misfit_pair[0], 1e-4);
    EXPECT_TRUE(line.workspace().mag.calculated_filtered);
}

TEST(RunInversion, a_message_that_repeats_is_shown_once) {
    LineSession line;
    prepare(line);
    // Remanence without susceptibility has no size: told at each calculation of the body.
    ModelBody& odd = line.add_body(thick_sheet, 300);
    odd.susc.value = 0;
    odd.rem_q.value = 3;
    odd.density.vary = 1;
    run_inversion(line.session, {.channel = channel_grav, .iterations = 3});
    ASSERT_EQ(line.prompts.messages.size(), 1U);
    EXPECT_TRUE(line.prompts.told(" times)"));
}

TEST(RunInversion, the_gradient_can_be_the_target_of_both_methods) {
    for (const auto method : {InversionMethod::sweep, InversionMethod::least_squares}) {
        LineSession line;
        ModelBody& body = prepare(line);
        body.susc.value = 50000;
        body.distance.value = 480;
        body.distance.vary = 1;
        const InversionReport report =
            run_inversion(line.session, {.target = target_gradient, .method = method});
        EXPECT_LT(report.result.misfit_pair[1], 0.2F * (*report.result.initial_misfit)[1]);
    }
}

}  // namespace anomalis::flow

// What the examples promise: one fit from the start that they ship finds the model that they were made from.
#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "flow/inversion_report.h"
#include "intake/load.h"
#include "model/refresh_model.h"
#include "support/scripted_prompts.h"
#include "surveys.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

/// An example as it is opened and loaded.
struct Example {
    explicit Example(const std::string& name) : session(prompts, Settings{}) {
        initialise_workspace(session.workspace, prompts);
        Workspace& w = session.workspace;
        const std::string path = std::string(EXAMPLES) + "/" + name + ".axm";
        EXPECT_EQ(workspace_file::read_model_parameters(0, w, path, session.settings, prompts), 0);
        EXPECT_EQ(intake::load_locations(w, prompts), 0);
        model::finish_load(session);
        model::refresh_model(session);
    }
    ScriptedPrompts prompts;
    Session session;
};

ModelBody true_body(const examples::ExampleBody& example) {
    ModelBody body;
    example.truth(body);
    return body;
}

constexpr double most_sigmas = 2, dip_tolerance = 3;  // degrees

void expect_truth(const examples::Survey& survey, const InversionReport& report) {
    ASSERT_TRUE(report.result.statistics);
    ASSERT_EQ(report.result.statistics->errors.size(), report.parameters.size());
    for (std::size_t i = 0; i < report.parameters.size(); ++i) {
        const ReportedParameter& p = report.parameters[i];
        const ModelBody truth = true_body(survey.bodies.at(static_cast<std::size_t>(p.body - 1)));
        const std::string what = survey.name + ", " + p.name + " of body " + std::to_string(p.body);
        if (p.param_code == param_top) {
            EXPECT_NEAR(p.final, truth.top.value, most_sigmas * report.result.statistics->errors[i]) << what;
        }
        if (p.param_code == param_dip) {
            EXPECT_NEAR(p.final, truth.dip.value, dip_tolerance) << what;
        }
    }
}

}  // namespace

TEST(ExampleFits, one_fit_from_the_shipped_start_finds_every_top_and_dip) {
    for (const examples::Survey& survey : examples::surveys()) {
        for (const std::int32_t channel : {channel_mag, channel_joint}) {
            Example example(survey.name);
            if (channel == channel_joint && !example.session.workspace.has_grav()) continue;
            const InversionReport report = run_inversion(example.session, {.channel = channel});
            EXPECT_EQ(report.label, "Inversion succeeded") << survey.name;
            EXPECT_GT(report.parameters.size(), 0U);
            expect_truth(survey, report);
        }
    }
}

TEST(ExampleFits, what_is_left_of_each_is_its_noise) {
    for (const examples::Survey& survey : examples::surveys()) {
        Example example(survey.name);
        const bool both = example.session.workspace.has_grav();
        const InversionReport report =
            run_inversion(example.session, {.channel = both ? channel_joint : channel_mag});
        ASSERT_EQ(report.channels.size(), both ? 2U : 1U);
        EXPECT_NEAR(report.channels[0].quality->rms, survey.mag_noise, 0.1 * survey.mag_noise) << survey.name;
        if (both) {
            EXPECT_NEAR(report.channels[1].quality->rms, survey.grav_noise, 0.1 * survey.grav_noise);
        }
    }
}

TEST(ExampleFits, each_says_its_formulas_and_the_degree_of_its_regional) {
    for (const examples::Survey& survey : examples::surveys()) {
        const Example example(survey.name);
        const Workspace& w = example.session.workspace;
        EXPECT_EQ(w.formulas, Formulas::exact) << survey.name;
        EXPECT_GE(w.mag.regional_degree, 1) << survey.name;
        EXPECT_TRUE(example.prompts.messages.empty()) << survey.name;
    }
}

}  // namespace anomalis::flow

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_fits.h"
#include "batch/stop_request.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;

TEST(Invert, the_report_says_what_moved_and_how_far) {
    const BatchFolder files;
    const Inverted fit = invert(files, {"--channel", "mag", "--iterations", "4", "--method", "sweep"});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    const json& report = fit.report;
    EXPECT_LE(report["iterations"], 4);
    EXPECT_GT(report["evaluations"], report["iterations"]);
    EXPECT_LT(report["final_misfit"][0], report["initial_misfit"][0]);
    ASSERT_EQ(report["parameters"].size(), 3U);
    const json& distance = report["parameters"][0];
    EXPECT_EQ(distance["body"], 1);
    EXPECT_EQ(distance["param_code"], 4);
    EXPECT_EQ(distance["name"], "distance");
    EXPECT_FLOAT_EQ(distance["start"].get<float>(), 463.7F);
    EXPECT_EQ(distance["step"], 10.0);
    EXPECT_NE(distance["final"], distance["start"]);
    EXPECT_EQ(report["parameters"][2]["name"], "susc");
    EXPECT_EQ(report["messages"], json::array());
    EXPECT_NE(fit.run.out.find(report["label"].get<std::string>()), std::string::npos);
}

TEST(Invert, the_fitted_workspace_reads_back_with_the_fitted_values) {
    const BatchFolder files;
    const std::string fitted = files.folder.path("fitted.axm");
    const Inverted fit = invert(files, {"--iterations", "3", "-o", fitted});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    const json params = batch({"dump", fitted}).json()["bodies"][0]["params"];
    for (const json& parameter : fit.report["parameters"]) {
        const std::string name = parameter["name"];
        EXPECT_EQ(number_to_text(params[name]["value"].get<float>()),
                  number_to_text(parameter["final"].get<float>()))
            << name;
    }
    EXPECT_EQ(files.folder.read("model.axm"), model_text()) << "the model itself is left alone";
}

TEST(Invert, gravity_uses_its_own_scale_and_its_own_parameters) {
    const BatchFolder files;
    const json dump = batch({"dump", files.model}).json();
    const Inverted fit = invert(files, {"--channel", "grav", "--iterations", "2"});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_NEAR(fit.report["initial_misfit"][0].get<double>(), dump["misfit"]["grav"][0].get<double>(), 1e-7);
    EXPECT_EQ(fit.report["parameters"][2]["name"], "density");
}

TEST(Invert, the_gradient_can_be_the_target) {
    const BatchFolder files;
    const Inverted fit = invert(files, {"--target", "gradient", "--iterations", "3"});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_LT(fit.report["final_misfit"][1], fit.report["initial_misfit"][1]);
}

TEST(Invert, least_squares_reports_errors_and_correlations) {
    const BatchFolder files;
    const Inverted fit = invert(files, {"--method", "least-squares"});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_EQ(fit.report["errors"].size(), 3U);
    ASSERT_EQ(fit.report["correlation"].size(), 3U);
    EXPECT_EQ(fit.report["correlation"][2].size(), 3U);
    EXPECT_TRUE(fit.report["undetermined"].is_array());
    EXPECT_LT(fit.report["final_misfit"][0], fit.report["initial_misfit"][0]);
}

TEST(Invert, both_channels_can_be_fitted_together) {
    const BatchFolder files;
    const Inverted fit = invert(files, {"--channel", "joint", "--method", "least-squares"});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_EQ(fit.report["parameters"].size(), 4U) << "susceptibility and density are both free";
    const auto both = [&](const std::string& when) {
        return std::hypot(fit.report[when + "_misfit"][0].get<double>(),
                          fit.report[when + "_grav_misfit"][0].get<double>());
    };
    EXPECT_LT(both("final"), both("initial"));
}

TEST(Invert, iterations_below_1_and_words_are_refused) {
    const BatchFolder files;
    for (const std::string count : {"0", "-7", "0.4", "1.5", "many", ""}) {
        const BatchRun run = batch({"invert", files.model, "--iterations", count});
        EXPECT_EQ(run.status, 2) << count;
        EXPECT_NE(run.err.find("--iterations: "), std::string::npos) << run.err;
    }
    EXPECT_EQ(invert(files, {"--iterations", "1"}).report["iterations"], 1);
    EXPECT_EQ(batch({"invert", files.model, "--iterations", "1e9"}).status, 0);
}

TEST(Invert, a_body_that_does_not_exist_is_wrong_usage) {
    const BatchFolder files;
    const Inverted fit = invert(files, {"--body", "99"});
    EXPECT_EQ(fit.run.status, 2);
    EXPECT_EQ(fit.run.err, "There is no body 99 to invert: the model has 1\n");
    EXPECT_EQ(fit.report["failures"], json({"There is no body 99 to invert: the model has 1"}));
    EXPECT_EQ(fit.report["status"], -1);
    EXPECT_EQ(fit.report["label"], "Inversion failed: -1");
    EXPECT_TRUE(fit.report["initial_misfit"].is_null());
    EXPECT_TRUE(fit.report["final_misfit"].is_null());
    EXPECT_EQ(batch({"invert", files.model, "--body", "99", "--keep-going"}).status, 2);
}

TEST(Invert, a_refused_run_writes_its_report_but_no_workspace) {
    const BatchFolder files;
    files.folder.write("survey.dat", "");
    const Inverted fit = invert(files, {"-o", files.folder.path("fitted.axm")});
    EXPECT_EQ(fit.run.status, 1);
    EXPECT_EQ(fit.report["status"], -1);
    EXPECT_EQ(files.folder.entries(), 3) << "the survey, the model and the report";
}

TEST(Invert, nothing_free_is_told) {
    const BatchFolder files;
    std::string text = model_text();
    text.replace(text.find(" 2  0  1  255"), 13, " 2  0  0  255");
    files.folder.write("model.axm", text);
    const Inverted fit = invert(files);
    EXPECT_EQ(fit.run.status, 1);
    EXPECT_EQ(fit.report["label"], "Inversion succeeded");
    EXPECT_EQ(fit.report["messages"], json::array({"There are no parameters free to invert on"}));
    EXPECT_EQ(fit.report["failures"], fit.report["messages"]);
    const std::string fitted = files.folder.path("fitted.axm");
    EXPECT_EQ(invert(files, {"-o", fitted}).run.status, 1);
    EXPECT_FALSE(std::filesystem::exists(fitted)) << "it would pass for a fit";
    EXPECT_EQ(invert(files, {"-o", fitted, "--keep-going"}).run.status, 0);
    EXPECT_TRUE(std::filesystem::exists(fitted));
}

TEST(Invert, a_degree_that_is_none_is_wrong_usage) {
    const BatchFolder files;
    for (const std::string degree : {"4", "-1", "1.5", "bend", "", "nan"}) {
        const BatchRun run = batch({"invert", files.model, "--regional", degree});
        EXPECT_EQ(run.status, 2) << degree;
        EXPECT_NE(
            run.err.find("--regional: must be none, 0 (level), 1 (slope), 2 (bend) or 3 (cubic): " + degree),
            std::string::npos)
            << run.err;
    }
}

TEST(Invert, a_noise_that_is_none_is_wrong_usage) {
    const BatchFolder files;
    for (const auto& [option, unit] : {std::pair{"--noise-mag", "nT"}, std::pair{"--noise-grav", "mGal"}}) {
        for (const std::string noise : {"0", "-5", "loud", "", "1e99"}) {
            const BatchRun run = batch({"invert", files.model, option, noise});
            EXPECT_EQ(run.status, 2) << option << noise;
            EXPECT_NE(
                run.err.find(std::string(option) + ": must be a number of " + unit + " above 0: " + noise),
                std::string::npos)
                << run.err;
        }
    }
    for (const std::string starts : {"-1", "some", "2.5"})
        EXPECT_EQ(batch({"invert", files.model, "--starts", starts}).status, 2) << starts;
}

TEST(Invert, a_channel_that_is_missing_is_named_and_nothing_is_fitted) {
    const BatchFolder files;
    std::string text = model_text();
    text.replace(text.find("3  4  0  0  0  0"), 16, "3  0  0  0  0  0");
    files.folder.write("model.axm", text);
    for (const std::string channel : {"grav", "joint"}) {
        const Inverted fit = invert(files, {"--channel", channel, "-o", files.folder.path("fitted.axm")});
        EXPECT_EQ(fit.run.status, 1);
        EXPECT_EQ(fit.run.err,
                  "--channel " + channel + " needs a gravity column, and the workspace names none\n");
        EXPECT_EQ(fit.report["status"], -1);
        EXPECT_TRUE(fit.report["parameters"].empty());
        EXPECT_FALSE(std::filesystem::exists(files.folder.path("fitted.axm")));
    }
    text.replace(text.find("3  0  0  0  0  0"), 16, "0  4  0  0  0  0");
    files.folder.write("model.axm", text);
    EXPECT_EQ(invert(files, {"--channel", "mag"}).run.err,
              "--channel mag needs a magnetic column, and the workspace names none\n");
    EXPECT_EQ(invert(files, {"--iterations", "2"}).report["units"], "mGal")
        << "what there is is taken unasked";
}

TEST(Invert, the_sweep_keeps_its_way_and_tells_its_misfit_with_a_unit) {
    const BatchFolder files;
    const Inverted fit = invert(files, {"--method", "sweep", "--iterations", "3"});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_EQ(fit.report["method"], "sweep");
    EXPECT_EQ(fit.report["units"], "nT");
    EXPECT_NEAR(fit.report["rms"].get<double>(),
                fit.report["final_misfit"][0].get<double>() * 40 / std::sqrt(41.0), 1e-4);
    EXPECT_TRUE(fit.report["chi_square"].is_null());
    EXPECT_TRUE(fit.report["regional"].is_null());
    EXPECT_TRUE(fit.report["parameters"][0]["lower"].is_number()) << "its wide default";
    EXPECT_EQ(fit.report["intervals"], json::array({nullptr, nullptr, nullptr}));
    EXPECT_FALSE(fit.report.contains("errors"));
    EXPECT_NE(fit.run.out.find("Magnetics: rms "), std::string::npos) << fit.run.out;
    const std::string fitted = files.folder.path("fitted.axm");
    ASSERT_EQ(invert(files, {"--method", "sweep", "--iterations", "3", "-o", fitted}).run.status, 0);
    EXPECT_EQ(files.folder.read("fitted.axm").find("[AXM Extensions]"), std::string::npos);
}

TEST(StopRequest, an_interrupt_is_remembered_and_ends_nothing) {
    const StopRequest stop;
    EXPECT_FALSE(stop.made());
    std::raise(SIGINT);
    EXPECT_TRUE(stop.made());
}

TEST(StopRequest, a_new_one_starts_unasked) {
    {
        const StopRequest first;
        std::raise(SIGINT);
    }
    const StopRequest second;
    EXPECT_FALSE(second.made());
}

}  // namespace
}  // namespace anomalis::batch

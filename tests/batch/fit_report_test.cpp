// What a least-squares fit says, in its report, on the terminal and in the workspace that it writes.
#include <gtest/gtest.h>
#include <regex>

#include "batch/batch_fits.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;

TEST(FitReport, tells_rms_noise_chi_square_correlation_regional_and_intervals) {
    const FitFolder files;
    const json report = invert(files, {"--channel", "mag", "--regional", "1"}).report;
    EXPECT_EQ(report["label"], "Inversion succeeded");
    EXPECT_EQ(report["method"], "least-squares");
    EXPECT_EQ(report["units"], "nT");
    EXPECT_NEAR(report["rms"].get<double>(), 0.5, 0.1);
    EXPECT_NEAR(report["noise"].get<double>(), 0.5, 0.15);
    EXPECT_NEAR(report["chi_square"].get<double>(), 1, 0.5);
    EXPECT_TRUE(report["residual_correlation_m"].is_number());
    ASSERT_EQ(report["regional"].size(), 2U);
    EXPECT_NEAR(report["regional"][1].get<double>(), 4, 1.5) << "half of 8 nT from end to end";
    EXPECT_EQ(report["regional_axis"], json::parse(R"({"centre": 500.0, "half_width": 500.0})"));
    ASSERT_EQ(report["intervals"].size(), report["parameters"].size());
    for (std::size_t i = 0; i < report["parameters"].size(); ++i) {
        const json& parameter = report["parameters"][i];
        ASSERT_EQ(report["intervals"][i].size(), 2U) << parameter["name"];
        EXPECT_LT(report["intervals"][i][0], parameter["final"]);
        EXPECT_GT(report["intervals"][i][1], parameter["final"]);
    }
    EXPECT_NEAR(report["parameters"][0]["final"].get<double>(), 463.7, 3);
    EXPECT_FALSE(report.contains("grav_rms"));
}

TEST(FitReport, a_limit_that_is_none_is_null_and_one_that_physics_asks_for_is_not) {
    const FitFolder files;
    const json parameters = invert(files, {"--channel", "mag"}).report["parameters"];
    ASSERT_EQ(parameters[1]["name"], "top");
    EXPECT_TRUE(parameters[1]["lower"].is_null());
    EXPECT_EQ(parameters[1]["upper"], 0.0) << "the ground";
    ASSERT_EQ(parameters[2]["name"], "susc");
    EXPECT_NEAR(parameters[2]["lower"].get<double>(), 0.01, 1e-6);
    EXPECT_TRUE(parameters[2]["upper"].is_null());
}

TEST(FitReport, a_joint_fit_tells_both_channels) {
    const BatchFolder files;
    const json report = invert(files, {"--channel", "joint"}).report;
    EXPECT_EQ(report["units"], "nT");
    EXPECT_EQ(report["grav_units"], "mGal");
    for (const char* name : {"rms", "noise", "chi_square", "residual_correlation_m"}) {
        EXPECT_TRUE(report[name].is_number()) << name;
        EXPECT_TRUE(report["grav_" + std::string(name)].is_number()) << name;
    }
    EXPECT_TRUE(report["grav_regional"].is_null());
    EXPECT_TRUE(report["grav_regional_axis"].is_null());
}

TEST(FitReport, gravity_alone_has_the_names_without_a_prefix) {
    const BatchFolder files;
    const json report = invert(files, {"--channel", "grav", "--regional", "0"}).report;
    EXPECT_EQ(report["units"], "mGal");
    EXPECT_EQ(report["regional"].size(), 1U);
    EXPECT_FALSE(report.contains("grav_rms"));
}

TEST(FitReport, the_gradient_says_that_it_is_one) {
    const FitFolder files;
    const json report = invert(files, {"--target", "gradient"}).report;
    EXPECT_EQ(report["units"], "nT per station");
    EXPECT_EQ(report["units_of"]["seconds"], "s");
    for (const json& parameter : report["parameters"]) EXPECT_TRUE(parameter["unit"].is_string());
}

TEST(FitReport, a_noise_that_is_given_is_used_and_said) {
    const FitFolder files;
    const json loud = invert(files, {"--channel", "mag", "--regional", "1", "--noise-mag", "50"}).report;
    EXPECT_EQ(loud["noise"], 50.0);
    EXPECT_LT(loud["chi_square"], 0.01);
    const json quiet = invert(files, {"--channel", "mag", "--regional", "1", "--noise-mag", "0.005"}).report;
    EXPECT_NEAR(quiet["noise"].get<double>(), 0.005, 1e-8);
    EXPECT_GT(quiet["chi_square"], 100);
    EXPECT_NE(quiet["fit_remarks"].dump().find("times the noise of"), std::string::npos)
        << quiet["fit_remarks"];
}

TEST(FitReport, the_written_workspace_keeps_the_fit_with_its_regional_and_noise) {
    const FitFolder files;
    const std::string fitted = files.folder.path("fitted.axm");
    const Inverted fit = invert(files, {"--regional", "1", "--noise-mag", "0.5", "-o", fitted});
    ASSERT_EQ(fit.run.status, 0) << fit.run.err;
    const json dump = batch({"dump", fitted}).json();
    EXPECT_EQ(dump["workspace"]["mag_regional_degree"], 1);
    EXPECT_EQ(dump["workspace"]["grav_regional_degree"], -1) << "it was not fitted";
    EXPECT_EQ(dump["workspace"]["mag_noise"], 0.5);
    const json& kept = dump["last_fit"];
    EXPECT_TRUE(kept["as_fitted"]);
    EXPECT_EQ(kept["outcome"], fit.report["label"]);
    EXPECT_EQ(kept["mag"]["rms"], fit.report["rms"]);
    EXPECT_EQ(kept["mag"]["regional"]["coefficients"], fit.report["regional"]);
    EXPECT_NEAR(kept["correlation"][2][1].get<double>(), fit.report["correlation"][2][1].get<double>(),
                1e-12);
    for (std::size_t i = 0; i < kept["parameters"].size(); ++i)
        EXPECT_EQ(kept["parameters"][i]["interval"], fit.report["intervals"][i]);
    EXPECT_NE(batch({"info", fitted}).out.find("Last fit        " + kept["date"].get<std::string>()),
              std::string::npos);
    const std::string table = files.folder.path("model.csv");
    EXPECT_EQ(batch({"export", fitted, "--clean-model", table}).status, 0);
    EXPECT_NE(files.folder.read("model.csv").find(",top_elevation_m_lower_90,top_elevation_m_upper_90,"),
              std::string::npos);
}

TEST(FitReport, a_workspace_whose_model_was_changed_by_hand_drops_the_fit_and_says_so) {
    const FitFolder files;
    const std::string fitted = files.folder.path("fitted.axm");
    ASSERT_EQ(invert(files, {"-o", fitted}).run.status, 0);
    std::string text = files.folder.read("fitted.axm");
    text.replace(text.find(" 250  0 "), 8, " 251  0 ");
    files.folder.write("changed.axm", text);
    const BatchRun run = batch({"dump", files.folder.path("changed.axm")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.json()["last_fit"].is_null());
    EXPECT_NE(run.err.find("the record of the last fit is that of another model and was dropped"),
              std::string::npos)
        << run.err;
}

TEST(FitReport, the_terminal_shows_values_with_units_intervals_and_remarks) {
    const FitFolder files;
    const Inverted fit = invert(files, {"--regional", "1", "--noise-mag", "0.005"});
    const std::regex top("\nTop of body 1: -[0-9.]+ m \\(90 %: -[0-9.]+ to -[0-9.]+\\), from -60\n");
    EXPECT_TRUE(std::regex_search(fit.run.out, top)) << fit.run.out;
    const std::regex rms(
        "\nMagnetics: rms [0-9.]+ nT over 81 stations, [0-9.]+ times the noise of 0\\.0050 nT\n");
    EXPECT_TRUE(std::regex_search(fit.run.out, rms)) << fit.run.out;
    ASSERT_FALSE(fit.report["fit_remarks"].empty());
    EXPECT_NE(fit.run.out.find(fit.report["fit_remarks"][0].get<std::string>()), std::string::npos);
}

TEST(FitReport, other_starts_can_be_left_out) {
    const FitFolder files;
    const json none = invert(files, {"--starts", "0", "--regional", "1"}).report;
    const json some = invert(files, {"--starts", "4", "--regional", "1"}).report;
    EXPECT_NEAR(none["rms"].get<double>(), some["rms"].get<double>(), 1e-3);
}

}  // namespace
}  // namespace anomalis::batch

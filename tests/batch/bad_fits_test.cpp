// Fits that cannot be had, or that tell little: each is answered in words.
#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_fits.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;

/// A model whose text was changed in one place.
void change_model(const BatchFolder& files, const std::string& from, const std::string& to) {
    std::string text = files.folder.read("model.axm");
    ASSERT_NE(text.find(from), std::string::npos);
    files.folder.write("model.axm", text.replace(text.find(from), from.size(), to));
}

void fit_stations(const BatchFolder& files, int first, int last) {
    change_model(files, " 0  5  1  0  0  0 ",
                 " 0  5  1  0  " + std::to_string(first) + "  " + std::to_string(last) + " ");
}

TEST(BadFits, fewer_stations_than_unknowns_fail_with_the_numbers) {
    const FitFolder files;
    fit_stations(files, 30, 31);
    const std::string fitted = files.folder.path("fitted.axm");
    const Inverted fit = invert(files, {"--channel", "mag", "--regional", "1", "-o", fitted});
    EXPECT_EQ(fit.run.status, 1);
    EXPECT_EQ(fit.report["label"], "Inversion failed: -1");
    EXPECT_NE(fit.run.err.find("There are 2 stations for 5 unknowns"), std::string::npos) << fit.run.err;
    EXPECT_EQ(fit.report["intervals"], json::array({nullptr, nullptr, nullptr}));
    EXPECT_FALSE(std::filesystem::exists(fitted));
}

TEST(BadFits, a_window_of_three_stations_gives_values_and_no_errors) {
    const FitFolder files;
    fit_stations(files, 36, 38);
    const Inverted fit = invert(files, {"--channel", "mag"});
    ASSERT_TRUE(fit.report.contains("errors")) << fit.run.err;
    EXPECT_EQ(fit.report["errors"], json::array({nullptr, nullptr, nullptr}));
    EXPECT_EQ(fit.report["intervals"], json::array({nullptr, nullptr, nullptr}));
    EXPECT_NE(fit.report["fit_remarks"].dump().find("too few for what is free: the errors are open"),
              std::string::npos)
        << fit.report["fit_remarks"];
}

TEST(BadFits, a_constant_channel_ends_without_a_body) {
    const BatchFolder files;
    std::string flat = "east north mag grav\n";
    for (int i = 0; i < 41; ++i) flat += std::to_string(500000 + 25 * i) + " 6500000 56000 0\n";
    files.folder.write("survey.dat", flat);
    const Inverted fit = invert(files, {"--channel", "mag"});
    EXPECT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_NEAR(fit.report["rms"].get<double>(), 0, 1e-3);
    for (const json& parameter : fit.report["parameters"]) EXPECT_TRUE(parameter["final"].is_number());
    EXPECT_LT(fit.report["parameters"][2]["final"], 50.0) << "no susceptibility is left";
}

TEST(BadFits, limits_that_cross_hold_the_parameter_and_are_told) {
    const FitFolder files;
    change_model(files, " 443.7  0  0 -60  1 -99999 -99999", " 443.7  0  0 -60  1  900  100");
    const Inverted fit = invert(files, {"--channel", "mag"});
    EXPECT_EQ(fit.run.status, 0) << fit.run.err;
    EXPECT_EQ(fit.report["parameters"][0]["final"], fit.report["parameters"][0]["start"]);
    EXPECT_NE(fit.report["fit_remarks"].dump().find("The limits of distance of body 1 cross"),
              std::string::npos)
        << fit.report["fit_remarks"];
}

TEST(BadFits, a_fit_that_stops_at_a_limit_does_not_pass_for_a_success) {
    const FitFolder files;
    change_model(files, " 443.7  0  0 -60  1 -99999 -99999", " 443.7  0  0 -60  1  440  450");
    const Inverted fit = invert(files, {"--channel", "mag"});
    EXPECT_EQ(fit.report["label"], "Stopped at the limit of 1 parameter");
    EXPECT_EQ(fit.report["parameters"][0]["final"], 450.0);
    EXPECT_EQ(fit.report["at_limit"], json::parse(R"([{"body": 1, "name": "distance"}])"));
}

TEST(BadFits, all_bodies_fixed_is_told) {
    const FitFolder files;
    change_model(files, " 2  0  1  255", " 2  0  0  255");
    for (const std::string method : {"least-squares", "sweep"}) {
        const Inverted fit = invert(files, {"--method", method});
        EXPECT_EQ(fit.run.status, 1);
        EXPECT_EQ(fit.report["failures"], json::array({"There are no parameters free to invert on"}));
    }
}

TEST(BadFits, a_damaged_record_is_dropped_and_told_and_the_model_is_fitted_again) {
    const FitFolder files;
    ASSERT_EQ(invert(files, {"--in-place"}).run.status, 0);
    std::string text = files.folder.read("model.axm");
    const std::size_t place = text.find("fit_mag ") + 8;
    text[place] = text[place] == '9' ? '8' : '9';
    files.folder.write("model.axm", text);
    const Inverted fit = invert(files);
    EXPECT_EQ(fit.run.status, 0);
    EXPECT_NE(fit.run.err.find("the record of the last fit is damaged and was dropped"), std::string::npos)
        << fit.run.err;
}

}  // namespace
}  // namespace anomalis::batch

#include <filesystem>
#include <gtest/gtest.h>

#include "batch/find_lines.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

TEST(Find, a_sheet_is_found_and_its_report_speaks_in_the_terms_of_an_interpreter) {
    const FindFolder files(sheet_line());
    const Found found = find(files, {"--regional", "1", "--bodies", "1"});
    ASSERT_EQ(found.run.status, 0) << found.run.err;
    EXPECT_EQ(found.report["channel"], "mag");
    EXPECT_EQ(found.report["units"], "nT");
    EXPECT_EQ(found.report["stopped"], false);
    EXPECT_GT(found.report["seconds"], 0.0);
    ASSERT_EQ(found.bodies().size(), 1U);
    const json& body = found.bodies()[0];
    EXPECT_NEAR(body["distance"].get<double>(), SheetCurves::place, 10);
    EXPECT_NEAR(body["depth_below_sensor"].get<double>(), SheetCurves::depth, 0.15 * SheetCurves::depth);
    EXPECT_NEAR(body["depth_below_ground"].get<double>(), body["depth_below_sensor"].get<double>() - 10,
                0.01);
    EXPECT_NEAR(body["dip"].get<double>(), 80, 10);
    EXPECT_GT(body["susceptibility"], 0.0);
    EXPECT_FALSE(body.contains("density_contrast"));
    EXPECT_LT(found.best()["rms"], 1.0);
    EXPECT_TRUE(found.best()["criterion"].is_number());
    EXPECT_EQ(found.best()["regional"].size(), 2U);
    const json& depth = body["intervals"]["depth_below_sensor"];
    EXPECT_LT(depth[0], body["depth_below_sensor"]);
    EXPECT_GT(depth[1], body["depth_below_sensor"]);
    EXPECT_TRUE(body["intervals"].contains("susceptibility"));
    EXPECT_NE(found.run.out.find("m below the sensor"), std::string::npos) << found.run.out;
}

TEST(Find, the_best_model_is_written_and_stands_as_fitted) {
    const FindFolder files(sheet_line());
    const std::string output = files.folder.path("best.axm");
    const Found found = find(files, {"--regional", "1", "--bodies", "1", "-o", output});
    ASSERT_EQ(found.run.status, 0) << found.run.err;
    const json dump = batch({"dump", output}).json();
    ASSERT_EQ(dump["bodies"].size(), 1U);
    EXPECT_NEAR(dump["bodies"][0]["params"]["distance"]["value"].get<double>(),
                found.bodies()[0]["distance"].get<double>(), 1e-3);
    EXPECT_EQ(dump["workspace"]["formulas"], "exact");
    EXPECT_NE(batch({"info", output}).out.find("Last fit"), std::string::npos);
    EXPECT_EQ(files.folder.read("line.axm"), bare_model_text("line.dat")) << "the model itself is left alone";
}

TEST(Find, gravity_is_looked_at_with_a_density_contrast_when_it_is_all_there_is) {
    const FindFolder files(sheet_line(), {.mag_column = 0});
    const Found found = find(files, {"--regional", "0", "--bodies", "1"});
    ASSERT_EQ(found.run.status, 0) << found.run.err;
    EXPECT_EQ(found.report["channel"], "grav");
    EXPECT_EQ(found.report["units"], "mGal");
    ASSERT_EQ(found.bodies().size(), 1U);
    EXPECT_TRUE(found.bodies()[0]["susceptibility"].is_null());
    EXPECT_GT(found.bodies()[0]["density_contrast"], 0.0);
    EXPECT_NEAR(found.bodies()[0]["distance"].get<double>(), SheetCurves::place, 30);
}

TEST(Find, both_channels_are_explained_by_the_same_bodies) {
    const FindFolder files(sheet_line());
    const Found found =
        find(files, {"--channel", "joint", "--bodies", "1", "--regional", "1", "--window", "200:740"});
    ASSERT_EQ(found.run.status, 0) << found.run.err;
    EXPECT_EQ(found.report["channel"], "joint");
    ASSERT_EQ(found.bodies().size(), 1U);
    EXPECT_GT(found.bodies()[0]["susceptibility"], 0.0);
    EXPECT_GT(found.bodies()[0]["density_contrast"], 0.0);
    EXPECT_TRUE(found.best().contains("grav_regional"));
}

TEST(Find, alternatives_stand_best_first_and_differ_in_kind) {
    const FindFolder files(sheet_line());
    const Found found = find(files, {"--regional", "1", "--most", "1", "--alternatives", "2"});
    ASSERT_EQ(found.run.status, 0) << found.run.err;
    const json& models = found.report["alternatives"];
    ASSERT_EQ(models.size(), 2U) << found.report;
    EXPECT_LE(models[0]["criterion"], models[1]["criterion"]);
    EXPECT_NE(models[0]["kind"], models[1]["kind"]);
    EXPECT_NE(found.run.out.find("\n2. "), std::string::npos) << found.run.out;
}

TEST(Find, kinds_and_number_are_kept_to) {
    const FindFolder files(sheet_line());
    for (const std::string kind : {"thin", "thick"}) {
        const Found found =
            find(files, {"--kinds", kind, "--bodies", "1", "--regional", "1", "--window", "300:640"});
        ASSERT_EQ(found.run.status, 0) << found.run.err;
        ASSERT_EQ(found.bodies().size(), 1U) << kind;
        EXPECT_EQ(found.bodies()[0]["type"], kind == "thin" ? "Thin Sheet" : "Thick Sheet");
    }
}

TEST(Find, bodies_that_stand_there_stay_unless_they_are_set_free) {
    const FindFolder files(sheet_line());
    const std::string text = [] {
        std::string sheet = endless_sheet_text("line.dat");
        return sheet.replace(sheet.find(" 463.7  0  0 -50 "), 17, " 480    0  0 -55 ");
    }();
    std::string fixed = text;
    // All of it fixed is no hindrance: what is looked for stands beside.
    files.folder.write("line.axm", fixed.replace(fixed.find(" 2  0  1  255"), 13, " 2  0  0  255"));
    const std::vector<std::string> options{"--regional", "1", "--bodies", "1", "--window", "300:640"};
    const Found held = find(files, options);
    ASSERT_EQ(held.run.status, 0) << held.run.err;
    ASSERT_EQ(held.best()["present_bodies"].size(), 1U);
    EXPECT_EQ(held.best()["present_bodies"][0]["distance"], 480.0);
    EXPECT_EQ(held.bodies()[0]["body"], 2);
    files.folder.write("line.axm", text);
    std::vector<std::string> freeing = options;
    freeing.emplace_back("--free-present");
    const Found freed = find(files, freeing);
    ASSERT_EQ(freed.run.status, 0) << freed.run.err;
    ASSERT_EQ(freed.best()["present_bodies"].size(), 1U);
    EXPECT_NE(freed.best()["present_bodies"][0]["distance"], 480.0);
}

TEST(Find, a_line_with_nothing_in_it_has_nothing_found_and_says_so) {
    const Curve noise = [](int i) { return chance(i); };
    const Curve regional = [](int i) { return 0.002 * i * i + chance(i); };
    for (const auto& [name, curve] : {std::pair{"flat", Curve(nothing)}, std::pair{"noise", noise},
                                      std::pair{"regional alone", regional}}) {
        const FindFolder files(line_text(61, 16, curve, nothing));
        const std::string output = files.folder.path("best.axm");
        const Found found = find(files, {"--regional", "2", "-o", output});
        EXPECT_EQ(found.run.status, 0) << name << found.run.err;
        EXPECT_TRUE(found.bodies().empty()) << name << found.report;
        EXPECT_TRUE(found.best()["criterion"].is_null() || found.best()["criterion"].is_number());
        EXPECT_NE(found.run.err.find("Note: "), std::string::npos) << name << found.run.err;
        EXPECT_TRUE(fs::exists(output)) << "the line as it is";
    }
}

TEST(Find, odd_lines_are_looked_at_without_harm) {
    const Curve sheet = sheet_curves().mag_curve();
    const Curve spike = [](int i) { return chance(i) + (i == 30 ? 500 : 0); };
    const Curve step = [](int i) { return chance(i) + (i >= 58 ? 80 : 0); };
    const auto gap = [](int i) { return i < 36 || i > 44; };
    const std::vector<std::pair<std::string, std::string>> lines{
        {"spike", line_text(61, 16, spike, nothing)},
        {"step at the end", line_text(61, 16, step, nothing)},
        {"20 stations", line_text(
                            20, 48, [&](int i) { return sheet(3 * i); }, nothing)},
        {"gap", line_text(61, 16, sheet, nothing, 6500000, gap)},
        {"three stations", line_text(3, 16, sheet, nothing)}};
    for (const auto& [name, text] : lines) {
        const FindFolder files(text);
        const Found found = find(files, {"--most", "1", "--regional", "1"});
        EXPECT_EQ(found.run.status, 0) << name << found.run.err;
        for (const json& model : found.report["alternatives"]) {
            EXPECT_TRUE(model["rms"].is_number()) << name;
            for (const json& body : model["bodies"])
                for (const char* value :
                     {"distance", "top", "depth_below_sensor", "dip", "width", "susceptibility"})
                    EXPECT_TRUE(body[value].is_number()) << name << value;
        }
    }
}

TEST(Find, the_window_chooses_the_stations_and_one_beside_the_line_is_refused) {
    const FindFolder files(sheet_line());
    const Found part = find(files, {"--window", "600:960", "--regional", "2", "--most", "1", "-o",
                                    files.folder.path("part.axm")});
    ASSERT_EQ(part.run.status, 0) << part.run.err;
    EXPECT_EQ(batch({"dump", files.folder.path("part.axm")}).json()["workspace"]["first_distance"], 608.0);
    for (const std::string window : {"5000:6000", "-90:-10", "100:110"}) {
        const Found found = find(files, {"--window", window, "-o", files.folder.path("best.axm")});
        EXPECT_EQ(found.run.status, 2) << window;
        EXPECT_NE(found.run.err.find("of the line, which runs from 0.0 to 960.0 m"), std::string::npos)
            << found.run.err;
        EXPECT_TRUE(found.report["alternatives"].empty());
        EXPECT_FALSE(fs::exists(files.folder.path("best.axm")));
    }
}

TEST(Find, a_field_that_induces_nothing_is_told) {
    const FindFolder none(sheet_line(), {.field = " 0 -65 -4 "});
    const Found found = find(none, {"--most", "1", "-o", none.folder.path("best.axm")});
    EXPECT_EQ(found.run.status, 1);
    EXPECT_NE(found.run.err.find("The field intensity is 0 nT"), std::string::npos) << found.run.err;
    EXPECT_FALSE(found.report["failures"].empty());
    EXPECT_FALSE(fs::exists(none.folder.path("best.axm")));
}

TEST(Find, a_field_along_the_strike_of_bodies_across_the_line_is_told) {
    // Level and to the north over an eastward line.
    const FindFolder level(sheet_line(), {.field = " 56000 0 0 "});
    const Found found = find(level, {"--most", "1"});
    EXPECT_EQ(found.run.status, 0) << found.run.err;
    EXPECT_NE(found.run.err.find("Note: Sheets square to this line give no anomaly in this field"),
              std::string::npos)
        << found.run.err;
    EXPECT_TRUE(found.bodies().empty());
}

TEST(Find, what_cannot_be_meant_is_wrong_usage) {
    const FindFolder files(sheet_line());
    const std::vector<std::vector<std::string>> wrong{{"--most", "0"},
                                                      {"--most", "some"},
                                                      {"--bodies", "0"},
                                                      {"--bodies", "3", "--most", "2"},
                                                      {"--kinds", "round"},
                                                      {"--kinds", ""},
                                                      {"--window", "100"},
                                                      {"--window", "200:100"},
                                                      {"--window", "a:b"},
                                                      {"--noise", "0"},
                                                      {"--noise", "1", "--noise-mag", "1"},
                                                      {"--noise", "1", "--channel", "joint"},
                                                      {"--regional", "4"},
                                                      {"--alternatives", "0"},
                                                      {"--channel", "both"}};
    for (const std::vector<std::string>& options : wrong) {
        const Found found = find(files, options);
        EXPECT_EQ(found.run.status, 2) << options[0] << " " << options[1];
        EXPECT_NE(found.run.err.find(options[0]), std::string::npos) << found.run.err;
    }
}

TEST(Find, a_channel_that_is_missing_is_named) {
    const FindFolder files(sheet_line(), {.grav_column = 0});
    for (const std::string channel : {"grav", "joint"}) {
        const Found found = find(files, {"--channel", channel});
        EXPECT_EQ(found.run.status, 1);
        EXPECT_EQ(found.run.err,
                  "--channel " + channel + " needs a gravity column, and the workspace names none\n");
    }
}

TEST(Find, outputs_that_cannot_be_written_or_are_inputs_are_told) {
    const FindFolder files(sheet_line());
    for (const std::string option : {"-o", "--report"}) {
        const BatchRun beside = batch({"find", files.model, "--most", "1", "--alternatives", "1",
                                       "--regional", "1", option, files.folder.path("none/best")});
        EXPECT_EQ(beside.status, 1) << option;
        EXPECT_NE(beside.err.find("none/best"), std::string::npos) << beside.err;
        for (const std::string& input : {files.model, files.folder.path("line.dat")}) {
            const BatchRun over = batch({"find", files.model, option, input});
            EXPECT_EQ(over.status, 2) << option;
            EXPECT_NE(over.err.find(input), std::string::npos) << over.err;
        }
    }
    EXPECT_EQ(files.folder.read("line.dat"), sheet_line());
}

TEST(Find, a_line_without_stations_is_told) {
    const FindFolder files("");
    const Found found = find(files, {"-o", files.folder.path("best.axm")});
    EXPECT_EQ(found.run.status, 1);
    EXPECT_NE(found.run.err.find("There is no line to look for bodies on"), std::string::npos)
        << found.run.err;
    EXPECT_TRUE(found.report["alternatives"].empty());
    EXPECT_FALSE(fs::exists(files.folder.path("best.axm")));
}

}  // namespace
}  // namespace anomalis::batch

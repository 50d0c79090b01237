// How sure a model is: report, table, words and fitted workspace of the command.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_fits.h"

namespace anomalis::batch {
namespace {

using nlohmann::json;

struct Uncertain {
    BatchRun run;
    json report;
};

Uncertain uncertainty(const BatchFolder& files, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{
        "uncertainty", files.model, "--channel", "mag",      "--regional",
        "1",           "--samples", "20",        "--report", files.folder.path("report.json")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    Uncertain result{batch(arguments), {}};
    result.report = json::parse(files.folder.read("report.json"));
    return result;
}

/// Runs Python's standard library over files of the folder; what it prints.
std::string python(const BatchFolder& files, const std::string& program) {
    files.folder.write("read.py", program);
    const std::string command = "cd '" + files.folder.folder() + "' && " PYTHON " read.py > said.txt 2>&1";
    const int status = std::system(command.c_str());
    return std::to_string(status) + " " + files.folder.read("said.txt");
}

TEST(Uncertainty, the_report_holds_fit_bands_profiles_words_models_and_fan) {
    const FitFolder files;
    const Uncertain result = uncertainty(files);
    EXPECT_EQ(result.run.status, 0) << result.run.err;
    const json& report = result.report;
    EXPECT_EQ(report["channel"], "mag");
    EXPECT_EQ(report["seed"], 1);
    EXPECT_FALSE(report["stopped"]);
    ASSERT_EQ(report["parameters"].size(), 3U);
    EXPECT_EQ(report["fit"]["parameters"].size(), 3U);
    const json& distance = report["parameters"][0];
    EXPECT_EQ(distance["name"], "distance");
    EXPECT_EQ(distance["unit"], "m");
    EXPECT_EQ(distance["value"], report["fit"]["parameters"][0]["value"]);
    EXPECT_EQ(distance["profile"], report["fit"]["parameters"][0]["interval"]);
    EXPECT_LT(distance["band"][0], distance["median"]);
    EXPECT_LT(distance["median"], distance["band"][1]);
    EXPECT_NEAR(distance["median"].get<double>(), 463.7, 2);
    ASSERT_EQ(report["samples"].size(), 20U);
    EXPECT_EQ(report["samples"][0]["values"].size(), 3U);
    EXPECT_NEAR(report["samples"][0]["mag_rms"].get<double>(), 0.5, 0.15);
    EXPECT_TRUE(report["samples"][0].contains("mag_degree"));
    ASSERT_EQ(report["fan"].size(), 1U);
    EXPECT_EQ(report["fan"][0]["units"], "nT");
    EXPECT_EQ(report["fan"][0]["lower"].size(), static_cast<std::size_t>(FitFolder::stations));
    EXPECT_EQ(report["fan"][0]["distance"][1], 12.5);
    ASSERT_EQ(report["correlation"].size(), 1U);
    EXPECT_EQ(report["correlation"][0]["names"], json::parse(R"(["top", "susc"])"));
    EXPECT_NEAR(report["correlation"][0]["correlation"][1][0].get<double>(), -0.9, 0.1)
        << "a deeper body is stronger";
    ASSERT_FALSE(report["words"].empty());
    for (const json& words : report["words"])
        EXPECT_NE(result.run.out.find(words.get<std::string>()), std::string::npos) << words;
}

TEST(Uncertainty, the_same_seed_gives_the_same_table_and_another_one_does_not) {
    const FitFolder files;
    const std::string table = files.folder.path("models.csv");
    uncertainty(files, {"--table", table});
    const std::string first = files.folder.read("models.csv");
    uncertainty(files, {"--table", table});
    EXPECT_EQ(files.folder.read("models.csv"), first);
    uncertainty(files, {"--table", table, "--seed", "2"});
    EXPECT_NE(files.folder.read("models.csv"), first);
}

TEST(Uncertainty, table_and_report_are_read_by_the_usual_libraries) {
    const FitFolder files;
    uncertainty(files, {"--table", files.folder.path("models.csv"), "--strike-within", "20"});
    EXPECT_EQ(python(files, R"(
import csv, json
rows = list(csv.DictReader(open('models.csv', encoding='utf-8')))
report = json.load(open('report.json', encoding='utf-8'))
assert len(rows) == len(report['samples']) == 20
for row, sample in zip(rows, report['samples']):
    assert abs(float(row['body_1_distance_m']) / sample['values'][0] - 1) < 1e-6, row
    assert abs(float(row['mag_rms_nT']) - sample['mag_rms']) < 1e-9
print(','.join(rows[0]))
)"),
              "0 sample,mag_regional_degree,mag_rms_nT,grav_regional_degree,grav_rms_mGal,body_1_distance_m,"
              "body_1_top_elevation_m,body_1_susceptibility_micro_SI,body_1_strike_deg\n");
}

TEST(Uncertainty, the_fitted_workspace_bears_the_values_of_the_report) {
    const FitFolder files;
    const std::string fitted = files.folder.path("fitted.axm");
    const Uncertain result = uncertainty(files, {"-o", fitted});
    const json dump = batch({"dump", fitted}).json();
    EXPECT_EQ(dump["last_fit"]["as_fitted"], true);
    EXPECT_EQ(dump["last_fit"]["parameters"][0]["value"], result.report["parameters"][0]["value"]);
    EXPECT_NEAR(dump["bodies"][0]["params"]["distance"]["value"].get<double>(),
                result.report["parameters"][0]["value"].get<double>(), 1e-3);
}

TEST(Uncertainty, an_unknown_strike_is_drawn_and_said) {
    const FitFolder files;
    const json known = uncertainty(files).report;
    const json unknown = uncertainty(files, {"--strike-within", "30"}).report;
    const auto length = [](const json& report) {
        const json& band = report["parameters"][1]["band"];
        return band[1].get<double>() - band[0].get<double>();
    };
    EXPECT_GT(length(unknown), length(known));
    EXPECT_EQ(unknown["parameters"][3]["name"], "strike");
    EXPECT_EQ(unknown["parameters"][3]["profile"], json::parse("[null, null]"));
    EXPECT_EQ(unknown["strike_within"], 30.0);
}

TEST(Uncertainty, a_window_is_used_and_one_beside_the_line_refused) {
    const FitFolder files;
    const json part = uncertainty(files, {"--window", "200:800"}).report;
    EXPECT_EQ(part["fan"][0]["first_station"], 17);
    EXPECT_EQ(part["fan"][0]["lower"].size(), 49U);
    const Uncertain beside = uncertainty(files, {"--window", "5000:6000"});
    EXPECT_NE(beside.run.status, 0);
    EXPECT_NE(beside.run.err.find("The window 5000.0 to 6000.0 m holds no station of the line"),
              std::string::npos)
        << beside.run.err;
    EXPECT_TRUE(beside.report["fit"].is_null());
    EXPECT_TRUE(beside.report["samples"].empty());
}

TEST(Uncertainty, what_cannot_be_told_is_refused_and_nothing_written_but_the_report) {
    const FitFolder files;
    std::string held = model_text();
    for (std::size_t at = held.find(" 1 -99999 -99999"); at != std::string::npos;
         at = held.find(" 1 -99999 -99999"))
        held.replace(at, 3, " 0 ");
    files.folder.write("model.axm", held);
    const std::string table = files.folder.path("models.csv");
    const Uncertain result = uncertainty(files, {"--table", table, "-o", files.folder.path("out.axm")});
    EXPECT_EQ(result.run.status, 1);
    EXPECT_NE(result.run.err.find("There are no parameters free to invert on"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(table));
    EXPECT_FALSE(std::filesystem::exists(files.folder.path("out.axm")));
    files.folder.write("survey.dat", "east north mag grav\n");
    EXPECT_NE(uncertainty(files).run.err.find("No stations are loaded"), std::string::npos);
}

TEST(Uncertainty, options_out_of_range_are_refused) {
    const FitFolder files;
    for (const auto& [option, value] : {std::pair{"--samples", "0"}, std::pair{"--strike-within", "120"},
                                        std::pair{"--seed", "-1"}, std::pair{"--window", "9:1"}}) {
        const BatchRun run = batch({"uncertainty", files.model, option, value});
        EXPECT_EQ(run.status, 2) << option;
        EXPECT_NE(run.err.find(option), std::string::npos) << run.err;
    }
    EXPECT_EQ(batch({"uncertainty", files.model, "--report", files.model}).status, 2);
}

}  // namespace
}  // namespace anomalis::batch

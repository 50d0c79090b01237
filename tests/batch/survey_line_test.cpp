#include <cmath>
#include <gtest/gtest.h>
#include <regex>

#include "batch/batch_runs.h"
#include "core/numbers.h"
#include "support/temp_folder.h"

// A line of a survey is what the commands give one after the other.
namespace anomalis::batch {

namespace {

using nlohmann::json;

/// Line 100 over a thin sheet 100 m below the sensor.
std::string sheet_table() {
    std::string text = "line,east,north,height,dtm,tmi\n";
    for (int i = 0; i < 26; ++i) {
        const double x = 20.0 * i - 250, h = 100;
        const double noise = std::fmod(1000 * std::abs(std::sin(12.9898 * i)), 1) - 0.5;
        text += "100," + std::to_string(450000 + 20 * i) + ",7550000,360,300," +
                format_number(200 * h * (h + 0.5 * x) / (x * x + h * h) + noise, "0.00") + "\n";
    }
    return text;
}

/// Without what a clock or the name of the survey's file says.
std::string timeless(std::string text) {
    text = std::regex_replace(text, std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]?[\d:]*Z?)"), "DATE");
    text = std::regex_replace(text, std::regex(R"("seconds": [-+.e\d]+)"), "\"seconds\": 0");
    text = std::regex_replace(text, std::regex(R"(fit_end \d+)"), "fit_end");
    return std::regex_replace(text, std::regex("survey_100"), "100");
}

class OneByOne : public TempFolder {
  public:
    OneByOne() { write("survey.csv", sheet_table()); }

    BatchRun done(const std::vector<std::string>& arguments) const {
        BatchRun run = batch(arguments);
        EXPECT_EQ(run.status, 0) << arguments.front() << ": " << run.err << run.out;
        return run;
    }
    /// The workspace and the reports that the commands leave in the folder "one".
    void run_commands() const {
        const std::string model = path("one/survey_100.axm");
        done({"import", path("survey.csv"), "--crs", "EPSG:32754", "--field", "50000,-55,6", "--line", "100",
              "-o", path("one")});
        done({"find", model, "--regional", "1", "--bodies", "1", "--kinds", "thin", "--alternatives", "1",
              "-o", path("one/found.axm"), "--report", path("one/find.json")});
        done({"invert", path("one/found.axm"), "--regional", "1", "--iterations", "4", "--starts", "1", "-o",
              path("one/fitted.axm"), "--report", path("one/invert.json")});
        done({"uncertainty", path("one/fitted.axm"), "--regional", "1", "--samples", "2", "--seed", "7", "-o",
              path("one/last.axm"), "--report", path("one/uncertainty.json")});
        done({"export", path("one/last.axm"), "--clean-model", path("one/model.csv"), "--clean-profile",
              path("one/profile.csv"), "--geopackage", path("one/map.gpkg")});
    }
    void run_survey() const {
        write("plan.toml",
              "regional = 1\nexport = [\"clean-model\", \"clean-profile\", \"geopackage\"]\n"
              "[source]\nfile = \"survey.csv\"\ncrs = \"EPSG:32754\"\nfield = [50000, -55, 6]\n"
              "[find]\nbodies = 1\nkinds = \"thin\"\nalternatives = 1\n"
              "[invert]\niterations = 4\nstarts = 1\n"
              "[uncertainty]\nsamples = 2\nseed = 7\n");
        done({"survey", path("plan.toml"), "-o", path("all"), "-j", "2"});
    }
    std::string line(const std::string& name) const { return read("all/lines/100/" + name); }
};

TEST(SurveyLine, IsWhatTheCommandsGiveOneByOne) {
    const OneByOne folder;
    folder.run_commands();
    folder.run_survey();
    EXPECT_EQ(timeless(folder.line("100.csv")), timeless(folder.read("one/survey_100.csv")));
    EXPECT_EQ(timeless(folder.line("100.axm")), timeless(folder.read("one/last.axm")));
    for (const char* report : {"find.json", "invert.json", "uncertainty.json"})
        EXPECT_EQ(timeless(folder.line(report)), timeless(folder.read(std::string("one/") + report)));
    EXPECT_EQ(folder.line("100-model.csv"), folder.read("one/model.csv"));
    EXPECT_EQ(folder.line("100-profile.csv"), folder.read("one/profile.csv"));
    EXPECT_EQ(folder.line("100.gpkg").size(), folder.read("one/map.gpkg").size());

    const json result = json::parse(folder.line("result.json"));
    const json found = json::parse(folder.read("one/find.json"))["alternatives"][0];
    const json fit = json::parse(folder.read("one/uncertainty.json"))["fit"];
    ASSERT_EQ(result["bodies"].size(), 1U);
    const json& body = result["bodies"][0];
    EXPECT_EQ(result["criterion"], found["criterion"]);
    for (const json& parameter : fit["parameters"]) {
        if (parameter["name"] != "dip" && parameter["name"] != "distance") continue;
        EXPECT_EQ(body[parameter["name"]][0], parameter["value"]);
        if (parameter["interval"].is_null()) continue;
        EXPECT_EQ(body[parameter["name"]][1], parameter["interval"][0]);
        EXPECT_EQ(body[parameter["name"]][2], parameter["interval"][1]);
    }
    EXPECT_NEAR(body["depth_below_sensor"][0].get<double>() - body["depth_below_ground"][0].get<double>(), 60,
                1e-6);
    EXPECT_NEAR(body["east"].get<double>(), 450250, 15);
    EXPECT_NEAR(body["profile_azimuth"].get<double>(), 90, 1e-6);
    EXPECT_NEAR(body["longitude"].get<double>(), 140.5, 0.1);
    EXPECT_NEAR(body["latitude"].get<double>(), -22.15, 0.1);
}

}  // namespace

}  // namespace anomalis::batch

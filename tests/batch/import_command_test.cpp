#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "support/child_process.h"
#include "support/survey_lines.h"

namespace anomalis::batch {
namespace {

namespace fs = std::filesystem;

struct SurveyFolder {
    TempFolder folder;
    std::string survey = folder.write("survey.csv", survey_table());
    std::string out = folder.path("out");

    BatchRun import(std::vector<std::string> options) const {
        options.insert(options.begin(), {"import", survey});
        options.insert(options.end(), {"-o", out});
        return batch(options);
    }
    /// Refused with these words, and with nothing left behind.
    void expect_refused(const std::vector<std::string>& options, const std::string& words,
                        int status = 1) const {
        const BatchRun run = import(options);
        EXPECT_EQ(run.status, status) << run.err;
        EXPECT_NE(run.err.find(words), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(folder.entries(), 1) << "nothing is left behind";
    }
};

TEST(LinesCommand, tells_the_lines_as_a_table) {
    const SurveyFolder files;
    const BatchRun run = batch({"lines", files.survey});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              "line  kind  stations  length m  magnetics nT  gravity mGal  parts\n"
              "100   line        40       390  0.0 to 100.0  0.00 to 1.00      1\n"
              "110   line        40       390  1.0 to 101.0  0.00 to 1.00      1\n"
              "120   line        40       390  2.0 to 102.0  0.00 to 1.00      1\n");
}

TEST(LinesCommand, tells_the_lines_as_json) {
    const SurveyFolder files;
    files.folder.write("mag.csv", survey_in_degrees(140.8, -22.1));
    const auto json = batch({"lines", files.folder.path("mag.csv"), "--json"}).json();
    EXPECT_EQ(json.size(), 2U);
    EXPECT_EQ(json["format"], "Text table");
    ASSERT_EQ(json["lines"].size(), 2U);
    const auto& line = json["lines"][1];
    EXPECT_EQ(line["line"], "110");
    EXPECT_EQ(line["stations"], 30);
    EXPECT_NEAR(line["length_m"], 299, 1);
    EXPECT_EQ(line["mag_nT"], (std::vector<double>{50, 56}));
    EXPECT_TRUE(line["grav_mGal"].is_null());
}

TEST(LinesCommand, tells_what_was_not_used) {
    const SurveyFolder files;
    files.folder.write("survey.csv", survey_table() + "100,482000,,300,240,7,0\n");
    const BatchRun run = batch({"lines", files.survey});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.err.find("1 row was not used, first line 122"), std::string::npos) << run.err;
}

TEST(ImportCommand, brings_a_line_to_a_workspace_with_field_and_curves) {
    const SurveyFolder files;
    const BatchRun run = files.import({"--line", "110", "--crs", "EPSG:32754", "--date", "1990-07-01"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("line 110: 40 stations, 390 m, field 52"), std::string::npos) << run.out;
    const BatchRun dump = batch({"dump", files.out + "/survey_110.axm"});
    EXPECT_EQ(dump.status, 0) << dump.err;
    const auto workspace = dump.json()["workspace"], source = workspace["source"];
    EXPECT_EQ(source["coordinate_system"], "EPSG:32754");
    EXPECT_EQ(source["line"], "110");
    EXPECT_EQ(workspace["station_count"], 40);
    EXPECT_EQ(batch({"info", files.out + "/survey_110.axm"}).status, 0);
}

TEST(ImportCommand, goes_on_where_the_folder_is_taken_elsewhere) {
    const SurveyFolder files;
    ASSERT_EQ(files.import({"--line", "110"}).status, 0);
    fs::rename(files.out, files.folder.path("moved"));
    fs::remove(files.survey);
    EXPECT_NE(batch({"info", files.folder.path("moved/survey_110.axm")}).out.find("40 over 390.00 m"),
              std::string::npos);
}

TEST(ImportCommand, takes_all_lines_and_tells_them_as_json) {
    const SurveyFolder files;
    const BatchRun run = files.import({"--all", "--json", "--field", "52000,-53,6.5"});
    EXPECT_EQ(run.status, 0) << run.err;
    const auto json = run.json();
    ASSERT_EQ(json["lines"].size(), 3U);
    EXPECT_EQ(json["rows"], 120);
    EXPECT_EQ(json["lines"][2]["load"]["lines_in_file"], 3);
    EXPECT_NEAR(json["lines"][2]["load"]["typical_spacing_m"], 10, 1e-9);
    EXPECT_EQ(json["lines"][2]["load"]["sensor_over_ground_m"], (std::vector<double>{62, 64}));
    EXPECT_EQ(json["lines"][2]["line"], "120");
    EXPECT_EQ(json["lines"][2]["field"]["total_nT"], 52000);
    EXPECT_TRUE(json["lines"][2]["field"]["origin"].is_null());
    EXPECT_TRUE(fs::exists(json["lines"][2]["workspace"].get<std::string>()));
    EXPECT_TRUE(fs::exists(json["lines"][2]["table"].get<std::string>()));
}

TEST(ImportCommand, takes_roles_units_and_nulls_as_they_are_told) {
    const SurveyFolder files;
    const BatchRun run = files.import({"--line", "100", "--json", "--role", "grav=tmi", "--role",
                                       "none=bouguer", "--unit", "tmi=um/s2", "--null", "dtm=240"});
    EXPECT_EQ(run.status, 0) << run.err;
    const auto report = run.json();
    for (const auto& column : report["columns"]) {
        EXPECT_NE(column["name"], "bouguer");
        if (column["name"] != "tmi") continue;
        EXPECT_EQ(column["role"], "grav");
        EXPECT_EQ(column["unit"], "um/s2");
    }
    const std::string table = files.folder.read("out/survey_100.csv");
    EXPECT_EQ(table.substr(0, table.find('\n')), "east_m,north_m,ground_m,grav_mGal");
    EXPECT_NE(table.find("482200,7553000,302,10\n"), std::string::npos) << table;
}

TEST(ImportCommand, needs_to_be_told_one_of_several_lines) {
    const SurveyFolder files;
    files.expect_refused({}, "has 3 lines (100, 110, 120): choose one with --line, or --all");
    files.expect_refused({"--line", "111"}, "has no line 111; nearest in name are 110, 120, 100");
    files.expect_refused({"--line", "100", "--all"}, "does not go with --all", 2);
    files.expect_refused({"--line", "100", "--piece", "2"}, "has 1 pieces, and no piece 2");
}

TEST(ImportCommand, refuses_columns_systems_and_dates_that_are_none) {
    const SurveyFolder files;
    files.expect_refused({"--line", "100", "--role", "mag=tfi"},
                         "has no column \"tfi\"; its columns are line, east");
    files.expect_refused({"--line", "100", "--role", "magnet=tmi"}, "must begin with one of none, line", 2);
    files.expect_refused({"--line", "100", "--unit", "tmi=m"}, "cannot be in m");
    files.expect_refused({"--line", "100", "--unit", "tmi=cm"}, "must end with m, ft", 2);
    files.expect_refused({"--line", "100", "--null", "tmi"}, "must be COLUMN=VALUE", 2);
    files.expect_refused({"--line", "100", "--crs", "EPSG:99999"}, "EPSG:99999");
    files.expect_refused({"--line", "100", "--crs", "EPSG:32754", "--date", "2050-01-01"}, "2030");
    files.expect_refused({"--line", "100", "--crs", "EPSG:32754", "--date", "soon"}, "soon");
    files.expect_refused({"--line", "100", "--field", "52000"}, "must be none, or F,I,D", 2);
    files.expect_refused({"--line", "100", "--igrf", "remove"}, "the date of the survey is not known");
}

TEST(ImportCommand, refuses_to_replace_a_model_unless_it_is_forced) {
    const SurveyFolder files;
    ASSERT_EQ(files.import({"--line", "100"}).status, 0);
    EXPECT_EQ(files.import({"--line", "100"}).status, 0) << "the very same again";
    files.folder.write("out/survey_100.axm", "a model");
    const BatchRun run = files.import({"--line", "100"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("--force"), std::string::npos) << run.err;
    EXPECT_EQ(files.folder.read("out/survey_100.axm"), "a model");
    EXPECT_EQ(files.import({"--line", "100", "--force"}).status, 0);
    EXPECT_NE(files.folder.read("out/survey_100.axm"), "a model");
}

TEST(ImportCommand, says_so_where_the_folder_may_not_be_written_to) {
    const SurveyFolder files;
    fs::create_directory(files.out);
    fs::permissions(files.out, fs::perms::owner_read | fs::perms::owner_exec);
    const int status = run_in_child([&] {
        if (!obey_permissions()) return 2;
        for (const char* which : {"--line=100", "--all"}) {
            const BatchRun run = files.import({which});
            if (run.status != 1 || run.err.find("Permission denied") == std::string::npos) return 1;
        }
        return 0;
    });
    fs::permissions(files.out, fs::perms::owner_all);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(fs::is_empty(files.out));
}

TEST(NewCommand, makes_a_workspace_for_a_plain_table) {
    const TempFolder folder;
    SurveyShape shape{.lines = 1};
    shape.line_column = false;
    const std::string table = folder.write("line.csv", survey_table(shape)), model = folder.path("line.axm");
    const BatchRun run = batch({"new", table, "-o", model});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(folder.entries(), 2);
    EXPECT_NE(batch({"info", model}).out.find("40 over 390.00 m"), std::string::npos);
    EXPECT_EQ(batch({"new", table, "-o", table}).status, 2) << "not over the table";
    EXPECT_EQ(folder.read("line.csv"), survey_table(shape));
}

TEST(NewCommand, writes_a_workspace_alone_to_the_standard_output) {
    const TempFolder folder;
    SurveyShape shape{.lines = 1};
    shape.line_column = false;
    const std::string table = folder.write("line.csv", survey_table(shape));
    const BatchRun run = batch({"new", table, "-o", "-"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(folder.entries(), 1);
    const std::string model = folder.write("line.axm", run.out);
    EXPECT_NE(batch({"info", model}).out.find("40 over 390.00 m"), std::string::npos) << run.out;

    const std::string line =
        folder.write("feet.csv", "east_ft,north_ft,mag_nT\n1000,0,51000\n1100,0,51010\n1200,0,51020\n");
    const BatchRun two = batch({"new", line, "-o", "-"});
    EXPECT_EQ(two.status, 1);
    EXPECT_EQ(two.out, "");
    EXPECT_NE(two.err.find("two files go into no stream"), std::string::npos) << two.err;
}

TEST(NewCommand, refuses_what_is_no_table_of_one_line) {
    const SurveyFolder files;
    const BatchRun several = batch({"new", files.survey, "-o", files.folder.path("a.axm")});
    EXPECT_EQ(several.status, 1);
    EXPECT_NE(several.err.find("3 lines"), std::string::npos) << several.err;
    EXPECT_EQ(batch({"new", files.folder.path("missing.csv"), "-o", files.folder.path("a.axm")}).status, 1);
    EXPECT_EQ(files.folder.entries(), 1);
}

}  // namespace
}  // namespace anomalis::batch

#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"

// Status 0 means that nothing was noted as a failure; what was is in the header of every table.
namespace anomalis::batch {
namespace {

using nlohmann::json;

std::string replaced(std::string text, const std::string& old, const std::string& fresh) {
    const auto at = text.find(old);
    if (at == std::string::npos) throw std::invalid_argument("no " + old);
    return text.replace(at, old.size(), fresh);
}

/// Runs every command that writes numbers and holds it to the law.
void expect_failure_told(const BatchFolder& files, const std::string& part, int stations = 41) {
    SCOPED_TRACE(part);
    const auto path = [&](const char* name) { return files.folder.path(name); };
    const BatchRun table = batch({"forward", files.model});
    EXPECT_EQ(table.status, 1);
    EXPECT_NE(table.err.find(part), std::string::npos) << table.err;
    EXPECT_EQ(table.err.find("Note: "), std::string::npos) << table.err;
    const std::string first_line = table.out.substr(0, table.out.find("\r\n"));
    EXPECT_NE(first_line.find(" [WITH FAILURES: "), std::string::npos) << first_line;
    EXPECT_EQ(std::count(first_line.begin(), first_line.end(), ','), 0) << first_line;
    EXPECT_EQ(std::count(table.out.begin(), table.out.end(), '\n'), stations + 2) << "no line more";

    const BatchRun kept = batch({"forward", files.model, "--keep-going"});
    EXPECT_EQ(kept.status, 0);
    EXPECT_EQ(kept.out, table.out);

    EXPECT_EQ(batch({"export", files.model, "--clean-profile", path("p.csv"), "--clean-model", path("m.csv")})
                  .status,
              1);
    for (const char* name : {"p.csv", "m.csv"}) {
        const std::string text = files.folder.read(name);
        EXPECT_TRUE(text.substr(0, text.find('\n')).find(",failures") != std::string::npos) << text;
    }
    const BatchRun dump = batch({"dump", files.model});
    EXPECT_EQ(dump.status, 1);
    bool listed = false;
    const json failures = dump.json()["failures"];
    for (const json& failure : failures)
        listed = listed || failure.get<std::string>().find(part) != std::string::npos;
    EXPECT_TRUE(listed) << failures;
    EXPECT_EQ(batch({"info", files.model}).status, 1);
}

TEST(ExitStatus, a_sound_model_has_neither_a_word_nor_a_mark) {
    const BatchFolder files;
    const BatchRun run = batch({"forward", files.model});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.starts_with("#Profile model data for " + files.folder.path("survey.dat") + "\r\n"));
    ASSERT_EQ(batch({"export", files.model, "--clean-profile", files.folder.path("p.csv")}).status, 0);
    EXPECT_EQ(files.folder.read("p.csv").find("failures"), std::string::npos);
}

TEST(ExitStatus, a_calculation_that_fails_for_one_body_is_told) {
    const BatchFolder files;
    // Remanence without susceptibility has no direction.
    files.folder.write("model.axm", replaced(model_text(), " 5000  0  0  0 ", " 0  2  0  0 "));
    expect_failure_told(files, "An error occurred while calculating the field coefficients");
}

TEST(ExitStatus, a_body_without_a_shape_is_told) {
    const BatchFolder files;
    files.folder.write("model.axm", replaced(model_text(), " 2  0  1  255", " 5  0  1  255"));
    const BatchRun run = batch({"forward", files.model, "--formulas", "exact"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("Polygon"), std::string::npos) << run.err;
}

TEST(ExitStatus, a_type_without_a_name_is_told_with_its_body) {
    for (const std::string type : {"7", "15", "0", "18"}) {
        const BatchFolder files;
        files.folder.write("model.axm", replaced(model_text(), " 2  0  1  255", " " + type + "  0  1  255"));
        expect_failure_told(files, "Body 1 (Sheet) has type " + type + ", which no formula knows");
    }
}

TEST(ExitStatus, a_solid_of_too_many_facets_is_told) {
    const BatchFolder files;
    std::string text = replaced(model_text(), " 2  0  1  255", " 16  0  1  255");
    text = replaced(text, " 0  0  12  1  0 ", " 0  0  3000  1000  0 ");
    text = replaced(text, " 0  0 -99999 -99999 \r\n", " 200  0 -99999 -99999 \r\n");
    files.folder.write("model.axm", text);
    expect_failure_told(files, "facets");
}

TEST(ExitStatus, a_field_of_zero_is_told) {
    const BatchFolder files;
    files.folder.write("model.axm", replaced(model_text(), " 56000 -65 -4 ", " 0 -65 -4 "));
    expect_failure_told(files, "The field intensity is 0 nT");
}

TEST(ExitStatus, a_field_without_numbers_is_told_with_file_line_and_token) {
    const BatchFolder files;
    files.folder.write("model.axm", replaced(model_text(), " 56000 -65 -4 ", " abc def ghi"));
    expect_failure_told(files, files.model + ", line 3: \"abc\" is no number; 0 was taken");
    for (const std::string token : {"def", "ghi"})
        EXPECT_NE(batch({"info", files.model}).err.find("line 3: \"" + token + "\""), std::string::npos);
}

TEST(ExitStatus, a_decimal_comma_is_told) {
    const BatchFolder files;
    files.folder.write("model.axm", replaced(model_text(), " 56000 -65 -4 ", " 56000 -65,2 -4,5 "));
    expect_failure_told(files, files.model + ", line 3: \"-4,5\" is left over");
    files.folder.write("model.axm", replaced(model_text(), " 463.7  0  0 -50 ", " 463,7  0  0 -50 "));
    expect_failure_told(files, files.model + ", line 16: \"0\" is left over");
}

TEST(ExitStatus, a_missing_number_is_told) {
    const BatchFolder files;
    files.folder.write("model.axm", replaced(model_text(), " 56000 -65 -4 ", " 56000 -65 "));
    expect_failure_told(files, files.model + ", line 3: a number is missing; 0 was taken");
}

TEST(ExitStatus, a_column_of_words_is_told_with_file_line_and_token) {
    const BatchFolder files;
    files.folder.write("survey.dat", "east north mag grav\n1 2 high 3\n2 2 low 3\n");
    const std::string told =
        files.folder.path("survey.dat") +
        ", line 2: the row was passed over, \"high\" stands where a number is wanted (2 such rows)";
    for (const std::vector<std::string>& more : {std::vector<std::string>{"forward"},
                                                 {"dump"},
                                                 {"invert"},
                                                 {"info"},
                                                 {"export", "--model-table", files.folder.path("m.csv")}}) {
        std::vector<std::string> arguments{more[0], files.model};
        arguments.insert(arguments.end(), more.begin() + 1, more.end());
        const BatchRun run = batch(arguments);
        EXPECT_EQ(run.status, 1) << more[0];
        EXPECT_NE(run.err.find(told), std::string::npos) << run.err;
    }
}

TEST(ExitStatus, a_last_row_that_was_cut_is_told) {
    const BatchFolder files;
    const std::string whole = survey_text();
    const auto last_row = whole.find("501000.0");
    // "501000.0 6500": the line then runs north, and no body lies across it.
    files.folder.write("survey.dat", whole.substr(0, last_row + 13));
    expect_failure_told(files,
                        files.folder.path("survey.dat") +
                            ", line 42: the last row was passed over, it has no line end and too few columns",
                        40);
}

TEST(ExitStatus, stations_at_one_place_are_told) {
    const BatchFolder files;
    files.folder.write("survey.dat", "east north mag grav\n500000.0 6500000.0 56000.00 0.0000\n");
    for (const char* command : {"forward", "dump", "info", "invert"}) {
        const BatchRun run = batch({command, files.model});
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_NE(run.err.find("survey.dat lie at one place"), std::string::npos) << command << run.err;
    }
}

TEST(ExitStatus, rows_that_are_passed_over_or_short_are_remarks) {
    const BatchFolder files;
    std::string data = survey_text();
    data = replaced(data, " 56000.00 0.0000\n", " * 0.0000\n");
    data.pop_back();
    files.folder.write("survey.dat", data);
    const BatchRun run = batch({"dump", files.model});
    EXPECT_EQ(run.status, 0) << run.err;
    const json dump = run.json();
    EXPECT_EQ(dump["failures"], json::array());
    EXPECT_EQ(dump["messages"], json::array()) << "a window loads such a file without a word";
    ASSERT_EQ(dump["remarks"].size(), 2U) << dump["remarks"];
    EXPECT_NE(dump["remarks"][0].get<std::string>().find("line 2: the row was passed over, \"*\""),
              std::string::npos);
    EXPECT_NE(dump["remarks"][1].get<std::string>().find("line 42: the last row has no line end"),
              std::string::npos);
    EXPECT_TRUE(run.err.starts_with("Note: ")) << "no line of it can be taken for a failure";
}

TEST(ExitStatus, the_data_file_that_was_taken_is_a_remark) {
    const BatchFolder files;
    const TempFolder elsewhere;
    elsewhere.write("survey.dat", "east north mag grav\n1 1 1 1\n2 2 2 2\n");
    const CurrentFolder here(elsewhere.folder());
    const BatchRun run = batch({"forward", files.model});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(
        run.err.starts_with("Note: The data file survey.dat was taken from the folder of the workspace ("))
        << run.err;
    EXPECT_TRUE(run.out.starts_with("#Profile model data for " + files.folder.path("survey.dat") + "\r\n"));
}

TEST(ExitStatus, a_fit_over_failures_is_reported_but_no_workspace_is_written) {
    const BatchFolder files;
    files.folder.write("model.axm", replaced(model_text(), " 56000 -65 -4 ", " 56000 -65 x4 "));
    const auto path = [&](const char* name) { return files.folder.path(name); };
    std::vector<std::string> arguments{"invert", files.model,     "--iterations", "1",
                                       "-o",     path("fit.axm"), "--report",     path("fit.json")};
    EXPECT_EQ(batch(arguments).status, 1);
    EXPECT_FALSE(std::filesystem::exists(path("fit.axm")));
    const json report = json::parse(files.folder.read("fit.json"));
    ASSERT_EQ(report["failures"].size(), 1U);
    EXPECT_EQ(report["messages"], json::array());
    arguments.emplace_back("--keep-going");
    EXPECT_EQ(batch(arguments).status, 0);
    EXPECT_TRUE(std::filesystem::exists(path("fit.axm")));
}

TEST(ExitStatus, keep_going_forgives_no_output_that_is_missing) {
    const BatchFolder files;
    EXPECT_EQ(batch({"forward", files.model, "--keep-going", "-o", files.folder.path("no/such.csv")}).status,
              1);
    EXPECT_EQ(batch({"forward", files.folder.path("no.axm"), "--keep-going"}).status, 1);
}

}  // namespace
}  // namespace anomalis::batch

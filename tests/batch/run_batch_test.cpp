#include "batch/run_batch.h"

#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "core/version.h"

namespace anomalis::batch {
namespace {

TEST(RunBatch, wrong_usage_ends_with_2_and_says_why_on_the_error_stream) {
    const BatchFolder files;
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"explode", files.model},
        {"dump"},
        {"dump", files.model, "--unknown"},
        {"dump", files.model, "second.axm"},
        {"dump", "-o", "x.json", files.model, "forward", files.model},
        {"forward", files.model, "--formulas", "best"},
        {"invert", files.model, "--channel", "electric"},
        {"invert", files.model, "--target", "both"},
        {"invert", files.model, "--method", "guess"},
        {"invert", files.model, "--iterations", "abc"},
        {"invert", files.model, "--body", "0"},
        {"invert", files.model, "--channel", "joint", "--method", "sweep"},
        {"export", files.model},
        {"render", files.model},
        {"render", files.model, "-o", "picture.gif"},
        {"render", files.model, "-o", ".png"},
        {"render", files.model, "-o", "a.png", "--view", "inside"},
        {"render", files.model, "-o", "a.png", "--size", "800"},
        {"render", files.model, "-o", "a.png", "--size", "800x"},
        {"render", files.model, "-o", "a.png", "--size", "-8x600"},
        {"render", files.model, "-o", "a.png", "--size", "99999x600"},
    };
    for (const std::vector<std::string>& arguments : wrong) {
        const BatchRun run = batch(arguments);
        const std::string shown = arguments.empty() ? "nothing" : arguments[0] + " ... " + arguments.back();
        EXPECT_EQ(run.status, 2) << shown;
        EXPECT_EQ(run.out, "") << shown;
        EXPECT_NE(run.err, "") << shown;
    }
}

TEST(RunBatch, help_is_there_for_every_command) {
    for (const std::string command : {"info", "dump", "forward", "invert", "find", "export", "render"}) {
        const BatchRun run = batch({command, "--help"});
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.out.find("MODEL"), std::string::npos) << command;
        EXPECT_EQ(run.err, "");
        EXPECT_NE(batch({"--help"}).out.find(command), std::string::npos);
    }
}

TEST(RunBatch, the_lines_of_follow_are_named_in_its_help) {
    const BatchRun run = batch({"follow", "--help"});
    EXPECT_EQ(run.status, 0);
    for (const char* name : {"FIRST", "NEXT", "--output", "--report"})
        EXPECT_NE(run.out.find(name), std::string::npos) << name;
}

TEST(RunBatch, the_version_is_told) {
    const BatchRun run = batch({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "anomalis-batch " + std::string(application_version()) + "\n");
}

TEST(RunBatch, a_missing_workspace_file_fails_in_every_command) {
    const TempFolder folder;
    const std::string model = folder.path("missing.axm");
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"info", model},
                                               {"dump", model},
                                               {"forward", model},
                                               {"invert", model},
                                               {"find", model},
                                               {"follow", model, model + "2"},
                                               {"export", model, "--mesh", folder.path("m.msh")}}) {
        const BatchRun run = batch(arguments);
        EXPECT_EQ(run.status, 1) << arguments[0];
        EXPECT_TRUE(run.err.starts_with("An error occurred while reading the location file : ")) << run.err;
        EXPECT_NE(run.err.find(model), std::string::npos);
    }
    EXPECT_EQ(folder.entries(), 0);
}

TEST(RunBatch, a_data_file_without_records_is_explained) {
    const BatchFolder files;
    files.folder.write("survey.dat", "");
    const BatchRun run = batch({"forward", files.model});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "No stations were found in " + files.folder.path("survey.dat") + "\n");
}

TEST(RunBatch, the_formulas_of_the_command_line_go_before_those_of_the_file) {
    const BatchFolder files;
    const auto said = batch({"dump", files.model, "--formulas", "exact"}).json();
    const auto plain = batch({"dump", files.model}).json();
    EXPECT_EQ(said["workspace"]["formulas"], "exact");
    EXPECT_EQ(plain["workspace"]["formulas"], "classic");
    EXPECT_NE(said["bodies"][0]["response"], plain["bodies"][0]["response"]);
    const std::string exact_model = files.folder.path("exact.axm");
    ASSERT_EQ(batch({"invert", files.model, "--formulas", "exact", "-o", exact_model}).status, 0);
    EXPECT_EQ(batch({"dump", exact_model}).json()["workspace"]["formulas"], "exact");
    EXPECT_EQ(batch({"dump", exact_model, "--formulas", "classic"}).json()["workspace"]["formulas"],
              "classic");
}

}  // namespace
}  // namespace anomalis::batch

#include "batch/command_files.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"

namespace anomalis::batch {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// Every option of every command that names a file to write.
const std::vector<Arguments>& all_outputs() {
    static const std::vector<Arguments> outputs{{"dump", "-o"},
                                                {"forward", "-o"},
                                                {"invert", "-o"},
                                                {"invert", "--report"},
                                                {"find", "-o"},
                                                {"find", "--report"},
                                                {"export", "--mesh"},
                                                {"export", "--profile-table"},
                                                {"export", "--dxf-3d"},
                                                {"export", "--dxf-plan"},
                                                {"export", "--model-table"},
                                                {"export", "--clean-profile"},
                                                {"export", "--clean-model"}};
    return outputs;
}

BatchRun run_to(const Arguments& command, const std::string& model, const std::string& output) {
    return batch({command[0], model, command[1], output});
}

struct Refusals : BatchFolder {
    std::string data = folder.path("survey.dat");

    void expect_refused(const BatchRun& run, const std::string& output, const std::string& input) {
        EXPECT_EQ(run.status, 2) << run.err;
        EXPECT_NE(run.err.find(output), std::string::npos) << run.err;
        EXPECT_NE(run.err.find(input), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(folder.read("survey.dat"), survey_text());
        EXPECT_EQ(folder.read("model.axm"), model_text());
    }
};

TEST(CommandFiles, no_command_writes_over_the_model_or_its_data) {
    Refusals files;
    for (const Arguments& command : all_outputs()) {
        SCOPED_TRACE(command[0] + command[1]);
        files.expect_refused(run_to(command, files.model, files.data),
                             command[1] == "-o" ? "--output" : command[1], files.data);
        files.expect_refused(run_to(command, files.model, files.model), "--", files.model);
        EXPECT_EQ(files.folder.entries(), 2);
    }
}

TEST(CommandFiles, an_input_is_known_under_every_name_it_has) {
    Refusals files;
    const auto path = [&](const char* name) { return files.folder.path(name); };
    fs::create_hard_link(files.data, path("hard.csv"));
    fs::create_symlink("survey.dat", path("soft.csv"));
    fs::create_directory(path("below"));
    fs::create_directory_symlink(files.folder.folder(), path("here"));
    for (const char* name :
         {"hard.csv", "soft.csv", "./survey.dat", "below/../survey.dat", "here/survey.dat"})
        files.expect_refused(batch({"forward", files.model, "-o", path(name)}), path(name), files.data);
    const CurrentFolder here(files.folder.folder());
    files.expect_refused(batch({"forward", "model.axm", "-o", "survey.dat"}), "survey.dat", "survey.dat");
    files.expect_refused(batch({"dump", "here/model.axm", "-o", "model.axm"}), "model.axm", "here/model.axm");
}

TEST(CommandFiles, a_picture_is_an_output_as_well) {
    Refusals files;
    const std::string data = files.folder.write("line.png", survey_text());
    const std::string model = files.folder.write("line.axm", model_text("line.png"));
    const BatchRun run = batch({"render", model, "-o", data});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(files.folder.read("line.png"), survey_text());
}

TEST(CommandFiles, data_that_are_missing_are_not_made_up_by_an_output) {
    Refusals files;
    fs::remove(files.data);
    // By the name alone: the next run would read the output as the line.
    const BatchRun run = batch({"dump", files.model, "-o", files.data});
    EXPECT_EQ(run.status, 2) << run.err;
    EXPECT_FALSE(fs::exists(files.data));
}

TEST(CommandFiles, no_two_outputs_are_one_file) {
    Refusals files;
    const auto path = [&](const char* name) { return files.folder.path(name); };
    fs::create_directory(path("below"));
    fs::create_symlink("new.csv", path("link.csv"));
    for (const char* second : {"new.csv", "below/../new.csv", "link.csv"}) {
        const BatchRun run = batch(
            {"export", files.model, "--profile-table", path("new.csv"), "--clean-profile", path(second)});
        files.expect_refused(run, "--clean-profile", "--profile-table");
        EXPECT_FALSE(fs::exists(path("new.csv")));
    }
    files.expect_refused(batch({"invert", files.model, "-o", path("fit"), "--report", path("fit")}),
                         "--report", "--output");
}

TEST(CommandFiles, a_fit_goes_over_its_own_model_only_when_asked_to) {
    Refusals files;
    const BatchRun refused = batch({"invert", files.model, "-o", files.model});
    files.expect_refused(refused, "--in-place", files.model);
    for (const Arguments& more : {Arguments{"-o", files.model}, Arguments{}}) {
        files.folder.write("model.axm", model_text());
        Arguments arguments{"invert", files.model, "--in-place", "--iterations", "2"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(batch(arguments).status, 0);
        EXPECT_NE(files.folder.read("model.axm"), model_text());
        EXPECT_TRUE(files.folder.read("model.axm").starts_with("survey.dat\r\n"));
    }
    files.folder.write("model.axm", model_text());
    files.expect_refused(batch({"invert", files.model, "--in-place", "--report", files.model}), "--report",
                         files.model);
    files.expect_refused(batch({"invert", files.model, "--in-place", "-o", files.data}), "--output",
                         "--in-place");
}

TEST(CommandFiles, what_flows_through_may_be_named_twice) {
    const BatchFolder files;
    const BatchRun run =
        batch({"export", files.model, "--profile-table", "/dev/null", "--mesh", "/dev/null"});
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string table = batch({"forward", files.model}).out;
    EXPECT_EQ(batch({"forward", files.model, "-o", "-"}).out, table);
    EXPECT_EQ(files.folder.entries(), 2) << "a single dash is the output stream";
}

}  // namespace
}  // namespace anomalis::batch

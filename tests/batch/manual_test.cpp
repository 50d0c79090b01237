#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "batch/program_sheet.h"
#include "core/safe_file.h"

namespace anomalis::batch {

namespace {

std::string written_as(const std::string& format, const std::string& page = "anomalis-batch") {
    const BatchRun run = batch({"manual", "--format", format, "--page", page});
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
}

}  // namespace

TEST(Manual, the_page_of_the_guide_is_what_the_program_says) {
    EXPECT_EQ(read_whole_file(std::string(PROJECT_SOURCE_DIR) + "/docs/reference/commands.md"),
              written_as("markdown"))
        << "anomalis-batch manual -o docs/reference/commands.md writes it";
}

TEST(Manual, the_help_of_a_command_names_every_option_and_example_of_its_pages) {
    const manual::Sheet program = program_sheet(all_commands(nullptr));
    ASSERT_GE(program.commands.size(), 17U);
    for (const manual::Sheet& command : program.commands) {
        const std::string help = batch({command.name, "--help"}).out;
        for (const manual::Option& option : command.options)
            EXPECT_NE(help.find(option.long_name), std::string::npos)
                << command.name << " " << option.long_name;
        EXPECT_FALSE(command.examples.empty()) << command.name;
        for (const manual::Example& example : command.examples)
            EXPECT_NE(help.find(example.line), std::string::npos) << example.line;
    }
}

TEST(Manual, every_option_stands_in_the_man_page_and_in_each_completion) {
    const std::string bash = written_as("bash"), zsh = written_as("zsh"), fish = written_as("fish");
    for (const manual::Sheet& command : program_sheet(all_commands(nullptr)).commands) {
        const std::string man = written_as("man", "anomalis-batch-" + command.name);
        for (const manual::Option& option : command.options) {
            std::string in_man;
            for (const char sign : option.long_name) in_man += sign == '-' ? "\\-" : std::string(1, sign);
            EXPECT_NE(man.find("\\fB" + in_man + "\\fR"), std::string::npos) << option.long_name;
            EXPECT_NE(bash.find(option.long_name), std::string::npos) << option.long_name;
            EXPECT_NE(zsh.find(option.long_name), std::string::npos) << option.long_name;
            EXPECT_NE(fish.find(" -l " + option.long_name.substr(2)), std::string::npos) << option.long_name;
        }
    }
}

TEST(Manual, everything_goes_below_a_folder) {
    const TempFolder folder;
    const BatchRun run = batch({"manual", "--into", folder.path("share")});
    EXPECT_EQ(run.status, 0) << run.err;
    for (const char* file :
         {"man/man1/anomalis.1", "man/man1/anomalis-batch-find.1", "bash-completion/completions/anomalis",
          "zsh/vendor-completions/_anomalis-batch", "fish/vendor_completions.d/anomalis-batch.fish"})
        EXPECT_NE(read_whole_file(folder.path("share") + "/" + file), "") << file;
}

TEST(Manual, a_page_that_cannot_be_is_wrong_usage) {
    EXPECT_EQ(batch({"manual", "--format", "bash", "--page", "anomalis-batch-find"}).status, 2);
    EXPECT_EQ(batch({"manual", "--page", "anomalis"}).status, 2);
    EXPECT_EQ(batch({"manual", "--into", ".", "-o", "x"}).status, 2);
    EXPECT_EQ(batch({"manual", "--into", "/dev/null/share"}).status, 1);
}

}  // namespace anomalis::batch

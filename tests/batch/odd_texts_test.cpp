// Names and paths come from files and from elsewhere: none of them steers a terminal or breaks a JSON text.
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iostream>
#include <unistd.h>

#include "batch/batch_runs.h"
#include "batch/batch_session.h"
#include "report/inversion_json.h"
#include "support/child_process.h"
#include "support/shown_characters.h"

namespace anomalis::batch {
namespace {

// ESC, DEL, a control of the second half, and a mark that turns the order of reading round.
const std::string odd_name =
    "A\x1B[2J\x7F\xC2\x9B"
    "31m\xE2\x80\xAE"
    "B";
const std::string odd_shown = "A\\u{1B}[2J\\u{7F}\\u{9B}31m\\u{202E}B";
const std::string script_name = R"("><script>&amp;</script>\)";

TEST(OddTexts, info_shows_names_and_paths_escaped) {
    const BatchFolder files;
    const std::string model =
        files.folder.write("two\nlines " + odd_name + ".axm", model_text("survey.dat", odd_name));
    const BatchRun run = batch({"info", model});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_FALSE(has_hidden_control(run.out)) << run.out;
    EXPECT_NE(run.out.find("  " + odd_shown + "\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("/two\\nlines " + odd_shown + ".axm\n"), std::string::npos) << run.out;
}

TEST(OddTexts, messages_show_them_escaped) {
    const BatchFolder files;
    const std::string whole = model_text("survey.dat", odd_name);
    const std::string cut = files.folder.write(odd_name + ".axm", whole.substr(0, whole.find(" 0  80  100")));
    const std::string beyond = whole.substr(0, whole.find(" 2  0  1  255")) + " 77 oops" +
                               whole.substr(whole.find(" 2  0  1  255") + 2);
    const std::string missing = files.folder.path("no" + odd_name + ".axm");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"info", cut},
                                                      {"dump", cut},
                                                      {"dump", missing},
                                                      {"forward", cut},
                                                      {"dump", cut, "-o", cut},
                                                      {"render", cut, "-o", odd_name},
                                                      {odd_name, cut}}) {
        const BatchRun run = batch(arguments);
        EXPECT_NE(run.status, 0) << arguments[0];
        EXPECT_FALSE(has_hidden_control(run.err)) << run.err;
    }
    EXPECT_NE(batch({"info", cut}).err.find(odd_shown + ".axm, line 17)"), std::string::npos);
}

TEST(OddTexts, a_dump_keeps_every_name_and_holds_no_control_character) {
    const BatchFolder files;
    for (const std::string& name : {odd_name, script_name, std::string("C\xE2\x81\xA6\xE2\x80\xA8")}) {
        const std::string model = files.folder.write("odd.axm", model_text("survey.dat", name));
        const BatchRun run = batch({"dump", model});
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_FALSE(has_hidden_control(run.out));
        EXPECT_EQ(run.json()["bodies"][0]["name"], name);
    }
}

TEST(OddTexts, a_report_keeps_every_message_and_holds_no_control_character) {
    std::ostringstream err;
    BatchPrompts told(err);
    told.message(odd_name);
    told.message(script_name);
    flow::InversionReport report;
    report.label = script_name + odd_name;
    const std::string text = report::inversion_json_text(report, told);
    EXPECT_FALSE(has_hidden_control(text)) << text;
    const nlohmann::json json = nlohmann::json::parse(text);
    EXPECT_EQ(json["messages"], nlohmann::json::array({odd_name, script_name}));
    EXPECT_EQ(json["label"], script_name + odd_name);
}

TEST(OddTexts, letters_of_all_languages_stay_in_json_as_they_are) {
    const BatchFolder files;
    const std::string name = "B\xC3\xB6ller \xE9\x87\x8D\xE5\x8A\x9B \xF0\x9F\xA7\xB2";
    const std::string model = files.folder.write("odd.axm", model_text("survey.dat", name));
    EXPECT_NE(batch({"dump", model}).out.find("\"" + name + "\""), std::string::npos);
}

struct OddLine : BatchFolder {
    OddLine() {
        std::string text = survey_text();
        std::size_t end = 0;
        for (int line = 0; line < 7; ++line) end = text.find('\n', end) + 1;
        folder.write(odd_name + ".dat", text.substr(0, end));
        model = folder.write("model.axm", model_text(odd_name + ".dat"));
    }
};

/// What a command writes to a terminal. REQUIRES: little enough for the terminal's own memory.
std::string on_terminal(std::vector<std::string> arguments) {
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0) return "no terminal";
    const int other_end = ::open(::ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
    std::cout.flush();
    run_in_child([&] {
        ::dup2(other_end, STDOUT_FILENO);
        std::vector<char*> argv;
        arguments.insert(arguments.begin(), "anomalis-batch");
        for (std::string& argument : arguments) argv.push_back(argument.data());
        std::ostringstream err;
        return run_batch(static_cast<int>(argv.size()), argv.data(), std::cout, err, nullptr);
    });
    ::close(other_end);
    std::string shown;
    std::array<char, 4096> piece{};
    for (ssize_t size = 0; (size = ::read(terminal, piece.data(), piece.size())) > 0;)
        shown.append(piece.data(), static_cast<std::size_t>(size));
    ::close(terminal);
    return shown;
}

TEST(OddTexts, a_table_on_a_terminal_is_escaped_and_in_a_file_as_it_is) {
    const OddLine files;
    const std::string head = "#Profile model data for ";
    const std::string shown = on_terminal({"forward", files.model});
    ASSERT_TRUE(shown.starts_with(head)) << shown;
    EXPECT_FALSE(has_hidden_control(shown)) << shown;
    EXPECT_NE(shown.find(odd_shown + ".dat"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("\\r"), std::string::npos) << "ends of lines stay";
    ASSERT_EQ(batch({"forward", files.model, "-o", files.folder.path("t.csv")}).status, 0);
    EXPECT_TRUE(files.folder.read("t.csv").starts_with(head + files.folder.path(odd_name + ".dat") + "\r\n"));
    EXPECT_EQ(batch({"forward", files.model}).out, files.folder.read("t.csv")) << "a pipe is no terminal";
}

}  // namespace
}  // namespace anomalis::batch

#include "core/save_question.h"

#include <gtest/gtest.h>

#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

const FileRequest request{"Title", "All files (*.*)|*.*", "", "csv"};

TEST(SaveQuestion, a_name_without_an_extension_gets_one) {
    EXPECT_EQ(with_extension("/a.b/line", "axm"), "/a.b/line.axm");
    EXPECT_EQ(with_extension("/a/line.txt", "axm"), "/a/line.txt");
    EXPECT_EQ(with_extension("line.", "axm"), "line.");
    EXPECT_EQ(with_extension("line", ""), "line");
}

TEST(SaveQuestion, a_new_name_is_taken_without_a_question) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    prompts.save_paths = {folder.path("new")};
    EXPECT_EQ(ask_save_path(prompts, request), folder.path("new.csv"));
    EXPECT_TRUE(prompts.questions.empty());
}

TEST(SaveQuestion, an_old_file_is_asked_about_once_under_its_full_name) {
    const TempFolder folder;
    folder.write("old.csv", "");
    ScriptedPrompts prompts;
    prompts.save_paths = {folder.path("old"), folder.path("old.csv")};
    prompts.yes_no = {true, false};
    EXPECT_EQ(ask_save_path(prompts, request), folder.path("old.csv"));
    EXPECT_EQ(ask_save_path(prompts, request), std::nullopt);
    EXPECT_EQ(prompts.questions, (std::vector<std::string>{"That file already, exists, overwrite?",
                                                           "That file already, exists, overwrite?"}));
}

TEST(SaveQuestion, a_cancel_asks_nothing) {
    ScriptedPrompts prompts;
    prompts.save_paths = {std::nullopt};
    EXPECT_EQ(ask_save_path(prompts, request), std::nullopt);
    EXPECT_TRUE(prompts.questions.empty());
}

}  // namespace
}  // namespace anomalis

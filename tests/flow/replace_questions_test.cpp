// Saves onto files that others wrote, and into folders that let no file be replaced.
#include "flow/replace_questions.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/paths.h"
#include "core/safe_file.h"
#include "edit/line_sample.h"
#include "flow/save_flow.h"
#include "support/child_process.h"
#include "support/failing_calls.h"

namespace anomalis::flow {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A model that was saved as line.axm, with a change since.
struct Saved : edit::LineSample {
    Saved() {
        add_body(1260, 60);
        load();
        prompts.save_paths = {path};
        save_model(SaveMode::with_dialog, workbench, {});
        workspace().body(1).dip.value = 33;
        session.model_changed = workbench.unsaved = true;
    }
    void write_as_another_program() { folder.write("line.axm", "by another program"); }
    SaveOutcome save() { return save_by_button(workbench, {}); }
    std::string in_file() const { return folder.read("line.axm"); }

    const std::string path = folder.path("line.axm");
};

TEST(SaveOverChanges, our_own_file_is_saved_again_and_again_without_a_question) {
    Saved sample;
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_THAT(sample.prompts.choices, IsEmpty());
    ASSERT_EQ(open_model_file(sample.workbench, ReadMode::everything, sample.path), OpenOutcome::opened);
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_THAT(sample.prompts.choices, IsEmpty());
}

TEST(SaveOverChanges, a_file_that_somebody_else_wrote_is_not_replaced_without_a_question) {
    Saved sample;
    sample.write_as_another_program();
    EXPECT_EQ(sample.save(), SaveOutcome::cancelled) << "the question was closed";
    EXPECT_EQ(sample.in_file(), "by another program");
    EXPECT_TRUE(sample.session.model_changed && sample.workbench.unsaved);
    ASSERT_EQ(sample.prompts.choices.size(), 1U);
    EXPECT_THAT(sample.prompts.choices[0].text,
                HasSubstr("line.axm is not what was last read or saved here"));
    EXPECT_THAT(sample.prompts.choices[0].answers, ElementsAre("Save as...", "Overwrite", "Cancel"));

    sample.prompts.chosen = {"Overwrite"};
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_THAT(sample.in_file(), HasSubstr("Body 1"));
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_EQ(sample.prompts.choices.size(), 2U) << "what is there now is ours";
}

TEST(SaveOverChanges, the_answer_save_as_goes_on_with_the_dialog) {
    Saved sample;
    sample.write_as_another_program();
    sample.prompts.chosen = {"Save as..."};
    sample.prompts.save_paths = {sample.folder.path("mine")};
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_EQ(sample.in_file(), "by another program");
    EXPECT_EQ(sample.workspace().model_file, sample.folder.path("mine.axm"));
    EXPECT_THAT(sample.workbench.recent_files, ElementsAre(sample.folder.path("mine.axm"), sample.path));

    sample.folder.write("mine.axm", "by another program");
    sample.prompts.chosen = {"Save as..."};
    sample.prompts.save_paths = {std::nullopt};
    EXPECT_EQ(sample.save(), SaveOutcome::cancelled);
    EXPECT_EQ(sample.folder.read("mine.axm"), "by another program");
}

TEST(SaveOverChanges, a_save_by_dialog_onto_the_changed_file_of_the_model_asks_too) {
    Saved sample;
    sample.write_as_another_program();
    sample.prompts.save_paths = {sample.path};
    sample.prompts.yes_no = {true};
    EXPECT_EQ(save_model(SaveMode::with_dialog, sample.workbench, {}), SaveOutcome::cancelled);
    EXPECT_EQ(sample.prompts.choices.size(), 1U);
    EXPECT_EQ(sample.in_file(), "by another program");
    sample.folder.write("other.axm", "never read here");
    sample.prompts.save_paths = {sample.folder.path("other.axm")};
    sample.prompts.yes_no = {true};
    EXPECT_EQ(save_model(SaveMode::with_dialog, sample.workbench, {}), SaveOutcome::saved);
    EXPECT_EQ(sample.prompts.choices.size(), 1U) << "one question about overwriting is enough";
}

TEST(SaveOverChanges, a_file_that_vanished_is_written_anew) {
    Saved sample;
    fs::remove(sample.path);
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_THAT(sample.prompts.choices, IsEmpty());
    EXPECT_THAT(sample.in_file(), HasSubstr("Body 1"));
}

TEST(SaveOverChanges, a_link_is_the_file_that_it_leads_to) {
    Saved sample;
    fs::create_symlink("line.axm", sample.folder.path("link.axm"));
    ASSERT_EQ(open_model_file(sample.workbench, ReadMode::everything, sample.folder.path("link.axm")),
              OpenOutcome::opened);
    sample.write_as_another_program();
    EXPECT_EQ(sample.save(), SaveOutcome::cancelled);
    EXPECT_EQ(sample.prompts.choices.size(), 1U);
    EXPECT_EQ(sample.in_file(), "by another program");
}

TEST(SaveOverChanges, a_file_that_another_window_saved_meanwhile_is_asked_about_there_and_here) {
    Saved first;
    Saved second;
    for (Saved* window : {&first, &second})
        ASSERT_EQ(open_model_file(window->workbench, ReadMode::everything, first.path), OpenOutcome::opened);
    second.workspace().body(1).dip.value = 44;
    EXPECT_EQ(second.save(), SaveOutcome::saved);
    const std::string saved = first.in_file();
    EXPECT_EQ(first.save(), SaveOutcome::cancelled);
    EXPECT_EQ(first.in_file(), saved);
}

TEST(SaveOverChanges, a_table_beside_it_that_somebody_edited_is_asked_about) {
    Saved sample;
    sample.folder.write("line_model.csv", "edited by hand");
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_EQ(sample.folder.read("line_model.csv"), "edited by hand") << "the question was closed";
    ASSERT_EQ(sample.prompts.choices.size(), 1U);
    EXPECT_THAT(sample.prompts.choices[0].text, HasSubstr("line_model.csv is not what was last saved here"));
    EXPECT_THAT(sample.prompts.choices[0].answers, ElementsAre("Overwrite", "Leave it"));
    EXPECT_THAT(sample.in_file(), HasSubstr("33"));
    sample.prompts.chosen = {"Overwrite"};
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_THAT(sample.folder.read("line_model.csv"), HasSubstr(",Body 1\r\n"));
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_EQ(sample.prompts.choices.size(), 2U);
}

TEST(SaveOverChanges, a_second_name_of_the_file_is_told) {
    Saved sample;
    fs::create_hard_link(sample.path, sample.folder.path("backup.axm"));
    const std::string before = sample.in_file();
    EXPECT_EQ(sample.save(), SaveOutcome::saved);
    EXPECT_TRUE(sample.prompts.told("line.axm had another name (hard links)."));
    EXPECT_EQ(sample.folder.read("backup.axm"), before);
}

/// Runs `work` where no file can be made in the folder of the model, while its files can be written. The
/// place for what is kept meanwhile is another.
template <class Work>
int in_read_only_folder(const TempFolder& folder, const TempFolder& state, Work work) {
    ::chmod(folder.folder().c_str(), 0555);
    const EnvironmentVariable place("XDG_STATE_HOME", state.folder().c_str());
    const int result = run_in_child([&] { return obey_permissions() ? work() : 50; });
    ::chmod(folder.folder().c_str(), 0755);
    return result;
}

TEST(SaveInPlace, a_folder_for_reading_alone_is_asked_about_and_closing_the_question_writes_nothing) {
    Saved sample;
    const TempFolder state;
    const std::string before = sample.in_file();
    EXPECT_EQ(
        in_read_only_folder(
            sample.folder, state,
            [&] {
                if (sample.save() != SaveOutcome::cancelled || sample.prompts.choices.size() != 1) return 1;
                const auto& question = sample.prompts.choices[0];
                if (question.answers != std::vector<std::string>{"Save as...", "Write in place", "Cancel"})
                    return 2;
                if (question.text.find("cannot be saved safely") == std::string::npos) return 3;
                if (question.text.find(state.folder()) == std::string::npos) return 4;
                return sample.prompts.messages.empty() && sample.workbench.unsaved ? 0 : 5;
            }),
        0);
    EXPECT_EQ(sample.in_file(), before);
}

TEST(SaveInPlace, writes_the_files_that_are_there_when_that_is_wanted) {
    Saved sample;
    const TempFolder state;
    const std::string table = sample.folder.read("line_model.csv");
    EXPECT_EQ(in_read_only_folder(sample.folder, state,
                                  [&] {
                                      sample.prompts.chosen = {"Write in place"};
                                      if (sample.save() != SaveOutcome::saved) return 1;
                                      return sample.prompts.messages.empty() && !sample.workbench.unsaved ? 0
                                                                                                          : 2;
                                  }),
              0);
    EXPECT_THAT(sample.in_file(), HasSubstr("33"));
    EXPECT_NE(sample.folder.read("line_model.csv"), table);
    EXPECT_TRUE(fs::is_empty(state.path("anomalis/before-writing"))) << "the old contents are needed no more";
}

TEST(SaveInPlace, the_longest_name_and_no_place_of_one_s_own_are_no_hindrance) {
    Saved sample;
    const TempFolder state;
    const std::string path = sample.folder.path(std::string(251, 'n') + ".axm");
    sample.prompts.save_paths = {path};
    ASSERT_EQ(save_model(SaveMode::with_dialog, sample.workbench, {}), SaveOutcome::saved);
    sample.prompts.messages.clear();
    state.write("anomalis", "a file in the way of the folder");
    for (const bool own_place : {false, true}) {
        if (own_place) fs::remove(state.path("anomalis"));
        EXPECT_EQ(in_read_only_folder(sample.folder, state,
                                      [&] {
                                          sample.prompts.chosen = {"Write in place"};
                                          return sample.save() == SaveOutcome::saved ? 0 : 1;
                                      }),
                  0)
            << own_place;
    }
}

TEST(SaveInPlace, save_as_leaves_the_folder_alone) {
    Saved sample;
    const TempFolder state;
    const TempFolder elsewhere;
    const std::string before = sample.in_file();
    EXPECT_EQ(in_read_only_folder(sample.folder, state,
                                  [&] {
                                      sample.prompts.chosen = {"Save as..."};
                                      sample.prompts.save_paths = {elsewhere.path("line.axm")};
                                      return sample.save() == SaveOutcome::saved ? 0 : 1;
                                  }),
              0);
    EXPECT_EQ(sample.in_file(), before);
    EXPECT_THAT(elsewhere.read("line.axm"), HasSubstr("33"));
}

TEST(SaveInPlace, a_disk_that_fills_up_leaves_the_old_contents_in_the_file_and_tells_where_else) {
    Saved sample;
    const TempFolder state;
    const std::string before = sample.in_file();
    EXPECT_EQ(in_read_only_folder(sample.folder, state,
                                  [&] {
                                      limit_file_size(before.size());
                                      sample.workspace().body(1).description = std::string(2000, 'x');
                                      sample.prompts.chosen = {"Write in place"};
                                      if (sample.save() != SaveOutcome::failed) return 1;
                                      return sample.prompts.told("File too large") &&
                                                     sample.prompts.told("held before is in ")
                                                 ? 0
                                                 : 2;
                                  }),
              0);
    EXPECT_EQ(sample.in_file(), before);
    for (const auto& kept : fs::directory_iterator(state.path("anomalis/before-writing")))
        EXPECT_EQ(read_whole_file(kept.path()), before);
}

}  // namespace
}  // namespace anomalis::flow

#include "flow/save_flow.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/paths.h"
#include "edit/line_sample.h"

namespace anomalis::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Saver : edit::LineSample {
    Saver() {
        add_body(1260, 60);
        load();
        session.model_changed = workbench.unsaved = true;
    }
    SaveOutcome save_as(const std::optional<std::string>& path) {
        prompts.save_paths = {path};
        return save_model(SaveMode::with_dialog, workbench, layout);
    }
    WindowLayout layout{18000, 12000.4, true};
};

TEST(SaveFlow, asks_for_a_name_and_writes_the_file_and_what_stands_beside_it) {
    Saver saver;
    EXPECT_EQ(saver.save_as(saver.folder.path("line")), SaveOutcome::saved);
    EXPECT_EQ(saver.workspace().model_file, saver.folder.path("line.axm"));
    EXPECT_EQ(saver.workspace().model_file_date, file_date(saver.folder.path("line.axm")));
    EXPECT_THAT(saver.folder.read("line_model.csv"), ::testing::HasSubstr(",Body 1\r\n"));
    EXPECT_THAT(saver.folder.read("line_model.msh"), ::testing::HasSubstr("*25.00\r\n"));
    EXPECT_THAT(saver.prompts.messages, IsEmpty());
    const FileRequest& request = saver.prompts.save_requests.at(0);
    EXPECT_EQ(request.title, "Select the AXM model file to create");
    EXPECT_EQ(request.filter, "AXM Model Files (*.axm)|*.axm|All files (*.*)|*.*");
    EXPECT_EQ(request.default_extension, "axm");
    EXPECT_EQ(request.default_name, "");
}

TEST(SaveFlow, the_menu_s_save_clears_the_asterisk_but_not_the_button) {
    Saver saver;
    saver.save_as(saver.folder.path("line.axm"));
    EXPECT_FALSE(saver.workbench.unsaved);
    EXPECT_TRUE(saver.session.model_changed);
    EXPECT_EQ(save_by_button(saver.workbench, saver.layout), SaveOutcome::saved);
    EXPECT_FALSE(saver.session.model_changed);
    EXPECT_EQ(saver.prompts.save_requests.size(), 1U) << "the button asks nothing";
}

TEST(SaveFlow, a_saved_file_stands_first_among_the_recent_ones) {
    Saver saver;
    saver.save_as(saver.folder.path("line.axm"));
    EXPECT_THAT(saver.workbench.recent_files, ElementsAre(saver.folder.path("line.axm")));
}

TEST(SaveFlow, an_old_file_is_asked_about_once_and_a_no_leaves_everything) {
    Saver saver;
    saver.folder.write("line.axm", "old");
    saver.prompts.yes_no = {false, true};
    EXPECT_EQ(saver.save_as(saver.folder.path("line.axm")), SaveOutcome::cancelled);
    EXPECT_EQ(saver.folder.read("line.axm"), "old");
    EXPECT_EQ(saver.workspace().model_file, "");
    EXPECT_TRUE(saver.workbench.unsaved);
    saver.workspace().model_file = saver.folder.path("line.axm");
    EXPECT_EQ(saver.save_as(saver.folder.path("line.axm")), SaveOutcome::saved);
    EXPECT_EQ(saver.prompts.save_requests.back().default_name, saver.folder.path("line.axm"));
    EXPECT_THAT(saver.prompts.questions, ElementsAre("That file already, exists, overwrite?",
                                                     "That file already, exists, overwrite?"));
}

TEST(SaveFlow, a_cancel_changes_nothing) {
    Saver saver;
    EXPECT_EQ(saver.save_as(std::nullopt), SaveOutcome::cancelled);
    EXPECT_EQ(saver.workspace().model_file, "");
    EXPECT_TRUE(saver.workbench.unsaved);
    EXPECT_EQ(saver.folder.entries(), 1);
}

TEST(SaveFlow, the_button_without_a_name_writes_nothing_and_the_model_stays_unsaved) {
    Saver saver;
    EXPECT_EQ(save_by_button(saver.workbench, saver.layout), SaveOutcome::nameless);
    EXPECT_FALSE(saver.session.model_changed);
    EXPECT_TRUE(saver.workbench.unsaved);
    EXPECT_EQ(saver.folder.entries(), 1);
    EXPECT_THAT(saver.prompts.messages, IsEmpty());
}

TEST(SaveFlow, a_save_that_fails_keeps_the_model_changed_and_its_name) {
    Saver saver;
    saver.save_as(saver.folder.path("line.axm"));
    const std::string before = saver.folder.read("line.axm");
    saver.workbench.unsaved = true;
    const std::string nowhere = saver.folder.path("no/such/line.axm");
    EXPECT_EQ(saver.save_as(nowhere), SaveOutcome::failed);
    EXPECT_EQ(saver.workspace().model_file, saver.folder.path("line.axm"));
    EXPECT_TRUE(saver.workbench.unsaved);
    EXPECT_THAT(saver.workbench.recent_files, ElementsAre(saver.folder.path("line.axm")));
    EXPECT_TRUE(saver.prompts.told("An error occurred while saving the model parameters: No such file"));

    saver.workspace().model_file = nowhere;
    saver.session.model_changed = true;
    EXPECT_EQ(save_by_button(saver.workbench, saver.layout), SaveOutcome::failed);
    EXPECT_TRUE(saver.session.model_changed);
    EXPECT_EQ(saver.folder.read("line.axm"), before);
}

TEST(SaveFlow, a_folder_of_that_name_is_told) {
    Saver saver;
    std::filesystem::create_directory(saver.folder.path("line.axm"));
    EXPECT_EQ(saver.save_as(saver.folder.path("line.axm")), SaveOutcome::failed);
    EXPECT_EQ(saver.prompts.messages.size(), 1U);
    EXPECT_TRUE(std::filesystem::is_directory(saver.folder.path("line.axm")));
}

TEST(SaveFlow, a_file_beside_it_that_fails_is_told_and_the_workspace_stands) {
    Saver saver;
    std::filesystem::create_directories(saver.folder.path("line_model.csv/in the way"));
    EXPECT_EQ(saver.save_as(saver.folder.path("line.axm")), SaveOutcome::saved);
    EXPECT_TRUE(saver.prompts.told("An error occurred while writing the file: "));
    EXPECT_FALSE(saver.workbench.unsaved);
    EXPECT_FALSE(saver.folder.read("line_model.msh").empty());
}

TEST(SaveFlow, without_stations_there_is_no_mesh) {
    Saver saver;
    drop_stations(saver.workspace());
    saver.save_as(saver.folder.path("line.axm"));
    EXPECT_EQ(file_exists(saver.folder.path("line_model.msh")), "");
    EXPECT_NE(file_exists(saver.folder.path("line_model.csv")), "");
}

TEST(SaveFlow, two_saves_give_the_same_bytes) {
    Saver saver;
    saver.save_as(saver.folder.path("a.axm"));
    saver.save_as(saver.folder.path("b.axm"));
    EXPECT_EQ(saver.folder.read("a.axm"), saver.folder.read("b.axm"));
    EXPECT_EQ(saver.folder.read("a_model.csv"), saver.folder.read("b_model.csv"));
    EXPECT_EQ(saver.folder.read("a_model.msh"), saver.folder.read("b_model.msh"));
}

TEST(SaveFlow, the_layout_of_the_window_goes_with_the_file) {
    Saver saver;
    saver.workspace().display.show_body_label = 1;
    saver.workbench.view.pane_fractions = {0.6F, 0.5F, 0.25F};
    saver.save_as(saver.folder.path("line.axm"));
    const DisplaySettings& display = saver.workspace().display;
    EXPECT_TRUE(display.valid);
    EXPECT_EQ(display.form_width, 18300);
    EXPECT_EQ(display.form_height, 12000);
    EXPECT_EQ(display.show_axes, 1);
    EXPECT_EQ(display.show_body_label, 1);
    EXPECT_THAT(display.splitter_fraction, ElementsAre(0.6F, 0.5F, 0.25F, 0));
}

TEST(SaveFlow, the_current_folder_stays) {
    Saver saver;
    const TempFolder elsewhere;
    const CurrentFolder here(elsewhere.folder());
    saver.save_as(saver.folder.path("line.axm"));
    EXPECT_EQ(current_folder(), elsewhere.folder());
}

TEST(SaveFlow, odd_names_work) {
    Saver saver;
    for (const std::string& name :
         {std::string("two words.axm"), std::string("q\"uo'te.axm"), std::string("line\nbreak.axm"),
          std::string("Ünïcode 測線.axm"), std::string(240, 'x') + ".axm"}) {
        EXPECT_EQ(saver.save_as(saver.folder.path(name)), SaveOutcome::saved) << name;
        EXPECT_NE(file_exists(saver.folder.path(name)), "") << name;
    }
    EXPECT_THAT(saver.prompts.messages, IsEmpty());
}

TEST(SaveFlow, neither_the_workspace_nor_what_stands_beside_it_goes_over_the_data) {
    Saver saver;
    const std::string data = saver.folder.read("line.dat");
    saver.prompts.yes_no = {true};
    EXPECT_EQ(saver.save_as(saver.folder.path("line.dat")), SaveOutcome::failed);
    EXPECT_EQ(saver.folder.read("line.dat"), data);
    EXPECT_EQ(saver.workspace().model_file, "");
    EXPECT_TRUE(saver.workbench.unsaved);
    // A line that goes by the name of the table.
    saver.workspace().definition.data_file = saver.folder.write("line_model.csv", data);
    EXPECT_EQ(saver.save_as(saver.folder.path("line.axm")), SaveOutcome::saved);
    EXPECT_EQ(saver.folder.read("line_model.csv"), data);
    EXPECT_TRUE(saver.prompts.told("The model table " + saver.folder.path("line_model.csv")));
}

}  // namespace
}  // namespace anomalis::flow

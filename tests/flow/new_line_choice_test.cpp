#include "flow/new_line_choice.h"

#include <gtest/gtest.h>

#include "core/settings.h"
#include "core/workspace.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::flow {

TEST(NewLineChoice, a_fresh_installation_begins_exact_and_by_least_squares) {
    const Settings settings;
    EXPECT_EQ(formulas_of_new_line(settings), Formulas::exact);
    EXPECT_EQ(last_method(settings), InversionMethod::least_squares);
}

TEST(NewLineChoice, the_last_choice_lives_on_in_the_next_session) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const std::string path = folder.path("anomalis.conf");
    {
        Settings settings(path, prompts);
        Workspace workspace;
        workspace.formulas = Formulas::classic;
        remember_formulas(workspace, settings);
        remember_method(InversionMethod::sweep, settings);
    }
    Settings later(path, prompts);
    EXPECT_EQ(formulas_of_new_line(later), Formulas::classic);
    EXPECT_EQ(last_method(later), InversionMethod::sweep);
    remember_method(InversionMethod::least_squares, later);
    EXPECT_EQ(last_method(later), InversionMethod::least_squares);
}

TEST(NewLineChoice, what_is_chosen_for_a_workspace_file_says_nothing_of_new_lines) {
    Settings settings;
    Workspace workspace;
    workspace.model_file = "old.axm";
    workspace.formulas = Formulas::classic;
    remember_formulas(workspace, settings);
    EXPECT_EQ(formulas_of_new_line(settings), Formulas::exact);
}

TEST(NewLineChoice, a_word_that_is_none_counts_as_no_choice) {
    Settings settings;
    settings.set(settings_section, "NewLineFormulas", "best");
    settings.set(settings_section, "InversionMethod", "");
    EXPECT_EQ(formulas_of_new_line(settings), Formulas::exact);
    EXPECT_EQ(last_method(settings), InversionMethod::least_squares);
}

}  // namespace anomalis::flow

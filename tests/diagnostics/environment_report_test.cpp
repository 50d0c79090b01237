#include "diagnostics/environment_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/log.h"
#include "core/session.h"
#include "core/version.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::diagnostics {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class EnvironmentReport : public ::testing::Test {
  protected:
    EnvironmentReport() {
        system.exe_folder = folder.folder() + "/";
        system.user_name = "ana";
        system.computer_name = "field-7";
        facts.program_path = folder.write("anomalis", "program");
        facts.settings_path = folder.path("settings.conf");
        facts.component_lines = {"Qt: 6.4.2, built with 6.4.2"};
        facts.supporting_files = {folder.write("dyke.axm", "12"), folder.path("gone.md")};
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    SystemInfo system;
    EnvironmentFacts facts;
};

TEST_F(EnvironmentReport, has_every_section) {
    const std::string text = environment_report(system, facts, prompts);
    EXPECT_EQ(text.rfind(
                  "System files for Anomalis Version " + std::string(application_version()) + " Date: 20", 0),
              0U);
    for (const std::string& part :
         {"App Location " + folder.folder() + "/\n", std::string("Qt: 6.4.2, built with 6.4.2\n"),
          std::string("Vectors in use: "),
          "\ndyke.axm\nFull Path Name: " + folder.path("dyke.axm") + " Version: N/A Size:  2 Date: ",
          std::string("\ngone.md was not found in the PATH\n"), std::string(" DLL is loaded\n"),
          std::string("Registry Keys from VB: Brightfold\n"),
          std::string("Registry Keys from BrightApp: Brightfold\n"),
          std::string("System PATH environment variables\n"),
          std::string("User PATH environment variables\n")})
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_THAT(text, AllOf(Not(HasSubstr("TLX DLL")), Not(HasSubstr("\r"))));
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST_F(EnvironmentReport, a_supporting_file_has_its_name_its_path_and_then_the_folders_that_hold_it) {
    folder.write("one/dyke.axm", "1");
    folder.write("two/dyke.axm", "12");
    folder.write("two/gone.md", "123");
    const EnvironmentVariable path("PATH", (folder.path("one") + ":" + folder.path("two")).c_str());
    const std::string text = environment_report(system, facts, prompts);
    const auto place = [&](const std::string& words) { return text.find(words); };
    const std::string name = "\ndyke.axm\nFull Path Name: " + folder.path("dyke.axm") + " ";
    const std::string first = "\nPATH folder: " + folder.path("one") + "/ contains dyke.axm\n";
    const std::string second = "PATH folder: " + folder.path("two") + "/ contains dyke.axm\n";
    ASSERT_THAT(text, AllOf(HasSubstr(name), HasSubstr(first + second)));
    EXPECT_LT(place(name), place(first));
    EXPECT_THAT(text, HasSubstr("\ngone.md\nFull Path Name: " + folder.path("two/gone.md") + " "));
    EXPECT_THAT(text, Not(HasSubstr("gone.md was not found")));
}

TEST_F(EnvironmentReport, the_caption_names_user_and_computer) {
    const EnvironmentVariable user("USERNAME", nullptr), domain("USERDOMAIN", nullptr);
    EXPECT_EQ(environment_caption(system), "Check File Environment ana on field-7");
    const EnvironmentVariable set_user("USERNAME", "bob"), set_domain("USERDOMAIN", "MINE");
    EXPECT_EQ(environment_caption(system), "Check File Environment bob on MINE");
}

TEST_F(EnvironmentReport, a_name_is_looked_up_in_the_search_path) {
    folder.write("bin/tool", "123");
    const EnvironmentVariable path("PATH", (folder.path("bin") + ":" + folder.path("none")).c_str());
    const std::string found = find_file_report(" tool ", facts, prompts);
    EXPECT_THAT(found, HasSubstr("System PATH folders containing tool\nFull Path Name: " +
                                 folder.path("bin/tool") + " Version: N/A Size:  3 Date: "));
    EXPECT_THAT(found, HasSubstr("\nPATH folder: " + folder.path("bin") + "/ contains tool\n"));
    EXPECT_THAT(found, HasSubstr("Registry Keys from VB: Brightfold"));
    EXPECT_THAT(find_file_report("no such tool", facts, prompts),
                HasSubstr("no such tool was not found in the PATH\n"));
    EXPECT_THAT(find_file_report(" ", facts, prompts), HasSubstr("Enter the name of a file"));
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST_F(EnvironmentReport, runs_without_a_search_path_and_without_files) {
    const EnvironmentVariable path("PATH", nullptr);
    facts = {};
    const std::string text = environment_report({}, facts, prompts);
    EXPECT_THAT(text, HasSubstr("Anomalis Version " + std::string(application_version()) + " Date: N/A"));
    EXPECT_THAT(text, HasSubstr("none found beside the program"));
    EXPECT_THAT(prompts.messages, IsEmpty());
}

}  // namespace
}  // namespace anomalis::diagnostics

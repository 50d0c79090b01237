#include "diagnostics/settings_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::diagnostics {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(SettingsFacts, both_locations_are_listed) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const std::string path = folder.path("settings.conf");
    Settings settings(path, prompts);
    settings.save_setting(0, settings_root, settings_section, "MagIntensity", "48000");
    settings.save_setting(1, settings_root, recent_files_section, "MRU1", "/two\nlines.axm");
    settings.save_setting(1, settings_root, "", "UseHKCU", "1");
    settings.save_setting(0, "Another", "", "Secret", "1");
    EXPECT_THAT(settings_lines(path),
                ElementsAre("Settings file: " + path, "Registry Keys from VB: Brightfold", "UseHKCU = 1",
                            "TLX_Anomalis\\MRU1 = /two lines.axm", "Registry Keys from BrightApp: Brightfold",
                            "Anomalis\\MagIntensity = 48000"));
}

TEST(SettingsFacts, no_file_gives_empty_lists) {
    const TempFolder folder;
    EXPECT_EQ(settings_lines(folder.path("none")).size(), 3U);
    EXPECT_EQ(settings_lines("").front(), "Settings file: none");
}

TEST(SettingsFacts, a_corrupt_file_is_told_in_a_line) {
    const TempFolder folder;
    const std::string path = folder.write("settings.conf", "\x01 nonsense\n");
    EXPECT_THAT(settings_lines(path), ::testing::Contains(HasSubstr("The settings file cannot be read: ")));
}

}  // namespace
}  // namespace anomalis::diagnostics

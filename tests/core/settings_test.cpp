#include "core/settings.h"

#include <array>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "core/preferences.h"
#include "core/threads.h"
#include "support/child_process.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr int newer = 0, older = 1;

std::string read(const Settings& settings, int location, std::string_view key) {
    return settings.get_setting(location, settings_root, settings_section, key, "fallback");
}

int save(Settings& settings, int location, std::string_view key, std::string_view value) {
    return settings.save_setting(location, settings_root, settings_section, key, value);
}

TEST(SettingsLocation, is_the_newer_one_while_the_older_is_empty) {
    Settings settings;
    EXPECT_EQ(settings.choose_settings_location(), 0);
    save(settings, newer, "Dip", "45");
    EXPECT_EQ(settings.choose_settings_location(), 0);
    settings.save_setting(older, "Other", "Anomalis", "Dip", "45");
    EXPECT_EQ(settings.choose_settings_location(), 0) << "another root does not count";
}

TEST(SettingsLocation, is_the_older_one_once_that_holds_the_root) {
    Settings settings;
    settings.save_setting(older, settings_root, recent_files_section, "MRU1", "a");
    EXPECT_EQ(settings.choose_settings_location(), 1);
}

TEST(SettingsLocation, a_mark_in_either_location_asks_for_the_newer) {
    for (const int marked : {newer, older}) {
        Settings settings;
        save(settings, older, "Dip", "45");
        settings.save_setting(marked, settings_root, "", "UseHKCU", "");
        EXPECT_EQ(settings.choose_settings_location(), 0) << marked;
    }
}

TEST(SettingsLocation, stays_as_it_was_chosen_at_the_start) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings first(folder.path("a.conf"), prompts);
    save(first, older, "Dip", "45");
    EXPECT_EQ(first.settings_location(), 0);
    EXPECT_EQ(Settings(folder.path("a.conf"), prompts).settings_location(), 1);
}

TEST(GetSetting, a_section_in_one_location_alone_is_found_from_the_other) {
    Settings settings;
    save(settings, newer, "Dip", "45");
    settings.save_setting(older, settings_root, recent_files_section, "MRU1", "/a.axm");
    EXPECT_EQ(read(settings, older, "Dip"), "45");
    EXPECT_EQ(settings.get_setting(newer, settings_root, recent_files_section, "MRU1", ""), "/a.axm");
}

TEST(GetSetting, a_section_that_is_there_answers_alone) {
    Settings settings;
    save(settings, newer, "Dip", "45");
    save(settings, older, "Thick", "10");
    EXPECT_EQ(read(settings, older, "Dip"), "fallback");
    EXPECT_EQ(read(settings, newer, "Thick"), "fallback");
}

TEST(GetSetting, a_value_ends_at_its_first_nul_and_is_trimmed) {
    Settings settings;
    save(settings, newer, "Dip", std::string_view("  45 \0rest", 10));
    EXPECT_EQ(read(settings, newer, "Dip"), "45");
}

TEST(GetSetting, an_empty_value_is_a_value) {
    Settings settings;
    save(settings, newer, "MRU1", "");
    EXPECT_EQ(read(settings, newer, "MRU1"), "");
    EXPECT_EQ(read(settings, newer, "MRU2"), "fallback");
    EXPECT_EQ(settings.get(settings_section, "MRU2"), "<no value>");
}

TEST(SaveSetting, writes_to_the_location_given_alone) {
    Settings settings;
    save(settings, older, "Dip", "1");
    save(settings, newer, "Dip", "2");
    EXPECT_EQ(read(settings, older, "Dip"), "1");
    EXPECT_EQ(read(settings, newer, "Dip"), "2");
}

TEST(SaveSetting, the_next_session_reads_what_the_last_one_kept) {
    const TempFolder folder;
    const std::string path = folder.path("made/when/missing/anomalis.conf");
    const std::string odd = "/home/Zo\xC3\xAB/a = [b] # \\c\t\n\r\x7f end";
    ScriptedPrompts prompts;
    {
        Settings settings(path, prompts);
        EXPECT_EQ(save(settings, newer, "WorkingDirectory", odd), 0);
        EXPECT_EQ(settings.save_setting(older, "#root/", "[sec/tion]", "#=[ key", "x"), 0);
    }
    const Settings again(path, prompts);
    EXPECT_EQ(read(again, newer, "WorkingDirectory"), odd);
    EXPECT_EQ(again.get_setting(older, "#root/", "[sec/tion]", "#=[ key", ""), "x");
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST(SaveSetting, two_sessions_keep_each_others_values) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings one(folder.path("a.conf"), prompts), two(folder.path("a.conf"), prompts);
    EXPECT_EQ(save(one, newer, "Dip", "45"), 0);
    EXPECT_EQ(save(two, newer, "Thick", "10"), 0);
    EXPECT_EQ(save(one, newer, "Density", "2.5"), 0);
    const Settings after(folder.path("a.conf"), prompts);
    EXPECT_EQ(read(after, newer, "Dip"), "45");
    EXPECT_EQ(read(after, newer, "Thick"), "10");
    EXPECT_EQ(read(after, newer, "Density"), "2.5");
    EXPECT_EQ(read(one, newer, "Thick"), "10") << "a write takes up what the other session kept";
}

TEST(SaveSetting, processes_at_the_same_time_keep_each_others_values) {
    const TempFolder folder;
    constexpr int processes = 4, keys = 10;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            ScriptedPrompts prompts;
            Settings settings(folder.path("a.conf"), prompts);
            for (int key = 0; key < keys; ++key)
                save(settings, newer, std::to_string(i) + "." + std::to_string(key), "kept");
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) ::waitpid(child, nullptr, 0);
    ScriptedPrompts prompts;
    const Settings after(folder.path("a.conf"), prompts);
    for (int i = 0; i < processes; ++i)
        for (int key = 0; key < keys; ++key)
            EXPECT_EQ(read(after, newer, std::to_string(i) + "." + std::to_string(key)), "kept");
}

TEST(SettingsFile, a_missing_or_empty_one_is_no_failure) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const Settings missing(folder.path("a.conf"), prompts);
    EXPECT_EQ(read(missing, newer, "Dip"), "fallback");
    Settings empty(folder.write("b.conf", ""), prompts);
    EXPECT_EQ(save(empty, newer, "Dip", "45"), 0);
    EXPECT_THAT(prompts.messages, IsEmpty());
    EXPECT_EQ(folder.entries(), 1) << "reading makes no file";
}

TEST(SettingsFile, a_damaged_one_is_told_once_and_left_as_it_is) {
    const TempFolder folder;
    const std::string damaged =
        "[0 Brightfold/Anomalis]\nDip=45\n\x7f"
        "ELF\x01\x02\n";
    const std::string path = folder.write("a.conf", damaged);
    ScriptedPrompts prompts;
    Settings settings(path, prompts);
    EXPECT_EQ(read(settings, newer, "Dip"), "fallback");
    EXPECT_EQ(save(settings, newer, "Thick", "10"), -1);
    EXPECT_EQ(save(settings, newer, "Depth", "20"), -1);
    EXPECT_EQ(read(settings, newer, "Thick"), "10") << "the session itself still knows it";
    EXPECT_EQ(folder.read("a.conf"), damaged);
    EXPECT_THAT(
        prompts.messages,
        ElementsAre("An error occurred in myRegReadString: " + path +
                    " : line 3 is not a setting. The settings file is left as it is; changes last for this "
                    "session only."));
}

TEST(SettingsFile, one_damaged_during_the_session_is_not_overwritten) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings settings(folder.path("a.conf"), prompts);
    EXPECT_EQ(save(settings, newer, "Dip", "45"), 0);
    folder.write("a.conf", "not a setting\n");
    EXPECT_EQ(save(settings, newer, "Thick", "10"), -1);
    EXPECT_EQ(folder.read("a.conf"), "not a setting\n");
    EXPECT_EQ(read(settings, newer, "Dip"), "45");
    EXPECT_THAT(prompts.messages,
                ElementsAre(HasSubstr("An error occurred in myRegWriteString: Thick : line 1")));

    folder.write("a.conf", "");
    EXPECT_EQ(save(settings, newer, "Depth", "20"), 0) << "mended by hand, it takes what was not kept so far";
    EXPECT_EQ(read(Settings(folder.path("a.conf"), prompts), newer, "Thick"), "10");
}

TEST(SettingsFile, a_place_that_cannot_be_written_is_told_once) {
    const TempFolder folder;
    folder.write("file", "x");
    ScriptedPrompts prompts;
    Settings settings(folder.path("file/anomalis.conf"), prompts);
    EXPECT_EQ(save(settings, newer, "Dip", "45"), -1);
    EXPECT_EQ(save(settings, newer, "Dip", "50"), -1);
    EXPECT_EQ(read(settings, newer, "Dip"), "50");
    EXPECT_THAT(prompts.messages, ElementsAre(HasSubstr("An error occurred in myRegWriteString: Dip : ")));
}

TEST(SettingsFile, a_full_disk_or_a_read_only_folder_leaves_the_old_one) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const std::string path = folder.path("a.conf");
    Settings settings(path, prompts);
    ASSERT_EQ(save(settings, newer, "Dip", "45"), 0);
    const std::string before = folder.read("a.conf");
    EXPECT_EQ(run_in_child([&] {
                  limit_file_size(10);
                  return save(settings, newer, "Thick", "10") == -1 ? 0 : 1;
              }),
              0);
    ::chmod(folder.folder().c_str(), 0555);
    EXPECT_EQ(run_in_child(
                  [&] { return obey_permissions() && save(settings, newer, "Thick", "10") == -1 ? 0 : 1; }),
              0);
    ::chmod(folder.folder().c_str(), 0755);
    EXPECT_EQ(folder.read("a.conf"), before);
    EXPECT_EQ(folder.entries(), 1);
}

TEST(SettingsFile, a_folder_in_its_place_is_a_failure) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const Settings settings(folder.folder(), prompts);
    EXPECT_THAT(prompts.messages, ElementsAre(HasSubstr("Is a directory")));
}

TEST(SettingsFile, one_without_permission_is_told_once_and_left_as_it_is) {
    const TempFolder folder;
    const std::string path = folder.write("below/a.conf", "[0 Brightfold/Anomalis]\nDip=45\n");
    const std::string before = folder.read("below/a.conf");
    const auto told_once = [&](const char* key) {
        ScriptedPrompts prompts;
        Settings settings(path, prompts);
        const bool kept = save(settings, newer, "Thick", "10") == -1 &&
                          save(settings, newer, "Depth", "20") == -1 &&
                          read(settings, newer, "Thick") == "10";
        return kept && read(settings, newer, "Dip") == key && prompts.messages.size() == 1 &&
               prompts.told("Permission denied") && prompts.told("The settings file is left as it is");
    };
    ::chmod(path.c_str(), 0);
    EXPECT_EQ(run_in_child([&] { return obey_permissions() && told_once("fallback") ? 0 : 1; }), 0)
        << "unread";
    ::chmod(path.c_str(), 0444);
    EXPECT_EQ(run_in_child([&] { return obey_permissions() && told_once("45") ? 0 : 1; }), 0) << "unwritten";
    ::chmod(path.c_str(), 0644);
    EXPECT_EQ(folder.read("below/a.conf"), before);
}

TEST(SettingsFile, any_rubbish_is_told_once_and_left_as_it_is) {
    const TempFolder folder;
    for (const std::string& rubbish :
         {std::string(5000, '\0'), std::string(100'000, '['), std::string("PK\3\4\x14\0\6\0", 8),
          std::string("[9 Brightfold/Anomalis]\nDip=45\n"), std::string("Dip=45\n"),
          std::string("[0 Brightfold/Anomalis]\nDip=\\x4\n")}) {
        const std::string path = folder.write("a.conf", rubbish);
        ScriptedPrompts prompts;
        Settings settings(path, prompts);
        EXPECT_EQ(read(settings, newer, "Dip"), "fallback");
        EXPECT_EQ(save(settings, newer, "Thick", "10"), -1);
        EXPECT_EQ(prompts.messages.size(), 1U);
        EXPECT_EQ(folder.read("a.conf"), rubbish);
    }
}

TEST(DefaultSettingsPath, stands_in_the_users_configuration_folder) {
    const EnvironmentVariable config("XDG_CONFIG_HOME", "/etc/ann");
    EXPECT_EQ(default_settings_path(), "/etc/ann/brightfold/anomalis.conf");
}

constexpr std::array preference_keys{
    "ObservedColour", "ObservedWidth", "CalculatedColour",   "CalculatedWidth", "DarkCharts",
    "Legend",         "Grid",          "SusceptibilityUnit", "AutosaveSeconds", "Threads"};

TEST(Preferences, are_the_usual_ones_where_nothing_was_kept) {
    EXPECT_EQ(read_preferences(Settings()), Preferences());
}

TEST(Preferences, come_back_as_they_were_kept) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Preferences liked;
    liked.observed = {0xC04020, 3};
    liked.calculated = {0, 6};
    liked.dark_charts = false;
    liked.legend = true;
    liked.grid = true;
    liked.susceptibility_unit = SusceptibilityUnit::cgs;
    liked.autosave_seconds = 300;
    liked.threads = 2;
    Settings settings(folder.path("a.conf"), prompts);
    EXPECT_EQ(keep_preferences(liked, settings), 0);
    EXPECT_EQ(read_preferences(Settings(folder.path("a.conf"), prompts)), liked);
    EXPECT_EQ(keep_preferences(Preferences(), settings), 0);
    EXPECT_EQ(read_preferences(Settings(folder.path("a.conf"), prompts)), Preferences());
}

TEST(Preferences, that_were_never_changed_are_not_written) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings settings(folder.path("a.conf"), prompts);
    EXPECT_EQ(keep_preferences(Preferences(), settings), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.path("a.conf")));
}

TEST(Preferences, of_no_sense_are_the_usual_ones) {
    for (const char* nonsense :
         {"",     " ",       "black", "-1",       "1e99", "-1e99", "nan", "inf",  "99999999999999999999",
          "2.5",  "0x10",    "1,5",   "\xFF\xFE", "\t",   "--3",   "1 2", "%s%n", "NULL",
          "true", "16777216"}) {
        Settings settings;
        for (const char* key : preference_keys) save(settings, newer, key, nonsense);
        EXPECT_EQ(read_preferences(settings), Preferences()) << nonsense;
        // One that makes sense beside others that make none.
        save(settings, newer, "ObservedWidth", "4");
        Preferences wanted;
        wanted.observed.width = 4;
        EXPECT_EQ(read_preferences(settings), wanted) << nonsense;
        wanted.threads = 3;
        EXPECT_EQ(keep_preferences(wanted, settings), 0);
        EXPECT_EQ(read_preferences(settings), wanted) << nonsense;
    }
}

TEST(Preferences, of_no_sense_leave_the_rest_of_the_file_alone) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings settings(folder.path("a.conf"), prompts);
    save(settings, newer, "Dip", "45");
    save(settings, newer, "Threads", "\xFF\xFE\t%s");
    save(settings, newer, "ObservedColour", "black");
    Preferences wanted;
    wanted.legend = true;
    EXPECT_EQ(read_preferences(Settings(folder.path("a.conf"), prompts)), Preferences());
    EXPECT_EQ(keep_preferences(wanted, settings), 0);
    const Settings later(folder.path("a.conf"), prompts);
    EXPECT_EQ(read_preferences(later), wanted);
    EXPECT_EQ(read(later, newer, "Dip"), "45");
    EXPECT_TRUE(prompts.messages.empty());
}

TEST(Preferences, out_of_their_ranges_are_the_usual_ones) {
    for (const auto& [key, value] : {std::pair{"ObservedWidth", "0"},
                                     {"CalculatedWidth", "7"},
                                     {"DarkCharts", "2"},
                                     {"SusceptibilityUnit", "3"},
                                     {"AutosaveSeconds", "9"},
                                     {"AutosaveSeconds", "3601"},
                                     {"Threads", "257"}}) {
        Settings settings;
        save(settings, newer, key, value);
        EXPECT_EQ(read_preferences(settings), Preferences()) << key << value;
    }
}

TEST(Preferences, that_cannot_be_written_are_told_of_by_the_status) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Settings settings(folder.write("a.conf", "rubbish\n"), prompts);
    Preferences liked;
    liked.threads = 5;
    EXPECT_EQ(keep_preferences(liked, settings), -1);
    EXPECT_EQ(folder.read("a.conf"), "rubbish\n");
}

TEST(Threads, are_as_many_as_the_machine_has_or_as_was_chosen) {
    const int all = thread_count();
    EXPECT_GE(all, 1);
    limit_threads(3);
    EXPECT_EQ(thread_count(), 3);
    limit_threads(-7);
    EXPECT_EQ(thread_count(), all);
    limit_threads(1);
    EXPECT_EQ(thread_count(), 1);
    limit_threads(0);
    EXPECT_EQ(thread_count(), all);
}

}  // namespace
}  // namespace anomalis

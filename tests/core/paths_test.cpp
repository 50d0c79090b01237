#include "core/paths.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utime.h>

#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(FileName, is_what_follows_the_last_separator) {
    EXPECT_EQ(file_name("/a/b.dat"), "b.dat");
    EXPECT_EQ(file_name("C:\\a\\b.dat"), "b.dat");
    EXPECT_EQ(file_name("a/b\\c"), "c");
    EXPECT_EQ(file_name("b.dat"), "b.dat");
    EXPECT_EQ(file_name("/a/b/"), "");
    EXPECT_EQ(file_name("a\\"), "");
    EXPECT_EQ(file_name(""), "");
}

TEST(FolderName, keeps_its_trailing_separator) {
    EXPECT_EQ(folder_name("/a/b.dat"), "/a/");
    EXPECT_EQ(folder_name("C:\\a\\b.dat"), "C:\\a\\");
    EXPECT_EQ(folder_name("/b.dat"), "/");
    EXPECT_EQ(folder_name("b.dat"), "");
}

TEST(BaseName, loses_the_last_extension_only) {
    EXPECT_EQ(base_name("a.b.c"), "a.b");
    EXPECT_EQ(base_name("/x.y/line 4.dat"), "line 4");
    EXPECT_EQ(base_name("/x.y/line"), "line");
    EXPECT_EQ(base_name("line."), "line");
    EXPECT_EQ(base_name(".hidden"), "");
    EXPECT_EQ(base_name(""), "");
}

TEST(NativePath, writes_our_own_separator) {
    EXPECT_EQ(native_path("data\\line/1.dat"), "data/line/1.dat");
}

TEST(FileExists, gives_the_name_of_a_file_and_nothing_for_a_folder) {
    const TempFolder folder;
    const std::string path = folder.write("line 4.dat", "x");
    EXPECT_EQ(file_exists(path), "line 4.dat");
    EXPECT_EQ(file_exists(folder.folder()), "");
    EXPECT_EQ(file_exists(folder.path("other")), "");
    EXPECT_EQ(file_exists(path + "/below"), "");
    EXPECT_EQ(file_exists(""), "");
    EXPECT_EQ(file_exists(std::string(5000, 'n')), "");
}

TEST(ChangeToFolder, goes_to_a_folder_or_to_that_of_a_file) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    folder.write("data/line.dat", "x");
    change_to_folder(folder.path("data"));
    EXPECT_EQ(current_folder(), folder.path("data"));
    change_to_folder("..");
    EXPECT_EQ(current_folder(), folder.folder());
    change_to_folder(folder.path("data/line.dat"));
    EXPECT_EQ(current_folder(), folder.path("data"));
    change_to_folder(folder.folder() + "/");
    change_to_folder("data\\line.dat");
    EXPECT_EQ(current_folder(), folder.path("data"));
}

TEST(ChangeToFolder, a_missing_folder_leaves_it_as_it_was) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    for (const char* path : {"", "   ", "gone/", "gone/line.dat", "/no/such/folder/x", "line.dat"}) {
        change_to_folder(path);
        EXPECT_EQ(current_folder(), folder.folder()) << path;
    }
}

TEST(CurrentFolder, is_empty_once_it_is_gone) {
    const TempFolder folder;
    folder.write("gone/x", "");
    const CurrentFolder here(folder.path("gone"));
    std::filesystem::remove_all(folder.path("gone"));
    EXPECT_EQ(current_folder(), "");
}

TEST(FileDate, counts_days_from_the_end_of_1899_in_local_time) {
    const TempFolder folder;
    const std::string path = folder.write("a", "");
    const utimbuf times{0, 86400 + 43200};  // noon of 2 January 1970
    ASSERT_EQ(::utime(path.c_str(), &times), 0);
    {
        const EnvironmentVariable zone("TZ", "UTC0");
        ::tzset();
        EXPECT_DOUBLE_EQ(file_date(path), 25570.5);
    }
    {
        const EnvironmentVariable zone("TZ", "EAST-6");
        ::tzset();
        EXPECT_DOUBLE_EQ(file_date(path), 25570.75);
    }
    ::tzset();
    EXPECT_EQ(file_date(folder.path("missing")), 0);
}

TEST(UserFolders, follow_the_variables_when_they_are_absolute) {
    const EnvironmentVariable home("HOME", "/home/ann");
    const EnvironmentVariable config("XDG_CONFIG_HOME", "/etc/ann");
    const EnvironmentVariable data("XDG_DATA_HOME", "relative");
    EXPECT_EQ(user_config_folder(), "/etc/ann/");
    EXPECT_EQ(user_data_folder(), "/home/ann/.local/share/");
}

TEST(UserFolders, stand_below_home_otherwise) {
    const EnvironmentVariable home("HOME", "/home/ann/");
    const EnvironmentVariable config("XDG_CONFIG_HOME", nullptr);
    const EnvironmentVariable data("XDG_DATA_HOME", "");
    EXPECT_EQ(user_config_folder(), "/home/ann/.config/");
    EXPECT_EQ(user_data_folder(), "/home/ann/.local/share/");
}

TEST(LocateFile, looks_in_the_current_folder_and_in_the_one_given) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    ScriptedPrompts prompts;
    folder.write("here.crd", "");
    folder.write("there/sub/deep.crd", "");
    folder.write("there/near.crd", "");
    EXPECT_EQ(locate_file("points", "here.crd", "", prompts).path, "here.crd");
    EXPECT_EQ(locate_file("points", "near.crd", "there", prompts).path, "there/near.crd");
    EXPECT_EQ(locate_file("points", "near.crd", "there/", prompts).path, "there/near.crd");
    EXPECT_EQ(locate_file("points", "sub\\deep.crd", "there", prompts).path, "there/sub/deep.crd");
    EXPECT_EQ(locate_file("points", "D:\\old\\near.crd", "there", prompts).path, "there/near.crd");
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST(LocateFile, asks_when_it_is_in_neither) {
    ScriptedPrompts prompts;
    prompts.open_paths = {"/elsewhere/a.crd"};
    const LocateResult found = locate_file("the point file", "a.crd", "/no/such", prompts);
    EXPECT_EQ(found.path, "/elsewhere/a.crd");
    EXPECT_FALSE(found.stop_reading);
    EXPECT_THAT(prompts.messages, ElementsAre("Could not find the point file please specify its location"));
    ASSERT_EQ(prompts.open_requests.size(), 1U);
    EXPECT_EQ(prompts.open_requests[0].filter, "Data files (*.crd)|*.crd|All files (*.*)|*.*");
    EXPECT_THAT(prompts.questions, IsEmpty());
}

TEST(LocateFile, without_an_extension_all_files_are_offered) {
    ScriptedPrompts prompts;
    prompts.open_paths = {"/x", "/y"};
    locate_file("it", "old.d/plain", "", prompts);
    EXPECT_EQ(prompts.open_requests.at(0).filter, "All files (*.*)|*.*");
    locate_file("it", "plain.", "", prompts);
    EXPECT_EQ(prompts.open_requests.at(1).filter, "All files (*.*)|*.*");
}

TEST(LocateFile, after_a_cancel_the_person_says_whether_to_stop) {
    for (const bool stop : {true, false}) {
        ScriptedPrompts prompts;
        prompts.yes_no = {stop};
        const LocateResult found = locate_file("it", "missing.dat", "", prompts);
        EXPECT_EQ(found.path, "");
        EXPECT_EQ(found.stop_reading, stop);
        EXPECT_THAT(prompts.questions, ElementsAre("Cancel reading rest of specification file?"));
    }
}

}  // namespace
}  // namespace anomalis

#include "diagnostics/search_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace anomalis::diagnostics {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SearchPath, is_split_and_each_folder_ends_in_a_separator) {
    EXPECT_THAT(split_search_path("/usr/bin:/bin/:two words"),
                ElementsAre("/usr/bin/", "/bin/", "two words/"));
    EXPECT_THAT(split_search_path(""), IsEmpty());
}

TEST(SearchPath, an_empty_entry_is_the_current_folder) {
    EXPECT_THAT(split_search_path(":/bin:"), ElementsAre("./", "/bin/", "./"));
}

TEST(SearchPath, both_lists_together_hold_each_folder_once) {
    EXPECT_THAT(build_path_list("/a:/b", "/b/:/c:/a"), ElementsAre("/a/", "/b/", "/c/"));
}

TEST(SearchPath, repeated_and_missing_folders_are_marked) {
    const TempFolder folder;
    const std::string there = folder.folder();
    const std::string gone = folder.path("gone");
    EXPECT_THAT(
        search_path_lines(there + ":" + gone + ":" + there + "/:" + gone + ":new\nline"),
        ElementsAre(there + "/", gone + "/ Folder does not exist", there + "/ PATH duplicated",
                    gone + "/ PATH duplicated Folder does not exist", "new line/ Folder does not exist"));
}

TEST(SearchPath, a_name_is_found_in_every_folder_that_holds_it) {
    const TempFolder folder;
    folder.write("a/tool", "");
    folder.write("b/tool", "");
    folder.write("c/tool/inside", "");
    const auto folders = split_search_path(folder.path("a") + ":" + folder.path("none") + ":" +
                                           folder.path("b") + ":" + folder.path("c"));
    EXPECT_THAT(find_in_folders("tool", folders), ElementsAre(folder.path("a/tool"), folder.path("b/tool")));
    EXPECT_THAT(find_in_folders("  ", folders), IsEmpty());
    EXPECT_THAT(find_in_folders(std::string(10000, 'x'), folders), IsEmpty());
}

TEST(SearchPath, the_process_has_the_one_of_its_environment) {
    const EnvironmentVariable path("PATH", "/x:/y");
    EXPECT_EQ(user_search_path(), "/x:/y");
    const EnvironmentVariable none("PATH", nullptr);
    EXPECT_EQ(user_search_path(), "");
    EXPECT_NE(system_search_path(), "") << "the machine has one of its own";
}

}  // namespace
}  // namespace anomalis::diagnostics

#include "diagnostics/file_facts.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace anomalis::diagnostics {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

TEST(FileFacts, a_day_number_is_written_out) {
    EXPECT_EQ(day_text(25569), "1970-01-01 00:00");
    EXPECT_EQ(day_text(45351.75), "2024-02-29 18:00");
    EXPECT_EQ(day_text(45351.999999), "2024-03-01 00:00");
    EXPECT_EQ(day_text(0), "N/A");
}

TEST(FileFacts, a_file_has_path_size_and_date) {
    const TempFolder folder;
    const std::string path = folder.write("guide.md", "12345");
    EXPECT_THAT(file_line(path), MatchesRegex("Full Path Name: .*/guide.md Version: N/A Size:  5 Date: "
                                              "20[0-9][0-9]-[0-9]+-[0-9]+ [0-9]+:[0-9]+"));
    EXPECT_EQ(file_line(folder.path("gone")), folder.path("gone") + " was not found");
    EXPECT_EQ(file_line(folder.folder()), folder.folder() + " was not found");
}

TEST(FileFacts, the_version_of_a_library_stands_in_the_name_that_its_links_lead_to) {
    const TempFolder folder;
    folder.write("libthing.so.6.4.2", "");
    std::filesystem::create_symlink("libthing.so.6.4.2", folder.path("libthing.so.6"));
    EXPECT_EQ(library_version(folder.path("libthing.so.6")), "6.4.2");
    EXPECT_EQ(library_version(folder.path("libgone.so.7")), "7");
    EXPECT_EQ(library_version(folder.write("plain", "")), "N/A");
}

TEST(FileFacts, the_libraries_of_this_process_are_files) {
    const auto libraries = loaded_libraries();
    ASSERT_FALSE(libraries.empty());
    EXPECT_THAT(libraries, ::testing::Contains(HasSubstr("libstdc++")));
    for (const std::string& path : libraries) EXPECT_TRUE(std::filesystem::exists(path)) << path;
}

}  // namespace
}  // namespace anomalis::diagnostics

#include "core/same_file.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace anomalis {
namespace {

namespace fs = std::filesystem;

TEST(SameFile, a_file_is_known_by_every_name_it_has) {
    const TempFolder folder;
    const std::string line = folder.write("line.dat", "1");
    fs::create_hard_link(line, folder.path("hard.dat"));
    fs::create_symlink("line.dat", folder.path("soft.dat"));
    fs::create_directory(folder.path("below"));
    for (const std::string name : {"line.dat", "hard.dat", "soft.dat", "./line.dat", "below/../line.dat"})
        EXPECT_TRUE(same_file(line, folder.path(name))) << name;
    const std::string copy = folder.write("copy.dat", "1");
    EXPECT_FALSE(same_file(line, copy));
    EXPECT_FALSE(same_file(line, folder.path("missing.dat")));
    EXPECT_FALSE(same_file(line, ""));
}

TEST(SameFile, a_file_that_is_not_there_yet_is_known_by_its_folder_and_name) {
    const TempFolder folder;
    fs::create_directory(folder.path("below"));
    fs::create_directory_symlink("below", folder.path("link"));
    fs::create_symlink("below/new.csv", folder.path("soft.csv"));
    const std::string target = folder.path("below/new.csv");
    for (const std::string name : {"below/new.csv", "link/new.csv", "below/./new.csv", "soft.csv"})
        EXPECT_TRUE(same_file(target, folder.path(name))) << name;
    EXPECT_FALSE(same_file(target, folder.path("new.csv")));
    EXPECT_FALSE(same_file(target, folder.path("below/other.csv")));
}

TEST(SameFile, what_flows_through_is_no_file) {
    EXPECT_FALSE(same_file("/dev/null", "/dev/null"));
}

}  // namespace
}  // namespace anomalis

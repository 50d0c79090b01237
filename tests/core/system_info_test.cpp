#include <gtest/gtest.h>
#include <limits>

#include "core/paths.h"
#include "core/session.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

TEST(InitSystem, finds_folders_with_their_separators) {
    const TempFolder folder;
    const EnvironmentVariable data("XDG_DATA_HOME", folder.folder().c_str());
    SystemInfo system;
    init_system(system);
    EXPECT_EQ(system.app_data_folder, folder.path("brightfold/"));
    EXPECT_TRUE(folder_exists(system.app_data_folder)) << "made when missing";
    EXPECT_TRUE(folder_exists(system.temp_folder));
    EXPECT_EQ(system.temp_folder.back(), '/');
    EXPECT_EQ(file_exists(system.exe_folder + "test_core"), "test_core");
    EXPECT_FALSE(system.user_name.empty());
    EXPECT_FALSE(system.computer_name.empty());
    EXPECT_TRUE(system.done);
}

TEST(InitSystem, a_second_call_returns_at_once) {
    const TempFolder folder;
    const EnvironmentVariable data("XDG_DATA_HOME", folder.folder().c_str());
    SystemInfo system;
    init_system(system);
    system.user_name = "kept";
    init_system(system);
    EXPECT_EQ(system.user_name, "kept");
}

TEST(InitSystem, goes_on_without_a_place_for_data) {
    const TempFolder folder;
    const EnvironmentVariable data("XDG_DATA_HOME", folder.write("file", "").c_str());
    SystemInfo system;
    init_system(system);
    EXPECT_EQ(system.app_data_folder, "");
    EXPECT_TRUE(system.done);
}

TEST(InitSystem, computes_the_epsilon_of_a_single_and_the_symbols) {
    const TempFolder folder;
    const EnvironmentVariable data("XDG_DATA_HOME", folder.folder().c_str());
    SystemInfo system;
    init_system(system);
    EXPECT_EQ(system.machine_epsilon, std::numeric_limits<float>::epsilon());
    EXPECT_EQ(system.decimal_symbol, '.');
    EXPECT_EQ(system.list_symbol, ',');
}

}  // namespace
}  // namespace anomalis

#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>
#include <unistd.h>

#include "core/failure.h"
#include "core/free_memory.h"
#include "core/paths.h"
#include "core/session.h"
#include "support/child_process.h"
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

TEST(FreeMemory, is_no_more_than_a_limit_of_the_process_leaves) {
    EXPECT_GT(free_memory(), 0U);
    // Address space for 100 MB more than the process has already.
    const int result = run_in_child([] {
        const std::uint64_t room = 100'000'000;
        std::ifstream file("/proc/self/statm");
        std::uint64_t pages = 0;
        file >> pages;
        const rlim_t most = pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)) + room;
        const rlimit limit{most, most};
        ::setrlimit(RLIMIT_AS, &limit);
        return free_memory() <= room ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
}

TEST(FreeMemory, too_much_is_refused_with_both_numbers_and_a_way_out) {
    EXPECT_NO_THROW(require_memory(1000, 1000, "the rows", "take fewer"));
    try {
        require_memory(3'250'000'000, 812'400'000, "the rows", "take fewer");
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_STREQ(fault.what(), "Out of memory (the rows need 3.3 GB, 812 MB are free: take fewer)");
    }
    EXPECT_THROW(require_free_memory(std::numeric_limits<std::uint64_t>::max() - 1, "the rows", "x"), Fault);
    EXPECT_NO_THROW(require_free_memory(1000, "the rows", "take fewer"));
}

}  // namespace
}  // namespace anomalis

#include "core/file_limit.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "core/failure.h"
#include "core/safe_file.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

int write_beyond_limit(const std::string& path) {
    const rlimit limit{100, 100};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    try {
        write_file_safely(path, std::string(1000, 'x'));
    } catch (const FileFault& fault) {
        return fault.what() == "File too large (" + path + ")" ? 0 : 1;
    }
    return 2;
}

TEST(FileLimit, is_an_error_of_the_write_and_no_end) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old");
    EXPECT_EQ(run_in_child([&] {
                  std::signal(SIGXFSZ, SIG_DFL);
                  return write_beyond_limit(path);
              }),
              128 + SIGXFSZ)
        << "what the system does by itself";
    EXPECT_EQ(run_in_child([&] {
                  take_file_limit_as_error();
                  return write_beyond_limit(path);
              }),
              0);
    EXPECT_EQ(folder.read("a"), "old");
}

TEST(FileLimit, programs_that_are_started_are_not_concerned) {
    EXPECT_EQ(run_in_child([] {
                  take_file_limit_as_error();
                  return ::system("grep -q '^SigIgn:.*0$' /proc/self/status") == 0 ? 0 : 1;
              }),
              0);
}

}  // namespace
}  // namespace anomalis

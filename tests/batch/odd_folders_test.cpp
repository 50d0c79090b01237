// What the commands say of folders and files that are not as others.
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "support/child_process.h"
#include "support/failing_calls.h"

namespace anomalis::batch {
namespace {

BatchRun write_table(const BatchFolder& files) {
    return batch({"export", files.model, "--model-table", files.folder.path("table.csv")});
}

TEST(OddFolders, a_file_that_cannot_be_replaced_safely_stays_and_the_command_fails) {
    const BatchFolder files;
    files.folder.write("table.csv", "old");
    EXPECT_EQ(run_in_child([&] {
                  if (!fail_new_files(EROFS)) return 2;
                  const BatchRun run = write_table(files);
                  return run.status == 1 && run.err.find("it cannot be replaced safely") != std::string::npos
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(files.folder.read("table.csv"), "old");
}

TEST(OddFolders, a_network_folder_that_flushes_nothing_is_written_without_a_word) {
    const BatchFolder files;
    EXPECT_EQ(run_in_child([&] {
                  if (!fail_call(SYS_fsync, ENOTSUP) || !fail_call(SYS_fchmod, EPERM)) return 2;
                  const BatchRun run = write_table(files);
                  return run.status == 0 && run.err.empty() ? 0 : 1;
              }),
              0);
    EXPECT_FALSE(files.folder.read("table.csv").empty());
}

TEST(OddFolders, another_name_of_the_old_file_is_told_and_the_command_succeeds) {
    const BatchFolder files;
    files.folder.write("table.csv", "old");
    std::filesystem::create_hard_link(files.folder.path("table.csv"), files.folder.path("backup.csv"));
    const BatchRun run = write_table(files);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err,
              "Note: table.csv had another name (hard links). It is a new file now; what it held before "
              "stays under "
              "the other name\n");
    EXPECT_EQ(files.folder.read("backup.csv"), "old");
}

}  // namespace
}  // namespace anomalis::batch

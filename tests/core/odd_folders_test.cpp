// Folders that cannot do what a disk of one's own can: on a network, for reading alone, with other names.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "core/failure.h"
#include "core/safe_file.h"
#include "support/child_process.h"
#include "support/failing_calls.h"
#include "support/temp_folder.h"

extern "C" {

// The linker leads every call of `fsync` in this program here, so that a folder alone can fail.
int __real_fsync(int descriptor);  // NOLINT: the linker's name
int __wrap_fsync(int descriptor);  // NOLINT

static int error_of_folders = 0;

int __wrap_fsync(int descriptor) {
    struct stat status {};
    if (error_of_folders == 0 || ::fstat(descriptor, &status) != 0 || !S_ISDIR(status.st_mode))
        return __real_fsync(descriptor);
    errno = error_of_folders;
    return -1;
}
}

namespace anomalis {
namespace {

namespace fs = std::filesystem;

std::string failure_of_write(const std::string& path) {
    try {
        write_file_safely(path, "new");
    } catch (const FileFault& failure) {
        return failure.what();
    }
    return "";
}

mode_t mode_of(const std::string& path) {
    struct stat status {};
    ::stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

/// Status of a child in which a call of the system fails: 0 written, 1 refused with that reason.
int write_where_call_fails(const std::string& path, long call, int error) {
    return run_in_child([&] {
        if (!fail_call(call, error)) return 2;
        const std::string told = failure_of_write(path);
        if (told.empty()) return 0;
        return told == std::string(std::strerror(error)) + " (" + path + ")" ? 1 : 3;
    });
}

TEST(WriteFileSafely, does_without_what_a_network_folder_does_not_support) {
    const TempFolder folder;
    for (const long call : {SYS_fchmod, SYS_fsync}) {
        for (const int error : {EINVAL, ENOTSUP, ENOSYS, EPERM}) {
            const std::string path = folder.write("model.axm", "old");
            EXPECT_EQ(write_where_call_fails(path, call, error), 0) << call << " " << std::strerror(error);
            EXPECT_EQ(folder.read("model.axm"), "new");
            EXPECT_EQ(folder.entries(), 1);
        }
    }
}

TEST(WriteFileSafely, a_broken_or_full_disk_is_never_taken_for_a_missing_ability) {
    const TempFolder folder;
    for (const long call : {SYS_fchmod, SYS_fsync}) {
        for (const int error : {EIO, ENOSPC, EDQUOT, EROFS}) {
            const std::string path = folder.write("model.axm", "old");
            EXPECT_EQ(write_where_call_fails(path, call, error), 1) << call << " " << std::strerror(error);
            EXPECT_EQ(folder.read("model.axm"), "old");
            EXPECT_EQ(folder.entries(), 1);
        }
    }
}

TEST(WriteFileSafely, a_folder_that_fails_to_reach_the_disk_is_told_and_one_that_cannot_be_flushed_is_not) {
    const TempFolder folder;
    const std::string path = folder.write("model.axm", "old");
    error_of_folders = EINVAL;
    EXPECT_EQ(failure_of_write(path), "");
    for (const int error : {EIO, ENOSPC}) {
        folder.write("model.axm", "old");
        error_of_folders = error;
        EXPECT_EQ(failure_of_write(path), std::string(std::strerror(error)) + " (" + path + ")");
        EXPECT_EQ(folder.read("model.axm"), "new") << "whole, but a power cut may bring the old one back";
        EXPECT_EQ(folder.entries(), 1);
    }
    error_of_folders = 0;
}

/// True when the write is refused as one that cannot be done safely, and says so.
bool refused_as_unsafe(const std::string& path, int error) {
    try {
        write_file_safely(path, "new");
    } catch (const NoSafeReplacement& failure) {
        return failure.what() ==
               std::string(std::strerror(error)) + " (" + path +
                   "): the file may be written, but its folder lets no other file take its place, "
                   "so it cannot be replaced safely";
    } catch (const FileFault&) {
    }
    return false;
}

TEST(WriteFileSafely, a_read_only_folder_leaves_the_old_file) {
    const TempFolder folder;
    const std::string path = folder.write("model.axm", "old");
    ::chmod(folder.folder().c_str(), 0555);
    const int result =
        run_in_child([&] { return obey_permissions() && refused_as_unsafe(path, EACCES) ? 0 : 1; });
    ::chmod(folder.folder().c_str(), 0755);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(folder.read("model.axm"), "old");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(WriteFileSafely, says_when_a_file_could_be_written_but_not_replaced) {
    const TempFolder folder;
    const std::string path = folder.write("model.axm", "old");
    for (const int error : {EACCES, EPERM, EROFS})
        EXPECT_EQ(
            run_in_child([&] { return fail_new_files(error) && refused_as_unsafe(path, error) ? 0 : 1; }), 0)
            << std::strerror(error);
    for (const int error : {EPERM, EBUSY})
        EXPECT_EQ(run_in_child([&] {
                      return fail_call(rename_call, error) && refused_as_unsafe(path, error) ? 0 : 1;
                  }),
                  0)
            << std::strerror(error);
    for (const int error : {ENOSPC, EMFILE, EDQUOT})
        EXPECT_EQ(run_in_child([&] {
                      return fail_new_files(error) && !refused_as_unsafe(path, error) &&
                                     failure_of_write(path) ==
                                         std::string(std::strerror(error)) + " (" + path + ")"
                                 ? 0
                                 : 1;
                  }),
                  0)
            << std::strerror(error);
    EXPECT_EQ(run_in_child([&] {
                  return fail_new_files(EACCES) && !refused_as_unsafe(folder.path("new"), EACCES) ? 0 : 1;
              }),
              0)
        << "a new file has nothing to be written in place of";
    EXPECT_EQ(folder.read("model.axm"), "old");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(WriteFileInPlace, writes_shorter_and_longer_contents_and_keeps_every_name) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old contents");
    fs::create_hard_link(path, folder.path("b"));
    for (const std::string& contents : {std::string("new"), std::string(100'000, 'x'), std::string()}) {
        write_file_in_place(path, contents);
        EXPECT_EQ(folder.read("a"), contents);
        EXPECT_EQ(folder.read("b"), contents);
    }
    EXPECT_THROW(write_file_in_place(folder.path("no"), "x"), FileFault);
    EXPECT_EQ(folder.entries(), 2);
}

TEST(WriteFileInPlace, a_full_disk_brings_the_old_contents_back) {
    const TempFolder folder;
    const std::string path = folder.write("a", std::string(800, 'o'));
    EXPECT_EQ(run_in_child([&] {
                  limit_file_size(1000);
                  try {
                      write_file_in_place(path, std::string(100'000, 'x'));
                  } catch (const FileFault& failure) {
                      return failure.what() == "File too large (" + path + ")" ? 0 : 1;
                  }
                  return 2;
              }),
              0);
    EXPECT_EQ(folder.read("a"), std::string(800, 'o'));
}

TEST(WriteFileSafely, tells_how_many_other_names_the_old_file_has) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old");
    EXPECT_EQ(write_file_safely(path, "new"), 0);
    fs::create_hard_link(path, folder.path("b"));
    fs::create_hard_link(path, folder.path("c"));
    EXPECT_EQ(write_file_safely(path, "newer"), 2);
    EXPECT_EQ(folder.read("b"), "new");
    EXPECT_EQ(write_file_safely(path, "newest"), 0);
    EXPECT_EQ(write_file_safely(folder.path("d"), "x"), 0);
    EXPECT_EQ(write_file_safely("/dev/null", "x"), 0);
}

TEST(WriteFileSafely, a_private_file_is_for_its_owner_alone_whatever_stood_there) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old");
    ::chmod(path.c_str(), 0666);
    write_file_safely(path, "new", FileRights::owner_only);
    EXPECT_EQ(mode_of(path), 0600U);
    for (const mode_t mask : {mode_t{0}, mode_t{0777}}) {
        const mode_t before = ::umask(mask);
        write_file_safely(folder.path("fresh" + std::to_string(mask)), "x", FileRights::owner_only);
        ::umask(before);
        EXPECT_EQ(mode_of(folder.path("fresh" + std::to_string(mask))), 0600U);
    }
}

}  // namespace
}  // namespace anomalis

#include "core/safe_file.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "core/failure.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

namespace fs = std::filesystem;

std::string failure_of_write(const std::string& path, const std::string& contents = "new") {
    try {
        write_file_safely(path, contents);
    } catch (const FileFault& failure) {
        return failure.what();
    }
    return "";
}

std::string failure_of_read(const std::string& path) {
    try {
        (void)read_whole_file(path);
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

TEST(WriteFileSafely, makes_a_file_and_replaces_one) {
    const TempFolder folder;
    const std::string path = folder.path("model.axm");
    write_file_safely(path, "first");
    EXPECT_EQ(folder.read("model.axm"), "first");
    write_file_safely(path, std::string("with\0nul", 8));
    EXPECT_EQ(folder.read("model.axm"), std::string("with\0nul", 8));
    write_file_safely(path, "");
    EXPECT_EQ(folder.read("model.axm"), "");
    EXPECT_EQ(folder.entries(), 1) << "a temporary file was left";
}

TEST(WriteFileSafely, takes_large_contents_whole) {
    const TempFolder folder;
    std::string large(5'000'000, 'x');
    large += "end";
    write_file_safely(folder.path("large"), large);
    EXPECT_EQ(folder.read("large"), large);
}

TEST(WriteFileSafely, takes_the_longest_name_that_the_system_has) {
    const TempFolder folder;
    const std::string name(255, 'n');
    write_file_safely(folder.path(name), "x");
    EXPECT_EQ(folder.read(name), "x");
}

TEST(WriteFileSafely, writes_into_the_current_folder_by_a_bare_name) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    write_file_safely("bare", "x");
    EXPECT_EQ(folder.read("bare"), "x");
}

TEST(WriteFileSafely, keeps_the_permissions_of_the_old_file) {
    const TempFolder folder;
    const std::string path = folder.write("shared", "old");
    ::chmod(path.c_str(), 0664);
    write_file_safely(path, "new");
    EXPECT_EQ(mode_of(path), 0664U);
}

TEST(WriteFileSafely, a_new_file_gets_the_usual_permissions) {
    const TempFolder folder;
    const mode_t before = ::umask(027);
    write_file_safely(folder.path("new"), "x");
    ::umask(before);
    EXPECT_EQ(mode_of(folder.path("new")), 0640U);
}

TEST(WriteFileSafely, follows_a_link_and_keeps_it) {
    const TempFolder folder;
    folder.write("real/target", "old");
    fs::create_symlink("real/target", folder.path("link"));
    write_file_safely(folder.path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(folder.read("real/target"), "new");
}

TEST(WriteFileSafely, names_the_reason_when_there_is_no_place) {
    const TempFolder folder;
    const std::string file = folder.write("file", "old");
    EXPECT_EQ(failure_of_write(folder.folder()), "Is a directory (" + folder.folder() + ")");
    EXPECT_EQ(failure_of_write(file + "/below"), "Not a directory (" + file + "/below)");
    EXPECT_EQ(failure_of_write(folder.path("no/such")),
              "No such file or directory (" + folder.path("no/such") + ")");
    EXPECT_EQ(failure_of_write(""), "No such file or directory ()");
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(WriteFileSafely, a_full_disk_leaves_the_old_file) {
    const TempFolder folder;
    const std::string path = folder.write("model.axm", "old");
    const int result = run_in_child([&] {
        limit_file_size(1000);
        return failure_of_write(path, std::string(100'000, 'x')) == "File too large (" + path + ")" ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(folder.read("model.axm"), "old");
    EXPECT_EQ(folder.entries(), 1) << "a temporary file was left";
}

TEST(WriteFileSafely, a_write_protected_file_stays) {
    const TempFolder folder;
    const std::string path = folder.write("model.axm", "old");
    ::chmod(path.c_str(), 0444);
    const int result = run_in_child([&] {
        return obey_permissions() && failure_of_write(path) == "Permission denied (" + path + ")" ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(folder.read("model.axm"), "old");
}

TEST(WriteFileSafely, a_kill_at_any_time_leaves_a_whole_file) {
    const TempFolder folder;
    const std::array<std::string, 2> contents{std::string(50'000, 'a'), std::string(60'000, 'b')};
    const std::string path = folder.write("model.axm", contents[0]);
    for (int i = 0; i < 25; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (std::size_t turn = 0;; turn = 1 - turn) write_file_safely(path, contents[turn]);
        }
        ::usleep(static_cast<useconds_t>(500 + 137 * i));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::string left = folder.read("model.axm");
        ASSERT_TRUE(left == contents[0] || left == contents[1]) << left.size() << " characters";
    }
}

TEST(WriteFileSafely, a_device_stays_a_device) {
    write_file_safely("/dev/null", "gone");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(failure_of_write("/dev/full"), "No space left on device (/dev/full)");
}

TEST(WriteFileSafely, a_pipe_gets_the_contents) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    write_file_safely("/dev/fd/" + std::to_string(ends[1]), "through");
    std::array<char, 16> got{};
    EXPECT_EQ(::read(ends[0], got.data(), got.size()), 7);
    EXPECT_STREQ(got.data(), "through");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(WriteFileSafely, a_pipe_that_nobody_reads_is_told_and_a_late_reader_is_waited_for) {
    const TempFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(failure_of_write(path), "Broken pipe (" + path + ")");
    const pid_t reader = ::fork();
    if (reader == 0) {
        ::usleep(100'000);
        std::array<char, 16> got{};
        const int pipe = ::open(path.c_str(), O_RDONLY);
        ::_exit(::read(pipe, got.data(), got.size()) == 7 ? 0 : 1);
    }
    write_file_safely(path, "through");
    int status = 0;
    ::waitpid(reader, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(WriteFileSafely, a_reader_that_goes_away_is_an_error_and_not_the_end) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    const std::string path = "/dev/fd/" + std::to_string(ends[1]);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(failure_of_write(path), "Broken pipe (" + path + ")");
    ::close(ends[1]);
    sigset_t pending;
    ::sigpending(&pending);
    EXPECT_FALSE(::sigismember(&pending, SIGPIPE));
}

TEST(WriteFileSafely, a_link_to_a_file_that_is_not_there_yet_is_followed) {
    const TempFolder folder;
    fs::create_directory(folder.path("real"));
    fs::create_symlink("second", folder.path("link"));
    fs::create_symlink("real/target", folder.path("second"));
    write_file_safely(folder.path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")) && fs::is_symlink(folder.path("second")));
    EXPECT_EQ(folder.read("real/target"), "new");
    fs::create_symlink("loop", folder.path("loop"));
    EXPECT_NE(failure_of_write(folder.path("loop")), "");
}

TEST(SafeFile, without_a_commit_the_old_file_stays) {
    const TempFolder folder;
    const std::string path = folder.write("a", "old");
    {
        SafeFile file(path);
        file.write("one ");
        file.write("two");
    }
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_EQ(folder.entries(), 1);
    SafeFile file(path);
    file.write("one ");
    file.write("two");
    file.commit();
    EXPECT_EQ(folder.read("a"), "one two");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(AppendToFile, makes_the_file_and_adds_to_it) {
    const TempFolder folder;
    append_to_file(folder.path("log"), "1\n");
    append_to_file(folder.path("log"), "2\n");
    EXPECT_EQ(folder.read("log"), "1\n2\n");
    EXPECT_THROW(append_to_file(folder.folder(), "x"), FileFault);
}

TEST(ReadWholeFile, gives_every_byte) {
    const TempFolder folder;
    std::string contents(300'000, '\0');
    contents += "\r\n\xEF\xBB\xBF";
    EXPECT_EQ(read_whole_file(folder.write("binary", contents)), contents);
    EXPECT_EQ(read_whole_file(folder.write("empty", "")), "");
    EXPECT_FALSE(read_whole_file("/proc/self/status").empty()) << "the system tells no size for this file";
    EXPECT_EQ(read_file_start(folder.path("binary"), 7), contents.substr(0, 7));
    EXPECT_EQ(read_file_start(folder.path("binary"), contents.size() + 7), contents);
}

TEST(ReadWholeFile, names_the_reason_when_it_cannot) {
    const TempFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(failure_of_read(folder.path("no")), "No such file or directory (" + folder.path("no") + ")");
    EXPECT_EQ(failure_of_read(folder.folder()), "Is a directory (" + folder.folder() + ")");
    EXPECT_NE(failure_of_read(pipe), "");
    EXPECT_NE(failure_of_read("/dev/zero"), "");
}

TEST(ReadWholeFile, a_file_without_permission_is_refused) {
    const TempFolder folder;
    const std::string path = folder.write("secret", "x");
    ::chmod(path.c_str(), 0);
    const int result = run_in_child([&] {
        return obey_permissions() && failure_of_read(path) == "Permission denied (" + path + ")" ? 0 : 1;
    });
    EXPECT_EQ(result, 0);
}

TEST(FolderLock, lets_one_process_at_a_time_change_a_file) {
    const TempFolder folder;
    const std::string path = folder.write("count", "");
    constexpr int processes = 4, turns = 25;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int turn = 0; turn < turns; ++turn) {
                const FolderLock lock(folder.folder());
                write_file_safely(path, read_whole_file(path) + "x");
            }
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) ::waitpid(child, nullptr, 0);
    EXPECT_EQ(folder.read("count").size(), static_cast<std::size_t>(processes * turns));
}

TEST(FolderLock, a_missing_folder_is_a_failure) {
    EXPECT_THROW(FolderLock("/no/such/folder"), FileFault);
}

}  // namespace
}  // namespace anomalis

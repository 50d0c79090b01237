#include "core/leftovers.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/process_mark.h"
#include "core/safe_file.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

namespace fs = std::filesystem;

/// A process that is killed with a temporary file in the folder.
void leave_temporary_file(const TempFolder& folder) {
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        SafeFile file(folder.path("model.axm"));
        file.write("half");
        if (::write(ready[1], "x", 1) != 1) ::_exit(1);
        for (;;) ::pause();
    }
    char done = 0;
    ASSERT_EQ(::read(ready[0], &done, 1), 1);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST(Leftovers, of_a_killed_writer_go_with_the_next_write_into_the_folder) {
    const TempFolder folder;
    folder.write("model.axm", "old");
    leave_temporary_file(folder);
    EXPECT_EQ(folder.entries(), 2);
    write_file_safely(folder.path("other.csv"), "new");
    EXPECT_EQ(folder.entries(), 2);
    EXPECT_EQ(folder.read("model.axm"), "old");
    EXPECT_EQ(folder.read("other.csv"), "new");
}

TEST(Leftovers, a_living_writer_keeps_its_file) {
    const TempFolder folder;
    SafeFile slow(folder.path("slow"));
    slow.write("half");
    write_file_safely(folder.path("fast"), "x");
    remove_leftovers(folder.folder());
    slow.commit();
    EXPECT_EQ(folder.read("slow"), "half");
}

TEST(Leftovers, nothing_but_temporary_files_of_ours_is_touched) {
    const TempFolder folder;
    const std::string mark = own_process_mark();
    const std::string gone = mark.substr(0, mark.rfind('-')) + "-1";
    for (const std::string& name :
         {std::string(".anomalis-"), ".anomalis-" + gone, ".anomalis-" + gone + "-",
          ".anomalis-" + gone + "-abcde", ".anomalis-" + gone + "-abcdefg", "anomalis-" + gone + "-abcdef",
          ".anomalis-x-" + gone + "-abcdef", ".anomalis-" + gone + "-abcdef.axm",
          std::string(".anomalis-abcdef"), std::string("notes.txt")})
        folder.write(name, "a person's");
    const std::string name = ".anomalis-" + gone + "-abcdef";
    fs::create_directory(folder.path(name));
    const int before = folder.entries();
    remove_leftovers(folder.folder());
    EXPECT_EQ(folder.entries(), before);
    fs::remove(folder.path(name));
    fs::create_symlink("notes.txt", folder.path(name));
    remove_leftovers(folder.folder());
    EXPECT_EQ(folder.entries(), before) << "a link is no file of ours";
    fs::remove(folder.path(name));
    folder.write(name, "half");
    remove_leftovers(folder.folder() + "/");
    EXPECT_EQ(folder.entries(), before - 1) << "the one that is ours";
}

TEST(Leftovers, a_missing_folder_is_nothing) {
    remove_leftovers("/no/such/folder");
}

TEST(Leftovers, a_temporary_name_is_known_again) {
    const std::string path = temporary_name("/some/folder/");
    EXPECT_TRUE(path.starts_with("/some/folder/.anomalis-") && path.ends_with("XXXXXX"));
    EXPECT_TRUE(is_temporary_name(path.substr(path.rfind('/') + 1)));
    EXPECT_FALSE(is_temporary_name("model.axm"));
}

}  // namespace
}  // namespace anomalis

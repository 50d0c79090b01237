#include "flow/program_folder.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/process_mark.h"
#include "core/safe_file.h"
#include "support/child_process.h"
#include "support/failing_calls.h"
#include "support/temp_folder.h"

namespace anomalis::flow {
namespace {

namespace fs = std::filesystem;

/// A root with the folder of a program that is gone, a model in it.
struct Remains {
    Remains() {
        ProgramFolder gone(root());
        write_file_safely(gone.model_file(), "a model");
        folder = fs::path(gone.model_file()).parent_path().string();
    }
    std::string root() const { return temp.path("state/recovery"); }
    bool has(const std::string& name) const { return fs::exists(folder + "/" + name); }

    TempFolder temp;
    std::string folder;
};

/// Starts a process that has a file open, and waits to be killed.
pid_t start_program(const std::string& root, const std::string& open_file) {
    int ready[2];
    if (::pipe(ready) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        const ProgramFolder folder(root);
        folder.show_open_file(open_file);
        if (::write(ready[1], "x", 1) != 1) ::_exit(1);
        for (;;) ::pause();
    }
    char done = 0;
    if (::read(ready[0], &done, 1) != 1) throw std::runtime_error("the program said nothing");
    ::close(ready[0]);
    ::close(ready[1]);
    return child;
}

void kill_hard(pid_t process) {
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
}

TEST(ProgramFolder, a_clean_end_leaves_nothing) {
    const TempFolder temp;
    ProgramFolder folder(temp.path("recovery"));
    write_file_safely(folder.model_file(), "a model");
    folder.show_open_file("/some/line.axm");
    folder.remove();
    EXPECT_TRUE(fs::is_empty(temp.path("recovery")));
}

TEST(ProgramFolder, a_file_of_a_stranger_outlives_the_clean_end_and_the_removal) {
    const TempFolder temp;
    ProgramFolder folder(temp.path("recovery"));
    write_file_safely(folder.model_file(), "a model");
    const fs::path own = fs::path(folder.model_file()).parent_path();
    write_file_safely(own / "notes.txt", "a person's");
    fs::create_directory(own / "below");
    folder.remove();
    EXPECT_EQ(read_whole_file(own / "notes.txt"), "a person's");
    EXPECT_TRUE(fs::exists(own / "below"));
    EXPECT_FALSE(fs::exists(own / "model.axm"));
    EXPECT_TRUE(find_left_folders(temp.path("recovery")).empty());
    EXPECT_TRUE(fs::exists(own / "notes.txt"));
}

TEST(LeftFolders, are_those_of_programs_that_are_gone_and_go_when_removed) {
    const Remains remains;
    const ProgramFolder living(remains.root());
    write_file_safely(living.model_file(), "another");
    {
        const auto left = find_left_folders(remains.root());
        ASSERT_EQ(left.size(), 1U);
        EXPECT_EQ(left[0].model_file(), remains.folder + "/model.axm");
        EXPECT_GT(left[0].kept(), 0);
        EXPECT_TRUE(left[0].remove());
    }
    EXPECT_FALSE(fs::exists(remains.folder));
    EXPECT_TRUE(fs::exists(living.model_file()));
}

TEST(LeftFolders, one_of_ours_without_a_model_goes_by_itself) {
    const Remains remains;
    fs::remove(remains.folder + "/model.axm");
    EXPECT_TRUE(find_left_folders(remains.root()).empty());
    EXPECT_FALSE(fs::exists(remains.folder));
}

TEST(LeftFolders, of_a_process_that_ended_before_it_wrote_the_mark_goes_by_its_name) {
    const TempFolder temp;
    const std::string own = own_process_mark();
    const std::string ended = own.substr(0, own.rfind('-')) + "-1";
    fs::create_directory(temp.path(ended + "-1"));
    temp.write(ended + "-2/.anomalis-" + ended + "-abcdef", "half a mark");
    temp.write(ended + "-3/notes.txt", "a person's");
    fs::create_directory(temp.path(own + "-1"));
    EXPECT_TRUE(find_left_folders(temp.folder()).empty());
    EXPECT_FALSE(fs::exists(temp.path(ended + "-1")));
    EXPECT_FALSE(fs::exists(temp.path(ended + "-2")));
    EXPECT_TRUE(fs::exists(temp.path(ended + "-3/notes.txt")));
    EXPECT_TRUE(fs::exists(temp.path(own + "-1"))) << "a living one is about to write its mark";
}

TEST(LeftFolders, folders_without_our_mark_are_never_touched) {
    const TempFolder temp;
    for (const char* file : {"survey/model.axm", "survey/data.xyz", "empty/keep", "7-x/model.axm",
                             "12-3/notes.txt", "12-4/model.csv"})
        temp.write(file, "a person's");
    temp.write("marked/anomalis-program", "some other text");
    fs::remove(temp.path("empty/keep"));
    fs::create_directory(temp.path("12-5"));
    temp.write("elsewhere/model.axm", "a person's");
    fs::create_directory_symlink("elsewhere", temp.path("12-6"));
    EXPECT_TRUE(find_left_folders(temp.folder()).empty());
    for (const char* file :
         {"survey/model.axm", "survey/data.xyz", "empty", "7-x/model.axm", "12-3/notes.txt", "12-4/model.csv",
          "marked/anomalis-program", "12-5", "12-6", "elsewhere/model.axm"})
        EXPECT_TRUE(fs::exists(temp.path(file))) << file;
}

TEST(LeftFolders, of_an_earlier_version_are_offered_but_go_only_when_all_in_them_is_ours) {
    const TempFolder temp;
    temp.write("12-1/model.axm", "a model");
    temp.write("12-1/.anomalis-a1B2c3", "half");
    temp.write("12-2/model.axm", "a model");
    temp.write("12-2/notes.txt", "a person's");
    for (const LeftFolder& left : find_left_folders(temp.folder()))
        EXPECT_EQ(left.remove(), left.model_file() == temp.path("12-1/model.axm"));
    EXPECT_FALSE(fs::exists(temp.path("12-1")));
    EXPECT_TRUE(fs::exists(temp.path("12-2/model.axm")));
    EXPECT_TRUE(fs::exists(temp.path("12-2/notes.txt")));
}

TEST(LeftFolders, wide_rights_of_an_earlier_version_become_narrow) {
    const TempFolder temp;
    const std::string model = temp.write("12-1/model.axm", "a model");
    fs::permissions(temp.path("12-1"), fs::perms::all);
    fs::permissions(model, fs::perms::all);
    EXPECT_EQ(find_left_folders(temp.folder()).size(), 1U);
    EXPECT_EQ(fs::status(temp.path("12-1")).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(model).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(LeftFolders, where_there_are_no_locks_the_mark_tells_who_lives) {
    const TempFolder temp;
    const std::string root = temp.path("recovery");
    const pid_t other = start_program(root, "/some/line.axm");
    for (const auto& entry : fs::directory_iterator(root))
        write_file_safely(entry.path() / "model.axm", "a model");
    const auto left_without_locks = [&] {
        return run_in_child([&] {
            return fail_call(SYS_flock, ENOLCK) ? static_cast<int>(find_left_folders(root).size()) : 50;
        });
    };
    EXPECT_EQ(left_without_locks(), 0);
    kill_hard(other);
    EXPECT_EQ(left_without_locks(), 1);
}

TEST(OpenFiles, programs_on_one_file_see_each_other_by_whatever_links) {
    const TempFolder temp;
    const std::string root = temp.path("recovery");
    const std::string file = temp.write("survey/line.axm", "x");
    fs::create_directory_symlink("survey", temp.path("link"));
    const ProgramFolder folder(root);
    folder.show_open_file(file);
    EXPECT_EQ(folder.others_with(file), 0) << "itself";
    const pid_t first = start_program(root, temp.path("link/line.axm"));
    const pid_t second = start_program(root, file);
    const pid_t third = start_program(root, temp.write("survey/other.axm", "x"));
    EXPECT_EQ(folder.others_with(file), 2);
    EXPECT_EQ(folder.others_with(temp.path("link/line.axm")), 2);
    kill_hard(first);
    EXPECT_EQ(folder.others_with(file), 1) << "a claim goes with its process";
    // A save replaces the file: it is still the same one to people.
    write_file_safely(file, "saved");
    EXPECT_EQ(folder.others_with(file), 1);
    kill_hard(second);
    EXPECT_EQ(folder.others_with(file), 0);
    kill_hard(third);
}

}  // namespace
}  // namespace anomalis::flow

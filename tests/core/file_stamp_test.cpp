#include "core/file_stamp.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/safe_file.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

namespace fs = std::filesystem;

/// Gives a file another time without another content.
void touch(const std::string& path, int seconds) {
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(seconds));
}

TEST(FileStamp, sees_other_contents_and_nothing_else) {
    const TempFolder folder;
    const std::string path = folder.write("line.axm", "as read");
    const FileStamp stamp = stamp_file(path);
    EXPECT_EQ(fate_of(stamp, path), FileFate::same);
    touch(path, 5);
    EXPECT_EQ(fate_of(stamp, path), FileFate::same) << "a touch changes nothing";
    write_file_safely(path, "as read");
    EXPECT_EQ(fate_of(stamp, path), FileFate::same) << "a copy put back changes nothing";
    folder.write("line.axm", "as READ");
    EXPECT_EQ(fate_of(stamp, path), FileFate::changed);
    folder.write("line.axm", "longer than it was");
    EXPECT_EQ(fate_of(stamp, path), FileFate::changed);
    fs::remove(path);
    EXPECT_EQ(fate_of(stamp, path), FileFate::gone);
}

TEST(FileStamp, sees_a_change_of_equal_length_within_one_tick_of_the_clock) {
    const TempFolder folder;
    const std::string path = folder.write("line.axm", "12.5");
    const auto time = fs::last_write_time(path);
    const FileStamp stamp = stamp_file(path);
    folder.write("line.axm", "12.6");
    fs::last_write_time(path, time);
    EXPECT_EQ(fate_of(stamp, path), FileFate::changed);
}

TEST(FileStamp, by_times_alone_sees_a_touch_and_another_file) {
    const TempFolder folder;
    const std::string path = folder.write("line.dat", "1 2 3");
    FileStamp stamp = stamp_file(path, StampDepth::times);
    EXPECT_FALSE(stamp.digest);
    EXPECT_EQ(fate_of(stamp, path), FileFate::same);
    touch(path, 5);
    EXPECT_EQ(fate_of(stamp, path), FileFate::changed);
    stamp = stamp_file(path, StampDepth::times);
    const auto time = fs::last_write_time(path);
    write_file_safely(path, "1 2 4");
    fs::last_write_time(path, time);
    EXPECT_EQ(fate_of(stamp, path), FileFate::changed) << "another file under the name";
}

TEST(FileStamp, a_file_that_came_into_being_is_a_change) {
    const TempFolder folder;
    const FileStamp stamp = stamp_file(folder.path("new"));
    EXPECT_FALSE(stamp.exists);
    EXPECT_EQ(fate_of(stamp, folder.path("new")), FileFate::same);
    folder.write("new", "");
    EXPECT_EQ(fate_of(stamp, folder.path("new")), FileFate::changed);
}

TEST(FileStamp, is_not_held_up_by_a_pipe) {
    const TempFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(stamp_file(folder.path("pipe")).exists);
}

TEST(FileStamp, of_a_written_file_is_what_was_written) {
    const TempFolder folder;
    const std::string path = folder.write("line.axm", "ours");
    const FileStamp ours = stamp_written(path, "ours");
    EXPECT_EQ(fate_of(ours, path), FileFate::same);
    folder.write("line.axm", "else");
    EXPECT_EQ(fate_of(ours, path), FileFate::changed);
    EXPECT_EQ(fate_of(stamp_written(path, "ours"), path), FileFate::changed)
        << "somebody else wrote between the write and the look";
}

TEST(FileStamp, goes_into_one_line_of_text_and_comes_back) {
    const TempFolder folder;
    const std::string path = folder.write("line.axm", "as read");
    const auto stamp = stamp_of_text(stamp_text(stamp_file(path)));
    ASSERT_TRUE(stamp);
    EXPECT_EQ(fate_of(*stamp, path), FileFate::same);
    folder.write("line.axm", "as READ");
    EXPECT_EQ(fate_of(*stamp, path), FileFate::changed);
    for (const char* text : {"", "7", "7 1", "7 1 x", "7 1 -1", "7 1 1e300"})
        EXPECT_FALSE(stamp_of_text(text)) << text;
}

TEST(KnownFiles, know_a_file_by_its_place_whatever_links_lead_there) {
    const TempFolder folder;
    const std::string path = folder.write("below/line.axm", "x");
    fs::create_directory_symlink("below", folder.path("link"));
    KnownFiles files;
    EXPECT_EQ(files.find(path), nullptr);
    files.note(folder.path("link/line.axm"), stamp_file(path));
    ASSERT_NE(files.find(path), nullptr);
    EXPECT_EQ(fate_of(*files.find(path), path), FileFate::same);
    const CurrentFolder here(folder.path("below"));
    EXPECT_NE(files.find("line.axm"), nullptr);
    fs::remove(path);
    EXPECT_NE(files.find(path), nullptr) << "a file that is gone is still known";
}

}  // namespace
}  // namespace anomalis

#include "flow/recent_files.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecentFiles : public ::testing::Test {
  protected:
    void add(const std::string& path) {
        add_to_recent_files(path, recent_files_section, settings, recent, prompts);
    }
    std::string kept(const std::string& key) const { return settings.get(recent_files_section, key); }

    ScriptedPrompts prompts;
    TempFolder folder;
    Settings settings;
    std::vector<std::string> recent;
};

TEST_F(RecentFiles, the_newest_stands_first_and_the_settings_hold_the_whole_list) {
    add("/a.axm");
    add("/b.axm");
    EXPECT_THAT(recent, ElementsAre("/b.axm", "/a.axm"));
    EXPECT_EQ(kept("MRU1"), "/b.axm");
    EXPECT_EQ(kept("MRU2"), "/a.axm");
    for (const char* key : {"MRU3", "MRU4", "MRU5", "MRU6"}) EXPECT_EQ(kept(key), "") << key;
}

TEST_F(RecentFiles, the_second_moves_to_the_top_and_shifts_only_the_first) {
    for (const char* path : {"/c.axm", "/b.axm", "/a.axm"}) add(path);
    add("/b.axm");
    EXPECT_THAT(recent, ElementsAre("/b.axm", "/a.axm", "/c.axm"));
    add("/b.axm");
    EXPECT_THAT(recent, ElementsAre("/b.axm", "/a.axm", "/c.axm"));
}

TEST_F(RecentFiles, a_seventh_drops_the_oldest) {
    for (const char* path : {"/1", "/2", "/3", "/4", "/5", "/6", "/7"}) add(path);
    EXPECT_THAT(recent, ElementsAre("/7", "/6", "/5", "/4", "/3", "/2"));
    EXPECT_EQ(kept("MRU6"), "/2");
    EXPECT_EQ(kept("MRU7"), "<no value>");
}

TEST_F(RecentFiles, letter_case_counts) {
    add("/line.axm");
    add("/Line.axm");
    EXPECT_THAT(recent, ElementsAre("/Line.axm", "/line.axm"));
}

TEST_F(RecentFiles, a_path_is_kept_absolute) {
    const CurrentFolder here(folder.folder());
    add("sub/../line.axm");
    EXPECT_THAT(recent, ElementsAre(folder.path("line.axm")));
}

TEST_F(RecentFiles, a_start_reads_up_to_the_first_empty_place_and_passes_over_what_is_gone) {
    const std::string a = folder.write("a.axm", "");
    const std::string b = folder.write("b.axm", "");
    const std::string c = folder.write("c.axm", "");
    for (const std::string& path : {c, b, a}) add(path);
    std::filesystem::remove(b);
    EXPECT_THAT(read_recent_files(settings, recent_files_section), ElementsAre(a, c));
    EXPECT_EQ(kept("MRU2"), b) << "kept until the next write";
    settings.set(recent_files_section, "MRU1", "");
    EXPECT_THAT(read_recent_files(settings, recent_files_section), IsEmpty());
    EXPECT_THAT(read_recent_files(Settings(), recent_files_section), IsEmpty());
}

TEST_F(RecentFiles, a_corrupt_settings_file_is_told_once_and_the_list_lives_on_in_the_session) {
    const std::string corrupt("\x01\x02 not settings\n[[[\n", 21);
    const std::string path = folder.write("settings.conf", corrupt);
    settings = Settings(path, prompts);
    add("/a.axm");
    add("/b.axm");
    EXPECT_THAT(recent, ElementsAre("/b.axm", "/a.axm"));
    EXPECT_EQ(prompts.messages.size(), 1U);
    EXPECT_EQ(folder.read("settings.conf"), corrupt);
}

TEST_F(RecentFiles, a_caption_is_one_line_with_its_ampersands_doubled) {
    EXPECT_EQ(recent_file_caption(1, "/data/R&D/line.axm"), "1: /data/R&&D/line.axm");
    EXPECT_EQ(recent_file_caption(6, "/two\nlines.axm"), "6: /two\\nlines.axm");
}

}  // namespace
}  // namespace anomalis::flow

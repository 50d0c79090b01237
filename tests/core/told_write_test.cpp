#include "core/told_write.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/safe_file.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

TEST(WriteFileTelling, tells_once_that_other_names_keep_the_old_contents) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const std::string path = folder.write("line.axm", "old");
    std::filesystem::create_hard_link(path, folder.path("backup.axm"));
    write_file_telling(prompts, path, "new");
    EXPECT_THAT(
        prompts.messages,
        ::testing::ElementsAre("line.axm had another name (hard links). It is a new file now; what it held "
                               "before stays under the other name"));
    EXPECT_EQ(folder.read("backup.axm"), "old") << "a backup by hard links must not change with the file";
    EXPECT_EQ(folder.read("line.axm"), "new");
    write_file_telling(prompts, path, "newer");
    EXPECT_EQ(prompts.messages.size(), 1U) << "it has one name now";
    EXPECT_EQ(
        hard_link_remark("/x/a", 3),
        "a had 3 other names (hard links). It is a new file now; what it held before stays under the other "
        "names");
}

}  // namespace
}  // namespace anomalis

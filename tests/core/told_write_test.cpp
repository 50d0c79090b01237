#include "core/told_write.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "core/safe_file.h"
#include "core/threads.h"
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

TEST(WritePiecesTelling, the_pieces_are_one_file_or_the_old_one_stays) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const std::string path = folder.write("a.csv", "old");
    EXPECT_THROW(write_pieces_telling(prompts, path,
                                      [](const TextSink& put) {
                                          put("new ");
                                          throw Fault("no more");
                                      }),
                 Fault);
    EXPECT_EQ(folder.read("a.csv"), "old");
    write_pieces_telling(prompts, path, [](const TextSink& put) { put("one "), put(""), put("two"); });
    EXPECT_EQ(folder.read("a.csv"), "one two");
}

/// Twenty thousand numbered rows, with the greatest piece that they came in.
std::pair<std::string, std::size_t> numbered_rows() {
    std::size_t greatest = 0;
    std::string text;
    const auto form = [](int first, int last, std::string& rows) {
        for (int i = first; i <= last; ++i) rows += std::to_string(i) + std::string(100, '.') + "\n";
    };
    put_rows(20'000, 105, form, [&](std::string_view piece) {
        greatest = std::max(greatest, piece.size());
        text += piece;
    });
    return {text, greatest};
}

TEST(PutRows, keep_their_order_whatever_the_count_of_threads) {
    std::string expected;
    for (int i = 1; i <= 20'000; ++i) expected += std::to_string(i) + std::string(100, '.') + "\n";
    for (const int threads : {1, 3}) {
        limit_threads(threads);
        const auto [text, greatest] = numbered_rows();
        EXPECT_TRUE(text == expected) << threads;
        EXPECT_LT(greatest, expected.size() / 4) << "memory must not grow with the rows";
    }
    limit_threads(0);
    EXPECT_EQ(whole_text([](const TextSink& put) { put_rows(0, 1, nullptr, put); }), "");
}

TEST(PutRows, what_a_row_throws_is_raised) {
    const auto form = [](int first, int, std::string&) {
        if (first > 1) throw Fault("row");
    };
    EXPECT_THROW(put_rows(20'000, 100, form, [](std::string_view) {}), Fault);
}

}  // namespace
}  // namespace anomalis

#include "survey/results/line_flags.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

#include "support/temp_folder.h"
#include "survey/failure_of.h"

namespace anomalis::survey {

namespace {

using testing::HasSubstr;

}  // namespace

TEST(LineFlags, AreATableOfThreeColumnsThatReadsBack) {
    const TempFolder folder;
    LineFlags flags(folder.folder());
    flags.set("L1010", {LineFlag::accept, ""});
    flags.set("L1000", {LineFlag::look_again, "two dykes, \"or one\"\nwider"});
    flags.set("L1020", {LineFlag::reject, "-12 m of depth"});
    EXPECT_EQ(folder.read("flags.csv"),
              "line,flag,note\n"
              "L1000,look again,\"two dykes, \"\"or one\"\" wider\"\n"
              "L1010,accept,\n"
              "L1020,reject,\"'-12 m of depth\"\n");
    LineFlags again(folder.folder());
    EXPECT_TRUE(again.refresh());
    EXPECT_FALSE(again.refresh());
    for (const char* line : {"L1000", "L1010", "L1020", "L1030"}) EXPECT_EQ(again.of(line), flags.of(line));
    EXPECT_EQ(again.of("L1000").note, "two dykes, \"or one\" wider");
    EXPECT_EQ(again.of("L1020").note, "-12 m of depth");
}

TEST(LineFlags, KeepWhatAnotherProgramWroteMeanwhile) {
    const TempFolder folder;
    LineFlags mine(folder.folder()), others(folder.folder());
    mine.set("A", {LineFlag::accept, ""});
    others.set("B", {LineFlag::reject, "noise"});
    mine.set("C", {LineFlag::look_again, ""});
    EXPECT_EQ(mine.of("B").note, "noise");
    EXPECT_TRUE(others.refresh());
    EXPECT_EQ(others.of("A").flag, LineFlag::accept);
    EXPECT_EQ(others.of("C").flag, LineFlag::look_again);
    EXPECT_FALSE(mine.replace("B", {LineFlag::accept, ""}, {}));
    EXPECT_EQ(mine.of("B").note, "noise");
}

TEST(LineFlags, KeepColumnsAndLinesThatTheyDoNotKnow) {
    const TempFolder folder;
    folder.write("flags.csv", "\xEF\xBB\xBFwho;Line;Flag\r\nAnna;Z9;Accept\r\nBo;A1;\r\n");
    LineFlags flags(folder.folder());
    flags.set("B2", {LineFlag::reject, "x"});
    EXPECT_EQ(folder.read("flags.csv"), "line,flag,note,who\nA1,,,Bo\nB2,reject,x,\nZ9,accept,,Anna\n");
    flags.set("B2", {});
    EXPECT_THAT(folder.read("flags.csv"), testing::Not(HasSubstr("B2")));
}

TEST(LineFlags, ThatAreDamagedAreToldAndLeftAsTheyAre) {
    for (const auto& [text, told] :
         {std::pair("line,flag,note\nA,maybe,\n", "row 2: \"maybe\" is no flag"),
          std::pair("name,flag\nA,accept\n", "has no column \"line\""),
          std::pair("line,flag,note\nA,accept,\n\nA,reject,\n", "row 4: line A stands there twice"),
          std::pair("line,flag,note\n,accept,\n", "row 2: names no line")}) {
        const TempFolder folder;
        const std::string path = folder.write("flags.csv", text);
        LineFlags flags(folder.folder());
        const std::string said = failure_of([&] { flags.refresh(); });
        EXPECT_THAT(said, HasSubstr(path));
        EXPECT_THAT(said, HasSubstr(told));
        EXPECT_THAT(failure_of([&] { flags.set("B", {LineFlag::accept, ""}); }), HasSubstr(told));
        EXPECT_EQ(folder.read("flags.csv"), text);
        EXPECT_EQ(flags.of("B"), LineMark{});
    }
}

TEST(LineFlags, ThatCannotBeWrittenChangeNothing) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("flags.csv"));
    LineFlags flags(folder.folder());
    EXPECT_THAT(failure_of([&] { flags.set("A", {LineFlag::accept, ""}); }), HasSubstr("flags.csv"));
    EXPECT_EQ(flags.of("A"), LineMark{});
    EXPECT_EQ(folder.entries(), 1);
}

}  // namespace anomalis::survey

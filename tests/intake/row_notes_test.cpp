#include "intake/row_notes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/workspace.h"
#include "intake/location_file.h"
#include "intake/read_rows.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::intake {
namespace {

using ::testing::HasSubstr;

struct Notes {
    explicit Notes(const std::string& text) {
        Workspace workspace;
        DataDefinition& d = workspace.definition;
        d.data_file = folder.write("line.dat", text);
        d.x_column = 1;
        d.y_column = 2;
        d.mag_column = 3;
        ScriptedPrompts prompts;
        DataRows rows;
        EXPECT_EQ(read_location_file(workspace, rows, prompts, &notes), 0);
        EXPECT_TRUE(prompts.messages.empty());
        tell_rows(notes, d.data_file, faults);
    }
    std::string text(std::size_t i) const { return faults.entries()[i].text; }
    Severity severity(std::size_t i) const { return faults.entries()[i].severity; }

    TempFolder folder;
    RowNotes notes;
    Faults faults;
};

TEST(RowNotes, a_whole_file_has_none) {
    const Notes read("head\n1 2 3\n! a word\n\n4 5 6\n");
    EXPECT_TRUE(read.faults.empty());
    EXPECT_EQ(read.notes.records, 2);
    EXPECT_EQ(read.notes.last_line, 5);
}

TEST(RowNotes, the_first_row_that_is_passed_over_is_named_and_the_others_counted) {
    const Notes read("head\n1 2 3\n4 5 abc\n7 x 9\n10 11 12\n");
    ASSERT_EQ(read.faults.entries().size(), 1U);
    EXPECT_THAT(read.text(0), HasSubstr("line.dat, line 3: the row was passed over, \"abc\" stands"));
    EXPECT_THAT(read.text(0), HasSubstr("(2 such rows)"));
    EXPECT_EQ(read.severity(0), Severity::remark);
}

TEST(RowNotes, a_file_without_a_single_record_is_doubted) {
    const Notes words("head\n1 2 abc\n");
    ASSERT_EQ(words.faults.entries().size(), 2U);
    EXPECT_THAT(words.text(0), HasSubstr("No stations were found in "));
    EXPECT_THAT(words.text(1), HasSubstr("line 2: the row was passed over"));
    EXPECT_EQ(words.severity(0), Severity::doubt);
    EXPECT_EQ(words.severity(1), Severity::doubt);
    EXPECT_EQ(Notes("").faults.entries().size(), 1U);
}

TEST(RowNotes, a_last_row_that_is_short_is_doubted_and_one_before_it_remarked) {
    const Notes middle("head\n1 2 3\n4 5\n7 8 9\n");
    ASSERT_EQ(middle.faults.entries().size(), 1U);
    EXPECT_THAT(middle.text(0), HasSubstr("line 3: the row ends before its last column"));
    EXPECT_EQ(middle.severity(0), Severity::remark);
    const Notes last("head\n1 2 3\n4 5 6\n7 8\n");
    ASSERT_EQ(last.faults.entries().size(), 1U);
    EXPECT_THAT(last.text(0), HasSubstr("line 4: the last row ends before its last column"));
    EXPECT_EQ(last.severity(0), Severity::doubt);
}

TEST(RowNotes, a_last_row_that_the_end_of_the_file_cuts_is_passed_over_and_doubted) {
    for (const char* end : {"7 8", "7,8", "7", "7 8 "}) {
        const Notes read(std::string("head\n1 2 3\n4 5 6\n") + end);
        ASSERT_EQ(read.faults.entries().size(), 1U) << end;
        EXPECT_THAT(read.text(0), HasSubstr("line 4: the last row was passed over, it has no line end"));
        EXPECT_EQ(read.severity(0), Severity::doubt);
        EXPECT_EQ(read.notes.records, 2);
        EXPECT_EQ(read.notes.cut_line, 4);
    }
    const Notes alone("head\n1 2");
    ASSERT_EQ(alone.faults.entries().size(), 2U);
    EXPECT_THAT(alone.text(0), HasSubstr("No stations were found"));
}

TEST(RowNotes, an_empty_field_at_the_end_is_passed_over_like_one_in_the_middle) {
    const Notes read("head\n1,2,3\n4,5,\n6,,7\n8,9,10\n");
    EXPECT_EQ(read.notes.records, 2);
    EXPECT_EQ(read.notes.dropped, 2);
    EXPECT_EQ(read.notes.short_rows, 0);
    ASSERT_EQ(read.faults.entries().size(), 1U);
    EXPECT_THAT(read.text(0), HasSubstr("line 3: the row was passed over, nothing stands where a number"));
}

TEST(RowNotes, a_last_row_without_an_end_is_remarked) {
    const Notes read("head\n1 2 3\n4 5 6");
    ASSERT_EQ(read.faults.entries().size(), 1U);
    EXPECT_THAT(read.text(0), HasSubstr("line 3: the last row has no line end"));
    EXPECT_EQ(read.severity(0), Severity::remark);
}

TEST(RowNotes, a_file_that_was_not_read_says_nothing) {
    Faults faults;
    tell_rows(RowNotes(), "line.dat", faults);
    EXPECT_TRUE(faults.empty());
}

}  // namespace
}  // namespace anomalis::intake

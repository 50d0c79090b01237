#include "intake/record_reader.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "intake/data_blocks.h"
#include "support/survey.h"
#include "transform/transform.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Change = std::function<void(Workspace&)>;

/// The records of a whole file.
class FileRecords {
  public:
    explicit FileRecords(const Workspace& w)
        : blocks_(w.definition.data_file), reader_(w.definition, w.transform, blocks_.style()) {}

    bool next() {
        while (!reader_.next()) {
            if (!blocks_.next(block_)) return false;
            reader_.begin(block_);
        }
        return true;
    }
    const RecordValues& values() const { return reader_.values(); }
    float single(Quantity quantity) const { return reader_.single(quantity); }

  private:
    DataBlocks blocks_;
    DataBlock block_;
    RecordReader reader_;
};

/// East, north and mag of every record.
std::vector<std::array<double, 3>> records_of(
    std::string_view contents, const Change& change = [](Workspace&) {}) {
    Survey survey(contents);
    change(survey.workspace);
    FileRecords reader(survey.workspace);
    std::vector<std::array<double, 3>> records;
    while (reader.next())
        records.push_back(
            {reader.values()[quantity_x], reader.values()[quantity_y], reader.values()[quantity_mag]});
    return records;
}

std::array<double, 3> record(double x, double y, double mag) {
    return {x, y, mag};
}

TEST(Records, separators_of_all_kinds_split_a_line) {
    EXPECT_THAT(
        records_of("1 2 3\n4\t5\t6\n7,8,9\n10;11;12\n13'14'15\n 16 ,\t17 ; 18 \n\"19\" \"20\" \"21\"\n"),
        ElementsAre(record(1, 2, 3), record(4, 5, 6), record(7, 8, 9), record(10, 11, 12), record(13, 14, 15),
                    record(16, 17, 18), record(19, 20, 21)));
}

TEST(Records, a_line_of_blanks_and_tabs_is_blank_whatever_ends_the_lines) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        std::string text;
        for (const char* line : {"1 2 3", "\t", " \t \t ", "", "\t! 9 9 9", " \t\\ 9 9 9", "\t4 5 6\t"})
            text += std::string(line) + end;
        EXPECT_THAT(records_of(text), ElementsAre(record(1, 2, 3), record(4, 5, 6)));
        // Comments do not use up the step, blank lines do: the second group ends with the last line.
        EXPECT_THAT(records_of(text, [](Workspace& w) { w.definition.read_increment = 2; }),
                    ElementsAre(record(4, 5, 6)));
    }
}

TEST(Records, header_lines_of_any_kind_are_skipped) {
    EXPECT_THAT(
        records_of("! comment\n\n1 2 3\n4 5 6\n", [](Workspace& w) { w.definition.first_data_line = 4; }),
        ElementsAre(record(4, 5, 6)));
    EXPECT_THAT(records_of("1 2 3\n", [](Workspace& w) { w.definition.first_data_line = 2147483647; }),
                IsEmpty());
}

TEST(Records, a_record_with_a_star_in_a_wanted_column_is_dropped) {
    EXPECT_THAT(records_of("1 2 3\n4 5 *\n7 8 9\n* * *\n"), ElementsAre(record(1, 2, 3), record(7, 8, 9)));
    EXPECT_THAT(records_of("1 2 * 3\n", [](Workspace& w) { w.definition.mag_column = 4; }),
                ElementsAre(record(1, 2, 3)));
}

TEST(Records, numbers_out_of_range_and_words_for_numbers_drop_the_record) {
    EXPECT_THAT(records_of("1 2 1e999\n1 2 nan\n1 2 inf\n1 2 -infinity\n1 2 0x10\n1 2 1e308\n"),
                ElementsAre(record(1, 2, 1e308)));
}

TEST(Records, with_a_step_of_2_the_second_line_of_each_group_is_the_record) {
    const Change by_two = [](Workspace& w) { w.definition.read_increment = 2; };
    EXPECT_THAT(records_of("10 0 0\n11 0 0\n12 0 0\n13 0 0\n", by_two),
                ElementsAre(record(11, 0, 0), record(13, 0, 0)));
    EXPECT_THAT(records_of("10 0 0\n11 0 0\n12 0 0\n", by_two), ElementsAre(record(11, 0, 0)));
}

TEST(Records, blank_lines_use_up_the_step) {
    const Change by_two = [](Workspace& w) { w.definition.read_increment = 2; };
    EXPECT_THAT(records_of("\n11 0 0\n12 0 0\n   \n14 0 0\n15 0 0\n16 0 0\n", by_two),
                ElementsAre(record(11, 0, 0), record(14, 0, 0), record(16, 0, 0)));
    EXPECT_THAT(records_of("1 0 0\n\n   \n2 0 0\n"), ElementsAre(record(1, 0, 0), record(2, 0, 0)));
}

TEST(Records, comments_may_be_indented_and_do_not_count_against_the_step) {
    EXPECT_THAT(records_of("1 0 0\n! c\n  \\ 9 9 9\n\t! c\n2 0 0\n3 0 0\n",
                           [](Workspace& w) { w.definition.read_increment = 2; }),
                ElementsAre(record(2, 0, 0)));
    EXPECT_THAT(records_of("!1 0 0\n2 0 0\n"), ElementsAre(record(2, 0, 0)));
}

TEST(Records, comments_and_dropped_records_count_against_the_last_line) {
    const auto until = [](int line) { return [line](Workspace& w) { w.definition.last_data_line = line; }; };
    EXPECT_THAT(records_of("1 0 0\n! c\n3 0 0\n4 0 0\n", until(3)),
                ElementsAre(record(1, 0, 0), record(3, 0, 0)));
    // The end is tested after an accepted record only.
    EXPECT_THAT(records_of("1 0 0\n2 0 *\n3 0 0\n4 0 0\n", until(2)),
                ElementsAre(record(1, 0, 0), record(3, 0, 0)));
    EXPECT_THAT(records_of("1 0 0\n2 0 0\n", until(-5)), ElementsAre(record(1, 0, 0)));
}

TEST(Records, skipped_lines_do_not_count_against_the_last_line) {
    EXPECT_THAT(records_of("h\nh\n1 0 0\n2 0 0\n3 0 0\n",
                           [](Workspace& w) {
                               w.definition.first_data_line = 3;
                               w.definition.last_data_line = 2;
                           }),
                ElementsAre(record(1, 0, 0), record(2, 0, 0)));
}

TEST(Records, a_short_row_keeps_the_earlier_values) {
    EXPECT_THAT(records_of("1 2 3\n4 5\n6\n"),
                ElementsAre(record(1, 2, 3), record(4, 5, 3), record(6, 5, 3)));
    EXPECT_THAT(records_of("4 5\n1 2 3\n"), ElementsAre(record(4, 5, -1e32), record(1, 2, 3)));
    EXPECT_THAT(records_of("1,2,3\n4,5\n"), ElementsAre(record(1, 2, 3), record(4, 5, 3)));
}

TEST(Records, a_dropped_record_leaves_what_it_had_taken) {
    EXPECT_THAT(records_of("1 2 3\n4 * 6\n,7\n7 8\n"), ElementsAre(record(1, 2, 3), record(7, 8, 3)));
    EXPECT_THAT(records_of("1 2 3\n4 5 *\n6\n"), ElementsAre(record(1, 2, 3), record(6, 5, 3)));
}

TEST(Records, an_empty_field_is_no_number) {
    EXPECT_THAT(records_of("1,,3\n4,5,6\n"), ElementsAre(record(4, 5, 6)));
    for (const char* empty_end : {"7,8,", "7;8;", "7,8, ", "7,8,\t", "7 8 ,", "\"7\",\"8\","})
        EXPECT_THAT(records_of(std::string("1,2,3\n") + empty_end + "\n4,5,6\n"),
                    ElementsAre(record(1, 2, 3), record(4, 5, 6)))
            << empty_end;
}

TEST(Records, a_comma_behind_the_last_wanted_column_is_no_empty_field_of_it) {
    EXPECT_THAT(records_of("1,2,3,\n4,5,6\n"), ElementsAre(record(1, 2, 3), record(4, 5, 6)));
    // Column 3 is empty and nobody wants it; column 5 the row does not have.
    EXPECT_THAT(records_of("1,2,9,9,3\n4,5,\n", [](Workspace& w) { w.definition.mag_column = 5; }),
                ElementsAre(record(1, 2, 3), record(4, 5, 3)));
}

TEST(Records, a_row_that_the_end_of_the_file_cuts_is_none) {
    for (const char* line_end : {"\n", "\r\n", "\r"}) {
        const std::string text = std::string("1 2 3") + line_end + "4 5 6" + line_end + "7 8";
        EXPECT_THAT(records_of(text), ElementsAre(record(1, 2, 3), record(4, 5, 6)));
        EXPECT_THAT(records_of(text + line_end),
                    ElementsAre(record(1, 2, 3), record(4, 5, 6), record(7, 8, 6)));
        EXPECT_THAT(records_of(text + " 9"), ElementsAre(record(1, 2, 3), record(4, 5, 6), record(7, 8, 9)));
    }
}

TEST(Records, columns_may_be_shared) {
    Survey survey("1 2 3\n");
    DataDefinition& d = survey.workspace.definition;
    d.z_column = d.x_column;
    d.dtm_column = d.x_column;
    d.grav_column = d.mag_column;
    FileRecords reader(survey.workspace);
    ASSERT_TRUE(reader.next());
    EXPECT_THAT(reader.values(), ElementsAre(1, 2, -1e32, 1, 3, 3));
}

TEST(Records, a_column_beyond_every_row_stays_unread) {
    EXPECT_THAT(records_of("1 2 3\n", [](Workspace& w) { w.definition.mag_column = 2147483647; }),
                ElementsAre(record(1, 2, -1e32)));
}

TEST(Records, the_transform_changes_the_values_that_a_short_row_keeps) {
    Survey survey("1 2 3 10\n4 5 6 20\n7 8 9\n* 8 9 30\n7 8 9\n");
    Workspace& w = survey.workspace;
    w.definition.z_column = 4;
    w.transform.elevation_shift = 1;
    w.transform.x_offset = 100;
    transform::update_transform(w.transform);
    FileRecords reader(survey.workspace);
    std::vector<std::array<double, 2>> seen;
    while (reader.next()) seen.push_back({reader.values()[quantity_x], reader.values()[quantity_z]});
    EXPECT_THAT(seen, ElementsAre(std::array{101.0, 11.0}, std::array{104.0, 21.0}, std::array{107.0, 22.0},
                                  std::array{107.0, 23.0}));
}

TEST(Records, an_inactive_transform_is_not_applied) {
    EXPECT_THAT(records_of("1 2 3\n", [](Workspace& w) { w.transform.x_offset = 100; }),
                ElementsAre(record(1, 2, 3)));
}

TEST(Records, line_ends_are_found_by_the_head_of_the_file) {
    const auto both = ElementsAre(record(1, 2, 3), record(4, 5, 6));
    EXPECT_THAT(records_of("1 2 3\r4 5 6\r"), both);
    EXPECT_THAT(records_of("1 2 3\r\n4 5 6\r\n"), both);
    EXPECT_THAT(records_of("1 2 3\n4 5 6"), both);
    EXPECT_THAT(records_of("\xEF\xBB\xBF"
                           "1 2 3\n4 5 6\n"),
                both);
    EXPECT_THAT(records_of("\xEF\xBB\xBF"
                           "1 2 3\r\n4 5 6\r\n"),
                both);
}

TEST(Records, mixed_line_ends_lose_only_the_lines_that_run_together) {
    // A CR near the start: a lone LF ends no line, so the third number of "2" is "0\n3".
    EXPECT_THAT(records_of("1 0 0\r\n2 0 0\n3 0 0\r4 0 0\r\n"),
                ElementsAre(record(1, 0, 0), record(4, 0, 0)));
    const std::string comment = "!" + std::string(600, 'c') + "\n";
    EXPECT_THAT(records_of(comment + "1 0 0\r\n2 0 0\n3 0 0\r4 0 0\r\n"),
                ElementsAre(record(1, 0, 0), record(2, 0, 0), record(3, 0, 0), record(4, 0, 0)));
}

TEST(Records, a_value_too_large_for_a_single_is_a_fault_with_file_and_line) {
    Survey survey("1 2 3\n! comment\n1 2 1e39\n");
    FileRecords reader(survey.workspace);
    ASSERT_TRUE(reader.next());
    EXPECT_EQ(reader.single(quantity_mag), 3.0F);
    ASSERT_TRUE(reader.next());
    try {
        reader.single(quantity_mag);
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(std::string(fault.what()),
                  "Overflow (" + survey.workspace.definition.data_file + ", line 3)");
    }
}

TEST(Records, a_transform_that_overflows_is_a_fault) {
    Survey survey("1 2 3\n1e308 2 3\n");
    survey.workspace.transform.x_scale = 100;
    transform::update_transform(survey.workspace.transform);
    FileRecords reader(survey.workspace);
    ASSERT_TRUE(reader.next());
    EXPECT_THROW(reader.next(), Fault);
}

}  // namespace
}  // namespace anomalis::intake

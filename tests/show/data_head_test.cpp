#include "show/data_head.h"

#include <gtest/gtest.h>

#include "core/workspace.h"
#include "intake/definition.h"

namespace anomalis::show {

namespace {

intake::FileHead head_of(std::vector<std::string> lines) {
    intake::FileHead head;
    head.lines = std::move(lines);
    return head;
}

DataDefinition columns(int x, int y, int mag) {
    DataDefinition definition;
    definition.x_column = x;
    definition.y_column = y;
    definition.mag_column = mag;
    return definition;
}

std::string ascii(const std::u16string& text) {
    return {text.begin(), text.end()};
}

std::string cell(const HeadLine& line, std::size_t i) {
    const HeadCell& place = line.cells.at(i);
    return ascii(line.text.substr(static_cast<std::size_t>(place.begin),
                                  static_cast<std::size_t>(place.end - place.begin)));
}

std::vector<HeadLineKind> kinds(const DataHead& head) {
    std::vector<HeadLineKind> found;
    for (const HeadLine& line : head.lines) found.push_back(line.kind);
    return found;
}

using K = HeadLineKind;

}  // namespace

TEST(DataHead, columns_that_stand_under_each_other_are_shown_as_they_are) {
    const DataHead head = lay_out_data_head(
        columns(1, 2, 3), head_of({"  east  north   mag", "  100   2000   51.5", "   90   2010    9.5"}));
    EXPECT_EQ(ascii(head.lines[0].text), "  east  north   mag");
    EXPECT_EQ(ascii(head.lines[2].text), "   90   2010    9.5");
    ASSERT_EQ(head.columns.size(), 3U);
    EXPECT_EQ(head.columns[0].begin, 2);
    EXPECT_EQ(head.columns[0].end, 5);
    EXPECT_EQ(cell(head.lines[2], 2), "9.5");
    EXPECT_EQ(head.columns[2].quantities, std::vector{HeadQuantity::mag});
    EXPECT_EQ(kinds(head), (std::vector{K::skipped, K::record, K::record}));
}

TEST(DataHead, ragged_columns_are_spread) {
    const DataHead head =
        lay_out_data_head(columns(1, 2, 3), head_of({"x,y,field", "1,2000,51000.25", "100000,3,\"7 5\""}));
    EXPECT_EQ(ascii(head.lines[0].text), "x,       y,     field");
    EXPECT_EQ(ascii(head.lines[1].text), "1,       2000,  51000.25");
    EXPECT_EQ(ascii(head.lines[2].text), "100000,  3,     \"7 5\"");
    EXPECT_EQ(head.columns[1].begin, 9);
    EXPECT_EQ(head.lines[2].kind, K::dropped) << "a quoted pair of numbers is none";
}

TEST(DataHead, lines_are_sorted_as_the_reader_takes_them) {
    DataDefinition definition = columns(1, 2, 3);
    definition.read_increment = 2;
    const DataHead head =
        lay_out_data_head(definition, head_of({"header", "1 1 1", "! note", "2 2 2", "3 3 3", "",
                                               "  \\ indented note", "4 4 4", "5 5 *", "6 6 *"}));
    EXPECT_EQ(kinds(head),
              (std::vector{K::skipped, K::stepped_over, K::comment, K::record, K::stepped_over,
                           K::stepped_over, K::comment, K::record, K::stepped_over, K::dropped}));
}

TEST(DataHead, the_final_line_counts_from_the_first_data_line_and_counts_comments) {
    DataDefinition definition = columns(1, 2, 3);
    definition.first_data_line = 3;
    definition.last_data_line = 3;
    const DataHead head =
        lay_out_data_head(definition, head_of({"a", "b", "1 1 1", "! note", "2 2 2", "3 3 3", "! note"}));
    EXPECT_EQ(kinds(head),
              (std::vector{K::skipped, K::skipped, K::record, K::comment, K::record, K::beyond, K::comment}));
}

TEST(DataHead, one_column_may_feed_several_quantities_but_places_go_first) {
    DataDefinition definition = columns(1, 1, 2);
    definition.z_column = 2;
    definition.dtm_column = 2;
    const DataHead head = lay_out_data_head(definition, head_of({"h", "1 2"}));
    EXPECT_EQ(head.columns[0].quantities, std::vector{HeadQuantity::x});
    EXPECT_EQ(head.columns[1].quantities,
              (std::vector{HeadQuantity::sensor, HeadQuantity::dtm, HeadQuantity::mag}));
}

TEST(DataHead, tabs_are_spread_and_other_controls_are_dots) {
    const DataHead head = lay_out_data_head(columns(1, 2, 3), head_of({"a\tb", "1\t22\t3", "11\t2\x01\t33"}));
    EXPECT_EQ(ascii(head.lines[1].text), "1       22      3");
    EXPECT_EQ(head.lines[2].text, u"11      2\u00B7      33");
    EXPECT_EQ(cell(head.lines[2], 2), "33");
}

TEST(DataHead, what_is_not_seen_takes_one_column_each_so_that_columns_still_stand_under_each_other) {
    const std::vector<std::string> odd{"\x1B",         "\x7F",         "\x9B",        "\xC2\x9B",
                                       "\xE2\x80\xAE", "\xE2\x81\xA6", "\xE2\x80\xA8"};
    for (const std::string& control : odd) {
        const DataHead head = lay_out_data_head(
            columns(1, 2, 3), head_of({"east north mag", "1000  2000  52", control + "000  2000  53"}));
        EXPECT_EQ(head.lines[2].text, u"\u00B7000  2000  53") << control.size();
        ASSERT_EQ(head.columns.size(), 3U);
        EXPECT_EQ(head.lines[2].cells.at(1).begin, head.lines[1].cells.at(1).begin);
        EXPECT_EQ(cell(head.lines[2], 2), "53");
    }
}

TEST(DataHead, letters_of_any_encoding_are_shown) {
    const DataHead head = lay_out_data_head(columns(1, 2, 3), head_of({"H\xc3\xb6he \xb0",
                                                                       "\xef\xbb\xbf"
                                                                       "1 2 3"}));
    EXPECT_EQ(head.lines[0].text, u"Höhe °");
    EXPECT_EQ(head.lines[1].text, u"1 2 3");
}

TEST(DataHead, lines_of_blanks_and_tabs_and_comments_behind_tabs_are_seen_as_the_reader_sees_them) {
    const DataHead head = lay_out_data_head(
        columns(1, 2, 3), head_of({"h", "1 1 1", "\t \t", "\t! note", " \t\\ note", "\t2 2 2"}));
    EXPECT_EQ(kinds(head),
              (std::vector{K::skipped, K::record, K::stepped_over, K::comment, K::comment, K::record}));
}

TEST(DataHead, a_quote_alone_is_a_record_as_for_the_reader) {
    const DataHead head = lay_out_data_head(columns(2, 3, 4), head_of({"h", "a 1 1 1", "\"", "a 2 2 2"}));
    EXPECT_EQ(kinds(head), (std::vector{K::skipped, K::record, K::record, K::record}));
}

TEST(DataHead, odd_files_do_no_harm) {
    EXPECT_TRUE(lay_out_data_head(columns(1, 2, 3), {}).columns.empty());
    const DataHead quotes =
        lay_out_data_head(columns(1, 2, 3), head_of({"\"", "\"", "1 \"", "\"\"", ",,,", "\t"}));
    EXPECT_EQ(quotes.lines.size(), 6U);
    const DataHead long_line = lay_out_data_head(columns(1, 2, 3), head_of({"h", std::string(11264, '7')}));
    EXPECT_EQ(long_line.lines[1].text.size(), 2000U);
    std::string wide;
    for (int i = 0; i < 900; ++i) wide += "1 ";
    EXPECT_LE(lay_out_data_head(columns(1, 2, 3), head_of({"h", wide})).columns.size(), 200U);
}

}  // namespace anomalis::show

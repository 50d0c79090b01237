#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intake/formats/byte_source.h"
#include "intake/formats/survey_file.h"

namespace anomalis::intake {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsNan;

const std::string head = "line,east,north,height,tmi\n";
const std::string three_rows = head +
                               "10,450000.5,7550000,340,52000.5\n10,450010.5,7550000,341,52010\n"
                               "20,450020.5,7550100,342,52020\n";

void expect_three_rows(const ReadSurvey& read) {
    EXPECT_THAT(read[Role::easting], ElementsAre(450000.5, 450010.5, 450020.5));
    EXPECT_THAT(read[Role::northing], ElementsAre(7550000, 7550000, 7550100));
    EXPECT_THAT(read[Role::sensor_height], ElementsAre(340, 341, 342));
    EXPECT_THAT(read[Role::mag], ElementsAre(52000.5, 52010, 52020));
    EXPECT_THAT(read.line, ElementsAre("10", "10", "20"));
    EXPECT_THAT(read.losses, IsEmpty());
}

std::string with_ends(std::string text, std::string_view end) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
        text.replace(at, 1, end);
    return text;
}

std::string as_utf16(std::string_view text, bool big, bool mark) {
    std::string wide = mark ? (big ? "\xFE\xFF" : "\xFF\xFE") : "";
    for (const char c : text) big ? (wide += '\0', wide += c) : (wide += c, wide += '\0');
    return wide;
}

std::string separated_by(std::string text, char separator) {
    for (char& c : text)
        if (c == ',') c = separator;
    return text;
}

TEST(TextTable, commas_semicolons_tabs_and_blanks) {
    for (const char separator : {',', ';', '\t', ' '}) {
        const SurveyOf survey(separated_by(three_rows, separator));
        EXPECT_EQ(survey.layout.separator, separator);
        EXPECT_EQ(survey.layout.names_row, 1);
        EXPECT_EQ(survey.layout.first_row, 2);
        expect_three_rows(survey.read());
    }
}

TEST(TextTable, blanks_and_tabs_in_any_number) {
    const SurveyOf survey(
        "line east north height tmi\n 10  450000.5 \t7550000 340 52000.5\n"
        "10 450010.5 7550000\t341 52010  \n20 450020.5   7550100 342 52020");
    expect_three_rows(survey.read());
}

TEST(TextTable, ends_of_lines_of_all_kinds_and_mixed) {
    for (const char* end : {"\n", "\r\n", "\r"})
        expect_three_rows(SurveyOf(with_ends(three_rows, end)).read());
    std::string mixed = three_rows;
    mixed.replace(mixed.find('\n'), 1, "\r\n");
    mixed.replace(mixed.rfind("\n20"), 1, "\r");
    const ReadSurvey read = SurveyOf(mixed).read();
    expect_three_rows(read);
    EXPECT_THAT(read.file_line, ElementsAre(2, 3, 4));
}

TEST(TextTable, utf8_with_a_mark_utf16_of_both_kinds) {
    expect_three_rows(SurveyOf("\xEF\xBB\xBF" + three_rows).read());
    for (const bool big : {false, true}) {
        for (const bool mark : {true, false}) {
            const SurveyOf survey(as_utf16(with_ends(three_rows, "\r\n"), big, mark));
            EXPECT_EQ(survey.layout.encoding, big ? Encoding::utf16_big : Encoding::utf16_little);
            expect_three_rows(survey.read());
        }
    }
}

TEST(TextTable, latin1_names_become_utf8) {
    const SurveyOf survey(
        "Linie,x,y,H\xF6he,mag\n\xC4"
        "1,450000,7550000,340,5\n\xC4"
        "1,450010,7550000,341,6\n"
        "\xC4"
        "1,450020,7550000,341,6.5\n\xC4"
        "1,450030,7550000,341,7\n");
    EXPECT_EQ(survey.layout.encoding, Encoding::latin1);
    EXPECT_EQ(survey.layout.columns[3].name, "H\xC3\xB6he");
    EXPECT_THAT(survey.read().line_names, ElementsAre("\xC3\x84"
                                                      "1"));
}

TEST(TextTable, decimal_commas) {
    for (const char* separator : {";", "\t", " "}) {
        std::string text =
            "line;east;north;height;tmi\n10;450000,5;7550000;340;52000,5\n"
            "10;450010,5;7550000;341;52010,0\n20;450020,5;7550100;342;52020,0\n";
        for (char& c : text)
            if (c == ';') c = *separator;
        const SurveyOf survey(text);
        EXPECT_TRUE(survey.layout.decimal_comma);
        expect_three_rows(survey.read());
    }
}

TEST(TextTable, decimal_commas_in_quotes_between_commas) {
    const SurveyOf survey(
        "line,east,north,tmi\n10,\"450000,5\",\"7550000,0\",\"-5,25\"\n"
        "10,\"450010,5\",\"7550000,0\",\"-5,5\"\n");
    EXPECT_TRUE(survey.layout.decimal_comma);
    EXPECT_THAT(survey.read()[Role::mag], ElementsAre(-5.25, -5.5));
}

TEST(TextTable, quotes_around_names_numbers_and_lines_with_separators) {
    const SurveyOf survey(
        "\"line\",\"east\",\"north\",\"tmi\"\n\"L 10, west\",\"450000\",7550000,\"5\"\n"
        "\"L 10, west\",450010,\"7550000\",6\n");
    EXPECT_THAT(survey.read().line_names, ElementsAre("L 10, west"));
    EXPECT_THAT(survey.read()[Role::mag], ElementsAre(5, 6));
}

TEST(TextTable, comments_of_all_kinds_are_passed_over) {
    const SurveyOf survey("# flown 1990\n! by hand\n/ over land\n\\ and sea\n% with\n// care\n" + head +
                          "10,450000.5,7550000,340,52000.5\n# a pause\n10,450010.5,7550000,341,52010\n\n"
                          "20,450020.5,7550100,342,52020\n");
    expect_three_rows(survey.read());
    EXPECT_EQ(survey.layout.first_row, 8);
}

TEST(TextTable, names_may_stand_in_a_comment_and_units_below_them) {
    const SurveyOf survey(
        "# system EPSG:32754\n# line, east, north, height, tmi\n# -, m, m, ft, nT\n"
        "10,450000.5,7550000,1000,52000.5\n10,450010.5,7550000,1000,52010\n");
    EXPECT_EQ(survey.layout.names_row, 2);
    EXPECT_EQ(survey.layout.coordinate_system, "EPSG:32754");
    EXPECT_EQ(survey.layout.columns[3].unit_text, "ft");
    EXPECT_THAT(survey.read()[Role::sensor_height], ElementsAre(DoubleEq(304.8), DoubleEq(304.8)));
}

TEST(TextTable, units_in_brackets_and_names_of_several_words) {
    const SurveyOf survey(
        "Line No;East (m);North (m);Sensor height [ft];Mag (nT)\n10;450000.5;7550000;1000;52000.5\n"
        "10;450010.5;7550000;1000;52010\n");
    EXPECT_EQ(survey.layout.columns[3].name, "Sensor height");
    EXPECT_THAT(survey.read()[Role::sensor_height], ElementsAre(DoubleEq(304.8), DoubleEq(304.8)));
}

TEST(TextTable, two_columns_of_one_name_are_told_apart) {
    const SurveyOf survey("east,north,mag,mag\n450000,7550000,5,6\n450010,7550000,6,7\n");
    EXPECT_EQ(survey.layout.columns[2].name, "mag");
    EXPECT_EQ(survey.layout.columns[3].name, "mag (2)");
    EXPECT_TRUE(survey.has_remark("Two columns are named \"mag\""));
    EXPECT_THAT(survey.read()[Role::mag], ElementsAre(5, 6));
}

TEST(TextTable, an_empty_field_is_no_value_also_at_the_end_of_a_row) {
    const ReadSurvey read =
        SurveyOf(head + "10,450000,7550000,340,52000\n10,450010,7550000,,52010\n10,450020,7550000,342,\n")
            .read();
    EXPECT_THAT(read[Role::sensor_height], ElementsAre(340, IsNan(), 342));
    EXPECT_THAT(read[Role::mag], ElementsAre(52000, 52010, IsNan()));
    EXPECT_THAT(read.losses, IsEmpty());
}

TEST(TextTable, nulls_in_all_spellings_are_no_readings_of_that_channel_alone) {
    std::string text = "east,north,mag,grav\n";
    int row = 0;
    for (const char* null :
         {"*", "NaN", "-99999", "-99999.99", "-9999999", "-1e32", "-1.0E+32", "", "N/A", "-9999"})
        text += std::to_string(450000 + 10 * row++) + ",7550000," + null + ",-12.5\n";
    text += "450200,7550000,5,-11.25\n450210,7550000,6,-10\n";
    const ReadSurvey read = SurveyOf(text).read();
    ASSERT_EQ(read.rows(), 12U);
    for (std::size_t i = 0; i < 10; ++i) EXPECT_THAT(read[Role::mag][i], IsNan()) << i;
    EXPECT_EQ(read[Role::mag][10], 5);
    for (const double value : read[Role::grav]) EXPECT_FALSE(std::isnan(value));
}

TEST(TextTable, a_dummy_beyond_the_rows_that_were_looked_at_is_none_either) {
    std::string text = "east,north,mag\n";
    for (int i = 0; i < 12000; ++i)
        text += std::to_string(450000 + i) + ",7550000," + std::to_string(i % 100) + "\n";
    text += "462001,7550000,-99999\n462002,7550000,5\n";
    const ReadSurvey read = SurveyOf(text).read();
    ASSERT_EQ(read.rows(), 12002U);
    EXPECT_THAT(read[Role::mag][12000], IsNan());
}

TEST(TextTable, the_nulls_of_a_column_can_be_changed) {
    SurveyOf survey(
        "east,north,mag\n450000,7550000,-9999\n450010,7550000,77\n450020,7550000,5\n450030,7550000,6\n");
    survey.column("mag").nulls = {77};
    EXPECT_THAT(survey.read()[Role::mag], ElementsAre(-9999, IsNan(), 5, 6));
}

TEST(TextTable, a_word_where_a_number_is_wanted_drops_the_row_and_says_so) {
    const ReadSurvey read =
        SurveyOf(head +
                 "10,450000,7550000,340,52000\n10,450010,here,341,52010\n10,450020,7550000,342,high\n"
                 "10,450030,7550000,343,52030\n10,450040,there,343,52030\n")
            .read();
    EXPECT_THAT(read.file_line, ElementsAre(2, 5));
    ASSERT_EQ(read.losses.size(), 2U);
    EXPECT_EQ(read.losses[0].why, "\"here\" stands where a number is wanted");
    EXPECT_EQ(read.losses[0].column, "north");
    EXPECT_EQ(read.losses[0].count, 2);
    EXPECT_EQ(read.losses[0].first_line, 3);
    EXPECT_EQ(read.losses[1].column, "tmi");
}

TEST(TextTable, a_row_that_is_too_short_is_dropped_and_a_cut_one_at_the_end_is_called_so) {
    const ReadSurvey read = SurveyOf(head +
                                     "10,450000,7550000,340,52000\n10,450010\n10,450020,7550000,342,52020\n"
                                     "10,450030,75500")
                                .read();
    EXPECT_THAT(read.file_line, ElementsAre(2, 4));
    ASSERT_EQ(read.losses.size(), 2U);
    EXPECT_EQ(read.losses[0].why, "a field is missing");
    EXPECT_EQ(read.losses[0].column, "north");
    EXPECT_EQ(read.losses[1].why, "the row is cut at the end of the file");
    EXPECT_EQ(read.losses[1].first_line, 5);
}

TEST(TextTable, fixed_width_where_blanks_stand_for_missing_values_and_numbers_touch) {
    const SurveyOf survey(
        "  LINE      EAST     NORTH      MAG     GRAV\n"
        "    10  450000.0 7550000.0  52000.5   -12.50\n"
        "    10  450010.0 7550000.0            -12.75\n"
        "    10  450020.0 7550000.0-99999.99   -13.00\n"
        "    20  450030.0 7550010.0  52003.5   -13.25\n");
    EXPECT_TRUE(survey.layout.fixed_width);
    const ReadSurvey read = survey.read();
    EXPECT_THAT(read[Role::mag], ElementsAre(52000.5, IsNan(), IsNan(), 52003.5));
    EXPECT_THAT(read[Role::grav], ElementsAre(-12.5, -12.75, -13, -13.25));
    EXPECT_THAT(read.line, ElementsAre("10", "10", "10", "20"));
}

TEST(TextTable, a_file_without_lines_is_one_line) {
    const ReadSurvey read = SurveyOf("east,north,mag\n450000,7550000,5\n450010,7550000,6\n").read();
    EXPECT_THAT(read.line_names, ElementsAre("1"));
}

TEST(TextTable, a_row_whose_line_is_a_null_belongs_to_none) {
    SurveyOf survey(head +
                    "10,450000,7550000,340,5\n10,450010,7550000,340,6\n*,450020,7550000,340,7\n"
                    "-99999,450030,7550000,340,7\n10,450040,7550000,340,7\n");
    survey.column("line").nulls = {-99999};
    const ReadSurvey read = survey.read();
    EXPECT_THAT(read.line, ElementsAre("10", "10", "10"));
    ASSERT_EQ(read.losses.size(), 1U);
    EXPECT_EQ(read.losses[0].why, "it names no line");
    EXPECT_EQ(read.losses[0].count, 2);
}

TEST(TextTable, thousands_of_comments_may_stand_before_the_rows) {
    std::string text;
    for (int i = 0; i < 3000; ++i) text += "# of the journey\n";
    expect_three_rows(SurveyOf(text + three_rows).read());
}

TEST(TextTable, preview_shows_cells_as_they_stand) {
    const SurveyOf survey(head +
                          "10,450000,7550000,*,\"52000\"\n10,here,7550000,,52010\n20,450010,7550000,3,5\n");
    const SurveyPreview preview = preview_rows(survey.layout, 2);
    EXPECT_THAT(preview.rows, ElementsAre(ElementsAre("10", "450000", "7550000", "*", "52000"),
                                          ElementsAre("10", "here", "7550000", "", "52010")));
    EXPECT_THAT(preview.file_line, ElementsAre(2, 3));
}

TEST(TextTable, a_hundred_thousand_lines_and_one_that_comes_again) {
    SurveyOf survey(
        "line,east,north,mag\n1,450000,7550000,5\n1,450010,7550000,5.5\n1,450020,7550000,6\n1,450030,7550000,"
        "7\n");
    std::string text = "line,east,north,mag\n";
    constexpr int lines = 100'000;
    for (int i = 0; i < lines; ++i) text += std::to_string(i) + ",450000,7550000,5\n";
    text += "0,450000,7550000,6\n";
    survey.layout.path = survey.folder.write("many.csv", text);
    const std::vector<std::size_t> wanted{3};
    const auto reader = open_rows(survey.layout, wanted);
    RowBlock block;
    std::size_t rows = 0;
    std::int32_t last = -1;
    while (reader->next(block)) {
        rows += block.rows;
        last = block.line.back();
    }
    EXPECT_EQ(rows, lines + 1U);
    EXPECT_EQ(reader->line_names().size(), static_cast<std::size_t>(lines));
    EXPECT_EQ(last, 0);
}

TEST(TextTable, what_is_no_table_is_refused_with_the_line) {
    const TempFolder folder;
    EXPECT_THAT(fault_of(folder.write("a.txt", "Dear Sir,\nthe survey is late.\n")),
                HasSubstr("line 1 begins \"Dear Sir"));
    EXPECT_THAT(fault_of(folder.write("b.txt", "")), HasSubstr("is empty"));
    EXPECT_THAT(fault_of(folder.write("c.txt", "# nothing\n\n")), HasSubstr("only blank lines and comments"));
    EXPECT_THAT(fault_of(folder.write("d.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\1\2\3\4\5\6", 22))),
                HasSubstr("is no text"));
    EXPECT_THAT(fault_of(folder.path("none.csv")), HasSubstr("No such file"));
    EXPECT_THAT(fault_of(folder.folder()), HasSubstr("directory"));
    EXPECT_THAT(fault_of(folder.write("e.txt", std::string(3 << 20, '1'))), HasSubstr("line 1: longer than"));
}

}  // namespace
}  // namespace anomalis::intake

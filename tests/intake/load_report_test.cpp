#include "intake/load_report.h"

#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/faults.h"
#include "core/workspace.h"
#include "intake/load.h"
#include "intake/row_notes.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::intake {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Row {
    double east = 0, north = 0, mag = 0;
    std::string tail = {};
};

std::string table(const std::vector<Row>& rows) {
    std::string text = "east north mag\n";
    for (const Row& row : rows)
        text += std::to_string(row.east) + " " + std::to_string(row.north) + " " + std::to_string(row.mag) +
                row.tail + "\n";
    return text;
}

double reading(int i) {
    return 55000 + 300 * std::sin(0.1 * i);
}

std::vector<Row> straight(int count, double spacing) {
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) rows.push_back({500000 + spacing * i, 7000000, reading(i)});
    return rows;
}

/// The report of one load.
struct Loaded {
    using Change = std::function<void(Workspace&)>;
    explicit Loaded(
        const std::string& text, const Change& change = [](Workspace&) {}) {
        initialise_workspace(workspace, prompts);
        DataDefinition& d = workspace.definition;
        d.data_file = folder.write("line.dat", text);
        d.x_column = 1;
        d.y_column = 2;
        d.mag_column = 3;
        change(workspace);
        load_locations(workspace, prompts, &notes);
        report = report_of_load(workspace, notes);
        summary = report_summary(report);
    }
    explicit Loaded(
        const std::vector<Row>& rows, const Change& change = [](Workspace&) {})
        : Loaded(table(rows), change) {}
    std::string text_of(const std::string& label) const {
        for (const ReportItem& item : report_items(report))
            if (item.label == label) return item.text;
        return "";
    }

    ScriptedPrompts prompts;
    TempFolder folder;
    Workspace workspace;
    RowNotes notes;
    LoadReport report;
    std::string summary;
};

TEST(LoadReport, tells_what_a_plain_line_is) {
    const Loaded line(straight(101, 25));
    EXPECT_EQ(line.summary, "101 stations, 2.5 km, spacing 25 m");
    EXPECT_FALSE(has_doubts(line.report));
    EXPECT_EQ(line.report.rows_read, 101);
    EXPECT_EQ(line.report.stations, 101);
    EXPECT_DOUBLE_EQ(line.report.length_m, 2500);
    EXPECT_DOUBLE_EQ(line.report.largest_gap_m, 25);
    EXPECT_NEAR(line.report.direction_deg, 90, 1e-9);
    EXPECT_EQ(line.report.stretches, 1);
    EXPECT_EQ(line.report.off_line_m, 0);
    for (const ReportItem& item : report_items(line.report)) EXPECT_EQ(item.severity, Severity::remark);
}

TEST(LoadReport, tells_direction_gap_and_distance_off_the_line) {
    std::vector<Row> rows;
    for (int i = 0; i < 60; ++i) {
        const double along = i < 30 ? 10 * i : 10 * i + 500;
        rows.push_back({500000 + (i == 40 ? 12.5 : 0), 7000000 - along, reading(i)});
    }
    const Loaded line(rows);
    EXPECT_EQ(line.report.direction_deg, 0) << "a profile runs to the north";
    EXPECT_DOUBLE_EQ(line.report.largest_gap_m, 510);
    EXPECT_DOUBLE_EQ(line.report.largest_gap_at_m, 290);
    EXPECT_DOUBLE_EQ(line.report.typical_spacing_m, 10);
    EXPECT_DOUBLE_EQ(line.report.off_line_m, 12.5);
    EXPECT_EQ(line.report.stretches, 1) << "a gap is no jump to another line";
    EXPECT_EQ(line.text_of("Spacing"), "10 m typical, largest 510 m at 290 m");
}

TEST(LoadReport, a_resampled_line_tells_the_spacing_of_its_readings) {
    const Loaded line(straight(101, 25), [](Workspace& w) { w.station_spacing = 10; });
    EXPECT_EQ(line.report.stations, 251);
    EXPECT_DOUBLE_EQ(line.report.typical_spacing_m, 25);
    EXPECT_EQ(line.report.merged, 0);
}

TEST(LoadReport, a_resampling_beyond_the_limit_tells_what_it_would_take_and_what_was_done) {
    const auto every = [](float spacing) { return [spacing](Workspace& w) { w.station_spacing = spacing; }; };
    const Loaded line(table(straight(101, 1000)), every(1));
    EXPECT_EQ(line.workspace.station_count, 8193);
    EXPECT_THAT(
        line.summary,
        HasSubstr("resampling 100000 m of line every 1 m would take 100001 stations; 8193 is the most, "
                  "so it was resampled every 12.20703 m"));
    EXPECT_TRUE(has_doubts(line.report));
    Faults faults;
    tell_rows(line.notes, "line.dat", faults);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_THAT(faults.entries().front().text, HasSubstr("line.dat: resampling 100000 m"));
    EXPECT_EQ(faults.entries().front().severity, Severity::remark);
    for (const float fits : {line.workspace.station_spacing, 12.3F, 1e6F, 0.0F})
        EXPECT_THAT(Loaded(table(straight(101, 1000)), every(fits)).report.warnings, IsEmpty()) << fits;
}

TEST(LoadReport, counts_rows_by_what_kept_them_out) {
    std::string text = table(straight(10, 25));
    text += "1 2 *\n1 2 *\n1 2 abc\n";
    const Loaded line(text);
    ASSERT_EQ(line.report.dropped.size(), 2U);
    EXPECT_EQ(line.report.dropped[0].why, "\"*\" stands where a number is wanted");
    EXPECT_EQ(line.report.dropped[0].column, "column 3");
    EXPECT_EQ(line.report.dropped[0].count, 2);
    EXPECT_EQ(line.report.dropped[0].first_line, 12);
    EXPECT_EQ(line.report.dropped[1].first_line, 14);
    EXPECT_THAT(line.summary, HasSubstr("; 3 rows dropped"));
}

TEST(LoadReport, an_empty_last_field_and_a_cut_last_row_are_dropped_rows) {
    const Loaded line(
        "east,north,mag\n500000,7000000,55000\n500025,7000000,\n500050,7000000,55010\n500075,70");
    EXPECT_EQ(line.report.stations, 2);
    ASSERT_EQ(line.report.dropped.size(), 2U);
    EXPECT_EQ(line.report.dropped[0].why, "a field is empty");
    EXPECT_EQ(line.report.dropped[0].first_line, 3);
    EXPECT_EQ(line.report.dropped[1].why, "the end of the file cuts it");
    EXPECT_EQ(line.report.dropped[1].first_line, 5);
}

TEST(LoadReport, short_rows_that_keep_the_values_before_are_to_be_checked) {
    std::string text = table(straight(10, 25));
    text += "500250 7000000\n500275 7000000 55000\n";
    const Loaded line(text);
    EXPECT_EQ(line.report.stations, 12);
    EXPECT_THAT(line.summary, HasSubstr("Check: 1 row ends before the last column"));
    EXPECT_THAT(line.summary, HasSubstr("line 12"));
}

TEST(LoadReport, counts_merged_rows_and_readings_at_one_place) {
    std::vector<Row> rows = straight(50, 25);
    rows.insert(rows.begin() + 20, rows[20]);
    const Loaded line(rows);
    EXPECT_EQ(line.report.duplicates, 1);
    EXPECT_EQ(line.report.merged, 1);
    EXPECT_EQ(line.report.stations, 50);
    EXPECT_THAT(line.summary, HasSubstr("; 1 row merged"));
}

TEST(LoadReport, many_lines_read_as_one_short_one_are_told) {
    std::vector<Row> rows;
    for (int line = 0; line < 17; ++line)
        for (int i = 0; i < 60; ++i) {
            const double along = 50.0 * (line % 2 == 0 ? i : 59 - i);
            rows.push_back({500000 + 11.0 * line, 7000000 + along, reading(i + 7 * line)});
        }
    rows.resize(rows.size() - 59);  // so that first and last row lie 177 m apart
    const Loaded line(rows);
    EXPECT_GE(line.report.stretches, 16);
    EXPECT_TRUE(has_doubts(line.report));
    EXPECT_THAT(line.summary, HasSubstr("this looks like several lines, use Import survey..."));
}

TEST(LoadReport, three_lines_joined_over_forty_kilometres_are_told) {
    std::vector<Row> rows;
    for (int line = 0; line < 3; ++line)
        for (int i = 0; i < 400; ++i)
            rows.push_back({500000 + 25.0 * i + 2000.0 * line, 7000000 + 18000.0 * line, reading(i)});
    const Loaded line(rows);
    EXPECT_EQ(line.report.stretches, 3);
    EXPECT_THAT(line.summary, HasSubstr("this looks like several lines"));
}

TEST(LoadReport, nulls_that_were_taken_as_readings_are_told) {
    std::vector<Row> rows = straight(100, 25);
    for (const std::size_t i : {10U, 11U, 40U}) rows[i].mag = -99999.99;
    const Loaded line(rows);
    EXPECT_THAT(line.summary, HasSubstr("the magnetics is -99999.99 nT in 3 rows"));
    EXPECT_THAT(line.summary, HasSubstr("a mark for no value"));
    EXPECT_FALSE(has_doubts(Loaded(straight(100, 25)).report));
}

TEST(LoadReport, missing_readings_are_counted_and_no_doubt) {
    std::vector<Row> rows = straight(100, 25);
    for (const std::size_t i : {10U, 11U, 40U}) rows[i].mag = -1e32;
    std::string text = "east north mag\n";
    for (const Row& row : rows)
        text += std::to_string(row.east) + " " + std::to_string(row.north) + " " +
                (row.mag < 0 ? "-1e32" : std::to_string(row.mag)) + "\n";
    const Loaded line(text, [](Workspace& w) { w.gap_distance = 75; });
    ASSERT_EQ(line.report.nulls.size(), 1U);
    EXPECT_EQ(line.report.nulls[0].channel, "magnetics");
    EXPECT_EQ(line.report.nulls[0].count, 3);
    EXPECT_FALSE(has_doubts(line.report)) << line.summary;
    EXPECT_THAT(line.summary, HasSubstr("; 3 values missing"));
}

TEST(LoadReport, degrees_taken_as_metres_are_told) {
    std::vector<Row> rows;
    for (int i = 0; i < 804; ++i) rows.push_back({140.1 + 0.00009 * i, -22.1, reading(i)});
    const Loaded line(rows);
    EXPECT_TRUE(line.report.looks_like_degrees);
    EXPECT_THAT(line.summary, HasSubstr("Check: the coordinates look like degrees"));
    EXPECT_THAT(line.summary, HasSubstr("804 stations, 0.072 m"));
    std::vector<Row> grid;
    for (int i = 0; i < 80; ++i) grid.push_back({1.0 * i, 5, reading(i)});
    EXPECT_FALSE(Loaded(grid).report.looks_like_degrees) << "a local grid in metres";
}

TEST(LoadReport, gravity_in_other_units_is_told) {
    const auto gravity = [](Workspace& w) {
        w.definition.mag_column = 0;
        w.definition.grav_column = 3;
    };
    const auto rows = [](double scale) {
        std::vector<Row> made = straight(60, 500);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i].mag = scale * (-90 - 0.3 * static_cast<double>(i));
        return made;
    };
    EXPECT_FALSE(has_doubts(Loaded(rows(1), gravity).report));
    EXPECT_THAT(Loaded(rows(10), gravity).summary, HasSubstr("may be in um/s2"));
    std::string named = table(rows(1));
    named.insert(named.find('\n'), "_[um/s2]");
    EXPECT_THAT(Loaded(named, gravity).summary, HasSubstr("the head of the file speaks of um/s2"));
    std::vector<Row> whole = straight(60, 500);
    for (Row& row : whole) row.mag = 978500 + 0.001 * (row.east - 500000);
    EXPECT_FALSE(has_doubts(Loaded(whole, gravity).report)) << "gravity itself, in mGal";
}

TEST(LoadReport, decimal_commas_are_told) {
    std::string text = "x;y;mag\n";
    for (int i = 0; i < 30; ++i)
        text += std::to_string(500000 + 25 * i) + ",5;7000000,0;5501" + std::to_string(i % 10) + ",4\n";
    EXPECT_THAT(Loaded(text).summary, HasSubstr("the numbers have decimal commas"));
    std::string plain = "x,y,mag\n";
    for (int i = 0; i < 30; ++i)
        plain += std::to_string(500000 + 25 * i) + ",7000000,5501" + std::to_string(i % 10) + "\n";
    EXPECT_THAT(Loaded(plain).report.warnings, IsEmpty());
}

TEST(LoadReport, a_base_level_that_is_a_mark_for_no_value_is_told) {
    const Loaded line(straight(50, 25), [](Workspace& w) { w.mag.base = -9999; });
    EXPECT_THAT(line.summary, HasSubstr("the base level of the magnetics is -9999 nT"));
    EXPECT_FALSE(has_doubts(Loaded(straight(50, 25), [](Workspace& w) { w.mag.base = 54000; }).report));
}

TEST(LoadReport, a_reading_that_stays_is_told_with_its_place) {
    std::vector<Row> rows = straight(100, 25);
    for (std::size_t i = 60; i < 80; ++i) rows[i].mag = rows[60].mag;
    const Loaded line(rows);
    ASSERT_TRUE(line.report.repeated);
    EXPECT_EQ(line.report.repeated->stations, 20);
    EXPECT_DOUBLE_EQ(line.report.repeated->at_m, 1500);
    EXPECT_THAT(line.summary, HasSubstr("over 20 readings from 1500 m on"));
    std::vector<Row> coarse = straight(200, 25);
    for (std::size_t i = 0; i < coarse.size(); ++i) coarse[i].mag = std::floor(static_cast<double>(i) / 12);
    EXPECT_FALSE(Loaded(coarse).report.repeated) << "a channel of few digits";
    std::vector<Row> quiet = straight(600, 25);
    for (const auto& [from, count] :
         {std::pair{50UL, 57UL}, {150UL, 45UL}, {250UL, 31UL}, {350UL, 30UL}, {450UL, 28UL}})
        for (std::size_t i = from; i < from + count; ++i) quiet[i].mag = quiet[from].mag;
    EXPECT_FALSE(Loaded(quiet).report.repeated) << "whole nT over quiet ground";
}

TEST(LoadReport, a_sensor_below_the_ground_is_told) {
    const auto heights = [](Workspace& w) {
        w.definition.z_column = 4;
        w.definition.dtm_column = 5;
    };
    std::vector<Row> rows = straight(50, 25);
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].tail = " " + std::to_string(160 + i % 3) + " " + std::to_string(100 + i % 7);
    const Loaded above(rows, heights);
    EXPECT_DOUBLE_EQ(*above.report.least_clearance_m, 54);
    EXPECT_DOUBLE_EQ(*above.report.greatest_clearance_m, 62);
    EXPECT_FALSE(has_doubts(above.report)) << above.summary;
    rows[17].tail = " 90 102";
    const Loaded below(rows, heights);
    EXPECT_DOUBLE_EQ(*below.report.least_clearance_m, -12);
    EXPECT_THAT(below.summary, HasSubstr("the sensor is at or below the ground (-12 m"));
}

TEST(LoadReport, an_empty_result_says_why_where_and_what_to_do) {
    const Loaded words("east north mag\na b c\n");
    EXPECT_EQ(words.workspace.station_count, 0);
    EXPECT_THAT(words.prompts.messages, IsEmpty()) << "no message box for an empty result";
    EXPECT_THAT(words.summary, HasSubstr("Nothing was loaded: no row of "));
    EXPECT_THAT(words.summary, HasSubstr("in line 2, column 1, \"a\" stands where a number is wanted"));
    EXPECT_THAT(words.summary, HasSubstr("Check the first data line and the columns"));
    EXPECT_THAT(Loaded("east north mag\n\n   \n").summary, HasSubstr("has no row from line 2 on"));
    EXPECT_THAT(Loaded("").summary, HasSubstr("has no row from line 2 on"));
    EXPECT_THAT(Loaded("h\n1 2\n3 4\n").summary, HasSubstr("has a value of magnetics (column 3)"));
}

TEST(LoadReport, what_keeps_a_load_from_beginning_is_told) {
    const auto summary_with = [](const Loaded::Change& change) {
        return Loaded(straight(5, 25), change).summary;
    };
    EXPECT_THAT(summary_with([](Workspace& w) { w.definition.data_file = ""; }),
                HasSubstr("Nothing was loaded: No data file has been specified. Choose one"));
    EXPECT_THAT(summary_with([](Workspace& w) { w.definition.data_file += ".gone"; }),
                HasSubstr("line.dat.gone). Correct the definition"));
    EXPECT_THAT(summary_with([](Workspace& w) { w.definition.mag_column = 0; }),
                HasSubstr("You must specify either a mag column or gravity column"));
    EXPECT_THAT(Loaded(std::vector<Row>(4, Row{5, 5, 5})).summary, HasSubstr("lie at one place"));
}

TEST(LoadReport, what_an_import_met_is_joined_to_the_load_of_its_table) {
    LoadReport load;
    load.stations = 100;
    load.nulls = {{"magnetics", 2}};
    LoadReport imported;
    imported.line = "5690";
    imported.lines_in_file = 12;
    imported.rows_read = 104;
    imported.nulls = {{"magnetics", 3}, {"gravity", 1}};
    imported.dropped = {{"a field is missing", "tmi", 4, 17}};
    const LoadReport joined = with_import(load, imported);
    EXPECT_EQ(joined.stations, 100);
    EXPECT_EQ(joined.rows_read, 104);
    ASSERT_EQ(joined.nulls.size(), 2U);
    EXPECT_EQ(joined.nulls[0].count, 3);
    EXPECT_EQ(joined.dropped[0].first_line, 17);
    const auto items = report_items(joined);
    EXPECT_TRUE(std::ranges::any_of(items, [](const ReportItem& item) {
        return item.label == "Line" && item.text == "5690, one of 12";
    }));
}

TEST(LoadReport, texts_of_files_steer_nothing_where_they_are_shown) {
    const Loaded line("east north mag\n1 2 \"\x1b[31m\"\n500000 7000000 5\n500025 7000000 6\n");
    for (const ReportItem& item : report_items(line.report))
        EXPECT_EQ(item.text.find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace anomalis::intake

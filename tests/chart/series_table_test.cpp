#include "chart/detail/series_table.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

using Values = std::vector<double>;

SeriesTable table_of(const std::vector<std::pair<double, Values>>& rows, Colour first = black) {
    SeriesTable table;
    std::vector<ChartRow> views;
    for (const auto& [code, cells] : rows) views.push_back({code, cells});
    table.register_rows(views, ChartProperties{}, first);
    return table;
}

TEST(SeriesTable, an_x_row_opens_a_group_for_the_rows_after_it) {
    const SeriesTable table =
        table_of({{7.0, {0, 1, 2}}, {-2.0, {5, 6, 7}}, {0.0, {1, 2, 3}}, {1.0, {10, 20}}, {-4.0, {8, 9}}});
    ASSERT_EQ(table.group_count(), 2);
    EXPECT_EQ(table.series_count(), 3);
    EXPECT_EQ(table.point_count(), 3);
    EXPECT_EQ(table.group(1).first, 1);
    EXPECT_EQ(table.group(1).last, 2);
    EXPECT_EQ(table.group(2).first, 3);
    EXPECT_EQ(table.group(2).count, 2);
    EXPECT_EQ(table.series(3).code, bar_series);
}

TEST(SeriesTable, groups_without_a_series_are_dropped) {
    const SeriesTable table = table_of({{1.0, {0, 1}}, {1.0, {5, 6}}, {-2.0, {3, 4}}, {1.0, {9, 9}}});
    ASSERT_EQ(table.group_count(), 1);
    EXPECT_EQ(table.group(1).x, (Values{5, 6}));
    EXPECT_EQ(table.series_count(), 1);
}

TEST(SeriesTable, the_tail_of_a_short_row_is_null_and_a_long_row_is_cut) {
    const SeriesTable table = table_of({{1.0, {0, 1, 2}}, {0.0, {5}}, {0.0, {1, 2, 3, 4, 5}}});
    EXPECT_EQ(table.series(1).y, (Values{5, null_value, null_value}));
    EXPECT_EQ(table.series(2).y, (Values{1, 2, 3}));
}

TEST(SeriesTable, a_shorter_registration_leaves_nothing_of_the_longer_one) {
    SeriesTable table = table_of({{1.0, {0, 1, 2}}, {0.0, {5, 6, 7}}, {0.0, {8, 9, 10}}});
    const Values xs{0, 1};
    const Values ys{3};
    const std::vector<ChartRow> rows{{1.0, xs}, {0.0, ys}};
    table.register_rows(rows, ChartProperties{}, black);
    EXPECT_EQ(table.series_count(), 1);
    EXPECT_EQ(table.series(1).y, (Values{3, null_value}));
    EXPECT_EQ(table.y_extent(), (Interval{3.0, 3.0}));
}

TEST(SeriesTable, a_table_without_cells_is_ignored_and_one_without_series_empties_the_chart) {
    SeriesTable table = table_of({{1.0, {0, 1}}, {0.0, {5, 6}}});
    table.register_rows({}, ChartProperties{}, black);
    EXPECT_EQ(table.series_count(), 1);
    const std::vector<ChartRow> no_cells{{1.0, {}}, {0.0, {}}};
    table.register_rows(no_cells, ChartProperties{}, black);
    EXPECT_EQ(table.series_count(), 1);
    const Values xs{0, 1};
    const std::vector<ChartRow> no_series{{1.0, xs}};
    table.register_rows(no_series, ChartProperties{}, black);
    EXPECT_TRUE(table.empty());
    EXPECT_EQ(table.point_count(), 0);
}

TEST(SeriesTable, an_empty_cell_ends_a_row_and_an_empty_code_is_0) {
    Rig rig;
    const ChartTable table{
        {1.0, 0.0, 10.0, std::nullopt, 99.0}, {std::nullopt, 1.0, 5.0}, {-2.0, 3.0, std::nullopt, 8.0}};
    rig.chart.RegisterData(table);
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.chart.ViewLimits(), (Rect{0.0, 10.0, 1.0, 5.0}));
    rig.chart.SelectPoint(1, 1, 2, true);
    EXPECT_TRUE(rig.chart.SelectPoint().has_value());
    rig.chart.SelectPoint(1, 2, 2, true);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
}

TEST(SeriesTable, odd_tables_are_taken_without_harm) {
    Rig rig;
    rig.chart.RegisterData(ChartTable{});
    rig.chart.RegisterData(ChartTable{{}});
    rig.chart.RegisterData(ChartTable{{}, {}, {1.0}});
    rig.chart.RegisterData(ChartTable{{1.0, 2.0}, {}, {0.0, 3.0}});
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
}

TEST(SeriesTable, series_start_in_the_default_colours) {
    const SeriesTable table = table_of({{1.0, {0}}, {0.0, {1}}, {0.0, {1}}, {0.0, {1}}}, white);
    EXPECT_EQ(table.options(1).colour, white);
    EXPECT_EQ(table.options(2).colour, 255);
    EXPECT_EQ(table.options(3).colour, 0xFF00);
    EXPECT_EQ(table.options(1).width, 1);
}

TEST(SeriesTable, the_first_series_is_white_on_black_also_by_the_palette) {
    for (const Colour back : {black, button_text}) {
        Rig rig;
        rig.chart.BackColor(back);
        rig.register_series({0.0, 1.0}, {0.0, 1.0});
        rig.chart.DisplayChart();
        const auto lines = rig.device.of_kind(Kind::polyline);
        EXPECT_EQ(std::ranges::count(lines, white, [](const auto& line) { return line.pen.colour; }), 1);
    }
}

TEST(SeriesTable, default_colours_go_round_after_sixteen) {
    EXPECT_EQ(AX_Grapher::set_pen_colour(1), 255);
    EXPECT_EQ(AX_Grapher::set_pen_colour(2), 0xFF00);
    EXPECT_EQ(AX_Grapher::set_pen_colour(3), 0xFF0000);
    EXPECT_EQ(AX_Grapher::set_pen_colour(4), 0xFF00FF);
    EXPECT_EQ(AX_Grapher::set_pen_colour(5), 0xFFFF);
    EXPECT_EQ(AX_Grapher::set_pen_colour(6), 0xFFFF00);
    EXPECT_EQ(AX_Grapher::set_pen_colour(7), colour_of(51, 255, 178));
    for (const int orange : {0, 15, 16, 31})
        EXPECT_EQ(AX_Grapher::set_pen_colour(orange), colour_of(255, 127, 0));
    EXPECT_EQ(AX_Grapher::set_pen_colour(17), 255);
    EXPECT_EQ(AX_Grapher::set_pen_colour(-3), black);
}

TEST(SeriesOptions, only_the_marker_is_always_stored) {
    Rig rig;
    rig.register_series({0.0, 1.0}, {0.0, 1.0}, line_and_marker_series);
    rig.chart.SetSeriesOptions(1, 1, 77, "Observed", 4, 1, 3);
    rig.chart.SetSeriesOptions(1, 1, -1, "", 2, -1, 0);
    rig.chart.DisplayChart();
    const auto marks = rig.device.of_kind(Kind::markers);
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_EQ(marks[0].style, 2);
    EXPECT_EQ(marks[0].pen.colour, 77);
    EXPECT_EQ(marks[0].pen.width, 3.0);
    EXPECT_TRUE(rig.log.failures.empty());
}

TEST(SeriesOptions, a_group_or_series_that_is_not_there_changes_nothing) {
    Rig rig;
    const Values xs{0.0, 1.0};
    const Values ys{0.0, 1.0};
    const std::vector<ChartRow> rows{{x_row, xs}, {-2.0, ys}, {x_row, xs}, {-2.0, ys}, {-2.0, ys}};
    rig.chart.RegisterData(rows);
    for (const int group : {-1, 0, 3}) rig.chart.SetSeriesOptions(group, 1, 5, "x", 1, 1, 9);
    EXPECT_EQ(rig.log.failures, std::vector<std::string>(3, "The group number is invalid"));
    rig.log.forget();
    rig.chart.SetSeriesOptions(1, 2, 5, "x", 1, 1, 9);
    rig.chart.SetSeriesOptions(2, 3, 5, "x", 1, 1, 9);
    rig.chart.SetSeriesOptions(1, 0, 5, "x", 1, 1, 9);
    EXPECT_EQ(rig.log.failures, std::vector<std::string>(3, "The series index is invalid"));
    rig.chart.DisplayChart();
    for (const auto& line : rig.device.of_kind(Kind::polyline)) EXPECT_EQ(line.pen.width, 1.0);
}

TEST(SeriesOptions, outlive_a_registration_that_is_not_larger_but_colour_and_width) {
    Rig rig;
    rig.register_series({0.0, 1.0}, {0.0, 1.0}, line_and_marker_series);
    rig.chart.SetSeriesOptions(1, 1, 77, "Observed", 4, 0, 3);
    rig.register_series({0.0, 1.0}, {0.0, 1.0}, line_and_marker_series);
    rig.chart.DisplayChart();
    const auto marks = rig.device.of_kind(Kind::markers);
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_EQ(marks[0].style, 4);
    EXPECT_EQ(marks[0].pen.colour, black);
    rig.chart.SelectPoint(1, 1, 1, true);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());

    // More series than ever before start afresh.
    const Values xs{0.0, 1.0};
    const std::vector<ChartRow> many(200, {0.0, xs});
    rig.chart.RegisterData(many);
    rig.chart.SelectPoint(1, 1, 1, true);
    EXPECT_TRUE(rig.chart.SelectPoint().has_value());
}

TEST(PointMarkers, a_series_covers_it_and_those_after_it_in_its_group) {
    SeriesTable table =
        table_of({{1.0, {0, 1}}, {0.0, {1, 2}}, {0.0, {1, 2}}, {0.0, {1, 2}}, {1.0, {0, 1}}, {0.0, {1, 2}}});
    const MarkerTable ones(4, {1, 1});
    using Which = SeriesTable::PointTable;
    EXPECT_EQ(table.set_points(Which::markers, ones, 1, 2, 0), nullptr);
    EXPECT_EQ(table.marker(1, 1), 0);
    EXPECT_EQ(table.marker(2, 1), 1);
    EXPECT_EQ(table.marker(3, 2), 1);
    EXPECT_EQ(table.marker(4, 1), 0);
    const MarkerTable twos(4, {2, 2});
    table.set_points(Which::markers, twos, 1, 0, 2);
    EXPECT_EQ(table.marker(1, 1), 0);
    EXPECT_EQ(table.marker(1, 2), 2);
    EXPECT_EQ(table.marker(3, 2), 2);
    const MarkerTable threes(4, {3, 3});
    table.set_points(Which::markers, threes, 0, 0, 0);
    EXPECT_EQ(table.marker(4, 2), 3);
    // A series beyond the group is its last.
    const MarkerTable fours(4, {4, 4});
    table.set_points(Which::markers, fours, 1, 9, 1);
    EXPECT_EQ(table.marker(3, 1), 4);
    EXPECT_EQ(table.marker(2, 1), 3);
    EXPECT_STREQ(table.set_points(Which::markers, fours, 9, 1, 0), "The group number is invalid");
}

TEST(PointMarkers, a_small_table_leaves_the_rest) {
    Rig rig;
    rig.register_series({0.0, 1.0, 2.0}, {0.0, 1.0, 2.0});
    rig.chart.RegisterMarker(MarkerTable{{5}}, 1, 1, 0);
    EXPECT_EQ(rig.chart.PointMarker(1, 1), 5);
    EXPECT_EQ(rig.chart.PointMarker(1, 2), 0);
    rig.chart.PointMarker(1, 3, 7);
    EXPECT_EQ(rig.chart.PointMarker(1, 3), 7);
    for (const auto& [series, point] : {std::pair{0, 1}, {2, 1}, {1, 0}, {1, 99}}) {
        rig.chart.PointMarker(series, point, 3);
        EXPECT_EQ(rig.chart.PointMarker(series, point), 0);
    }
    rig.chart.RegisterMarker(MarkerTable{}, 0, 0, 0);
    EXPECT_TRUE(rig.device.entries.empty());
}

TEST(ChartTables, tell_their_rank_and_bounds) {
    const std::vector<double> none;
    const ChartTable table{{1.0, 2.0}, {0.0, 3.0, 4.0}};
    EXPECT_FALSE(AX_Grapher::ArrayIsInitialized(none));
    EXPECT_TRUE(AX_Grapher::ArrayIsInitialized(table));
    EXPECT_EQ(AX_Grapher::ArrayRank(none), 0);
    EXPECT_EQ(AX_Grapher::ArrayRank(std::vector<double>{1.0}), 1);
    EXPECT_EQ(AX_Grapher::ArrayRank(table), 2);
    EXPECT_EQ(AX_Grapher::ArrayUBound(none, 1), -1);
    EXPECT_EQ(AX_Grapher::ArrayUBound(table, 1), 1);
    EXPECT_EQ(AX_Grapher::ArrayUBound(table, 2), 2);
    EXPECT_EQ(AX_Grapher::ArrayUBound(table, 3), -1);
    EXPECT_EQ(AX_Grapher::ArrayUBound(table, 0), -1);
}

TEST(SeriesTable, what_is_kept_of_a_row_is_as_of_one_registered_anew) {
    constexpr std::size_t count = 5001;
    Values x(count);
    for (std::size_t i = 0; i < count; ++i) x[i] = static_cast<double>(i) * 5;
    std::vector<float> y(count, 1.0F);
    SeriesTable kept;
    std::uint64_t revision = 0;
    const float inputs[] = {-7, 3, 12, -999, std::nanf(""), HUGE_VALF, -1e32F};
    for (std::size_t change = 0; change < 30; ++change) {
        const bool same = change % 5 == 4;
        for (std::size_t i = change * 160; !same && i < change * 160 + 70; ++i)
            y[i] = inputs[(i + change) % std::size(inputs)] + static_cast<float>(i % 7);
        if (change == 28) y.resize(4000);
        const std::vector<ChartRow> rows{{x_row, x}, {line_series, std::span<const float>(y)}};
        kept.register_rows(rows, ChartProperties{}, black);
        SeriesTable anew;
        anew.register_rows(rows, ChartProperties{}, black);
        EXPECT_EQ(kept.series(1).revision == revision, same && change != 28) << change;
        revision = kept.series(1).revision;
        const Values& values = kept.series(1).y;
        ASSERT_EQ(values, anew.series(1).y);
        EXPECT_EQ(kept.y_extent(), anew.y_extent());
        EXPECT_EQ(kept.x_extent(), anew.x_extent());
        for (std::size_t first = 0; first < count; first += 97) {
            if (is_null(values[first])) continue;
            const auto found = kept.series(1).extremes.find(values, first, count);
            const auto expected = anew.series(1).extremes.find(values, first, count);
            EXPECT_EQ(found.end, expected.end);
            EXPECT_EQ(found.lowest, expected.lowest);
            EXPECT_EQ(found.highest, expected.highest);
            EXPECT_EQ(values[found.lowest],
                      *std::min_element(values.begin() + static_cast<std::ptrdiff_t>(first),
                                        values.begin() + static_cast<std::ptrdiff_t>(found.end)));
        }
    }
}

}  // namespace
}  // namespace anomalis::chart

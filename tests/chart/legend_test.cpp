#include <algorithm>
#include <gtest/gtest.h>

#include "chart/colour_contrast.h"
#include "chart_rig.h"

// Legend, key of colours, casing of curves and the colours of a dark screen.
namespace anomalis::chart {
namespace {

constexpr Colour pale_green = 65280;
constexpr ScreenPalette dark_desk{0x201B17, 0xEDE8E3};

/// Two curves along the top of the plot, but for its right third, where they run along the bottom.
struct Looks : Rig {
    Looks() {
        make_plain();
        const std::vector<double> xs{0.0, 4500.0, 4600.0, 7400.0}, above{650.0, 650.0, -250.0, -250.0},
            below{640.0, 640.0, -260.0, -260.0};
        const std::vector<ChartRow> rows{{x_row, xs}, {line_series, above}, {line_series, below}};
        chart.RegisterData(rows);
        chart.SetSeriesOptions(1, 1, black, "Observed", 0, -1, 1);
        chart.SetSeriesOptions(1, 2, pale_green, "Calculated", 0, -1, 2);
    }
    std::vector<std::string> shown() {
        device.forget();
        EXPECT_EQ(chart.DisplayChart(), 0);
        return device.texts();
    }
    /// What a picture of the chart has.
    RecordingDevice picture() {
        RecordingDevice page(13500.0, 4500.0);
        EXPECT_EQ(chart.DrawTo(page, OutputTarget::metafile, screen_mapping(4500.0)), 0);
        return page;
    }
};

const std::vector<std::string> both{"Observed", "Calculated"};

TEST(Legend, names_the_series_when_it_is_wanted) {
    Looks rig;
    EXPECT_TRUE(rig.shown().empty());
    rig.chart.DisplayLegend(true);
    EXPECT_EQ(rig.shown(), both);
    EXPECT_EQ(rig.picture().texts(), both);
}

TEST(Legend, a_picture_may_have_it_although_the_screen_has_none) {
    Looks rig;
    rig.chart.PictureLegend(true);
    EXPECT_TRUE(rig.shown().empty());
    EXPECT_EQ(rig.picture().texts(), both);
    EXPECT_TRUE(rig.shown().empty());
}

TEST(Legend, leaves_out_what_has_no_name_and_what_is_not_drawn) {
    Looks rig;
    const std::vector<double> xs{0.0, 7400.0}, there{10.0, 10.0}, missing{-999.0, -999.0};
    const std::vector<ChartRow> rows{
        {x_row, xs}, {line_series, there}, {line_series, missing}, {line_series, there}};
    rig.chart.RegisterData(rows);
    rig.chart.SetSeriesOptions(1, 1, black, "Ground", 0, -1, 1);
    rig.chart.SetSeriesOptions(1, 2, black, "Nothing", 0, -1, 1);
    rig.chart.SetSeriesOptions(1, 3, black, "  ", 0, -1, 1);
    rig.chart.DisplayLegend(true);
    EXPECT_EQ(rig.shown(), std::vector<std::string>{"Ground"});
    rig.chart.SetSeriesOptions(1, 1, black, " ", 0, -1, 1);
    EXPECT_TRUE(rig.shown().empty());
}

TEST(Legend, stands_in_the_corner_that_it_covers_least) {
    Looks rig;
    rig.chart.DisplayLegend(true);
    rig.shown();
    // The curves leave the corners right above and left below; the first of them is taken.
    const Point right_above = rig.device.find_text("Observed")->points[0];
    EXPECT_GT(right_above.x, 9000.0);
    EXPECT_GT(right_above.y, 3000.0);
    const std::vector<double> xs{4500.0, 7400.0, 7400.0, 4500.0}, ys{100.0, 100.0, 690.0, 690.0};
    rig.chart.DrawPolygon(4, xs.data(), ys.data(), black, 0x00FFFF, 1);
    rig.shown();
    const Point left_below = rig.device.find_text("Observed")->points[0];
    EXPECT_LT(left_below.x, 4500.0) << "a body stands right above";
    EXPECT_LT(left_below.y, 1500.0);
}

TEST(Legend, stays_where_it_is_while_no_other_corner_is_much_better) {
    Looks rig;
    rig.chart.DisplayLegend(true);
    rig.shown();
    const Point first = rig.device.find_text("Observed")->points[0];
    // A lone station in that corner is no reason to go.
    const std::vector<double> xs{0.0, 7300.0}, ys{0.0, 650.0};
    const std::vector<ChartRow> rows{{x_row, xs}, {chart_type_series, ys}};
    rig.chart.ChartType(0);
    rig.chart.RegisterData(rows);
    rig.chart.SetSeriesOptions(1, 1, black, "Observed", 2, -1, 1);
    rig.shown();
    EXPECT_EQ(rig.device.find_text("Observed")->points[0].y, first.y);
}

TEST(Legend, stands_in_one_row_where_the_plot_is_low_and_not_at_all_where_nothing_fits) {
    Looks rig;
    rig.chart.DisplayLegend(true);
    rig.device.resize(13500.0, 700.0);
    rig.chart.Resize();
    rig.shown();
    ASSERT_EQ(rig.device.texts(), both);
    EXPECT_EQ(rig.device.find_text("Observed")->points[0].y, rig.device.find_text("Calculated")->points[0].y);
    rig.device.resize(1500.0, 700.0);
    rig.chart.Resize();
    EXPECT_TRUE(rig.shown().empty());
}

TEST(Legend, a_captured_chart_has_the_legend_of_the_screen) {
    Looks rig;
    rig.chart.PictureLegend(true);
    rig.shown();
    int without = -1;
    GraphicBytes stream;
    rig.chart.GraphicsStream(without, stream);
    rig.chart.DisplayLegend(true);
    rig.shown();
    int with = -1;
    rig.chart.GraphicsStream(with, stream);
    EXPECT_GT(with, without);
}

TEST(ColourKeyOfChart, tells_what_the_colours_are_of_and_its_ends) {
    Looks rig;
    rig.chart.ShowColourKey(ColourKey{"Density (g/cc)", "-0.2", "0.4", {0xFF0000, 0x00FF00, 0x0000FF}});
    EXPECT_EQ(rig.shown(), (std::vector<std::string>{"Density (g/cc)", "-0.2", "0.4"}));
    std::vector<Colour> fills;
    for (const auto& fill : rig.device.of_kind(Kind::polygon_fill)) fills.push_back(fill.pen.colour);
    EXPECT_EQ(fills, (std::vector<Colour>{white, 0xFF0000, 0x00FF00, 0x0000FF}));
    rig.chart.DisplayLegend(true);
    rig.shown();
    const Point key = rig.device.find_text("-0.2")->points[0];
    const Point legend = rig.device.find_text("Observed")->points[0];
    EXPECT_TRUE((key.x < 6000.0) != (legend.x < 6000.0) || (key.y < 2250.0) != (legend.y < 2250.0));
    rig.chart.ShowColourKey({});
    EXPECT_EQ(rig.shown(), both);
}

/// The lines of a colour.
std::vector<RecordingDevice::Entry> lines_of(const RecordingDevice& device, Colour colour) {
    std::vector<RecordingDevice::Entry> lines;
    for (const auto& line : device.of_kind(Kind::polyline))
        if (line.pen.colour == colour) lines.push_back(line);
    return lines;
}

TEST(Casing, makes_a_pale_curve_seen_on_white) {
    EXPECT_LT(contrast(pale_green, white), least_contrast);
    Looks rig;
    rig.shown();
    const std::size_t bare = rig.device.of_kind(Kind::polyline).size();
    rig.chart.SetSeriesCasing(1, 1, true);
    rig.chart.SetSeriesCasing(1, 2, true);
    rig.shown();
    const auto lines = rig.device.of_kind(Kind::polyline);
    ASSERT_EQ(lines.size(), bare + 1) << "black needs no casing";
    const auto curve = lines_of(rig.device, pale_green);
    ASSERT_EQ(curve.size(), 1U);
    const auto casing = std::ranges::find_if(lines, [&](const auto& line) {
        return line.points == curve[0].points && line.pen.colour != pale_green;
    });
    ASSERT_NE(casing, lines.end());
    EXPECT_GE(contrast(casing->pen.colour, white), least_contrast);
    EXPECT_GE(contrast(casing->pen.colour, pale_green), least_contrast);
    EXPECT_GT(casing->pen.width, curve[0].pen.width);
}

TEST(ColourContrast, is_that_of_the_guidelines) {
    EXPECT_DOUBLE_EQ(contrast(black, white), 21.0);
    EXPECT_DOUBLE_EQ(contrast(white, white), 1.0);
    EXPECT_NEAR(contrast(0x767676, white), 4.54, 0.01);
    EXPECT_NEAR(contrast(0x0000FF, white), 4.0, 0.01) << "red, blue in the high byte";
    EXPECT_EQ(seen_on(white, pale_green, black, 21.0), black);
    EXPECT_EQ(seen_on(white, black, white), black);
}

TEST(ScreenPalette, changes_the_screen_alone) {
    Looks rig;
    rig.shown();
    rig.chart.WearPalette(dark_desk);
    rig.chart.DrawRectangle(1000.0, 0.0, 2000.0, 100.0, black, 0x0000FF, 1);
    rig.chart.DisplayLegend(true);
    rig.shown();
    EXPECT_EQ(rig.device.of_kind(Kind::clear)[0].pen.colour, dark_desk.ground);
    EXPECT_EQ(lines_of(rig.device, dark_desk.ink).size(), 2U) << "observed, and its sample in the legend";
    EXPECT_TRUE(lines_of(rig.device, black).empty());
    EXPECT_EQ(lines_of(rig.device, pale_green).size(), 2U);
    EXPECT_EQ(rig.device.find_text("Observed")->pen.colour, dark_desk.ink);
    const auto fills = rig.device.of_kind(Kind::polygon_fill);
    EXPECT_EQ(fills[0].pen.colour, 0x0000FF) << "a body keeps its colour";
    EXPECT_EQ(fills[1].pen.colour, dark_desk.ground) << "the box of the legend is paper";
    const RecordingDevice page = rig.picture();
    EXPECT_EQ(lines_of(page, black).size(), 2U);
    EXPECT_EQ(page.find_text("Observed")->pen.colour, black);
    rig.chart.WearPalette({});
    rig.device.forget();
    rig.chart.RefreshGraph(0);
    EXPECT_EQ(lines_of(rig.device, black).size(), 2U) << "the kept picture is not that of the palette";
    EXPECT_EQ(rig.device.of_kind(Kind::clear)[0].pen.colour, white);
}

TEST(ScreenPalette, every_ink_is_as_well_seen_as_on_white) {
    for (int red = 0; red <= 255; red += 51)
        for (int g = 0; g <= 255; g += 51)
            for (int blue = 0; blue <= 255; blue += 51) {
                const Colour colour = colour_of(red, g, blue);
                const double wanted = std::min(least_contrast, contrast(colour, white));
                EXPECT_GE(contrast(shown_ink(dark_desk, colour), dark_desk.ground), wanted) << colour;
            }
    EXPECT_EQ(shown_ink(dark_desk, white), dark_desk.ground);
    EXPECT_EQ(shown_ink(dark_desk, black), dark_desk.ink);
    EXPECT_LT(contrast(shown_ink(dark_desk, 0xE8E8E8), dark_desk.ground), 1.5)
        << "light lines of a grid stay light";
    EXPECT_EQ(shown_ink(dark_desk, button_text), button_text);
    EXPECT_EQ(shown_fill(dark_desk, white), dark_desk.ground);
    EXPECT_EQ(shown_fill(dark_desk, 0x808000), 0x808000);
}

}  // namespace
}  // namespace anomalis::chart

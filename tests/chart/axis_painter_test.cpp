#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "chart/tick_rule.h"
#include "chart_rig.h"

namespace anomalis::chart {
namespace {

constexpr double m = 165.0;

/// The texts whose anchor lies left of the plot, from the bottom up.
std::vector<std::string> left_numbers(const Rig& rig) {
    std::vector<std::pair<double, std::string>> found;
    for (const auto& entry : rig.device.of_kind(Kind::text))
        if (entry.angle == 0.0 && entry.points[0].x < rig.chart.PlotRect().x_low - m / 2.0 - 1.0 &&
            entry.points[0].y > 0.0)
            found.emplace_back(entry.points[0].y, entry.text);
    std::sort(found.begin(), found.end());
    std::vector<std::string> texts;
    for (const auto& [y, text] : found) texts.push_back(text);
    return texts;
}

/// Two-point lines of this length that start on the plot's side at x.
std::vector<RecordingDevice::Entry> ticks_from_x(const Rig& rig, double x, double length = 60.0) {
    auto lines = rig.device.of_kind(Kind::polyline);
    std::erase_if(lines, [&](const auto& line) {
        return line.points.size() != 2 || line.points[0].x != x || line.points[0].y != line.points[1].y ||
               std::abs(std::abs(line.points[1].x - x) - length) > 1e-6;
    });
    return lines;
}

std::vector<RecordingDevice::Entry> ticks_from_y(const Rig& rig, double y, double length = 60.0) {
    auto lines = rig.device.of_kind(Kind::polyline);
    std::erase_if(lines, [&](const auto& line) {
        return line.points.size() != 2 || line.points[0].y != y || line.points[0].x != line.points[1].x ||
               std::abs(std::abs(line.points[1].y - y) - length) > 1e-6;
    });
    return lines;
}

/// The boxes of all texts but titles and labels.
std::vector<Rect> number_boxes(const Rig& rig) {
    std::vector<Rect> boxes;
    for (const auto& entry : rig.device.of_kind(Kind::text)) {
        if (entry.text.find_first_not_of("0123456789.-") != std::string::npos) continue;
        const Point at = entry.points[0];
        boxes.push_back({at.x, at.x + rig.device.character_width * static_cast<double>(entry.text.size()),
                         at.y, at.y + rig.device.character_height});
    }
    return boxes;
}

TEST(AxisPainter, where_not_all_numbers_fit_they_are_counted_from_zero) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    EXPECT_EQ(left_numbers(rig), (std::vector<std::string>{"-200", "0", "200", "400", "600"}));
    // 404 apart, which is too near for two neighbours.
    rig.device.forget();
    rig.chart.XTickInterval(250.0);
    rig.chart.DisplayChart();
    std::vector<std::string> bottom;
    for (const auto& entry : rig.device.of_kind(Kind::text))
        if (entry.points[0].y == 577.5 - 1.5 * m) bottom.push_back(entry.text);
    EXPECT_EQ(bottom, (std::vector<std::string>{"0", "500", "1000", "1500", "2000", "2500", "3000", "3500",
                                                "4000", "4500", "5000", "5500", "6000", "6500", "7000"}));
}

TEST(AxisPainter, shorter_ticks_stand_between) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    EXPECT_EQ(ticks_from_x(rig, 772.5, 30.0).size(), 10U) << "one between every two";
    EXPECT_EQ(ticks_from_y(rig, 577.5, 30.0).size(), 7U * 9U + 4U - 0U)
        << "nine a thousand, four in the last";
    rig.device.forget();
    rig.chart.YAxisType(1);
    rig.chart.YAxisMin(1.0);
    rig.chart.YAxisMax(1000.0);
    rig.chart.YTickInterval(1.0);
    rig.chart.DisplayChart();
    EXPECT_EQ(ticks_from_x(rig, rig.chart.PlotRect().x_low).size(), 4U);
    EXPECT_EQ(ticks_from_x(rig, rig.chart.PlotRect().x_low, 30.0).size(), 24U);
}

TEST(AxisPainter, the_light_grid_stands_at_the_numbers_behind_the_series) {
    Rig rig;
    rig.make_b();
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    rig.chart.DisplayChart();
    const std::size_t without = rig.device.of_kind(Kind::polyline).size();
    rig.device.forget();
    rig.chart.LightGrid(true);
    rig.chart.DisplayChart();
    const auto lines = rig.device.of_kind(Kind::polyline);
    const Rect plot = rig.chart.PlotRect();
    std::size_t grid = 0;
    for (; grid < lines.size() && lines[grid].pen.colour != black; ++grid) {
        const auto& ends = lines[grid].points;
        EXPECT_TRUE((ends[0].x == ends[1].x && ends[0].y == plot.y_low && ends[1].y == plot.y_high) ||
                    (ends[0].y == ends[1].y && ends[0].x == plot.x_low && ends[1].x == plot.x_high));
        EXPECT_GT(red_of(lines[grid].pen.colour), 0xC0);
    }
    EXPECT_EQ(grid, number_boxes(rig).size());
    EXPECT_EQ(lines.size(), without + grid) << "all of them before frame and series";
}

TEST(AxisPainter, titles_without_room_end_in_an_ellipsis) {
    Rig rig;
    rig.make_b();
    rig.chart.Title("A title that is longer than the chart is wide");
    rig.chart.YAxisLabel("An axis label that is too long");
    rig.chart.XAxisLabel(std::string(23, 'd') + "\xC3\xA9\xC3\xA9\xC3\xA9");
    rig.device.resize(2250.0, 1800.0);
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    const std::string dots = "\xE2\x80\xA6";
    // 25 characters of 90 are as wide as the surface, 20 as high.
    EXPECT_NE(rig.device.find_text("A title that is longer t" + dots), nullptr);
    EXPECT_NE(rig.device.find_text("An axis label that" + dots), nullptr) << "no blank before it";
    EXPECT_NE(rig.device.find_text(std::string(23, 'd') + "\xC3\xA9" + dots), nullptr) << "whole letters";
    for (const auto& entry : rig.device.of_kind(Kind::text)) {
        if (entry.angle != 0.0) continue;
        EXPECT_GE(entry.points[0].x, -1e-6) << entry.text;
        EXPECT_LE(entry.points[0].x + rig.device.measure(entry.text, Font{}).width, 2250.0 + 1e-6);
    }
}

TEST(AxisPainter, ticks_are_drawn_where_the_label_is_dropped) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    const auto left = ticks_from_x(rig, 772.5);
    ASSERT_EQ(left.size(), 11U);
    EXPECT_EQ(ticks_from_x(rig, 12727.5).size(), 11U);
    EXPECT_EQ(ticks_from_y(rig, 577.5).size(), 8U);
    EXPECT_EQ(ticks_from_y(rig, 3675.0).size(), 8U);
    EXPECT_EQ(left[0].points[1].x, 772.5 + 60.0);
    EXPECT_EQ(left[0].pen, (Pen{black, 1.0, LineStyle::solid}));
    EXPECT_EQ(ticks_from_x(rig, 12727.5)[0].points[1].x, 12727.5 - 60.0);
    EXPECT_EQ(ticks_from_y(rig, 3675.0)[0].points[1].y, 3675.0 - 60.0);
}

TEST(AxisPainter, the_title_is_centred_on_the_plot_below_the_top_edge) {
    Rig rig;
    rig.make_b();
    rig.chart.DisplayChart();
    const auto* title = rig.device.find_text("Residual");
    ASSERT_NE(title, nullptr);
    EXPECT_NEAR(title->points[0].x, (772.5 + 13500.0) / 2.0 - 8 * 45.0, 1e-9);
    EXPECT_NEAR(title->points[0].y, 4500.0 - 1.25 * m, 1e-9);
}

TEST(AxisPainter, the_x_label_stands_at_the_bottom_edge_and_under_the_title) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    std::vector<double> heights;
    for (const auto& entry : rig.device.of_kind(Kind::text))
        if (entry.text == "Distance") heights.push_back(entry.points[0].y);
    EXPECT_EQ(heights, (std::vector<double>{4500.0 - 1.5 * m - 1.5 * m, 0.0}));
}

TEST(AxisPainter, the_left_title_reads_upward_and_the_right_one_downward) {
    Rig rig;
    rig.make_a();
    rig.chart.YAxisLabel("nano");
    rig.chart.DisplayChart();
    const double middle = (577.5 + 3675.0) / 2.0;
    std::vector<RecordingDevice::Entry> titles;
    for (const auto& entry : rig.device.of_kind(Kind::text))
        if (entry.text == "nano") titles.push_back(entry);
    ASSERT_EQ(titles.size(), 2U);
    // Turned by +90 degrees the box reaches from the anchor to the left, by -90 to the right.
    EXPECT_EQ(titles[0].angle, 90.0);
    EXPECT_NEAR(titles[0].points[0].x, 1.5 * m, 1e-9);
    EXPECT_NEAR(titles[0].points[0].y, middle - 2 * 90.0, 1e-9);
    EXPECT_EQ(titles[1].angle, -90.0);
    EXPECT_NEAR(titles[1].points[0].x, 13500.0 - 1.5 * m, 1e-9);
    EXPECT_NEAR(titles[1].points[0].y, middle + 2 * 90.0, 1e-9);
}

TEST(AxisPainter, beside_a_low_plot_the_y_label_is_whole) {
    Rig rig;
    rig.make_b();
    rig.chart.XAxisLabel("");
    rig.chart.YAxisLabel("mGal/tap");
    const double length = 8 * 90.0;
    rig.device.resize(13500.0, 760.0);
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    const auto* label = rig.device.find_text("mGal/tap");
    ASSERT_NE(label, nullptr);
    EXPECT_GE(label->points[0].y, 0.0);
    EXPECT_LE(label->points[0].y + length, 760.0);
}

TEST(AxisPainter, axes_off_leave_title_and_frame) {
    for (const int location : {0, 1}) {
        Rig rig;
        rig.make_a();
        rig.chart.DisplayAxes(false);
        rig.chart.AxisLabellingLocation(location);
        rig.chart.DisplayChart();
        EXPECT_EQ(rig.device.texts(), (std::vector<std::string>{"Residual"}));
        EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
        EXPECT_EQ(rig.device.of_kind(Kind::polygon_outline).size(), 1U);
    }
}

TEST(AxisPainter, the_frame_is_black_unfilled_and_optional) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    ASSERT_EQ(rig.device.of_kind(Kind::polygon_outline).size(), 1U);
    EXPECT_EQ(rig.device.of_kind(Kind::polygon_outline)[0].pen.colour, black);
    EXPECT_TRUE(rig.device.of_kind(Kind::polygon_fill).empty());
    rig.device.forget();
    rig.chart.DisplayBorder(false);
    rig.chart.DisplayChart();
    EXPECT_TRUE(rig.device.of_kind(Kind::polygon_outline).empty());
}

TEST(AxisPainter, top_numbers_touch_the_frame_and_bottom_ones_keep_half_a_height) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    std::set<double> heights;
    for (const auto& entry : rig.device.of_kind(Kind::text))
        if (entry.text == "3000") heights.insert(entry.points[0].y);
    EXPECT_EQ(heights, (std::set<double>{577.5 - 1.5 * m, 3675.0}));
}

TEST(AxisPainter, numbers_of_two_axes_do_not_meet_at_a_corner) {
    Rig rig;
    rig.make_a();
    rig.chart.XAxisMin(1000.0);
    rig.chart.XAxisMax(7000.0);
    rig.chart.YAxisMin(-400.0);
    rig.chart.YAxisMax(600.0);
    rig.chart.DisplayChart();
    const Rect plot = rig.chart.PlotRect();
    const auto at_the_top = [&](const std::string& words) {
        int found = 0;
        for (const auto& entry : rig.device.of_kind(Kind::text))
            if (entry.text == words && entry.points[0].y == plot.y_high) ++found;
        return found;
    };
    EXPECT_EQ(at_the_top("1000"), 0) << "600 stands there";
    EXPECT_EQ(at_the_top("7000"), 0);
    EXPECT_EQ(at_the_top("2000"), 1);
    // Where no number of the Y axis stands at the corner they have their own.
    rig.device.forget();
    rig.chart.YAxisMax(660.0);
    rig.chart.DisplayChart();
    EXPECT_EQ(at_the_top("1000"), 1);
    EXPECT_EQ(at_the_top("7000"), 1);
}

TEST(AxisPainter, no_two_numbers_of_a_chart_ever_overlap) {
    std::mt19937 random(7);
    const auto uniform = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int i = 0; i < 150; ++i) {
        Rig rig;
        rig.make_a();
        rig.device.resize(uniform(1500.0, 20000.0), uniform(1200.0, 9000.0));
        const double y_span = std::pow(10.0, uniform(-3.0, 5.0));
        const double y_low = uniform(-1.5, 0.5) * y_span;
        rig.set_limits(0.0, uniform(100.0, 90000.0), y_low, y_low + y_span);
        rig.chart.XTickInterval(tick_interval(0.0, rig.chart.XAxisMax()));
        rig.chart.YTickInterval(tick_interval(y_low, y_low + y_span));
        rig.chart.AxisLabellingLocation(i % 3 == 0 ? 1 : 0);
        rig.chart.XAxisLabellingPosition(i % 4);
        rig.chart.YAxisLabellingPosition((i / 4) % 4);
        if (rig.chart.DisplayChart() != 0) continue;
        rig.chart.SetZoomValues(uniform(1.0, 40.0), uniform(0.0, 1.0), uniform(1.0, 40.0), uniform(0.0, 1.0));
        rig.device.forget();
        rig.chart.RefreshGraph(0);
        const std::vector<Rect> boxes = number_boxes(rig);
        for (std::size_t a = 0; a < boxes.size(); ++a)
            for (std::size_t b = a + 1; b < boxes.size(); ++b)
                EXPECT_FALSE(boxes[a].x_low < boxes[b].x_high && boxes[b].x_low < boxes[a].x_high &&
                             boxes[a].y_low + 1e-6 < boxes[b].y_high &&
                             boxes[b].y_low + 1e-6 < boxes[a].y_high)
                    << i;
    }
}

TEST(AxisPainter, numbers_inside_are_drawn_once_and_clear_of_the_ticks) {
    Rig rig;
    rig.make_a();
    rig.chart.AxisLabellingLocation(1);
    rig.chart.DisplayChart();
    int hundreds = 0;
    std::set<double> heights;
    for (const auto& entry : rig.device.of_kind(Kind::text)) {
        if (entry.text == "300") {
            ++hundreds;
            EXPECT_NEAR(entry.points[0].x, 247.5 + m / 2.0, 1e-9);
        }
        if (entry.text == "3000") heights.insert(entry.points[0].y);
    }
    EXPECT_EQ(hundreds, 1);
    EXPECT_EQ(heights, (std::set<double>{247.5 + 0.5 * m, 4005.0 - 1.5 * m}));
    // Those that do not fit between the edges are left out.
    for (const char* text : {"0", "-300", "700"}) {
        const auto* entry = rig.device.find_text(text);
        EXPECT_TRUE(entry == nullptr || entry->points[0].x < 247.5 + m) << text;
    }
    EXPECT_EQ(rig.device.find_text("-300"), nullptr);
    EXPECT_EQ(rig.device.find_text("700"), nullptr);
}

TEST(AxisPainter, numbers_inside_asked_for_at_the_right_stand_at_the_left) {
    Rig rig;
    rig.make_a();
    rig.chart.AxisLabellingLocation(1);
    rig.chart.YAxisLabellingPosition(1);
    rig.chart.DisplayChart();
    const auto* number = rig.device.find_text("300");
    ASSERT_NE(number, nullptr);
    EXPECT_NEAR(number->points[0].x, rig.chart.PlotRect().x_low + m / 2.0, 1e-9);
}

TEST(AxisPainter, a_number_that_would_leave_the_surface_is_left_out) {
    Rig rig;
    rig.make_b();
    rig.chart.XAxisMax(7000.0);
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.device.find_text("7000"), nullptr);
    EXPECT_NE(rig.device.find_text("6000"), nullptr);
    rig.device.forget();
    rig.chart.XAxisRightMargin(180.0F);
    rig.chart.DisplayChart();
    EXPECT_NE(rig.device.find_text("7000"), nullptr);
}

TEST(AxisPainter, a_weak_gradient_has_numbers_that_differ) {
    Rig rig;
    rig.make_b();
    rig.chart.YAxisMin(-0.002);
    rig.chart.YAxisMax(0.004);
    rig.chart.YTickInterval(0.001);
    rig.chart.DisplayChart();
    EXPECT_EQ(left_numbers(rig),
              (std::vector<std::string>{"-0.002", "-0.001", "0.000", "0.001", "0.002", "0.003", "0.004"}));
}

TEST(AxisPainter, a_zoomed_axis_takes_a_finer_interval_and_the_property_stays) {
    Rig rig;
    rig.make_b();
    rig.chart.DisplayChart();
    rig.chart.SetZoomValues(8.0, 0.5, 8.0, 0.5);
    rig.device.forget();
    rig.chart.RefreshGraph(0);
    std::set<std::string> texts;
    for (const std::string& text : rig.device.texts()) texts.insert(text);
    for (const char* text : {"3400", "3600", "3800", "4000", "200", "240"})
        EXPECT_TRUE(texts.contains(text)) << text;
    EXPECT_EQ(rig.chart.XTickInterval(), 1000.0);
}

TEST(AxisPainter, an_interval_of_zero_or_less_counts_as_one) {
    for (const double interval : {0.0, -5.0, std::nan("")}) {
        Rig rig;
        rig.make_b();
        rig.chart.XAxisMax(4.0);
        rig.chart.XTickInterval(interval);
        rig.chart.DisplayChart();
        EXPECT_EQ(ticks_from_y(rig, 577.5).size(), 5U);
    }
}

TEST(AxisPainter, titles_and_numbers_have_their_own_fonts_and_one_colour) {
    Rig rig;
    rig.make_a();
    Font titles;
    titles.name = "Serif";
    titles.size = 14.0;
    rig.chart.TitleFont(titles);
    rig.chart.ForeColor(0x112233);
    rig.chart.DisplayChart();
    for (const auto& entry : rig.device.of_kind(Kind::text)) {
        const bool title = entry.text == "Residual" || entry.text == "Distance" || entry.text == "nT";
        EXPECT_EQ(entry.font, title ? titles : Font{}) << entry.text;
        EXPECT_EQ(entry.pen.colour, 0x112233);
    }
}

}  // namespace
}  // namespace anomalis::chart

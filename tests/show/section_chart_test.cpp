#include "show/section_chart.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "model/burial_depth.h"
#include "show/chart_sample.h"
#include "show/handles/handle_marks.h"
#include "show/handles/section_handles.h"
#include "show/label_place.h"
#include "support/stale_body.h"

namespace anomalis::show {

namespace {

using Kind = chart::RecordingDevice::Kind;

constexpr chart::Colour body_blue = 0xFF0000;

struct Section : ChartSample {
    explicit Section(int count = stations) : ChartSample(count) {
        // Unlabelled, so that a label in the picture is one that the test asked for.
        workspace().display.show_body_label = 0;
    }
    chart::RecordingDevice& picture() { return device(edit::chart_section); }
    void draw() {
        forget();
        view->display_model();
    }
    std::vector<chart::RecordingDevice::Entry> overlay(Kind kind) {
        return picture().of_kind(kind, chart::DrawingDevice::Layer::surface);
    }
    int fills_of(chart::Colour colour) {
        const auto fills = overlay(Kind::polygon_fill);
        return static_cast<int>(std::count_if(fills.begin(), fills.end(),
                                              [&](const auto& fill) { return fill.pen.colour == colour; }));
    }
    int sensors() {
        int count = 0;
        for (const auto& entry : overlay(Kind::markers))
            if (entry.radius == 10) count += static_cast<int>(entry.points.size());
        return count;
    }
};

}  // namespace

TEST(SectionChart, the_stride_leaves_at_most_128_sensors) {
    EXPECT_EQ(sensor_stride(1), 1);
    EXPECT_EQ(sensor_stride(128), 1);
    EXPECT_EQ(sensor_stride(129), 2);
    EXPECT_EQ(sensor_stride(1000), 8);
    Section sample(257);
    sample.draw();
    EXPECT_EQ(sample.sensors(), 86);
}

TEST(SectionChart, sensors_stand_at_their_elevation) {
    Section sample;
    sample.draw();
    EXPECT_EQ(sample.sensors(), 101);
    const auto markers = sample.overlay(Kind::markers);
    const chart::Point first = sample.chart(edit::chart_section).UserToSurface({0, 180});
    const bool found = std::any_of(markers.begin(), markers.end(), [&](const auto& entry) {
        return std::any_of(entry.points.begin(), entry.points.end(), [&](chart::Point p) {
            return std::abs(p.x - first.x) < 1 && std::abs(p.y - first.y) < 1;
        });
    });
    EXPECT_TRUE(found);
}

TEST(SectionChart, the_selected_body_is_magenta_and_the_others_have_their_colour) {
    Section sample;
    sample.add_body(1260, 60);
    sample.add_body(1807, 20);
    sample.draw();
    EXPECT_EQ(sample.fills_of(magenta), 1);
    EXPECT_EQ(sample.fills_of(body_blue), 1);
    sample.workbench.view.highlight_on = false;
    sample.draw();
    EXPECT_EQ(sample.fills_of(magenta), 0);
    EXPECT_EQ(sample.fills_of(body_blue), 2);
}

TEST(SectionChart, a_white_body_is_an_outline_unless_it_is_highlighted) {
    Section sample;
    sample.add_body(1260, 60).colour = chart::white;
    sample.draw();
    EXPECT_EQ(sample.fills_of(magenta), 1);
    sample.workbench.view.highlight_on = false;
    sample.draw();
    EXPECT_EQ(sample.overlay(Kind::polygon_fill).size(), 0U);
    EXPECT_EQ(sample.view->charts().chart(edit::chart_section).PolygonCount(), 1);
}

TEST(SectionChart, both_polygons_of_a_filled_body_lead_to_it) {
    Section sample;
    sample.add_body(1260, 60);
    sample.add_body(1807, 20).colour = chart::white;
    sample.draw();
    EXPECT_EQ(sample.view->charts().section_body(1), 1);
    EXPECT_EQ(sample.view->charts().section_body(2), 1);
    EXPECT_EQ(sample.view->charts().section_body(3), 2);
    EXPECT_EQ(sample.view->charts().section_body(4), 0);
    EXPECT_EQ(sample.view->charts().section_body(0), 0);
}

TEST(SectionChart, the_label_tells_the_burial_depth_of_the_record) {
    Section sample;
    ModelBody& body = sample.add_body(1260, 60);
    body.name = "Dyke";
    sample.workspace().display.show_body_label = 1;
    sample.draw();
    const double depth = model::ground_elevation(sample.workspace(), 1260) - 60;
    EXPECT_NEAR(body.top_elevation, depth, 1e-4);
    ASSERT_NE(sample.picture().find_text("Dyke"), nullptr);
    EXPECT_NE(sample.picture().find_text("Burial depth: 40.40 m"), nullptr);
    sample.workbench.view.body_held = true;
    sample.draw();
    EXPECT_EQ(sample.picture().find_text("Dyke"), nullptr) << "the note of the hand stands there";
}

TEST(SectionChart, the_label_stands_on_the_side_that_has_room) {
    Section sample;
    sample.workspace().display.show_body_label = 1;
    ModelBody& body = sample.add_body(400, 60);
    body.name = "Dyke";
    sample.draw();
    chart::AX_Grapher& chart = sample.chart(edit::chart_section);
    EXPECT_GT(sample.picture().find_text("Dyke")->points[0].x, chart.UserToSurface({500, 0}).x);
    body.distance.value = 2000;
    invalidate_body(body);
    sample.draw();
    EXPECT_LT(sample.picture().find_text("Dyke")->points[0].x, chart.UserToSurface({2000, 0}).x);
    body.distance.value = 9000;
    sample.draw();
    EXPECT_EQ(sample.picture().find_text("Dyke"), nullptr) << "out of view";
}

TEST(SectionChart, the_label_keeps_clear_of_the_handles) {
    constexpr double reach = 6 * handle_pixel;
    Section sample;
    sample.workspace().display.show_body_label = 1;
    ModelBody& body = sample.add_body(400, 60);
    body.name = "Dyke";
    for (const double distance : {400, 2000})
        for (const std::int32_t type : {thin_sheet, thick_sheet, pipe, wire})
            for (const double dip : {40, 90, 140}) {
                body.type = type;
                body.distance.value = static_cast<float>(distance);
                body.dip.value = static_cast<float>(dip);
                body.width.value = 8;
                body.depth_extent.value = 150;
                invalidate_body(body);
                sample.draw();
                chart::AX_Grapher& chart = sample.chart(edit::chart_section);
                const auto handles = section_handles(
                    sample.workspace(), body,
                    {chart.ViewLimits(), chart.XAxisScale(), chart.YAxisScale(), chart.YAxisMin(), 2500});
                ASSERT_FALSE(handles.empty());
                const chart::Point text = sample.picture().find_text("Dyke")->points[0];
                const double end = text.x + chart.TextWidth("Burial depth: 40.40 m");
                for (const Handle& handle : handles) {
                    const double x = handle_place(chart, handle).x;
                    EXPECT_TRUE(x + reach < text.x || x - reach > end)
                        << "type " << type << ", dip " << dip << " at " << distance << " m";
                }
            }
}

TEST(LabelPlace, a_label_moves_to_the_nearest_free_place_and_is_led_to_its_body) {
    WantedLabel wanted;
    wanted.window = {500, 10000, 0, 3000};
    wanted.width = 1800;
    wanted.height = 500;
    wanted.gap = 200;
    wanted.body = {2000, 2500, 500, 2000};
    wanted.bottom = 1500;
    const Outline own{{2000, 500}, {2500, 500}, {2500, 2000}, {2000, 2000}};
    const LabelPlace alone = place_label(wanted, {own});
    EXPECT_EQ(alone.box, (chart::Rect{2700, 4500, 1500, 2000}));
    EXPECT_FALSE(alone.leader_from.has_value());
    // Another body reaches into the place.
    const Outline other{{2600, 1400}, {9000, 1400}, {9000, 3000}, {2600, 3000}};
    const LabelPlace below = place_label(wanted, {own, other});
    EXPECT_FALSE(covers(below.box, own));
    EXPECT_FALSE(covers(below.box, other));
    EXPECT_LT(below.box.y_high, 1400);
    // Both sides full: it stands above, with a line to its body.
    const Outline floor{{0, 0}, {10000, 0}, {10000, 2100}, {0, 2100}};
    const LabelPlace above = place_label(wanted, {own, floor});
    EXPECT_GT(above.box.y_low, 2100);
    ASSERT_TRUE(above.leader_from.has_value());
    EXPECT_EQ(nearest_point(own, *above.leader_from).y, 2000);
    // Without any room it stays inside the window.
    const LabelPlace nowhere = place_label(wanted, {{{0, 0}, {10000, 0}, {10000, 3000}, {0, 3000}}});
    EXPECT_GE(nowhere.box.x_low, 0);
    EXPECT_LE(nowhere.box.x_high, 10000);
}

TEST(LabelPlace, an_outline_covers_a_box_that_it_crosses_or_holds) {
    const Outline triangle{{0, 0}, {100, 0}, {0, 100}};
    EXPECT_TRUE(covers({10, 20, 10, 20}, triangle)) << "holds";
    EXPECT_TRUE(covers({-50, 150, -50, 150}, triangle)) << "is held";
    EXPECT_TRUE(covers({40, 90, 40, 90}, triangle)) << "crosses";
    EXPECT_FALSE(covers({60, 90, 60, 90}, triangle));
    EXPECT_FALSE(covers({10, 20, -20, -10}, triangle));
}

TEST(SectionChart, the_label_stands_over_no_body) {
    Section sample;
    sample.workspace().display.show_body_label = 1;
    for (const float distance : {600.0F, 900.0F, 1150.0F, 1300.0F, 1600.0F, 2100.0F})
        sample.add_body(distance, distance < 1200 ? 60 : 20).depth_extent.value = 150;
    for (int number = 1; number <= 6; ++number) {
        sample.workbench.view.current_body = number;
        ModelBody& body = sample.workspace().body(number);
        body.name = "Dyke";
        invalidate_body(body);
        sample.draw();
        const auto* name = sample.picture().find_text("Dyke");
        ASSERT_NE(name, nullptr);
        chart::AX_Grapher& chart = sample.chart(edit::chart_section);
        const double width = chart.TextWidth("Burial depth: 40.40 m");
        const chart::Point at = name->points[0];
        const chart::Rect box{at.x, at.x + width, at.y - 330, at.y + 165};
        // A body's outline is told with its first point once more; the frame has four.
        for (const auto& outline : sample.overlay(Kind::polygon_outline))
            EXPECT_TRUE(outline.points.size() == 4 || !covers(box, outline.points)) << number;
        body.name = "other";
    }
}

TEST(SectionChart, grid_lines_stand_at_multiples_inside_the_window) {
    Section sample;
    sample.workspace().drawing.profile_grid_spacing = 500;
    sample.draw();
    int upright = 0;
    for (const auto& line : sample.overlay(Kind::polyline))
        if (line.pen.style == chart::LineStyle::dash_dot) ++upright;
    EXPECT_GE(upright, 4);
    EXPECT_LE(upright, 6);
    sample.workspace().drawing.profile_grid_spacing = 0.0001F;
    sample.draw();
    for (const auto& line : sample.overlay(Kind::polyline))
        EXPECT_NE(line.pen.style, chart::LineStyle::dash_dot);
}

TEST(SectionChart, nothing_is_drawn_outside_the_plot) {
    Section sample;
    sample.add_body(1260, 60).depth_extent.value = 100000;
    sample.add_body(2490, 20).width.value = 5000;
    sample.draw();
    const chart::Rect plot = sample.chart(edit::chart_section).PlotRect();
    for (const Kind kind : {Kind::polygon_fill, Kind::polygon_outline})
        for (const auto& entry : sample.overlay(kind))
            for (const chart::Point& point : entry.points) EXPECT_TRUE(plot.contains(point, 1.0));
}

}  // namespace anomalis::show

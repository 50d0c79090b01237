#include "show/plan_chart.h"

#include <gtest/gtest.h>

#include "show/chart_sample.h"
#include "show/section_chart.h"

namespace anomalis::show {

namespace {

struct Plan : ChartSample {
    Plan() { workbench.view.show_plan = true; }
    chart::RecordingDevice& picture() { return device(edit::model_chart_count); }
    void draw() {
        forget();
        view->display_model();
    }
};

}  // namespace

TEST(PlanChart, a_line_due_east_gets_a_window_about_the_line) {
    Plan sample;
    sample.draw();
    const chart::Rect shown = sample.plan().ViewLimits();
    EXPECT_NEAR((shown.y_low + shown.y_high) / 2, 7000000, 1);
    EXPECT_LE(shown.x_low, 500000);
    EXPECT_GE(shown.x_high, 502500);
    EXPECT_GT(shown.height(), 300);
}

TEST(PlanChart, a_line_due_north_opens_to_the_sides) {
    Plan sample;
    Workspace& w = sample.workspace();
    w.x_min = w.x_max = 500000;
    w.y_min = 7000000;
    w.y_max = 7002500;
    sample.draw();
    const chart::Rect shown = sample.plan().ViewLimits();
    EXPECT_NEAR((shown.x_low + shown.x_high) / 2, 500000, 1);
    EXPECT_LE(shown.y_low, 7000000);
    EXPECT_GE(shown.y_high, 7002500);
    EXPECT_GT(shown.width(), shown.height());
}

TEST(PlanChart, a_survey_of_one_place_has_a_window) {
    Workspace w;
    w.x_min = w.x_max = 500000;
    w.y_min = w.y_max = 7000000;
    const chart::Rect limits = survey_limits(w);
    EXPECT_GT(limits.width(), 0);
    EXPECT_GT(limits.height(), 0);
}

TEST(PlanChart, a_metre_is_as_long_to_the_east_as_to_the_north) {
    Plan sample;
    sample.draw();
    EXPECT_NEAR(sample.plan().XAxisScale() / sample.plan().YAxisScale(), 1, 1e-9);
}

TEST(PlanChart, outlines_reach_to_the_edges_of_what_is_shown) {
    Plan sample;
    sample.add_body(1260, 60).length.value = 0;  // drawn across the plan
    sample.workspace().drawing.infinite_body_length = 0;
    sample.draw();
    const chart::Rect shown = sample.plan().FullRange();
    double lowest = shown.y_high;
    for (const auto& outline : sample.picture().of_kind(chart::RecordingDevice::Kind::polygon_fill))
        for (const chart::Point& corner : outline.points)
            lowest = std::min(lowest, sample.plan().SurfaceToUser(corner).y);
    EXPECT_NEAR(lowest, shown.y_low, 1);
}

TEST(PlanChart, bodies_are_filled_outlines_that_lead_back_to_them) {
    Plan sample;
    sample.add_body(1260, 60);
    sample.add_body(1807, 20);
    sample.draw();
    EXPECT_EQ(sample.plan().PolygonCount(), 4);
    EXPECT_EQ(sample.view->charts().plan_body(1), 1);
    EXPECT_EQ(sample.view->charts().plan_body(4), 2);
    int magenta_fills = 0;
    for (const auto& fill : sample.picture().of_kind(chart::RecordingDevice::Kind::polygon_fill))
        if (fill.pen.colour == magenta) ++magenta_fills;
    EXPECT_EQ(magenta_fills, 1);
}

TEST(PlanChart, a_sphere_has_its_marker_alone) {
    Plan sample;
    sample.add_body(1260, 60, sphere);
    sample.draw();
    EXPECT_EQ(sample.plan().PolygonCount(), 0);
    EXPECT_EQ(sample.plan().SavedCount(), 1);
}

TEST(PlanChart, every_station_is_a_point) {
    Plan sample;
    sample.draw();
    std::size_t points = 0;
    for (const auto& entry :
         sample.picture().of_kind(chart::RecordingDevice::Kind::markers, chart::DrawingDevice::Layer::base))
        if (entry.radius == 25) points += entry.points.size();
    EXPECT_EQ(points, static_cast<std::size_t>(edit::LineSample::stations));
}

TEST(PlanChart, the_curves_are_drawn_beside_the_plan) {
    Plan sample;
    sample.draw();
    EXPECT_TRUE(sample.chart(edit::chart_mag).HasPlotDefined());
    EXPECT_FALSE(sample.chart(edit::chart_section).HasPlotDefined());
    EXPECT_EQ(sample.chart(edit::chart_grav_gradient).XAxisLabel(), "Distance (m)");
}

}  // namespace anomalis::show

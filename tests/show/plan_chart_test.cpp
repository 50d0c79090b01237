#include "show/plan_chart.h"

#include <cmath>
#include <functional>
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
    /// The stations stand where `place` says, by their distance.
    void put_stations(const std::function<chart::Point(double)>& place) {
        Workspace& w = workspace();
        w.x_min = w.y_min = 1e12;
        w.x_max = w.y_max = -1e12;
        for (int i = 1; i <= w.station_count; ++i) {
            const chart::Point at = place(w.distances[i]);
            w.stations(i, column_east) = at.x;
            w.stations(i, column_north) = at.y;
            w.x_min = std::min(w.x_min, at.x);
            w.x_max = std::max(w.x_max, at.x);
            w.y_min = std::min(w.y_min, at.y);
            w.y_max = std::max(w.y_max, at.y);
        }
    }
    void turn_north() {
        put_stations([](double d) { return chart::Point{500000, 7000000 + d}; });
    }
    /// How far, in surface units, the station at a distance stands from below its place on the curve.
    double off(double distance) {
        const auto line = straight_line(workspace());
        return plan().UserToSurface(line->place(distance)).x -
               chart(edit::chart_mag).UserToSurface({distance, 0}).x;
    }
    std::vector<chart::RecordingDevice::Entry> texts() {
        auto texts = picture().of_kind(chart::RecordingDevice::Kind::text);
        std::erase_if(texts, [](const auto& text) { return !text.text.ends_with(" m"); });
        return texts;
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
    sample.turn_north();
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
    sample.draw();
    const int distances = sample.plan().SavedCount();
    sample.add_body(1260, 60, sphere);
    sample.draw();
    EXPECT_EQ(sample.plan().PolygonCount(), 0);
    EXPECT_EQ(sample.plan().SavedCount(), distances + 1);
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

TEST(PlanChart, the_stations_of_a_straight_line_to_the_east_stand_below_their_places_on_the_curves) {
    Plan sample;
    for (const double north : {0.0, 0.05, -0.1}) {
        sample.put_stations([&](double d) {
            return chart::Point{500000 + d * std::sqrt(1 - north * north), 7000000 + d * north};
        });
        sample.draw();
        EXPECT_TRUE(sample.view->charts().plan_in_line());
        for (const double d : {0.0, 700.0, 2500.0}) EXPECT_NEAR(sample.off(d), 0, 7.5) << north << ", " << d;
        sample.view->choose_zoom_factor(5);
        for (const double d : {1100.0, 1400.0}) EXPECT_NEAR(sample.off(d), 0, 7.5) << north << ", " << d;
        sample.chart(edit::chart_grav).HandleWheel(0, 480, 9000, 1500);
        for (const double d : {1200.0, 1400.0}) EXPECT_NEAR(sample.off(d), 0, 7.5) << north << ", " << d;
        EXPECT_NEAR(sample.plan().XAxisScale() / sample.plan().YAxisScale(), 1, 1e-9);
        sample.view->pan_to(20);
        for (const double d : {1300.0, 1500.0}) EXPECT_NEAR(sample.off(d), 0, 7.5) << north << ", " << d;
        sample.view->reset_graph_scale();
        // The plan leads as well.
        sample.plan().HandleWheel(0, 360, 5000, 1500);
        EXPECT_GT(sample.chart(edit::chart_mag).CurrentZoom().zoom_x, 1.2);
        for (const double d : {700.0, 1200.0}) EXPECT_NEAR(sample.off(d), 0, 7.5) << north << ", " << d;
        sample.view->reset_graph_scale();
    }
}

TEST(PlanChart, its_plot_is_in_line_with_the_curves_whatever_the_line_is) {
    Plan sample;
    const auto in_line = [&] {
        const chart::Rect plan = sample.plan().PlotRect();
        const chart::Rect curve = sample.chart(edit::chart_mag).PlotRect();
        return plan.x_low == curve.x_low && plan.x_high == curve.x_high;
    };
    sample.draw();
    EXPECT_TRUE(in_line());
    sample.turn_north();
    sample.draw();
    EXPECT_TRUE(in_line());
    EXPECT_FALSE(sample.view->charts().plan_in_line());
    sample.put_stations([](double d) {
        return chart::Point{500000 + d, 7000000 + (d > 1250 ? d - 1250 : 0)};
    });
    sample.draw();
    EXPECT_TRUE(in_line());
    EXPECT_FALSE(sample.view->charts().plan_in_line());
    EXPECT_FALSE(straight_line(sample.workspace()).has_value());
    EXPECT_TRUE(sample.texts().empty()) << "a bent line has no distances along it";
}

TEST(PlanChart, distances_stand_along_a_straight_line_as_on_the_axis_of_the_curves) {
    Plan sample;
    for (const double azimuth : {0.0, 40.0, 90.0, 200.0, 270.0, 310.0}) {
        const double a = azimuth * 3.14159265358979 / 180;
        sample.put_stations([&](double d) {
            return chart::Point{500000 + d * std::sin(a), 7000000 + d * std::cos(a)};
        });
        sample.draw();
        const auto texts = sample.texts();
        EXPECT_GE(texts.size(), 2U) << azimuth;
        for (const auto& text : texts) {
            const double distance = std::stod(text.text);
            EXPECT_EQ(std::fmod(distance, 500.0), 0) << text.text;
            // Beside its station: no further than its own size.
            const chart::Point at =
                sample.plan().UserToSurface(straight_line(sample.workspace())->place(distance));
            const chart::Point middle{text.points[0].x + 45.0 * static_cast<double>(text.text.size()),
                                      text.points[0].y + 82.5};
            EXPECT_LT(std::hypot(middle.x - at.x, middle.y - at.y), 600) << azimuth << ": " << text.text;
            EXPECT_GT(std::hypot(middle.x - at.x, middle.y - at.y), 100) << azimuth << ": " << text.text;
            for (const auto& other : texts) {
                if (other.text == text.text) continue;
                const double dx = std::abs(other.points[0].x - text.points[0].x);
                const double dy = std::abs(other.points[0].y - text.points[0].y);
                EXPECT_TRUE(dx > 90.0 * 3 || dy >= 165) << azimuth << ": " << text.text << other.text;
            }
        }
    }
}

}  // namespace anomalis::show

#include "flow/model_view.h"

#include <gtest/gtest.h>

#include "core/numbers.h"
#include "core/pacer.h"
#include "model/refresh_model.h"
#include "show/chart_sample.h"
#include "support/stale_body.h"

namespace anomalis::flow {

namespace {

/// The bodies that the section has drawn, corner by corner.
std::vector<chart::Point> section_corners(show::ChartSample& sample) {
    std::vector<chart::Point> corners;
    for (const auto& entry :
         sample.device(edit::chart_section).of_kind(chart::RecordingDevice::Kind::polygon_outline))
        corners.insert(corners.end(), entry.points.begin(), entry.points.end());
    return corners;
}

}  // namespace

TEST(ModelView, nothing_is_drawn_off_the_page_or_without_a_line) {
    show::ChartSample sample;
    sample.forget();
    sample.view->set_on_page(false);
    sample.view->display_model();
    EXPECT_EQ(sample.displays, 0);
    sample.view->display_model(true);
    EXPECT_EQ(sample.displays, 1);
    sample.view->set_on_page(true);
    drop_stations(sample.workspace());
    sample.view->display_model();
    EXPECT_EQ(sample.displays, 1);
}

TEST(ModelView, all_charts_show_the_same_distances_under_each_other) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    EXPECT_TRUE(sample.prompts.messages.empty());
    for (int i = 0; i < edit::model_chart_count; ++i) {
        EXPECT_EQ(sample.chart(i).ViewLimits().x_low, 0);
        EXPECT_EQ(sample.chart(i).ViewLimits().x_high, edit::LineSample::length);
        EXPECT_NEAR(sample.chart(i).PlotRect().x_low, sample.chart(0).PlotRect().x_low, 0.5);
        EXPECT_NEAR(sample.chart(i).PlotRect().x_high, sample.chart(0).PlotRect().x_high, 0.5);
    }
}

TEST(ModelView, the_section_has_equal_scales) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    EXPECT_NEAR(show::vertical_stretch(sample.chart(edit::chart_section)), 1, 1e-3);
}

TEST(ModelView, charts_without_data_are_not_drawn) {
    show::ChartSample sample;
    sample.workspace().definition.grav_column = 0;
    sample.load();
    sample.forget();
    sample.view->display_model();
    EXPECT_FALSE(sample.arranged[edit::chart_grav]);
    EXPECT_TRUE(sample.device(edit::chart_grav).entries.empty());
    EXPECT_FALSE(sample.device(edit::chart_mag).entries.empty());
}

TEST(ModelView, a_change_of_the_model_keeps_the_zoom) {
    show::ChartSample sample;
    ModelBody& body = sample.add_body(1260, 60);
    sample.view->display_model();
    sample.view->choose_zoom_factor(5);
    sample.view->step_zoom(edit::chart_mag, 1);
    const chart::Rect zoomed = sample.chart(edit::chart_mag).ViewLimits();
    const chart::Rect self_scaled = sample.chart(edit::chart_grav).ViewLimits();
    body.susc.value *= 5;
    body.density.value *= 50;
    invalidate_body(body);
    sample.view->display_model();
    EXPECT_EQ(sample.chart(edit::chart_mag).ViewLimits(), zoomed);
    EXPECT_EQ(sample.chart(edit::chart_grav).ViewLimits().x_low, self_scaled.x_low);
    EXPECT_GT(sample.chart(edit::chart_grav).ViewLimits().y_high, self_scaled.y_high);
}

TEST(ModelView, another_model_is_shown_in_place_of_the_open_one) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.forget();
    sample.view->display_model();
    const auto open_section = section_corners(sample);
    ASSERT_FALSE(open_section.empty());
    Workspace other = sample.workspace();
    other.body(1).distance.value = 400;
    other.body(1).susc.value *= 4;
    Faults faults;
    model::refresh_numbers(other, faults, no_pace());
    const float before = sample.workspace().mag.data(50, row_raw, stage_calculated);
    sample.forget();
    sample.view->show_preview(other);
    EXPECT_TRUE(sample.view->previewing());
    EXPECT_NE(section_corners(sample), open_section);
    EXPECT_EQ(sample.workspace().mag.data(50, row_raw, stage_calculated), before);
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    sample.view->choose_zoom_factor(3);
    EXPECT_TRUE(sample.view->previewing()) << "it can be looked at from near";
    sample.click(edit::chart_section, {430, 40});
    EXPECT_EQ(sample.selections, 0) << "its bodies are none of the open model";
    sample.view->choose_zoom_factor(0);
    sample.forget();
    sample.view->end_preview();
    EXPECT_FALSE(sample.view->previewing());
    EXPECT_EQ(section_corners(sample), open_section);
}

TEST(ModelView, the_open_model_takes_the_charts_back_when_it_is_displayed) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    const Workspace other = sample.workspace();
    sample.view->show_preview(other);
    sample.view->display_model();
    EXPECT_FALSE(sample.view->previewing());
    sample.view->show_preview(other);
    sample.view->clear_charts();
    EXPECT_FALSE(sample.view->previewing());
    drop_stations(sample.workspace());
    sample.view->show_preview(other);
    EXPECT_FALSE(sample.view->previewing()) << "without a line there is nothing to show";
}

TEST(ModelView, reset_undoes_every_zoom_and_pan) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    const chart::Rect before = sample.chart(edit::chart_mag).ViewLimits();
    sample.view->choose_zoom_factor(4);
    sample.view->pan_to(33);
    sample.view->step_zoom(edit::chart_mag, 1);
    sample.view->step_pan(edit::chart_mag, 1);
    sample.chart(edit::chart_grav).HandleWheel(0, 360, 7000, 1500);
    sample.view->reset_graph_scale();
    for (int i = 0; i < edit::model_chart_count; ++i)
        EXPECT_EQ(sample.chart(i).ViewLimits().width(), edit::LineSample::length) << i;
    EXPECT_EQ(sample.chart(edit::chart_mag).ViewLimits(), before);
    EXPECT_FALSE(sample.window.by_hand);
}

TEST(ModelView, a_gesture_on_one_chart_moves_the_others_along_the_distance) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    const chart::Rect other = sample.chart(edit::chart_grav).ViewLimits();
    sample.chart(edit::chart_mag).HandleWheel(0, 480, 7000, 1500);
    const chart::Rect led = sample.chart(edit::chart_mag).ViewLimits();
    ASSERT_LT(led.width(), edit::LineSample::length * 0.8);
    for (int i = 1; i < edit::model_chart_count; ++i) {
        EXPECT_NEAR(sample.chart(i).ViewLimits().x_low, led.x_low, 0.01);
        EXPECT_NEAR(sample.chart(i).ViewLimits().x_high, led.x_high, 0.01);
    }
    EXPECT_NEAR(sample.chart(edit::chart_grav).ViewLimits().y_low, other.y_low, 1e-6);
    EXPECT_TRUE(sample.window.by_hand);
    sample.chart(edit::chart_grav).HandleDoubleClick(1);
    EXPECT_EQ(sample.chart(edit::chart_mag).ViewLimits().x_high, edit::LineSample::length);
    EXPECT_FALSE(sample.window.by_hand);
}

TEST(ModelView, after_a_zoom_by_hand_the_factor_is_told_and_the_pan_bar_works_on) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    for (const int listed : {0, 3}) {
        sample.view->choose_zoom_factor(listed);
        sample.chart(edit::chart_mag).HandleWheel(0, 480, 7000, 1500);
        const chart::Rect led = sample.chart(edit::chart_mag).ViewLimits();
        EXPECT_TRUE(sample.window.by_hand);
        EXPECT_NEAR(sample.window.factor, edit::LineSample::length / led.width(), 1e-3);
        ASSERT_GT(sample.window.pan_limit, 20);
        sample.view->pan_to(sample.window.pan_limit);
        for (int i = 0; i < edit::model_chart_count; ++i) {
            const chart::Rect now = sample.chart(i).ViewLimits();
            EXPECT_NEAR(now.x_high, edit::LineSample::length, 0.5) << i;
            EXPECT_NEAR(now.width(), led.width(), 0.5) << i;
        }
        EXPECT_NEAR(sample.chart(edit::chart_mag).ViewLimits().y_low, led.y_low, 1e-6)
            << "vertically as it was";
        sample.view->pan_to(-sample.window.pan_limit);
        EXPECT_NEAR(sample.chart(edit::chart_section).ViewLimits().x_low, 0, 0.5);
    }
}

TEST(ModelView, the_charts_stay_in_line_while_a_wheel_turns_on_one_of_them) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    const chart::Rect start = sample.chart(edit::chart_mag).PlotRect();
    for (const int leader : {edit::chart_mag, edit::chart_grav_gradient, edit::chart_section}) {
        const float x = 6100, y = 1500;
        const double held = sample.chart(leader).SurfaceToUser({x, 3000 - y}).x;
        for (int step = 0; step < 60; ++step) {
            sample.chart(leader).HandleWheel(0, step < 45 ? 120 : -120, x, y);
            for (int i = 0; i < edit::model_chart_count; ++i) {
                EXPECT_EQ(sample.chart(i).PlotRect().x_low, start.x_low)
                    << leader << ", " << step << ", " << i;
                EXPECT_EQ(sample.chart(i).PlotRect().x_high, start.x_high);
                EXPECT_NEAR(sample.chart(i).UserToSurface({held, 0}).x, x, 7.5) << leader << ", " << i;
            }
        }
        sample.view->reset_graph_scale();
    }
}

TEST(ModelView, the_zoom_list_overrules_a_gesture) {
    show::ChartSample sample;
    sample.view->display_model();
    sample.chart(edit::chart_mag).HandleWheel(0, 960, 12000, 1500);
    const chart::Rect by_hand = sample.chart(edit::chart_mag).ViewLimits();
    sample.view->choose_zoom_factor(3);
    for (int i = 0; i < edit::model_chart_count; ++i)
        EXPECT_NEAR(sample.chart(i).ViewLimits().width(), edit::LineSample::length / 2, 0.01);
    EXPECT_FALSE(sample.window.by_hand);
    EXPECT_LT(sample.chart(edit::chart_mag).ViewLimits().x_low, by_hand.x_low) << "about what was shown";
    EXPECT_GT(sample.chart(edit::chart_mag).ViewLimits().x_high, by_hand.x_high);
}

TEST(ModelView, a_sheet_without_depth_follows_the_vertical_zoom) {
    show::ChartSample sample;
    sample.add_body(1260, 60).depth_extent.value = 0;
    sample.view->display_model();
    sample.view->step_zoom(edit::chart_section, 1);
    const chart::Rect plot = sample.chart(edit::chart_section).PlotRect();
    double lowest = plot.y_high;
    sample.forget();
    sample.view->display_maginv_model(edit::chart_section);
    for (const auto& fill :
         sample.device(edit::chart_section).of_kind(chart::RecordingDevice::Kind::polygon_fill))
        for (const chart::Point& point : fill.points) lowest = std::min(lowest, point.y);
    EXPECT_NEAR(lowest, plot.y_low, 1);
}

TEST(ModelView, a_click_selects_a_body_and_shows_it) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.add_body(1807, 20);
    sample.view->display_model();
    sample.click(edit::chart_section, {1850, -50});
    EXPECT_EQ(sample.workbench.view.current_body, 2);
    EXPECT_EQ(sample.selections, 1);
    sample.click(edit::chart_section, {1850, -50});
    EXPECT_EQ(sample.selections, 1) << "it is the current one already";
    sample.click(edit::chart_section, {600, -50});
    EXPECT_EQ(sample.workbench.view.current_body, 2) << "beside every body";
}

TEST(ModelView, both_misfits_are_told_after_every_display) {
    show::ChartSample sample;
    ModelBody& body = sample.add_body(1260, 60);
    sample.view->display_model();
    const MisfitPair before = sample.misfit;
    EXPECT_GT(before[0], 0);
    body.susc.value *= 3;
    invalidate_body(body);
    sample.view->display_model();
    EXPECT_NE(sample.misfit[0], before[0]);
}

TEST(ModelView, with_a_floating_magnetic_base_its_box_ends_up_showing_the_gravity_base) {
    show::ChartSample sample;
    sample.workspace().mag.float_base = 1;
    sample.workspace().grav.base = 12.5F;
    invalidate_filtered_data(0, sample.workspace());
    sample.view->display_model();
    ASSERT_EQ(sample.base_levels.size(), 2U);
    EXPECT_EQ(sample.base_levels[0].substr(0, 2), "51");
    EXPECT_EQ(sample.base_levels[1], "12.500");
    sample.base_levels.clear();
    sample.workspace().mag.float_base = 0;
    sample.workspace().grav.float_base = 1;
    sample.view->display_model();
    EXPECT_TRUE(sample.base_levels.empty()) << "the gravity flag alone shows nothing in the box of magnetics";
    EXPECT_EQ(sample.grav_base_levels.size(), 1U);
}

TEST(ModelView, with_gravity_alone_no_box_of_magnetics_shows_its_base) {
    show::ChartSample sample;
    Workspace& workspace = sample.workspace();
    workspace.definition.mag_column = 0;
    workspace.mag.float_base = workspace.grav.float_base = 1;
    invalidate_filtered_data(0, workspace);
    sample.view->display_model();
    EXPECT_TRUE(sample.base_levels.empty());
    ASSERT_EQ(sample.grav_base_levels.size(), 1U);
    EXPECT_EQ(sample.grav_base_levels[0], format_number(workspace.grav.base, "0.000"));
}

TEST(ModelView, toggling_the_plan_calculates_the_section_anew) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    sample.view->update_section_or_plan_view(true);
    EXPECT_EQ(sample.plan().PolygonCount(), 2);
    ModelBody& body = sample.workspace().body(1);
    body.response(50, 1) = 4711;
    sample.view->update_section_or_plan_view(false);
    EXPECT_NE(body.response(50, 1), 4711);
    EXPECT_TRUE(sample.chart(edit::chart_section).HasPlotDefined());
}

TEST(ModelView, clearing_forgets_pictures_and_clicks) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.view->display_model();
    ASSERT_EQ(sample.view->charts().section_body(1), 1);
    sample.view->clear_charts();
    EXPECT_FALSE(sample.chart(edit::chart_mag).HasPlotDefined());
    EXPECT_EQ(sample.view->charts().section_body(1), 0);
}

TEST(ModelView, equal_scales_are_kept_under_zoom_when_asked_for) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.workspace().display.maintain_aspect_ratio = 1;
    sample.view->display_model();
    const double top = sample.chart(edit::chart_section).ViewLimits().y_high;
    sample.view->choose_zoom_factor(5);
    EXPECT_NEAR(show::vertical_stretch(sample.chart(edit::chart_section)), 1, 1e-3);
    EXPECT_NEAR(sample.chart(edit::chart_section).ViewLimits().y_high, top, 0.01);
}

TEST(ModelView, charts_too_small_to_draw_do_no_harm) {
    show::ChartSample sample;
    sample.add_body(1260, 60);
    sample.workspace().display.show_body_label = 1;
    for (const double size : {0.0, 15.0, 200.0, 15000.0}) {
        for (auto& device : sample.devices) device->resize(size, size);
        sample.view->display_model();
        sample.view->choose_zoom_factor(2);
        sample.view->step_zoom(edit::chart_section, 1);
        sample.view->reset_graph_scale();
    }
    EXPECT_TRUE(sample.prompts.messages.empty());
    EXPECT_TRUE(sample.chart(edit::chart_section).HasPlotDefined());
}

}  // namespace anomalis::flow

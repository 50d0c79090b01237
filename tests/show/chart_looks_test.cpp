#include <algorithm>
#include <gtest/gtest.h>

#include "chart/colour_contrast.h"
#include "edit/body_colours.h"
#include "show/chart_sample.h"
#include "show/crosshair_lines.h"

// How the charts of a line look: curves, legend, crosshair.
namespace anomalis::show {

namespace {

using Kind = chart::RecordingDevice::Kind;

bool has_line(const chart::RecordingDevice& device, CurveLook look) {
    return std::ranges::any_of(device.entries, [&](const auto& entry) {
        return entry.kind == Kind::polyline && entry.pen.colour == look.colour &&
               entry.pen.width == look.width;
    });
}

std::vector<std::string> picture_texts(chart::AX_Grapher& chart) {
    chart::RecordingDevice page(15000, 3000);
    EXPECT_EQ(chart.DrawTo(page, chart::OutputTarget::metafile, chart::screen_mapping(3000)), 0);
    return page.texts();
}

bool has(const std::vector<std::string>& texts, const char* words) {
    return std::ranges::find(texts, words) != texts.end();
}

std::vector<std::string> told(ChartSample& sample, int index) {
    chart::RecordingDevice top(15000, 3000);
    sample.chart(index).DrawTopLayer(top);
    return top.texts();
}

}  // namespace

TEST(ChartLooks, curves_have_the_colours_and_widths_that_a_person_likes) {
    ChartSample sample;
    sample.add_body(1250, 60);
    sample.view->display_model();
    EXPECT_TRUE(has_line(sample.device(edit::chart_mag), {0, 1}));
    EXPECT_TRUE(has_line(sample.device(edit::chart_mag), {65280, 2}));
    Preferences& preferences = sample.workbench.session.preferences;
    preferences.observed = {0x0000C0, 3};
    preferences.calculated = {0xC00000, 5};
    sample.forget();
    sample.view->redraw();
    EXPECT_TRUE(has_line(sample.device(edit::chart_mag), preferences.observed));
    EXPECT_TRUE(has_line(sample.device(edit::chart_grav), preferences.calculated));
    EXPECT_FALSE(has_line(sample.device(edit::chart_mag), {65280, 2}));
}

TEST(ChartLooks, the_calculated_curve_is_seen_on_white) {
    ChartSample sample;
    sample.add_body(1250, 60);
    sample.view->display_model();
    double best = 0;
    for (const auto& entry : sample.device(edit::chart_mag).entries)
        if (entry.kind == Kind::polyline && entry.pen.width > 2)
            best = std::max(best, chart::contrast(entry.pen.colour, chart::white));
    EXPECT_GE(best, chart::least_contrast);
}

TEST(ChartLooks, legend_and_grid_stand_on_screen_by_choice_and_the_legend_in_every_picture) {
    ChartSample sample;
    sample.add_body(1250, 60);
    sample.view->display_model();
    const chart::RecordingDevice& device = sample.device(edit::chart_mag);
    EXPECT_FALSE(has(device.texts(), "Observed"));
    EXPECT_TRUE(has(picture_texts(sample.chart(edit::chart_mag)), "Observed"));
    EXPECT_TRUE(has(picture_texts(sample.chart(edit::chart_grav)), "Calculated"));
    EXPECT_FALSE(sample.chart(edit::chart_section).LightGrid());
    sample.workbench.session.preferences.legend = true;
    sample.workbench.session.preferences.grid = true;
    sample.forget();
    sample.view->redraw();
    EXPECT_TRUE(has(device.texts(), "Observed"));
    EXPECT_TRUE(has(device.texts(), "Calculated"));
    EXPECT_FALSE(has(sample.device(edit::chart_section).texts(), "Ground"));
    EXPECT_TRUE(sample.chart(edit::chart_mag).LightGrid() && sample.chart(edit::chart_section).LightGrid());
}

TEST(ChartLooks, one_crosshair_runs_through_all_charts_and_tells_their_values) {
    ChartSample sample;
    sample.add_body(1250, 60);
    sample.view->display_model();
    sample.forget();
    sample.move(edit::chart_mag, {1260, 10});
    const auto pointed = told(sample, edit::chart_mag);
    ASSERT_EQ(pointed.size(), 4U);
    EXPECT_TRUE(pointed[0].starts_with("Distance 126") && pointed[0].ends_with(" m")) << pointed[0];
    EXPECT_TRUE(pointed[1].starts_with("Pointer ") && pointed[1].ends_with(" nT")) << pointed[1];
    EXPECT_TRUE(pointed[2].starts_with("Observed ") && pointed[2].ends_with(" nT")) << pointed[2];
    EXPECT_TRUE(pointed[3].starts_with("Calculated ") && pointed[3].ends_with(" nT")) << pointed[3];
    const auto linked = told(sample, edit::chart_grav);
    ASSERT_EQ(linked.size(), 2U);
    EXPECT_TRUE(linked[0].starts_with("Observed ") && linked[0].ends_with(" mGal")) << linked[0];
    const auto section = told(sample, edit::chart_section);
    ASSERT_EQ(section.size(), 1U);
    EXPECT_TRUE(section[0].starts_with("Ground ") && section[0].ends_with(" m")) << section[0];
    for (int i = 0; i < edit::model_chart_count; ++i)
        EXPECT_TRUE(sample.device(i).of_kind(Kind::clear).empty()) << "nothing is drawn anew";
    sample.chart(edit::chart_mag).HandleMouseLeave();
    for (int i = 0; i < edit::model_chart_count; ++i) EXPECT_TRUE(told(sample, i).empty());
}

TEST(ChartLooks, the_crosshair_tells_elevation_and_depth_in_the_section) {
    ChartSample sample;
    sample.add_body(1250, 60);
    sample.view->display_model();
    const Workspace& workspace = sample.workbench.session.workspace;
    const int station = nearest_station(workspace, 1000);
    const double ground = workspace.stations(station, column_ground);
    const chart::Point below{1000, ground - 50};
    const auto lines =
        crosshair_lines(workspace, edit::chart_section, sample.chart(edit::chart_section), 1000, &below);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[0].starts_with("Distance 1000") && lines[0].ends_with(" m")) << lines[0];
    EXPECT_TRUE(lines[1].starts_with("Elevation ") && lines[1].ends_with(" m")) << lines[1];
    EXPECT_TRUE(lines[2].starts_with("Depth 50") && lines[2].ends_with(" m")) << lines[2];
    const chart::Point above{1000, ground + 20};
    EXPECT_TRUE(
        crosshair_lines(workspace, edit::chart_section, sample.chart(edit::chart_section), 1000, &above)[2]
            .starts_with("Above ground 20"));
    EXPECT_TRUE(
        crosshair_lines({}, edit::chart_section, sample.chart(edit::chart_section), 1000, &above).empty());
    EXPECT_EQ(nearest_station(workspace, -1e9), 1);
    EXPECT_EQ(nearest_station(workspace, 1e9), workspace.station_count);
}

TEST(ChartLooks, the_section_has_a_scale_while_colours_tell_a_quantity) {
    ChartSample sample;
    sample.add_body(1000, 60).susc.value = 1000;
    sample.add_body(1500, 60).susc.value = 50000;
    sample.view->display_model();
    chart::AX_Grapher& section = sample.chart(edit::chart_section);
    EXPECT_FALSE(has(picture_texts(section), "Susceptibility (micro SI)"));
    edit::colour_bodies(sample.workbench, edit::ColourProperty::susceptibility);
    sample.view->redraw();
    EXPECT_TRUE(has(picture_texts(section), "Susceptibility (micro SI)"));
    EXPECT_TRUE(has(picture_texts(section), "1000"));
    EXPECT_TRUE(has(picture_texts(section), "50000"));
    sample.workbench.session.preferences.susceptibility_unit = SusceptibilityUnit::si;
    sample.view->redraw();
    EXPECT_TRUE(has(picture_texts(section), "Susceptibility (SI)"));
    EXPECT_TRUE(has(picture_texts(section), "0.0500"));
    sample.workspace().body(1).colour = 0x336699;
    sample.view->redraw();
    EXPECT_FALSE(has(picture_texts(section), "Susceptibility (SI)"));
}

TEST(ChartLooks, a_light_grid_is_on_every_chart_by_preference) {
    ChartSample sample;
    Preferences preferences;
    for (const bool grid : {true, false}) {
        preferences.grid = grid;
        sample.view->charts().take_preferences(preferences);
        for (int i = 0; i < edit::model_chart_count; ++i) EXPECT_EQ(sample.chart(i).LightGrid(), grid) << i;
        EXPECT_EQ(sample.plan().LightGrid(), grid);
    }
}

}  // namespace anomalis::show

#include "show/pointer_panels.h"

#include <gtest/gtest.h>

#include "show/chart_sample.h"

namespace anomalis::show {

TEST(PointerPanels, over_a_curve_they_tell_chart_place_and_nearest_station) {
    ChartSample sample;
    sample.view->display_model();
    sample.move(edit::chart_grav, {1260, 13});
    EXPECT_EQ(sample.pointer.chart, "Residual Grav Data");
    EXPECT_NEAR(std::stod(sample.pointer.x), 1260, 0.5);
    EXPECT_EQ(sample.pointer.x.find('.') + 3, sample.pointer.x.size());
    EXPECT_EQ(sample.pointer.east, "501250.00");
    EXPECT_EQ(sample.pointer.north, "7000000.00");
    EXPECT_EQ(sample.pointer.y_unit, "mGal");
    sample.move(edit::chart_mag_gradient, {1260, 0});
    EXPECT_EQ(sample.pointer.y_unit, "nT per station");
}

TEST(PointerPanels, outside_the_plot_only_the_chart_is_told) {
    ChartSample sample;
    sample.view->display_model();
    sample.chart(edit::chart_mag).HandleMouseMove(0, 0, 5, 5);
    EXPECT_EQ(sample.pointer.chart, "Residual Mag Data");
    EXPECT_EQ(sample.pointer.x + sample.pointer.y + sample.pointer.east + sample.pointer.north, "");
}

TEST(PointerPanels, the_section_tells_its_stretch) {
    ChartSample sample;
    sample.view->display_model();
    sample.move(edit::chart_section, {1000, 0});
    EXPECT_EQ(sample.pointer.chart, "Model (Vertical stretch 1.00)");
    sample.view->step_zoom(edit::chart_section, 1);
    sample.move(edit::chart_section, {1000, 100});
    EXPECT_EQ(sample.pointer.chart, "Model (Vertical stretch 1.25)");
}

TEST(PointerPanels, the_plan_tells_map_positions_twice) {
    const chart::Point place{500123.456, 7000001.06};
    const Workspace workspace;
    GeographicPlaces places;
    const PointerPanels panels = plan_pointer(workspace, &place, places);
    EXPECT_EQ(panels.chart, "Plan View");
    EXPECT_EQ(panels.x, "500123.5");
    EXPECT_EQ(panels.y, "7000001.1");
    EXPECT_EQ(panels.east, "500123.46");
    EXPECT_EQ(panels.north, "7000001.06");
    EXPECT_EQ(plan_pointer(workspace, nullptr, places).x, "");
}

TEST(PointerPanels, a_place_beyond_the_line_belongs_to_its_end) {
    ChartSample sample;
    sample.view->display_model();
    GeographicPlaces places;
    const chart::Point beyond{1e6, 0};
    EXPECT_EQ(
        profile_pointer(sample.workspace(), edit::chart_mag, sample.chart(edit::chart_mag), &beyond, places)
            .east,
        "502500.00");
    const chart::Point before{-1e6, 0};
    EXPECT_EQ(
        profile_pointer(sample.workspace(), edit::chart_mag, sample.chart(edit::chart_mag), &before, places)
            .east,
        "500000.00");
}

TEST(PointerPanels, the_place_under_the_pointer_is_found_inside_the_plot_alone) {
    ChartSample sample;
    EXPECT_FALSE(place_under(sample.chart(edit::chart_section), 3000, 1000)) << "nothing is drawn yet";
    sample.view->display_model();
    const chart::AX_Grapher& section = sample.chart(edit::chart_section);
    const chart::Point wanted{1000, section.YAxisMin() + 20};
    const chart::Point surface = section.UserToSurface(wanted);
    const double height = section.Surface()->height();
    const auto place =
        place_under(section, static_cast<float>(surface.x), static_cast<float>(height - surface.y));
    ASSERT_TRUE(place);
    EXPECT_NEAR(place->x, wanted.x, 0.1);
    EXPECT_NEAR(place->y, wanted.y, 0.1);
    EXPECT_FALSE(place_under(section, 5, 5));
}

TEST(PointerPanels, a_known_system_gives_longitude_and_latitude) {
    ChartSample sample;
    Workspace& w = sample.workspace();
    GeographicPlaces places;
    const chart::Point place{500000, 7566000};
    EXPECT_EQ(plan_pointer(w, &place, places).geographic, "") << "nobody said the system";
    w.source.coordinate_system = "EPSG:32754";
    EXPECT_TRUE(plan_pointer(w, &place, places).geographic.starts_with("141.00000 E, 22.0"));
    EXPECT_EQ(plan_pointer(w, nullptr, places).geographic, "");
    const chart::Point on_line{0, 0};
    // The first station is at 500000 E, 7000000 N.
    EXPECT_TRUE(profile_pointer(w, edit::chart_mag, sample.chart(edit::chart_mag), &on_line, places)
                    .geographic.starts_with("141.00000 E, 27.1"));
}

TEST(PointerPanels, the_way_to_the_globe_is_found_once_a_system) {
    GeographicPlaces places;
    for (int i = 0; i < 100; ++i) places.text("EPSG:32754", 500000 + i, 7566000);
    EXPECT_EQ(places.ways_found(), 1);
    EXPECT_EQ(places.text("EPSG:32755", 500000, 7566000).substr(0, 11), "147.00000 E");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(places.text("no such grid", 500000, 7566000), "");
    EXPECT_EQ(places.ways_found(), 3);
    EXPECT_EQ(places.text("EPSG:4326", 500000, 7566000), "") << "these are no degrees";
}

}  // namespace anomalis::show

#include "show/ensemble_shapes.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

#include "edit/body_rows.h"
#include "edit/change.h"
#include "edit/ensemble_in_force.h"
#include "show/chart_sample.h"
#include "support/ensemble_sample.h"

namespace anomalis::show {
namespace {

using Kind = chart::RecordingDevice::Kind;
constexpr int lines_a_sheet = 4;

struct Explained : ChartSample {
    Explained() {
        workspace().display.show_body_label = 0;
        ModelBody& body = add_body(1260, 60);
        body.width.value = 100;
        body.depth_extent.value = 150;  // all four sides in view
        edit::start_history(workbench);
        view->display_model();
        explain(ensemble_about(workspace()));
    }
    void explain(Ensemble ensemble) {
        workspace().ensemble = std::make_shared<const Ensemble>(std::move(ensemble));
        workbench.forget_marks();
        draw();
    }
    void draw() {
        forget();
        view->display_model();
    }
    auto ghost_lines(int index = edit::chart_section) {
        std::vector<chart::RecordingDevice::Entry> found;
        for (const auto& entry : device(index).entries)
            if (entry.kind == Kind::polyline && entry.pen.colour == ghost_grey) found.push_back(entry);
        return found;
    }
    long fans(int index) {
        return std::ranges::count_if(device(index).entries, [](const auto& entry) {
            return entry.kind == Kind::polygon_fill && entry.pen.colour == fan_green;
        });
    }
};

TEST(EnsembleShapes, thirty_models_of_many_are_drawn_spread_over_all_of_them) {
    Explained sample;
    const auto ghosts = ghosts_of(sample.workspace(), *sample.workspace().ensemble, 1);
    ASSERT_EQ(ghosts.size(), 30U);
    EXPECT_NEAR(ghosts.front().top.value, 40.3, 0.1);
    EXPECT_NEAR(ghosts.back().top.value, 79.0, 0.1);
    EXPECT_NEAR(ghosts.front().width.value, 60.7, 0.1);
    EXPECT_EQ(ghosts.front().dip.value, sample.workspace().body(1).dip.value);
    EXPECT_EQ(ghosts.front().response.rows(), 0);
    EXPECT_EQ(sample.ghost_lines().size(), 30U * lines_a_sheet);
    sample.explain(ensemble_about(sample.workspace(), 7));
    EXPECT_EQ(sample.ghost_lines().size(), 7U * lines_a_sheet);
}

TEST(EnsembleShapes, models_without_the_body_and_bodies_that_were_held_have_no_ghosts) {
    Explained sample;
    sample.add_body(1700, 20);
    sample.draw();
    Ensemble ensemble = ensemble_about(sample.workspace(), 8);
    for (int i : {1, 4, 5})
        ensemble.samples[static_cast<std::size_t>(i)].values[0] = static_cast<float>(EnsembleParameter::open);
    sample.explain(ensemble);
    EXPECT_EQ(sample.ghost_lines().size(), 5U * lines_a_sheet);
    EXPECT_TRUE(ghosts_of(sample.workspace(), ensemble, 2).empty());
}

TEST(EnsembleShapes, ghosts_lie_behind_the_bodies_and_take_no_clicks) {
    Explained sample;
    const auto& entries = sample.device(edit::chart_section).entries;
    const auto last_ghost = std::find_if(entries.rbegin(), entries.rend(), [](const auto& entry) {
        return entry.kind == Kind::polyline && entry.pen.colour == ghost_grey;
    });
    const auto body = std::find_if(entries.rbegin(), entries.rend(), [](const auto& entry) {
        return entry.kind == Kind::polygon_fill && entry.layer == chart::DrawingDevice::Layer::surface;
    });
    ASSERT_NE(body, entries.rend());
    EXPECT_LT(body, last_ghost) << "from the end";
    EXPECT_EQ(sample.chart(edit::chart_section).PolygonCount(), 2);
    sample.workbench.view.current_body = 0;
    sample.click(edit::chart_section, {1265, 0});
    EXPECT_EQ(sample.workbench.view.current_body, 1);
}

TEST(EnsembleShapes, the_fan_fills_its_stations_behind_the_curves_of_its_channel) {
    Explained sample;
    EXPECT_EQ(sample.fans(edit::chart_mag), 1);
    EXPECT_EQ(sample.fans(edit::chart_grav), 0);
    EXPECT_EQ(sample.fans(edit::chart_mag_gradient), 0);
    const auto fills = sample.device(edit::chart_mag).of_kind(Kind::polygon_fill);
    ASSERT_FALSE(fills.empty());
    const auto& fan = fills.front().points;
    EXPECT_EQ(fan.size(), 2U * 81U);
    const double first = sample.chart(edit::chart_mag).UserToSurface({250, 0}).x;
    EXPECT_NEAR(std::ranges::min(fan, {}, &chart::Point::x).x, first, 1e-6) << "station 11";
}

TEST(EnsembleShapes, all_of_it_goes_with_a_change_and_comes_back_with_its_undo) {
    Explained sample;
    sample.workspace().body(1).dip.value += 5;
    edit::note_change(sample.workbench, {"dip", "", false});
    sample.draw();
    EXPECT_TRUE(sample.ghost_lines().empty());
    EXPECT_EQ(sample.fans(edit::chart_mag), 0);
    EXPECT_EQ(edit::ensemble_in_force(sample.workbench), nullptr);
    edit::undo_change(sample.workbench);
    sample.draw();
    EXPECT_EQ(sample.ghost_lines().size(), 30U * lines_a_sheet);
    EXPECT_EQ(sample.fans(edit::chart_mag), 1);
}

TEST(EnsembleShapes, a_run_that_tries_values_and_a_person_who_wants_none_hide_them) {
    Explained sample;
    sample.session.inversion.running = true;
    sample.draw();
    EXPECT_TRUE(sample.ghost_lines().empty());
    sample.session.inversion.running = false;
    sample.workbench.view.show_ensemble = false;
    sample.draw();
    EXPECT_TRUE(sample.ghost_lines().empty());
    EXPECT_EQ(sample.fans(edit::chart_mag), 0);
    EXPECT_NE(edit::ensemble_in_force(sample.workbench), nullptr) << "the numbers stay";
}

TEST(EnsembleShapes, the_plan_has_ghosts_too) {
    Explained sample;
    Ensemble ensemble = ensemble_about(sample.workspace(), 10);
    ensemble.parameters[0] = {.body = 1, .param_code = param_distance, .value = 1260};
    for (std::size_t i = 0; i < 10; ++i) ensemble.samples[i].values[0] = 1210 + 10 * static_cast<float>(i);
    sample.workbench.view.show_plan = true;
    sample.explain(ensemble);
    const auto lines = sample.ghost_lines(edit::model_chart_count);
    ASSERT_EQ(lines.size(), 10U * lines_a_sheet);
    EXPECT_NE(lines.front().points, lines.back().points) << "the place on the map follows the distance";
}

TEST(EnsembleShapes, a_zoom_keeps_them) {
    Explained sample;
    sample.forget();
    sample.chart(edit::chart_mag).HandleWheel(0, 120, 7500.0F, 1500.0F);
    EXPECT_FALSE(sample.ghost_lines().empty());
    EXPECT_EQ(sample.fans(edit::chart_mag), 1);
}

TEST(EnsembleInForce, a_value_stands_somewhere_in_its_band) {
    Explained sample;
    const auto band = edit::grid_band(sample.workbench, param_top);
    ASSERT_TRUE(band);
    EXPECT_NEAR(band->place, 0.5, 1e-6);
    EXPECT_FALSE(band->open_below || band->open_above);
    EXPECT_FALSE(edit::grid_band(sample.workbench, param_dip));
    EXPECT_FALSE(edit::grid_band(sample.workbench, edit::row_type));
    EXPECT_EQ(edit::grid_band_tip(sample.workbench, param_top), "90 % of the models: 40 to 80 m");
    EXPECT_EQ(edit::grid_band_tip(sample.workbench, param_dip), "");
    EXPECT_NEAR(edit::value_band({.value = 3, .lower = 2, .upper = 6}).place, 0.25, 1e-12);
    const edit::ValueBand open = edit::value_band({.value = 3, .upper = 6});
    EXPECT_TRUE(open.open_below && !open.open_above);
    EXPECT_EQ(open.place, 0.5);
}

}  // namespace
}  // namespace anomalis::show

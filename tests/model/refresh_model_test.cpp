#include "model/refresh_model.h"

#include <gtest/gtest.h>

#include "inversion/line_session.h"
#include "model/misfit.h"

namespace anomalis::model {

TEST(FinishLoad, the_inversion_speaks_of_magnetics_where_the_line_has_them) {
    inversion::LineSession line;
    line.session.inversion.inversion_channel = channel_grav;
    line.session.inversion.misfit_scale = {7, 7};
    finish_load(line.session);
    EXPECT_EQ(line.session.inversion.inversion_channel, channel_mag);
    EXPECT_EQ(line.session.inversion.misfit_scale, (MisfitPair{1, 10}));
}

TEST(FinishLoad, gravity_alone_takes_its_own_scale) {
    inversion::LineSession line;
    line.workspace().definition.mag_column = 0;
    finish_load(line.session);
    EXPECT_EQ(line.session.inversion.inversion_channel, channel_grav);
    EXPECT_EQ(line.session.inversion.misfit_scale, (MisfitPair{10, 100}));
}

TEST(FinishLoad, the_best_model_of_another_line_is_forgotten) {
    inversion::LineSession line;
    line.session.inversion.best_misfit = {1, 1};
    line.session.inversion.best_model_available = true;
    finish_load(line.session);
    EXPECT_EQ(line.session.inversion.best_misfit, (MisfitPair{unset, unset}));
    EXPECT_FALSE(line.session.inversion.best_model_available);
}

TEST(RefreshModel, without_stations_the_misfit_is_0) {
    ScriptedPrompts prompts;
    Session session(prompts, Settings{});
    initialise_workspace(session.workspace, prompts);
    EXPECT_EQ(refresh_model(session), (MisfitPair{0, 0}));
    EXPECT_TRUE(prompts.messages.empty());
}

TEST(RefreshModel, all_four_chains_are_filtered) {
    inversion::LineSession line;
    line.add_body(thick_sheet);
    line.refresh();
    const Workspace& w = line.workspace();
    EXPECT_TRUE(w.mag.observed_filtered && w.mag.calculated_filtered);
    EXPECT_TRUE(w.grav.observed_filtered && w.grav.calculated_filtered);
    EXPECT_TRUE(w.elevations_ready);
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST(RefreshModel, the_observed_stage_comes_first_for_a_floating_base) {
    inversion::LineSession line;
    line.add_body(thick_sheet);
    line.take_model_as_data();
    Workspace& w = line.workspace();
    for (int i = 1; i <= w.station_count; ++i) w.mag.data(i, row_raw, stage_observed) += 1000;
    w.mag.float_base = 1;
    invalidate_filtered_data(0, w);
    EXPECT_NEAR(refresh_model(line.session)[0], 0, 1e-3);
    EXPECT_NEAR(w.mag.base, 1000 + w.mag.calc_mean, 0.01);
}

TEST(RefreshModel, a_window_that_the_line_cannot_hold_is_reset) {
    inversion::LineSession line;
    Workspace& w = line.workspace();
    for (const auto& [first, last] :
         {std::pair{0, 0}, std::pair{-5, 200}, std::pair{102, 50}, std::pair{30, 20}}) {
        w.first_station = first;
        w.last_station = last;
        line.refresh();
        EXPECT_GE(w.first_station, 1);
        EXPECT_EQ(w.last_station, last == 20 || last == 0 || last == 200 ? 101 : last);
    }
    w.first_station = 0;
    w.last_station = 40;
    w.last_distance = 390;
    line.refresh();
    EXPECT_EQ(w.first_station, 1);
    EXPECT_EQ(w.first_distance, 0);
    EXPECT_EQ(w.last_station, 40);
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST(RefreshModel, without_bodies_the_calculated_rows_are_0) {
    inversion::LineSession line;
    line.refresh();
    for (const float value : line.workspace().mag.data.row(row_residual, stage_calculated))
        EXPECT_EQ(value, 0);
    EXPECT_TRUE(line.prompts.messages.empty());
}

}  // namespace anomalis::model

// After any step back or forward everything on show is that of a fresh load of the same state, bit for bit.
#include <gtest/gtest.h>

#include "edit/settings_boxes.h"
#include "flow/history_walk.h"
#include "model/refresh_model.h"
#include "support/fit_records.h"
#include "support/fresh_load.h"

namespace anomalis::flow {

namespace {

/// A line with two bodies, not loaded yet.
struct Law : edit::LineSample {
    Law() {
        add_body(910, 60);
        add_body(1510, 20, pipe).length.value = 100;
        edit::start_history(workbench);
    }
    void key(edit::SettingsBox box, const char* text) { edit::change_settings_box(workbench, box, text); }
    /// Steps back, loads what is wanted and looks.
    std::string after_undo() {
        const edit::HistoryStep step = edit::undo_change(workbench);
        if (step.line_wanted) load();
        prompts.messages.clear();
        model::refresh_model(session);
        return difference_from_fresh_load(workspace());
    }
};

}  // namespace

TEST(HistoryLaw, a_step_before_the_load_leaves_the_window_of_the_line) {
    Law law;
    law.key(edit::SettingsBox::smooth_filter_width, "30");
    law.load();
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_EQ(law.workspace().first_station, 1);
    EXPECT_EQ(law.workspace().last_station, edit::LineSample::stations);
    EXPECT_EQ(law.workspace().last_distance, edit::LineSample::length);
    EXPECT_EQ(law.prompts.messages, std::vector<std::string>{});
}

TEST(HistoryLaw, a_window_by_distances_is_found_again_and_not_lost) {
    Law law;
    law.workspace().first_distance = 250;
    law.workspace().last_distance = 1250;
    edit::start_history(law.workbench);
    law.key(edit::SettingsBox::smooth_filter_width, "30");
    law.load();
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_EQ(law.workspace().first_station, 11);
    EXPECT_EQ(law.workspace().last_station, 51);
}

TEST(HistoryLaw, a_step_before_the_load_leaves_the_base_levels_of_the_line) {
    Law law;
    ASSERT_EQ(law.workspace().mag.base, unset);
    law.key(edit::SettingsBox::smooth_filter_width, "3");
    law.load();
    const float mean = law.workspace().mag.base;
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_EQ(law.workspace().mag.base, mean);
    EXPECT_TRUE(law.workbench.base_from_mean[channel_mag]);
    law.key(edit::SettingsBox::mag_base, "123");
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_EQ(law.workspace().mag.base, mean);
}

TEST(HistoryLaw, a_spacing_that_the_load_made_coarser_keeps_the_line) {
    Law law;
    law.workspace().station_spacing = 0.1F;
    edit::start_history(law.workbench);
    law.key(edit::SettingsBox::smooth_filter_width, "3");
    law.load();
    ASSERT_GT(law.workspace().station_spacing, 0.1F);
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_TRUE(edit::line_loaded(law.workspace()));
    EXPECT_EQ(law.workspace().processing.smooth_filter_width, 0);
}

TEST(HistoryLaw, a_transform_that_the_load_made_active_keeps_the_line) {
    Law law;
    law.workspace().transform.rotation = 30;
    edit::start_history(law.workbench);
    law.key(edit::SettingsBox::smooth_filter_width, "3");
    law.load();
    ASSERT_TRUE(law.workspace().transform.active);
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_TRUE(edit::line_loaded(law.workspace()));
}

TEST(HistoryLaw, rows_that_are_not_chosen_are_empty_after_a_step) {
    Law law;
    law.load();
    edit::change_total_gradient(law.workbench, true);
    model::refresh_model(law.session);
    EXPECT_EQ(law.after_undo(), "");
    law.key(edit::SettingsBox::vg_filter_width, "3");
    edit::change_total_gradient(law.workbench, true);
    model::refresh_model(law.session);
    edit::change_total_gradient(law.workbench, false);
    law.key(edit::SettingsBox::sensor_offset, "12");
    EXPECT_EQ(law.after_undo(), "");
}

TEST(HistoryLaw, a_base_that_floats_is_found_again_after_a_step) {
    Law law;
    law.load();
    edit::change_float_base(law.workbench, channel_mag, true);
    model::refresh_model(law.session);
    law.workspace().first_station = 20;
    edit::note_change(law.workbench, {"stations of the fit", "", false});
    model::refresh_model(law.session);
    EXPECT_EQ(law.after_undo(), "");
}

TEST(HistoryLaw, a_regional_and_a_noise_are_taken_back_with_their_curves) {
    Law law;
    law.load();
    Channel& mag = law.workspace().mag;
    mag.regional_degree = 2;
    edit::note_change(law.workbench, {"regional", "", false});
    model::refresh_model(law.session);
    ASSERT_EQ(mag.regional.degree, 2);
    law.workspace().grav.noise = 0.5F;
    edit::note_change(law.workbench, {"noise", "", false});
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_EQ(law.workspace().grav.noise, unset);
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_EQ(mag.regional_degree, no_regional);
    EXPECT_EQ(mag.regional, Regional{});
    edit::redo_change(law.workbench);
    edit::redo_change(law.workbench);
    model::refresh_model(law.session);
    EXPECT_EQ(mag.regional.degree, 2);
    EXPECT_EQ(law.workspace().grav.noise, 0.5F);
    EXPECT_EQ(difference_from_fresh_load(law.workspace()), "");
}

TEST(HistoryLaw, a_fit_is_as_fitted_again_when_its_step_is) {
    Law law;
    law.load();
    Workspace& w = law.workspace();
    w.body(1).dip.value = 60;
    model::refresh_model(law.session);
    w.fit = sample_fit(w);
    edit::note_change(law.workbench, {"inversion", "", false});
    EXPECT_TRUE(as_fitted(w));
    EXPECT_EQ(law.after_undo(), "");
    EXPECT_TRUE(w.fit);
    EXPECT_FALSE(as_fitted(w));
    edit::redo_change(law.workbench);
    EXPECT_TRUE(as_fitted(w));
    model::refresh_model(law.session);
    EXPECT_TRUE(as_fitted(w));
}

TEST(HistoryLaw, what_a_load_settles_is_no_step) {
    Law law;
    law.key(edit::SettingsBox::smooth_filter_width, "3");
    law.key(edit::SettingsBox::sensor_offset, "12");
    edit::undo_change(law.workbench);
    law.load();
    model::refresh_model(law.session);
    EXPECT_EQ(law.workbench.history.steps(), 1U);
    EXPECT_TRUE(law.workbench.history.can_redo());
    EXPECT_EQ(law.after_undo(), "");
    edit::redo_change(law.workbench);
    edit::redo_change(law.workbench);
    model::refresh_model(law.session);
    EXPECT_EQ(law.workspace().sensor_offset, 12);
    EXPECT_EQ(difference_from_fresh_load(law.workspace()), "");
}

TEST(HistoryLaw, holds_on_random_walks) {
    int compared = 0;
    for (std::uint32_t seed = 1; seed <= 6; ++seed) {
        HistoryWalk walk(seed);
        EXPECT_EQ(walk.run(80), "") << "seed " << seed;
        compared += walk.steps_compared();
    }
    EXPECT_GT(compared, 60);
}

TEST(FreshLoad, tells_what_differs) {
    Law law;
    law.load();
    model::refresh_model(law.session);
    EXPECT_EQ(difference_from_fresh_load(law.workspace()), "");
    law.workspace().mag.data(7, row_residual, stage_calculated) += 1;
    EXPECT_TRUE(difference_from_fresh_load(law.workspace()).starts_with("magnetic row 3 stage 2[7]: "));
    law.workspace().first_station = 2;
    EXPECT_TRUE(difference_from_fresh_load(law.workspace()).starts_with("first_distance") ||
                difference_from_fresh_load(law.workspace()).starts_with("line"));
}

}  // namespace anomalis::flow

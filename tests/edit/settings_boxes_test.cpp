#include "edit/settings_boxes.h"

#include <gtest/gtest.h>

#include "edit/change.h"
#include "edit/line_sample.h"
#include "model/refresh_model.h"
#include "model/stale.h"

namespace anomalis::edit {

namespace {

constexpr SettingsBox every_box[] = {SettingsBox::mag_intensity,
                                     SettingsBox::mag_inclination,
                                     SettingsBox::mag_declination,
                                     SettingsBox::smooth_filter_width,
                                     SettingsBox::residual_filter_width,
                                     SettingsBox::vg_filter_width,
                                     SettingsBox::vg_filter_step,
                                     SettingsBox::mag_base,
                                     SettingsBox::grav_base,
                                     SettingsBox::mag_noise,
                                     SettingsBox::grav_noise,
                                     SettingsBox::surface_elevation,
                                     SettingsBox::sensor_offset,
                                     SettingsBox::profile_grid_spacing,
                                     SettingsBox::depth_grid_spacing,
                                     SettingsBox::infinite_body_length,
                                     SettingsBox::finite_body_left_clip,
                                     SettingsBox::finite_body_right_clip};

}  // namespace

TEST(SettingsBoxes, what_is_no_finite_number_is_refused_everywhere) {
    LineSample sample;
    const Workspace before = sample.workspace();
    for (const SettingsBox box : every_box)
        for (const std::string& text :
             {std::string("abc"), std::string("1e999"), std::string("nan"), std::string("1,5"),
              std::string("1\n2"), std::string(10000, '9'), std::string("1e39")})
            EXPECT_EQ(change_settings_box(sample.workbench, box, text), SettingsChange::refused)
                << static_cast<int>(box) << " " << text.substr(0, 20);
    EXPECT_EQ(sample.workspace().field.intensity, before.field.intensity);
    EXPECT_FALSE(sample.session.model_changed);
}

TEST(SettingsBoxes, the_text_on_show_changes_nothing_when_it_is_taken_over) {
    LineSample sample;
    for (const SettingsBox box : every_box) {
        if (settings_box_text(sample.workspace(), box).empty()) continue;
        EXPECT_EQ(change_settings_box(sample.workbench, box, settings_box_text(sample.workspace(), box)),
                  SettingsChange::unchanged)
            << static_cast<int>(box);
    }
}

TEST(SettingsBoxes, a_filter_tells_its_stations_in_metres_and_what_its_gradient_is) {
    LineSample sample;
    sample.load();
    Workspace& w = sample.workspace();
    w.processing.vg_filter_width = 5;
    w.processing.vg_filter_step = 2;
    EXPECT_NE(filter_tip(w, SettingsBox::vg_filter_step).find("2 stations are 50 m at the present spacing"),
              std::string::npos);
    EXPECT_NE(filter_tip(w, SettingsBox::vg_filter_width).find("10 stations are 250 m"), std::string::npos);
    EXPECT_NE(filter_tip(w, SettingsBox::vg_filter_width).find("VG is the vertical gradient"),
              std::string::npos);
    EXPECT_NE(filter_tip(w, SettingsBox::vg_filter_width).find("nT per 2 stations and mGal per 2 stations"),
              std::string::npos);
    w.processing.display_total_gradient = 1;
    w.processing.vg_filter_step = 1;
    EXPECT_NE(filter_tip(w, SettingsBox::vg_filter_step).find("TG is the total gradient"), std::string::npos);
    EXPECT_NE(filter_tip(w, SettingsBox::vg_filter_step).find("nT per station"), std::string::npos);
    drop_stations(w);
    EXPECT_EQ(filter_tip(w, SettingsBox::vg_filter_step).find("present spacing"), std::string::npos);
}

TEST(SettingsBoxes, the_field_strength_stays_above_0) {
    LineSample sample;
    for (const char* text : {"0", "-5", "1e-60"})
        EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_intensity, text),
                  SettingsChange::refused);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_intensity, "51940.25"),
              SettingsChange::stored);
    EXPECT_FLOAT_EQ(sample.workspace().field.intensity, 51940.25F);
    EXPECT_EQ(settings_box_text(sample.workspace(), SettingsBox::mag_intensity), "51940.3");
}

TEST(SettingsBoxes, a_new_field_makes_every_body_calculate_anew) {
    LineSample sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.mag_response_valid = body.grav_response_valid = true;
    change_settings_box(sample.workbench, SettingsBox::mag_inclination, "-53.1");
    model::find_stale(sample.workspace());
    EXPECT_FALSE(body.mag_response_valid);
    EXPECT_TRUE(sample.session.model_changed);
}

TEST(SettingsBoxes, filter_widths_are_whole_and_not_negative_and_clear_the_filter_marks) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    model::refresh_model(sample.session);
    ASSERT_TRUE(sample.workspace().mag.observed_filtered);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::smooth_filter_width, "-1"),
              SettingsChange::refused);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::smooth_filter_width, "3e9"),
              SettingsChange::refused);
    model::find_stale(sample.workspace());
    EXPECT_TRUE(sample.workspace().mag.observed_filtered);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::smooth_filter_width, "2.5"),
              SettingsChange::stored);
    EXPECT_EQ(sample.workspace().processing.smooth_filter_width, 2);
    model::find_stale(sample.workspace());
    EXPECT_FALSE(sample.workspace().mag.observed_filtered);
    EXPECT_EQ(sample.workspace().station_count, LineSample::stations) << "a filter does not need a new load";
}

TEST(SettingsBoxes, a_small_sensor_offset_is_taken_and_a_negative_one_is_not) {
    LineSample sample;
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::sensor_offset, "0.05"),
              SettingsChange::stored);
    EXPECT_FLOAT_EQ(sample.workspace().sensor_offset, 0.05F);
    EXPECT_EQ(settings_box_text(sample.workspace(), SettingsBox::sensor_offset), "0.05");
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::sensor_offset, "-0.1"),
              SettingsChange::refused);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::surface_elevation, "-338.6"),
              SettingsChange::stored);
    EXPECT_EQ(settings_box_text(sample.workspace(), SettingsBox::surface_elevation), "-338.6");
}

TEST(SettingsBoxes, a_base_level_counts_from_a_tenth_of_a_nanotesla_and_a_hundredth_of_a_milligal) {
    LineSample sample;
    Workspace& w = sample.workspace();
    w.mag.base = 100;
    w.grav.base = 5;
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_base, "100.1"),
              SettingsChange::unchanged);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_base, "100.2"), SettingsChange::stored);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::grav_base, "5.009"),
              SettingsChange::unchanged);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::grav_base, "5.02"), SettingsChange::stored);
    EXPECT_FLOAT_EQ(w.mag.base, 100.2F);
    EXPECT_FLOAT_EQ(w.grav.base, 5.02F);
}

TEST(SettingsBoxes, an_emptied_base_level_takes_the_mean_at_once) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    Workspace& w = sample.workspace();
    const float mean = w.mag.mean;
    w.mag.base = 0;
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_base, ""), SettingsChange::stored);
    EXPECT_NEAR(w.mag.base, mean, 0.01);
    w.mag.base = 0;
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_base, "-99999"), SettingsChange::stored);
    EXPECT_NEAR(w.mag.base, mean, 0.01);
}

TEST(SettingsBoxes, an_emptied_base_level_without_data_waits_for_the_load) {
    LineSample sample;
    sample.workspace().mag.base = 12;
    change_settings_box(sample.workbench, SettingsBox::mag_base, "");
    EXPECT_EQ(sample.workspace().mag.base, unset);
    EXPECT_EQ(settings_box_text(sample.workspace(), SettingsBox::mag_base), "");
}

TEST(SettingsBoxes, under_a_residual_filter_a_base_level_is_stored_and_moves_no_curve) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    sample.workspace().processing.residual_filter_width = 20;
    model::refresh_model(sample.session);
    const ChannelTable before = sample.workspace().mag.data;
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_base, "51100"), SettingsChange::stored);
    model::refresh_model(sample.session);
    EXPECT_TRUE(sample.workspace().mag.data == before);
    EXPECT_EQ(change_float_base(sample.workbench, channel_mag, true), SettingsChange::refused);
    EXPECT_EQ(sample.workspace().mag.float_base, 0);
}

TEST(SettingsBoxes, noise_is_above_0_or_left_to_the_fit) {
    LineSample sample;
    Workspace& w = sample.workspace();
    for (const SettingsBox box : {SettingsBox::mag_noise, SettingsBox::grav_noise}) {
        for (const char* text : {"0", "-1.8", "-99999", "1e-60", "two"})
            EXPECT_EQ(change_settings_box(sample.workbench, box, text),
                      std::string(text) == "-99999" ? SettingsChange::unchanged : SettingsChange::refused)
                << text;
        EXPECT_FALSE(settings_box_rule(box).empty());
        EXPECT_EQ(settings_box_text(w, box), "");
        EXPECT_EQ(change_settings_box(sample.workbench, box, "1.8"), SettingsChange::stored);
        EXPECT_EQ(settings_box_text(w, box), "1.8");
    }
    EXPECT_FLOAT_EQ(w.mag.noise, 1.8F);
    EXPECT_FLOAT_EQ(w.grav.noise, 1.8F);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::mag_noise, "  "), SettingsChange::stored);
    EXPECT_EQ(w.mag.noise, unset);
    undo_change(sample.workbench);
    EXPECT_FLOAT_EQ(w.mag.noise, 1.8F);
}

TEST(SettingsBoxes, a_regional_is_chosen_by_its_place_in_the_list_and_can_be_taken_back) {
    LineSample sample;
    Workspace& w = sample.workspace();
    start_history(sample.workbench);
    EXPECT_EQ(regional_index(w, channel_mag), 0);
    change_regional(sample.workbench, channel_mag, 2);
    EXPECT_EQ(w.mag.regional_degree, 1);
    EXPECT_EQ(w.grav.regional_degree, no_regional);
    EXPECT_EQ(regional_index(w, channel_mag), 2);
    change_regional(sample.workbench, channel_grav, 99);
    EXPECT_EQ(w.grav.regional_degree, most_regional_degree);
    change_regional(sample.workbench, channel_grav, -7);
    EXPECT_EQ(w.grav.regional_degree, no_regional);
    undo_change(sample.workbench);
    undo_change(sample.workbench);
    undo_change(sample.workbench);
    EXPECT_EQ(w.mag.regional_degree, no_regional);
}

TEST(SettingsBoxes, a_blank_drawing_setting_is_its_default) {
    LineSample sample;
    Workspace& w = sample.workspace();
    w.drawing.infinite_body_length = 2000;
    w.drawing.profile_grid_spacing = 100;
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::infinite_body_length, ""),
              SettingsChange::stored);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::profile_grid_spacing, " "),
              SettingsChange::stored);
    EXPECT_EQ(w.drawing.infinite_body_length, 500);
    EXPECT_EQ(w.drawing.profile_grid_spacing, 0);
    EXPECT_EQ(change_settings_box(sample.workbench, SettingsBox::depth_grid_spacing, "-1"),
              SettingsChange::refused);
}

TEST(SettingsBoxes, the_smoothing_type_is_brought_into_its_list) {
    LineSample sample;
    change_smooth_filter_type(sample.workbench, -3);
    EXPECT_EQ(sample.workspace().processing.smooth_filter_type, 0);
    change_smooth_filter_type(sample.workbench, 17);
    EXPECT_EQ(sample.workspace().processing.smooth_filter_type, 4);
    sample.workspace().processing.smooth_filter_type = 9;
    EXPECT_EQ(smooth_filter_index(sample.workspace()), 4);
}

TEST(SettingsBoxes, captions_tell_which_gradient_is_in_use) {
    LineSample sample;
    change_total_gradient(sample.workbench, true);
    EXPECT_EQ(sample.workspace().processing.display_total_gradient, 1);
    EXPECT_EQ(gradient_captions(true).mag_title, "Calculated Total Gradient");
    EXPECT_EQ(gradient_captions(false).grav_title, "Calculated Gravity Vertical Gradient");
    EXPECT_EQ(gradient_captions(false).width_label, "VG Filter Half-Width");
}

TEST(SettingsBoxes, a_field_that_nobody_gave_says_so_until_its_strength_is_keyed) {
    LineSample sample;
    Workspace& w = sample.workspace();
    forget_field(w);
    for (const SettingsBox box :
         {SettingsBox::mag_intensity, SettingsBox::mag_inclination, SettingsBox::mag_declination})
        EXPECT_EQ(settings_box_text(w, box), "not set");
    EXPECT_TRUE(field_remark(w).starts_with("Not set: magnetics are not modelled"));
    change_settings_box(sample.workbench, SettingsBox::mag_inclination, "-53");
    EXPECT_TRUE(w.source.field_missing);
    EXPECT_EQ(settings_box_text(w, SettingsBox::mag_inclination), "-53.0");
    change_settings_box(sample.workbench, SettingsBox::mag_intensity, "52000");
    EXPECT_FALSE(w.source.field_missing);
    EXPECT_EQ(settings_box_text(w, SettingsBox::mag_declination), "0.0");
    EXPECT_EQ(field_remark(w), "");
}

TEST(SettingsBoxes, a_keyed_field_has_no_other_origin) {
    LineSample sample;
    Workspace& w = sample.workspace();
    w.source.field_origin = "IGRF-14 at the middle of the line, 1990-07-01";
    start_history(sample.workbench);
    EXPECT_EQ(field_remark(w), w.source.field_origin);
    change_settings_box(sample.workbench, SettingsBox::mag_intensity,
                        settings_box_text(w, SettingsBox::mag_intensity));
    EXPECT_NE(w.source.field_origin, "") << "nothing was keyed";
    change_settings_box(sample.workbench, SettingsBox::mag_declination, "7.25");
    EXPECT_EQ(w.source.field_origin, "");
    w.source.igrf_change = igrf_removed;
    EXPECT_EQ(field_remark(w), "IGRF is removed from the readings");
    undo_change(sample.workbench);
    EXPECT_EQ(w.source.field_origin, "IGRF-14 at the middle of the line, 1990-07-01");
}

}  // namespace anomalis::edit

#include "core/workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/body_defaults.h"
#include "core/body_parameters.h"
#include "core/prompts.h"
#include "core/settings.h"
#include "support/scripted_prompts.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A workspace as a session starts with it.
class WorkspaceTest : public ::testing::Test {
  protected:
    WorkspaceTest() { initialise_workspace(workspace, prompts); }
    ~WorkspaceTest() override { EXPECT_THAT(prompts.messages, IsEmpty()); }

    ScriptedPrompts prompts;
    Settings settings;
    Workspace workspace;

    ModelBody& new_body(int index, std::int32_t type) {
        workspace.body(index).type = type;
        initialise_body(workspace, index, settings, prompts);
        return workspace.body(index);
    }
    void keep(std::string_view key, std::string_view value) { settings.set(settings_section, key, value); }
};

TEST_F(WorkspaceTest, starts_with_the_default_definition) {
    const DataDefinition& definition = workspace.definition;
    EXPECT_EQ(definition.data_file, "");
    EXPECT_EQ(definition.first_data_line, 2);
    EXPECT_EQ(definition.read_increment, 1);
    EXPECT_EQ(definition.last_data_line, 0);
    EXPECT_EQ(definition.x_column, 2);
    EXPECT_EQ(definition.y_column, 3);
    EXPECT_EQ(definition.z_column, 0);
    EXPECT_EQ(definition.dtm_column, 0);
    EXPECT_EQ(definition.mag_column, 5);
    EXPECT_EQ(definition.grav_column, 0);
    EXPECT_TRUE(workspace.has_mag());
    EXPECT_FALSE(workspace.has_grav());
}

TEST_F(WorkspaceTest, starts_with_the_default_field_and_filters) {
    EXPECT_EQ(workspace.model_file, "");
    EXPECT_EQ(workspace.station_spacing, 0);
    EXPECT_EQ(workspace.min_station_spacing, 0);
    EXPECT_EQ(workspace.field.intensity, 56000);
    EXPECT_EQ(workspace.field.inclination, -65);
    EXPECT_EQ(workspace.field.declination, -4);
    EXPECT_EQ(workspace.surface_elevation, 0);
    EXPECT_EQ(workspace.sensor_offset, 10);
    EXPECT_EQ(workspace.drawing.infinite_body_length, 500);
    EXPECT_EQ(workspace.processing.smooth_filter_width, 0);
    EXPECT_EQ(workspace.processing.smooth_filter_type, 0);
    EXPECT_EQ(workspace.processing.residual_filter_width, 0);
    EXPECT_EQ(workspace.processing.display_total_gradient, 0);
    EXPECT_EQ(workspace.processing.vg_filter_width, 5);
    EXPECT_EQ(workspace.processing.vg_filter_step, 1);
    EXPECT_EQ(workspace.transform, PointTransform{});
    EXPECT_FALSE(workspace.transform.active);
}

TEST_F(WorkspaceTest, starts_with_empty_ranges_and_no_stations) {
    EXPECT_EQ(workspace.x_min, 1e32F);
    EXPECT_EQ(workspace.x_max, -1e32F);
    EXPECT_EQ(workspace.y_min, 1e32F);
    EXPECT_EQ(workspace.y_max, -1e32F);
    EXPECT_EQ(workspace.z_min, 1e32F);
    EXPECT_EQ(workspace.z_max, -1e32F);
    EXPECT_EQ(workspace.mag.min, 1e32F);
    EXPECT_EQ(workspace.mag.max, -1e32F);
    EXPECT_EQ(workspace.mag.range_min, 1e32F);
    EXPECT_EQ(workspace.mag.range_max, -1e32F);
    EXPECT_EQ(workspace.station_count, 0);
    EXPECT_EQ(workspace.first_station, 0);
    EXPECT_EQ(workspace.last_station, 0);
    EXPECT_EQ(workspace.first_distance, 0);
    EXPECT_EQ(workspace.last_distance, 0);
    EXPECT_FALSE(workspace.elevations_ready);
    EXPECT_FALSE(workspace.mag.observed_filtered || workspace.mag.calculated_filtered);
    EXPECT_FALSE(workspace.grav.observed_filtered || workspace.grav.calculated_filtered);
}

TEST_F(WorkspaceTest, the_bases_differ_between_the_channels) {
    EXPECT_EQ(workspace.mag.base, -99999) << "the mean is taken";
    EXPECT_EQ(workspace.grav.base, 0) << "the mean is not taken";
    EXPECT_EQ(workspace.mag.float_base, 0);
    EXPECT_EQ(workspace.grav.float_base, 0);
}

TEST_F(WorkspaceTest, the_filter_rows_are_numbered_from_one_to_six) {
    EXPECT_THAT((std::vector{workspace.raw_row, workspace.smoothed_row, workspace.residual_row,
                             workspace.gradient_row, workspace.horizontal_row, workspace.total_gradient_row}),
                ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(WorkspaceTest, starts_with_room_for_32_bodies_and_none_of_them_used) {
    EXPECT_EQ(workspace.body_count, 0);
    EXPECT_EQ(workspace.body_capacity, 32);
    EXPECT_EQ(workspace.bodies.size(), 33U);
}

TEST_F(WorkspaceTest, a_second_start_resets_what_has_a_default_and_leaves_the_rest) {
    workspace.field.intensity = 1;
    workspace.transform.active = true;
    workspace.body_count = 1;
    workspace.body(1).name = "dyke";
    workspace.azimuth = 1.5F;
    workspace.display.form_width = 10000;
    workspace.definition.spare_definition_field = 7;
    workspace.distances.assign(3, 2.5);
    initialise_workspace(workspace, prompts);
    EXPECT_EQ(workspace.field.intensity, 56000);
    EXPECT_FALSE(workspace.transform.active);
    EXPECT_EQ(workspace.body_count, 0);
    EXPECT_EQ(workspace.body(1).name, "");
    EXPECT_EQ(workspace.azimuth, 1.5F);
    EXPECT_EQ(workspace.display.form_width, 10000);
    EXPECT_EQ(workspace.definition.spare_definition_field, 7);
    EXPECT_EQ(workspace.distances[3], 2.5);
}

TEST_F(WorkspaceTest, a_new_body_has_the_default_values) {
    workspace.definition.data_file = "/surveys/line.04.dat";
    const ModelBody& body = new_body(3, thin_sheet);
    EXPECT_EQ(body.name, "line.04 Body 3");
    EXPECT_EQ(body.description, "");
    EXPECT_EQ(body.rock_type, "");
    EXPECT_EQ(body.strike.value, 0);
    EXPECT_EQ(body.dip.value, 90);
    EXPECT_EQ(body.plunge.value, 0);
    EXPECT_EQ(body.slope.value, 0);
    EXPECT_EQ(body.width.value, 100);
    EXPECT_EQ(body.depth_extent.value, 250);
    EXPECT_EQ(body.length.value, 250);
    EXPECT_EQ(body.offset.value, 0);
    EXPECT_EQ(body.susc.value, 50000);
    EXPECT_EQ(body.rem_q.value, 0);
    EXPECT_EQ(body.rem_d.value, 0);
    EXPECT_EQ(body.rem_i.value, 0);
    EXPECT_EQ(body.density.value, 2.67F);
    EXPECT_EQ(body.end_width_a, 0);
    EXPECT_EQ(body.end_width_b, 0);
    EXPECT_EQ(body.shell_thickness, 0);
    EXPECT_EQ(body.end_thickness, 0);
    EXPECT_EQ(body.num_sectors, 12);
    EXPECT_EQ(body.num_segments, 1);
    EXPECT_EQ(body.max_triangle_size, 0);
    EXPECT_EQ(body.colour, 0xFF0000);
    EXPECT_EQ(body.include_demagnetisation, 0);
    EXPECT_EQ(body.vary, 1);
    EXPECT_EQ(body.turned_off, 0);
    EXPECT_EQ(body.last_calculated, -1.0F);
    EXPECT_FALSE(body.mag_response_valid || body.grav_response_valid);
}

TEST_F(WorkspaceTest, a_new_body_is_free_where_an_inversion_usually_is) {
    ModelBody& body = workspace.body(1);
    for (const BodyParameter& row : body_parameters()) (body.*row.slot) = {1, 7, -1, 1};
    body.distance.value = 120;
    body.top.value = -40;
    new_body(1, thick_sheet);
    for (const BodyParameter& row : body_parameters()) {
        EXPECT_EQ((body.*row.slot).min, -99999) << row.name;
        EXPECT_EQ((body.*row.slot).max, -99999) << row.name;
    }
    for (const BodyParam* free :
         {&body.distance, &body.top, &body.dip, &body.width, &body.susc, &body.density})
        EXPECT_EQ(free->vary, 1);
    for (const BodyParam* held : {&body.strike, &body.depth_extent, &body.rem_q, &body.rem_d, &body.rem_i})
        EXPECT_EQ(held->vary, 0);
    for (const BodyParam* unchanged : {&body.plunge, &body.slope, &body.length, &body.offset})
        EXPECT_EQ(unchanged->vary, 7);
    EXPECT_EQ(body.distance.value, 120) << "the caller's";
    EXPECT_EQ(body.top.value, -40);
}

TEST_F(WorkspaceTest, bodies_that_are_no_sheets_lie_flat) {
    EXPECT_EQ(new_body(1, sphere).dip.value, 90);
    EXPECT_EQ(new_body(2, pipe).dip.value, 0);
    EXPECT_EQ(new_body(3, wire).dip.value, 0);
}

TEST_F(WorkspaceTest, settings_override_the_defaults_of_a_body) {
    for (const auto& [key, value] : {std::pair{"Dip", "60"},
                                     {"Thick", "12.5"},
                                     {"Depth", "300"},
                                     {"Susc", "1e4"},
                                     {"StrikeLength", "900"},
                                     {"Density", "3.1"},
                                     {"Colour", "65280.4"}})
        keep(key, value);
    const ModelBody& body = new_body(1, thick_sheet);
    EXPECT_EQ(body.dip.value, 60);
    EXPECT_EQ(body.width.value, 12.5F);
    EXPECT_EQ(body.depth_extent.value, 300);
    EXPECT_EQ(body.susc.value, 10000);
    EXPECT_EQ(body.length.value, 900);
    EXPECT_EQ(body.density.value, 3.1F);
    EXPECT_EQ(body.colour, 65280);
    EXPECT_EQ(body.type, thick_sheet);
}

TEST_F(WorkspaceTest, a_setting_that_is_no_number_is_ignored) {
    keep("Depth", "abc");
    keep("Type", "");
    const ModelBody& body = new_body(1, thick_sheet);
    EXPECT_EQ(body.depth_extent.value, 250);
    EXPECT_EQ(body.type, thick_sheet);
}

TEST_F(WorkspaceTest, a_type_from_the_settings_does_not_change_the_dip) {
    keep("Type", "17");
    const ModelBody& body = new_body(1, thick_sheet);
    EXPECT_EQ(body.type, wire);
    EXPECT_EQ(body.dip.value, 90) << "chosen by the type that the caller set";
}

TEST_F(WorkspaceTest, a_setting_beyond_its_field_is_told) {
    keep("Density", "1e300");
    new_body(1, thick_sheet);
    EXPECT_THAT(prompts.messages,
                ElementsAre("An error occurred while initialising the body paremeters: Overflow"));
    prompts.messages.clear();
}

TEST_F(WorkspaceTest, a_body_that_does_not_exist_is_told) {
    initialise_body(workspace, 33, settings, prompts);
    EXPECT_THAT(
        prompts.messages,
        ElementsAre("An error occurred while initialising the body paremeters: Subscript out of range"));
    prompts.messages.clear();
}

TEST_F(WorkspaceTest, body_33_makes_room_for_48_and_keeps_the_others) {
    workspace.station_count = 7;
    for (int i = 1; i <= 32; ++i) {
        reserve_next_body(workspace);
        workspace.body(++workspace.body_count).name = "body " + std::to_string(i);
    }
    EXPECT_EQ(workspace.body_capacity, 32);
    reserve_next_body(workspace);
    EXPECT_EQ(workspace.body_capacity, 48);
    EXPECT_EQ(workspace.bodies.size(), 49U);
    for (int i = 1; i <= 32; ++i) EXPECT_EQ(workspace.body(i).name, "body " + std::to_string(i));
    for (int i = 33; i <= 48; ++i) EXPECT_EQ(workspace.body(i).response.rows(), 7);
}

TEST_F(WorkspaceTest, a_reset_reaches_slots_above_the_count) {
    workspace.body_count = 1;
    workspace.mag.calculated_filtered = workspace.grav.calculated_filtered = true;
    workspace.mag.observed_filtered = true;
    for (const int i : {1, 2, 32}) {
        workspace.body(i).last_calculated = 5;
        workspace.body(i).mag_response_valid = workspace.body(i).grav_response_valid = true;
    }
    reset_calculated_data(workspace, prompts);
    for (const int i : {1, 2, 32}) {
        EXPECT_EQ(workspace.body(i).last_calculated, -1.0F);
        EXPECT_FALSE(workspace.body(i).mag_response_valid || workspace.body(i).grav_response_valid);
    }
    EXPECT_FALSE(workspace.mag.calculated_filtered || workspace.grav.calculated_filtered);
    EXPECT_TRUE(workspace.mag.observed_filtered);
}

TEST_F(WorkspaceTest, the_observed_rows_fall_in_mode_0_alone) {
    const auto set_all = [&](bool to) {
        workspace.mag.observed_filtered = workspace.mag.calculated_filtered = to;
        workspace.grav.observed_filtered = workspace.grav.calculated_filtered = to;
        workspace.elevations_ready = to;
    };
    set_all(true);
    invalidate_filtered_data(1, workspace);
    EXPECT_FALSE(workspace.mag.calculated_filtered || workspace.grav.calculated_filtered);
    EXPECT_TRUE(workspace.mag.observed_filtered && workspace.grav.observed_filtered);
    set_all(true);
    invalidate_filtered_data(0, workspace);
    EXPECT_FALSE(workspace.mag.calculated_filtered || workspace.grav.calculated_filtered);
    EXPECT_FALSE(workspace.mag.observed_filtered || workspace.grav.observed_filtered);
    EXPECT_TRUE(workspace.elevations_ready);
}

TEST_F(WorkspaceTest, dropped_stations_leave_no_count) {
    workspace.station_count = 5;
    workspace.elevations_ready = true;
    drop_stations(workspace);
    EXPECT_EQ(workspace.station_count, 0);
    EXPECT_FALSE(workspace.elevations_ready);
}

TEST(ChannelTable, a_row_is_contiguous_over_the_stations) {
    ChannelTable table;
    table.assign(4);
    table(2, row_residual, stage_calculated) = 5;
    EXPECT_EQ(table.row(row_residual, stage_calculated)[1], 5);
    EXPECT_EQ(table.row(row_residual, stage_observed)[1], 0);
    EXPECT_EQ(table.span().size(), 48U);
    EXPECT_THROW(table(1, 7, stage_observed), Fault);
    EXPECT_THROW(table(1, row_raw, 3), Fault);
    EXPECT_THROW(table(5, row_raw, stage_observed), Fault);
}

TEST(LineInputs, place_and_date_count_only_while_the_readings_hang_on_them) {
    Workspace w;
    const LineInputs before = line_inputs(w);
    w.source.coordinate_system = "EPSG:32754";
    w.source.date = "1990";
    EXPECT_EQ(line_inputs(w), before);
    w.source.igrf_change = igrf_removed;
    const LineInputs removed = line_inputs(w);
    EXPECT_NE(removed, before);
    w.source.date = "1991";
    EXPECT_NE(line_inputs(w), removed);
}

TEST(ForgetField, leaves_no_field_of_another_survey) {
    Workspace w;
    w.source.field_origin = "IGRF-14 somewhere else";
    forget_field(w);
    EXPECT_EQ(w.field.intensity, 0);
    EXPECT_EQ(w.source.field_origin, "");
    EXPECT_TRUE(w.source.field_missing);
}

TEST(CopyDefinitions, takes_all_that_a_file_holds_but_bodies_and_name) {
    Workspace from, to;
    from.model_file = "from.axm";
    from.definition.data_file = "line.dat";
    from.definition.data_file_date = 3;
    from.definition.grav_column = 9;
    from.station_spacing = 2;
    from.transform.rotation = 30;
    from.field.intensity = 1;
    from.mag.base = 4;
    from.last_distance = 5;
    from.display.splitter_fraction[2] = 6;
    from.formulas = Formulas::exact;
    from.gap_distance = 300;
    from.source.file = "survey.csv";
    from.source.date = "1990";
    from.source.field_missing = true;
    from.source.igrf_change = igrf_removed;
    from.body_count = 7;
    from.station_count = 8;
    copy_definitions(from, to);
    EXPECT_EQ(to.definition, from.definition);
    EXPECT_EQ(line_inputs(to), line_inputs(from));
    EXPECT_EQ(to.field, from.field);
    EXPECT_EQ(to.gap_distance, 300);
    EXPECT_EQ(to.source, from.source);
    EXPECT_EQ(to.mag.base, 4);
    EXPECT_EQ(to.last_distance, 5);
    EXPECT_EQ(to.display, from.display);
    EXPECT_EQ(to.formulas, Formulas::exact);
    EXPECT_EQ(to.model_file, "");
    EXPECT_EQ(to.body_count, 0);
    EXPECT_EQ(to.station_count, 0);
}

}  // namespace
}  // namespace anomalis

#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "workspace_file/axm_samples.h"

namespace anomalis::workspace_file {
namespace {

/// A workspace in which every saved field has a value of its own.
void fill(Workspace& workspace) {
    workspace.definition = {"line 7 of the survey.dat", 0, 12, 3, 4711, 9, 2, 3, 4, 5, 6, 7};
    workspace.station_spacing = 12.5F;
    workspace.min_station_spacing = 0.125F;
    workspace.field.intensity = 51940.25F;
    workspace.field.inclination = -53.1F;
    workspace.field.declination = 6.7F;
    workspace.surface_elevation = 321.5F;
    workspace.sensor_offset = 80.25F;
    workspace.drawing.infinite_body_length = 750;
    workspace.drawing.finite_body_left_clip = 11;
    workspace.drawing.finite_body_right_clip = 22;
    workspace.display = {true, 11500, 9900, 1, 1, 1, {0.25F, 0.5F, 0.625F, 0.75F}, true, 2.5F};
    workspace.mag.base = 50123.5F;
    workspace.grav.base = -3.5F;
    workspace.mag.float_base = 1;
    workspace.grav.float_base = 1;
    workspace.first_station = 5;
    workspace.last_station = 55;
    workspace.processing.smooth_filter_width = 3;
    workspace.processing.smooth_filter_type = 4;
    workspace.processing.residual_filter_width = 30;
    workspace.processing.display_total_gradient = 1;
    workspace.processing.vg_filter_width = 7;
    workspace.processing.vg_filter_step = 2;
    workspace.transform = {false,   12.5,  1, 0, 2, 3, 412345.25, 7123456.5, 1000.5,
                           2000.75, false, 4, 5, 6, 7, -8,        0.5};
    workspace.body_count = 3;
    float next = 1.5F;
    for (int number = 1; number <= 3; ++number) {
        ModelBody& body = workspace.body(number);
        body.type = number == 3 ? pipe : thick_sheet;
        body.east = 412345.678 + number;
        body.north = 7123456.75 + number;
        body.colour = 4660 + number;
        body.name = "Body no. " + std::to_string(number);
        body.description = "";
        body.rock_type = "rock, \"hard\" 'n' old";
        body.include_demagnetisation = number == 2 ? 1 : 0;
        body.vary = number == 1 ? 0 : 1;
        body.turned_off = number == 2 ? 1 : 0;
        for (const BodyParameter& row : body_parameters()) {
            body.*row.slot = {next, number == 1 ? 1.0F : 0.0F, -next, next * 100};
            next += 0.25F;
        }
        body.shell_thickness = 4.5F;
        body.end_thickness = 3.25F;
        body.num_sectors = 18;
        body.num_segments = 5;
        body.max_triangle_size = 15.75F;
    }
}

void expect_same_settings(const Workspace& a, const Workspace& b) {
    EXPECT_EQ(a.definition, b.definition);
    EXPECT_EQ(a.display, b.display);
    EXPECT_EQ(a.transform, b.transform);
    for (const auto field : {&Workspace::station_spacing, &Workspace::min_station_spacing,
                             &Workspace::surface_elevation, &Workspace::sensor_offset})
        EXPECT_EQ(a.*field, b.*field);
    EXPECT_EQ(a.field, b.field);
    EXPECT_EQ(a.processing, b.processing);
    EXPECT_EQ(a.drawing.infinite_body_length, b.drawing.infinite_body_length);
    EXPECT_EQ(a.drawing.finite_body_left_clip, b.drawing.finite_body_left_clip);
    EXPECT_EQ(a.drawing.finite_body_right_clip, b.drawing.finite_body_right_clip);
    for (const auto channel : {&Workspace::mag, &Workspace::grav}) {
        EXPECT_EQ((a.*channel).base, (b.*channel).base);
        EXPECT_EQ((a.*channel).float_base, (b.*channel).float_base);
    }
    EXPECT_EQ(a.first_station, b.first_station);
    EXPECT_EQ(a.last_station, b.last_station);
    EXPECT_EQ(a.body_count, b.body_count);
    EXPECT_EQ(a.first_distance, b.first_distance);
    EXPECT_EQ(a.last_distance, b.last_distance);
}

void expect_same_body(const ModelBody& a, const ModelBody& b) {
    for (const auto field : {&ModelBody::name, &ModelBody::description, &ModelBody::rock_type})
        EXPECT_EQ(a.*field, b.*field);
    for (const auto field :
         {&ModelBody::type, &ModelBody::colour, &ModelBody::include_demagnetisation, &ModelBody::vary,
          &ModelBody::turned_off, &ModelBody::num_sectors, &ModelBody::num_segments})
        EXPECT_EQ(a.*field, b.*field);
    for (const auto field : {&ModelBody::shell_thickness, &ModelBody::end_thickness,
                             &ModelBody::max_triangle_size, &ModelBody::last_calculated})
        EXPECT_EQ(a.*field, b.*field);
    EXPECT_EQ(a.east, b.east);
    EXPECT_EQ(a.north, b.north);
    for (const BodyParameter& row : body_parameters()) EXPECT_EQ(a.*row.slot, b.*row.slot) << row.name;
}

/// What a file does not keep: a body comes back switched on. The data file has a name from then on.
Workspace as_it_comes_back(Workspace workspace) {
    workspace.definition.data_file_as_named = workspace.definition.data_file;
    for (ModelBody& body : workspace.bodies) body.turned_off = 0;
    return workspace;
}

TEST(AxmRoundTrip, a_workspace_comes_back_field_by_field) {
    Reading original;
    fill(original.workspace);
    const std::string path = original.folder.path("model.axm");
    ASSERT_EQ(write_model_parameters(0, path, original.workspace, original.prompts), 0);

    Reading back;
    ASSERT_EQ(back.read(path), 0);
    const Workspace expected = as_it_comes_back(original.workspace);
    expect_same_settings(back.workspace, expected);
    for (int number = 1; number <= 3; ++number) {
        SCOPED_TRACE(number);
        expect_same_body(back.workspace.body(number), expected.body(number));
        EXPECT_EQ(back.workspace.body(number).end_width_a, expected.body(number).width.value);
        EXPECT_EQ(back.workspace.body(number).end_width_b, expected.body(number).width.value);
    }
    EXPECT_EQ(back.workspace.model_file, path);
    EXPECT_GT(back.workspace.model_file_date, 45000);
}

TEST(AxmRoundTrip, a_file_written_again_has_the_same_bytes_but_for_the_switches) {
    Reading original;
    fill(original.workspace);
    original.workspace.body(2).turned_off = 0;
    const std::string path = original.folder.path("first.axm");
    ASSERT_EQ(write_model_parameters(0, path, original.workspace, original.prompts), 0);
    Reading back;
    ASSERT_EQ(back.read(path), 0);
    ASSERT_EQ(write_model_parameters(0, original.folder.path("second.axm"), back.workspace, back.prompts), 0);
    EXPECT_EQ(original.folder.read("second.axm"), original.folder.read("first.axm"));
}

TEST(AxmRoundTrip, a_window_by_distances_comes_back_without_its_station_numbers) {
    Reading original;
    fill(original.workspace);
    original.workspace.first_distance = 100.5;
    original.workspace.last_distance = 900.25;
    const std::string path = original.folder.path("model.axm");
    ASSERT_EQ(write_model_parameters(0, path, original.workspace, original.prompts), 0);
    Reading back;
    ASSERT_EQ(back.read(path), 0);
    EXPECT_EQ(back.workspace.first_station, 0);
    EXPECT_EQ(back.workspace.last_station, 0);
    EXPECT_EQ(back.workspace.first_distance, 100.5);
    EXPECT_EQ(back.workspace.last_distance, 900.25);
}

TEST(AxmRoundTrip, more_bodies_than_the_session_had_room_for_come_back) {
    Reading original;
    original.workspace.body_count = 40;
    original.workspace.bodies.resize(41);
    original.workspace.body_capacity = 40;
    for (int number = 1; number <= 40; ++number)
        original.workspace.body(number).name = std::to_string(number) + "a";
    const std::string path = original.folder.path("model.axm");
    ASSERT_EQ(write_model_parameters(0, path, original.workspace, original.prompts), 0);
    Reading back;
    ASSERT_EQ(back.read(path), 0);
    EXPECT_EQ(back.workspace.body_count, 40);
    EXPECT_EQ(back.workspace.body_capacity, 56);
    EXPECT_EQ(back.workspace.bodies.size(), 57U);
    EXPECT_EQ(back.workspace.body(40).name, "40a");
}

}  // namespace
}  // namespace anomalis::workspace_file

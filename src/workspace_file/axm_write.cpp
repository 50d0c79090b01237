#include <span>
#include <string_view>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "workspace_file/axm.h"
#include "workspace_file/axm_extensions.h"
#include "workspace_file/axm_lines.h"
#include "workspace_file/axm_text.h"
#include "workspace_file/data_file_place.h"

namespace anomalis::workspace_file {

namespace {

constexpr std::int32_t written_version = 7;

struct Limits {
    const BodyParam& param;
};

AxmWriter& operator<<(AxmWriter& out, const Limits& limits) {
    return out << limits.param.vary << limits.param.min << limits.param.max;
}

AxmWriter& operator<<(AxmWriter& out, const BodyParam& param) {
    return out << param.value << Limits{param};
}

void write_data_lines(const Workspace& workspace, std::string_view data_file, AxmWriter& out) {
    const DataDefinition& definition = workspace.definition;
    out << data_file;
    out.end_line();
    out << definition.first_data_line << definition.read_increment << definition.x_column
        << definition.y_column << definition.z_column << definition.dtm_column << definition.mag_column
        << definition.grav_column << workspace.station_spacing << definition.spare_definition_field
        << workspace.min_station_spacing << definition.last_data_line;
    out.end_line();
    out << workspace.field.intensity << workspace.field.inclination << workspace.field.declination;
    out.end_line();
    out << workspace.processing.residual_filter_width << workspace.processing.vg_filter_width
        << workspace.processing.vg_filter_step << workspace.processing.display_total_gradient
        << workspace.first_station << workspace.last_station << workspace.processing.smooth_filter_type
        << workspace.processing.smooth_filter_width << workspace.first_distance << workspace.last_distance;
    out.end_line();
    out << workspace.mag.base << workspace.surface_elevation << workspace.sensor_offset << workspace.grav.base
        << workspace.mag.float_base << workspace.grav.float_base;
    out.end_line();
}

void write_transform_lines(const PointTransform& transform, AxmWriter& out) {
    out << transform.rotation << transform.x_scale << transform.y_scale;
    out.end_line();
    out << transform.x_origin << transform.y_origin;
    out.end_line();
    out << transform.x_offset << transform.y_offset;
    out.end_line();
    out << transform.original_x2 << transform.original_y2;
    out.end_line();
    out << transform.new_x2 << transform.new_y2;
    out.end_line();
    out << transform.elevation_shift << transform.elevation_scale;
    out.end_line();
}

/// The values, then the mark and the limits of each.
void write_line(const ModelBody& body, std::span<const ParamCode> codes, AxmWriter& out) {
    for (const ParamCode code : codes) out << body_param(body, code).value;
    for (const ParamCode code : codes) out << Limits{body_param(body, code)};
}

void write_body(const ModelBody& body, AxmWriter& out) {
    out << body.type << body.include_demagnetisation << body.vary << body.colour << body.turned_off << " "
        << body.name;
    out.end_line();
    out << body.description;
    out.end_line();
    out << body.rock_type;
    out.end_line();
    out << body.distance.value << body.east << body.north << body.top.value << Limits{body.distance}
        << Limits{body.top} << body.width.value << body.width.value << body.shell_thickness
        << body.end_thickness << body.num_sectors << body.num_segments << body.max_triangle_size;
    out.end_line();
    write_line(body, shape_line, out);
    out.end_line();
    out << body.length;
    out.end_line();
    out << body.offset;
    out.end_line();
    out << body.plunge << body.slope;
    out.end_line();
    write_line(body, magnetic_line, out);
    out << body.density;
    out.end_line();
}

void write_bodies(const Workspace& workspace, AxmWriter& out) {
    out << workspace.body_count << written_version << workspace.drawing.infinite_body_length
        << workspace.drawing.finite_body_left_clip << workspace.drawing.finite_body_right_clip;
    out.end_line();
    for (int number = 1; number <= workspace.body_count; ++number) {
        write_body(workspace.body(number), out);
    }
}

void write_display_block(const DisplaySettings& display, AxmWriter& out) {
    out << axm_display_marker;
    out.end_line();
    out << display.maintain_aspect_ratio << display.show_axes << display.show_body_label
        << (display.tie_pipe_depth_susc ? "Yes" : "No") << display.tie_factor;
    out.end_line();
    for (const float fraction : display.splitter_fraction) out << fraction;
    out.end_line();
    out << display.form_width << display.form_height;
    out.end_line();
}

std::string text_naming(std::string_view data_file, int mode, const Workspace& workspace) {
    AxmWriter out;
    write_data_lines(workspace, data_file, out);
    write_transform_lines(workspace.transform, out);
    if (mode >= 0) {
        write_bodies(workspace, out);
        write_display_block(workspace.display, out);
        write_extensions(workspace, out);
    }
    return out.text();
}

}  // namespace

std::string model_parameters_text(int mode, const Workspace& workspace) {
    return text_naming(workspace.definition.data_file, mode, workspace);
}

int write_model_parameters(int mode, const std::string& path, const Workspace& workspace, Prompts& prompts) {
    return write_model_parameters(mode, path, workspace, prompts, telling_writer(prompts));
}

int write_model_parameters(int mode, const std::string& path, const Workspace& workspace, Prompts& prompts,
                           const FileWriter& write) {
    return report_failure(prompts, "An error occurred while saving the model parameters: ", [&] {
        write(path, text_naming(data_file_name_for(workspace.definition, path), mode, workspace));
    });
}

}  // namespace anomalis::workspace_file

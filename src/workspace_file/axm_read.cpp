#include <algorithm>
#include <limits>
#include <utility>

#include "core/failure.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/safe_file.h"
#include "core/text.h"
#include "core/workspace.h"
#include "workspace_file/axm.h"
#include "workspace_file/axm_body.h"
#include "workspace_file/axm_extensions.h"
#include "workspace_file/axm_shape.h"
#include "workspace_file/axm_text.h"
#include "workspace_file/data_file_place.h"

namespace anomalis::workspace_file {

namespace {

constexpr std::int32_t last_filter_type = 4;
constexpr std::int32_t spare_bodies = 16;
constexpr int lines_before_bodies = 11;

void tell_place(std::string_view name, const DataFilePlace& place, Prompts& prompts) {
    const std::string what = "The data file " + std::string(name) + " was taken from the ";
    if (!place.passed_over.empty()) {
        prompts.remark(what + "folder of the workspace (" + whole_path(place.path) +
                       "). Another file of that name in the current folder was passed over (" +
                       whole_path(place.passed_over) + ")");
    } else if (!place.beside) {
        prompts.remark(what + "current folder (" + whole_path(place.path) +
                       "): it is not where the workspace says");
    }
}

/// One that is nowhere is asked for.
void take_data_file(std::string_view name, const std::string& workspace_path, DataDefinition& definition,
                    Prompts& prompts) {
    definition.data_file = definition.data_file_as_named = name;
    const DataFilePlace place = find_data_file(name, workspace_path);
    if (!place.path.empty()) {
        definition.data_file = place.path;
        tell_place(name, place, prompts);
    } else {
        const LocateResult found =
            locate_file("profile data file", definition.data_file, folder_name(workspace_path), prompts);
        if (found.path.empty()) return;
        definition.data_file = trim_blanks(found.path);
    }
    definition.data_file_date = file_date(definition.data_file);
}

void read_columns(LineItems items, Workspace& workspace) {
    DataDefinition& definition = workspace.definition;
    for (std::int32_t* field :
         {&definition.first_data_line, &definition.read_increment, &definition.x_column, &definition.y_column,
          &definition.z_column, &definition.dtm_column, &definition.mag_column})
        *field = items.integer();
    definition.spare_definition_field = definition.last_data_line = 0;
    items.if_left(definition.grav_column);
    items.if_left(workspace.station_spacing);
    items.if_left(definition.spare_definition_field);
    items.if_left(workspace.min_station_spacing);
    items.if_left(definition.last_data_line);
    items.end();
}

void read_field(LineItems items, Workspace& workspace) {
    workspace.field.intensity = items.single();
    workspace.field.inclination = items.single();
    workspace.field.declination = items.single();
    items.end();
}

/// How far bodies are drawn, for files from before this was kept.
void set_default_extents(DrawingSettings& drawing) {
    const DrawingSettings defaults;
    drawing.infinite_body_length = defaults.infinite_body_length;
    drawing.finite_body_left_clip = defaults.finite_body_left_clip;
    drawing.finite_body_right_clip = defaults.finite_body_right_clip;
}

/// The station window counts only when both its numbers are there.
void read_window_stations(LineItems& items, Workspace& workspace) {
    if (!items.left()) return;
    const std::int32_t first = items.integer();
    if (!items.left()) return;
    workspace.first_station = first;
    workspace.last_station = items.integer();
}

void read_filters(LineItems items, Workspace& workspace) {
    workspace.processing.residual_filter_width = items.integer();
    if (items.left()) {
        workspace.processing.vg_filter_width = items.integer();
        workspace.processing.vg_filter_step = items.integer();
    }
    if (items.left()) {
        workspace.processing.display_total_gradient = items.integer();
        read_window_stations(items, workspace);
    }
    workspace.processing.smooth_filter_type = workspace.processing.smooth_filter_width = 0;
    if (items.left()) {
        workspace.processing.smooth_filter_type = std::clamp(items.integer(), 0, last_filter_type);
        workspace.processing.smooth_filter_width = items.integer();
    }
    if (items.left()) {
        workspace.first_distance = items.number();
        workspace.last_distance = items.number();
        items.end();
    }
    // A window given by distances is found again among the stations after the load.
    if (workspace.first_distance < workspace.last_distance)
        workspace.first_station = workspace.last_station = 0;
}

void read_base_levels(LineItems items, Workspace& workspace) {
    workspace.mag.base = items.single();
    workspace.surface_elevation = items.single();
    workspace.sensor_offset = items.single();
    workspace.grav.base = unset;
    workspace.mag.float_base = workspace.grav.float_base = 0;
    items.if_left(workspace.grav.base);
    items.if_left(workspace.mag.float_base);
    items.if_left(workspace.grav.float_base);
    items.end();
}

void read_transform(AxmLines& lines, PointTransform& transform) {
    LineItems turn = lines.items();
    for (double* field : {&transform.rotation, &transform.x_scale, &transform.y_scale})
        *field = turn.number();
    turn.end();
    const auto read_pair = [&](double& first, double& second) {
        LineItems items = lines.items();
        first = items.number();
        second = items.number();
        items.end();
    };
    read_pair(transform.x_origin, transform.y_origin);
    read_pair(transform.x_offset, transform.y_offset);
    read_pair(transform.original_x2, transform.original_y2);
    read_pair(transform.new_x2, transform.new_y2);
    read_pair(transform.elevation_shift, transform.elevation_scale);
}

void read_definitions(AxmLines& lines, const std::string& path, Workspace& workspace, Prompts& prompts) {
    workspace.first_station = workspace.last_station = 0;
    workspace.first_distance = workspace.last_distance = 0;
    workspace.display.valid = false;
    workspace.display.tie_pipe_depth_susc = false;  // a file that does not speak of it has no tie
    workspace.formulas = Formulas::classic;
    for (Channel* channel : {&workspace.mag, &workspace.grav}) {
        channel->regional_degree = no_regional;
        channel->noise = unset;
    }
    workspace.fit.reset();
    workspace.source = {};
    workspace.gap_distance = 0;
    set_default_extents(workspace.drawing);
    take_data_file(lines.next(), path, workspace.definition, prompts);
    read_columns(lines.items(), workspace);
    read_field(lines.items(), workspace);
    read_filters(lines.items(), workspace);
    read_base_levels(lines.items(), workspace);
    read_transform(lines, workspace.transform);
}

/// Slots grow with the bodies that are really there: the count in the file is a claim, and memory must not
/// hang on it.
void read_announced_bodies(AxmLines& lines, std::int32_t count, std::int32_t version, Workspace& workspace,
                           const Settings& settings, Prompts& prompts) {
    const bool afresh = count > workspace.body_capacity;
    if (afresh) workspace.bodies.assign(1, ModelBody{});
    for (std::int32_t number = 1; number <= count; ++number) {
        if (static_cast<std::size_t>(number) >= workspace.bodies.size()) workspace.bodies.emplace_back();
        workspace.body_capacity = static_cast<std::int32_t>(workspace.bodies.size()) - 1;
        read_body(lines, version, workspace, number, settings, prompts);
        workspace.body_count = number;
    }
    if (!afresh) return;
    if (count > std::numeric_limits<std::int32_t>::max() - spare_bodies) throw Fault(FaultKind::overflow);
    workspace.body_capacity = count + spare_bodies;
    workspace.bodies.resize(static_cast<std::size_t>(workspace.body_capacity) + 1);
}

void read_bodies(int mode, AxmLines& lines, Workspace& workspace, const Settings& settings,
                 Prompts& prompts) {
    LineItems items = lines.items();
    const std::int32_t count = items.integer();
    const std::int32_t version = items.left() ? items.integer() : 0;  // the first files had none
    if (mode == 0) {
        items.if_left(workspace.drawing.infinite_body_length);
        items.if_left(workspace.drawing.finite_body_left_clip);
        items.if_left(workspace.drawing.finite_body_right_clip);
        items.end();
    }
    read_announced_bodies(lines, count, version, workspace, settings, prompts);
}

void read_display_block(AxmLines& lines, DisplaySettings& display) {
    do {
        if (lines.at_end()) return;
    } while (lines.next() != axm_display_marker);
    display.valid = true;
    // A layout that is damaged moves panes, no curve.
    LineItems flags = lines.items(Severity::remark);
    display.maintain_aspect_ratio = flags.integer();
    display.show_axes = flags.integer();
    display.show_body_label = flags.integer();
    if (flags.left()) display.tie_pipe_depth_susc = text_to_flag(flags.token());
    flags.if_left(display.tie_factor);
    LineItems fractions = lines.items(Severity::remark);
    for (float& fraction : display.splitter_fraction) fraction = fractions.single();
    LineItems size = lines.items(Severity::remark);
    display.form_width = size.integer();
    display.form_height = size.integer();
}

void read_lines(int mode, AxmLines& lines, const std::string& path, Workspace& workspace,
                const Settings& settings, Prompts& prompts) {
    if (mode > 0) {
        lines.skip(lines_before_bodies);
    } else {
        read_definitions(lines, path, workspace, prompts);
    }
    workspace.body_count = 0;
    if (lines.at_end()) return;
    if (mode >= 0) read_bodies(mode, lines, workspace, settings, prompts);
    if (mode > 0) return;
    read_display_block(lines, workspace.display);
    read_extensions(lines, workspace, prompts);
    if (mode < 0) workspace.fit.reset();  // it speaks of bodies that were not wanted
    drop_fit_of_another_model(lines, workspace);
}

void show_notes(const Faults& notes, const std::string& path, Prompts& prompts) {
    Faults of_file;
    for (const auto& [text, count, severity] : notes.entries())
        of_file.add(path + ", " + text, count, severity);
    show_faults(of_file, prompts);
}

/// What short lines leave as it was, and room for as many bodies.
Workspace definitions_of(const Workspace& workspace) {
    Workspace read;
    copy_definitions(workspace, read);
    read.body_capacity = workspace.body_capacity;
    read.bodies.resize(static_cast<std::size_t>(read.body_capacity) + 1);
    return read;
}

void take_over(int mode, Workspace&& read, Workspace& workspace) {
    drop_stations(workspace);
    if (mode <= 0) copy_definitions(read, workspace);
    workspace.bodies = std::move(read.bodies);
    workspace.body_capacity = read.body_capacity;
    workspace.body_count = read.body_count;
}

void require_workspace_shape(std::string_view text, const std::string& path) {
    if (!has_workspace_shape(text))
        throw Fault("Not a workspace file (" + path + "). Choose one that was saved by this program (.axm)");
}

/// The present model is not touched before the file is known to be whole.
void read_text(int mode, Workspace& workspace, std::string_view text, const std::string& path,
               const Settings& settings, Prompts& prompts, Damaged damaged) {
    require_workspace_shape(text, path);
    Workspace read = definitions_of(workspace);
    AxmLines lines(text);
    try {
        read_lines(mode, lines, path, read, settings, prompts);
    } catch (const Fault& fault) {
        if (damaged == Damaged::kept) {
            show_notes(lines.notes(), path, prompts);
            take_over(mode, std::move(read), workspace);
        }
        throw Fault(std::string(fault.what()) + " (" + path + ", line " + std::to_string(lines.number()) +
                    ")");
    }
    show_notes(lines.notes(), path, prompts);
    take_over(mode, std::move(read), workspace);
    if (mode > 0) return;
    workspace.model_file = path;
    workspace.model_file_date = file_date(path);
}

constexpr std::string_view failure_prefix = "An error occurred while reading the location file : ";

}  // namespace

int read_model_parameters(int mode, Workspace& workspace, const std::string& path, const Settings& settings,
                          Prompts& prompts, Damaged damaged) {
    return report_failure(prompts, failure_prefix, [&] {
        require_workspace_shape(read_file_start(path, shape_bytes), path);
        read_text(mode, workspace, read_whole_file(path), path, settings, prompts, damaged);
    });
}

int read_model_parameters_text(int mode, Workspace& workspace, std::string_view text, const std::string& path,
                               const Settings& settings, Prompts& prompts, Damaged damaged) {
    return report_failure(prompts, failure_prefix,
                          [&] { read_text(mode, workspace, text, path, settings, prompts, damaged); });
}

}  // namespace anomalis::workspace_file

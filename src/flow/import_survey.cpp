#include "flow/import_survey.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/same_file.h"
#include "flow/carry_bodies.h"
#include "flow/import_files.h"
#include "flow/import_lines.h"
#include "flow/line_field.h"
#include "flow/line_heights.h"
#include "flow/survey_table.h"
#include "intake/coordinates/coordinate_system.h"
#include "workspace_file/axm.h"
#include "workspace_file/data_file_place.h"

namespace anomalis::flow {

namespace {

using intake::SurveyIndex;
using intake::SurveyLine;

constexpr double spacings_of_a_gap = 3;

bool any_reading(const std::vector<double>& values) {
    return std::ranges::any_of(values, [](double value) { return !std::isnan(value); });
}

/// A channel without any reading on this line is none of it.
void drop_empty_channels(SurveyLine& line, ImportedLine& imported) {
    for (auto* values : {&line.mag, &line.grav, &line.fiducial}) {
        if (values->empty() || any_reading(*values)) continue;
        if (values != &line.fiducial)
            imported.notes.add(std::string(values == &line.mag ? "Magnetics" : "Gravity") +
                                   ": there is no reading on " + imported.title,
                               1, Severity::remark);
        values->clear();
    }
    if (line.mag.empty() && line.grav.empty()) throw Fault("There is no reading on " + imported.title);
}

long count_nulls(const std::vector<double>& values) {
    return std::ranges::count_if(values, [](double value) { return std::isnan(value); });
}

/// Median advance from station to station along the straight line between its ends, m.
double typical_advance(const SurveyLine& line) {
    const double east = line.east.back() - line.east.front(), north = line.north.back() - line.north.front();
    const double length = std::hypot(east, north);
    if (!(length > 0)) return 0;
    std::vector<double> advances;
    for (std::size_t i = 1; i < line.east.size(); ++i) {
        const double advance =
            ((line.east[i] - line.east[i - 1]) * east + (line.north[i] - line.north[i - 1]) * north) / length;
        if (advance > 0) advances.push_back(advance);
    }
    if (advances.empty()) return 0;
    const auto middle = advances.begin() + static_cast<std::ptrdiff_t>(advances.size() / 2);
    std::ranges::nth_element(advances, middle);
    return *middle;
}

/// To three digits upwards: it stands in a box.
float gap_distance_of(const SurveyLine& line) {
    const double distance = spacings_of_a_gap * typical_advance(line);
    if (!(distance > 0)) return 0;
    const double step = std::pow(10.0, std::floor(std::log10(distance)) - 2);
    return to_single(std::ceil(distance / step - 1e-9) * step);
}

std::vector<TableColumn> table_columns(const SurveyLine& line) {
    std::vector<TableColumn> columns{{.name = "east_m", .values = line.east},
                                     {.name = "north_m", .values = line.north}};
    const auto add = [&](const TableColumn& column) {
        if (!column.values.empty()) columns.push_back(column);
    };
    add({.name = line.height_is_clearance ? "clearance_m" : "sensor_m", .values = line.height});
    add({.name = "ground_m", .values = line.ground});
    add({.name = "mag_nT", .values = line.mag, .most_decimals = 6});
    add({.name = "grav_mGal", .values = line.grav, .decimals = 5, .most_decimals = 8});
    add({.name = "longitude_deg", .values = line.longitude, .decimals = 8, .most_decimals = 8});
    add({.name = "latitude_deg", .values = line.latitude, .decimals = 8, .most_decimals = 8});
    add({.name = "fiducial", .values = line.fiducial, .decimals = 0, .most_decimals = 6});
    return columns;
}

std::int32_t column_of(const std::vector<TableColumn>& columns, std::string_view name) {
    const auto column = std::ranges::find(columns, name, &TableColumn::name);
    return column == columns.end() ? 0 : static_cast<std::int32_t>(column - columns.begin()) + 1;
}

void define_columns(const std::vector<TableColumn>& columns, const SurveyLine& line,
                    DataDefinition& definition) {
    definition.first_data_line = first_table_line;
    definition.x_column = column_of(columns, "east_m");
    definition.y_column = column_of(columns, "north_m");
    definition.z_column = column_of(columns, line.height_is_clearance ? "clearance_m" : "sensor_m");
    definition.dtm_column = column_of(columns, "ground_m");
    definition.mag_column = column_of(columns, "mag_nT");
    definition.grav_column = column_of(columns, "grav_mGal");
}

std::string system_text(const std::string& code) {
    if (code.empty()) return "not known";
    const intake::CoordinateSystem system = intake::find_coordinate_system(code);
    return system.name == code ? code : code + " (" + system.name + ")";
}

std::vector<std::string> table_comments(const SurveyIndex& index, const ImportedLine& imported,
                                        const std::string& main_field_text) {
    const LineSource& source = imported.workspace.source;
    std::vector<std::string> comments{"Source file: " + source.file,
                                      "Coordinate system: " + system_text(source.coordinate_system),
                                      "Date: " + (source.date.empty() ? "not known" : source.date)};
    if (!source.line.empty()) comments.insert(comments.begin() + 1, "Line: " + source.line);
    if (index.in_degrees) comments.push_back("Projected from: longitude and latitude");
    if (!main_field_text.empty()) comments.push_back(main_field_text);
    comments.push_back("No reading: -1e32");
    return comments;
}

void note_pieces(const intake::SurveyLineInfo& info, ImportedLine& imported) {
    if (imported.piece || info.pieces.size() < 2) return;
    imported.notes.add("Line " + info.name + " folds back, jumps or bends by more than 20 degrees: it has " +
                           std::to_string(info.pieces.size()) + " straight parts and was taken as one",
                       1, Severity::remark);
}

intake::LoadReport report_of_import(const SurveyIndex& index, const SurveyLine& line,
                                    const ImportedLine& imported) {
    intake::LoadReport report;
    report.file = index.layout.path;
    report.line = imported.workspace.source.line;
    report.lines_in_file = static_cast<long>(index.lines.size());
    report.rows_read = report.stations = static_cast<long>(line.east.size());
    report.dropped = index.losses;
    const auto add_nulls = [&](const char* channel, const std::vector<double>& values) {
        if (!values.empty()) report.nulls.push_back({channel, count_nulls(values)});
    };
    add_nulls("magnetics", line.mag);
    add_nulls("gravity", line.grav);
    add_nulls("sensor height", line.height);
    add_nulls("ground", line.ground);
    report.length_m =
        std::hypot(line.east.back() - line.east.front(), line.north.back() - line.north.front());
    report.typical_spacing_m = typical_advance(line);
    report.coordinate_system = line.coordinate_system;
    report.field_origin = imported.workspace.source.field_origin;
    return report;
}

void fill_workspace(const SurveyIndex& index, const SurveyLine& line, const ImportChoices& choices,
                    ImportedLine& imported) {
    Workspace& workspace = imported.workspace;
    workspace.bodies.resize(static_cast<std::size_t>(workspace.body_capacity) + 1);
    workspace.formulas = choices.formulas;
    workspace.grav.base = unset;
    workspace.display.show_axes = 1;  // as a window begins with
    workspace.gap_distance = gap_distance_of(line);
    const bool named =
        index.lines.size() > 1 || index.layout.column_of(intake::Role::line) || index.layout.line_headers;
    workspace.source.file = file_name(index.layout.path);
    workspace.source.line = named ? line.name : "";
    if (imported.piece) workspace.source.line += " part " + std::to_string(*imported.piece + 1);
    workspace.source.coordinate_system = line.coordinate_system;
    workspace.definition.data_file = imported.table_path;
    workspace.definition.data_file_as_named = file_name(imported.table_path);
}

/// Nobody wants the survey gone for one of its lines.
void refuse_over_survey(const SurveyIndex& index, const ImportedLine& imported) {
    for (const std::string& source : {index.layout.path, index.layout.definition_path})
        for (const std::string& target : {imported.table_path, imported.workspace_path})
            if (!source.empty() && same_file(source, target))
                throw Fault(native_path(target) +
                            " is the survey file itself: choose another folder or another name");
}

}  // namespace

ImportPlace import_place(const std::string& folder, const std::string& name) {
    const bool ends = folder.empty() || folder.ends_with('/');
    return {ends ? folder : folder + "/", name};
}

ImportedLine make_import(const SurveyIndex& index, std::size_t number, std::optional<std::size_t> piece,
                         SurveyLine&& line, const ImportChoices& choices, const ImportPlace& place) {
    ImportedLine imported;
    imported.line = number;
    imported.piece = piece;
    imported.title = line_title(index, number, piece);
    imported.table_path = place.folder + place.name + ".csv";
    imported.workspace_path = place.folder + place.name + ".axm";
    refuse_over_survey(index, imported);
    drop_empty_channels(line, imported);
    if (line.east.size() < 2) throw Fault("There is one station on " + imported.title);
    fill_workspace(index, line, choices, imported);
    imported.report = report_of_import(index, line, imported);
    settle_heights(line, choices, imported);
    const SurveyDate date = date_of_line(line, choices);
    set_field(line, date, choices, imported);
    imported.report.field_origin = imported.workspace.source.field_origin;
    note_pieces(index.lines[number], imported);
    const std::vector<TableColumn> columns = table_columns(line);
    define_columns(columns, line, imported.workspace.definition);
    const std::string main_field_text = change_main_field(choices, imported);
    imported.table = survey_table_text(columns, table_comments(index, imported, main_field_text));
    return imported;
}

ImportedLine import_line(const SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece,
                         const ImportChoices& choices, const std::string& folder, Pacer& pacer) {
    if (const std::string why = import_refusal(index, line); !why.empty()) throw Fault(why);
    const std::string table = import_names(index, choices, line, piece).table;
    const ImportPlace place = import_place(folder, base_name(table));
    return make_import(index, line, piece, intake::read_survey_line(index, line, piece, pacer), choices,
                       place);
}

ImportedLine import_line_as(const SurveyIndex& index, std::size_t line, const ImportChoices& choices,
                            const std::string& workspace_path, Pacer& pacer) {
    if (const std::string why = import_refusal(index, line); !why.empty()) throw Fault(why);
    const ImportPlace place = import_place(folder_name(workspace_path), base_name(workspace_path));
    return make_import(index, line, {}, intake::read_survey_line(index, line, {}, pacer), choices, place);
}

std::string workspace_text(const ImportedLine& line) {
    Workspace beside = line.workspace;
    beside.definition.data_file =
        line.table.empty() ? workspace_file::data_file_name_for(beside.definition, line.workspace_path)
                           : file_name(line.table_path);
    return workspace_file::model_parameters_text(0, beside);
}

bool write_imported(const ImportedLine& line, LeftBehind what, ReplaceExisting replace, Prompts& prompts) {
    bool written = false;
    report_failure(prompts, "The imported line could not be written: ", [&] {
        StagedFiles files(folder_name(line.workspace_path));
        if (!line.table.empty()) files.add(line.table_path, line.table);
        if (what == LeftBehind::table_and_workspace) files.add(line.workspace_path, workspace_text(line));
        if (!may_replace(files, replace, prompts)) return;
        files.deliver();
        written = true;
    });
    return written;
}

ImportedLine next_line(const SurveyIndex& index, std::size_t line, const ImportChoices& choices,
                       const std::string& folder, const Workspace& present, Pacer& pacer) {
    ImportedLine next = import_line(index, line, {}, choices, folder, pacer);
    keep_processing(present, next.workspace);
    return next;
}

int bring_bodies(const Workspace& former, Workspace& next, Faults& notes) {
    const CarriedModel model = carry_bodies(former, next);
    for (const std::string& doubt : model.doubts) notes.add(doubt, 1, Severity::doubt);
    for (const std::string& remark : model.remarks) notes.add(remark, 1, Severity::remark);
    put_bodies(model.bodies, next);
    return static_cast<int>(model.bodies.size());
}

void keep_processing(const Workspace& from, Workspace& to) {
    to.processing = from.processing;
    to.station_spacing = from.station_spacing;
    to.min_station_spacing = from.min_station_spacing;
    to.formulas = from.formulas;
    to.drawing = from.drawing;
    to.display = from.display;
    to.sensor_offset = from.sensor_offset;
    to.surface_elevation = from.surface_elevation;
    for (const int code : {channel_mag, channel_grav}) {
        to.channel(code).regional_degree = from.channel(code).regional_degree;
        to.channel(code).noise = from.channel(code).noise;
        to.channel(code).float_base = from.channel(code).float_base;
    }
    if (!to.source.date.empty() && !to.source.coordinate_system.empty())
        to.source.igrf_change = from.source.igrf_change;
    // Neighbouring lines lie in one field: one that somebody keyed holds for them too.
    const bool keyed = !from.source.field_missing && from.source.field_origin.empty();
    if (keyed || (to.source.field_missing && !from.source.field_missing)) {
        to.field = from.field;
        to.source.field_origin = from.source.field_origin;
        to.source.field_missing = false;
    }
}

}  // namespace anomalis::flow

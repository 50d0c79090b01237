#include "batch/dump_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "batch/fit_json.h"
#include "batch/json_text.h"
#include "batch/json_units.h"
#include "core/body_parameters.h"
#include "core/model_mark.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;

Json definition_json(const DataDefinition& d) {
    return {{"data_file", d.data_file},
            {"data_file_date", d.data_file_date},
            {"first_data_line", d.first_data_line},
            {"read_increment", d.read_increment},
            {"last_data_line", d.last_data_line},
            {"spare_definition_field", d.spare_definition_field},
            {"x_column", d.x_column},
            {"y_column", d.y_column},
            {"z_column", d.z_column},
            {"dtm_column", d.dtm_column},
            {"mag_column", d.mag_column},
            {"grav_column", d.grav_column}};
}

Json transform_json(const PointTransform& t) {
    return {{"active", t.active},
            {"rotation", t.rotation},
            {"cos_rotation", t.cos_rotation},
            {"sin_rotation", t.sin_rotation},
            {"x_scale", t.x_scale},
            {"y_scale", t.y_scale},
            {"x_origin", t.x_origin},
            {"y_origin", t.y_origin},
            {"x_offset", t.x_offset},
            {"y_offset", t.y_offset},
            {"two_point_defined", t.two_point_defined},
            {"original_x2", t.original_x2},
            {"original_y2", t.original_y2},
            {"new_x2", t.new_x2},
            {"new_y2", t.new_y2},
            {"elevation_shift", t.elevation_shift},
            {"elevation_scale", t.elevation_scale}};
}

Json display_json(const DisplaySettings& d) {
    return {{"valid", d.valid},
            {"form_height", d.form_height},
            {"form_width", d.form_width},
            {"show_axes", d.show_axes},
            {"show_body_label", d.show_body_label},
            {"maintain_aspect_ratio", d.maintain_aspect_ratio},
            {"splitter_fraction", d.splitter_fraction},
            {"tie_pipe_depth_susc", d.tie_pipe_depth_susc},
            {"tie_factor", d.tie_factor}};
}

Json source_json(const LineSource& s) {
    return {{"file", s.file},
            {"line", s.line},
            {"coordinate_system", s.coordinate_system},
            {"date", s.date},
            {"field_origin", s.field_origin},
            {"field_missing", s.field_missing},
            {"igrf_change", s.igrf_change}};
}

/// Settings and profile geometry.
Json settings_json(const Workspace& w) {
    return {{"model_file", w.model_file},
            {"model_file_date", w.model_file_date},
            {"definition", definition_json(w.definition)},
            {"station_spacing", w.station_spacing},
            {"min_station_spacing", w.min_station_spacing},
            {"gap_distance", w.gap_distance},
            {"source", source_json(w.source)},
            {"field_intensity", w.field.intensity},
            {"field_inclination", w.field.inclination},
            {"field_declination", w.field.declination},
            {"surface_elevation", w.surface_elevation},
            {"sensor_offset", w.sensor_offset},
            {"profile_grid_spacing", w.drawing.profile_grid_spacing},
            {"depth_grid_spacing", w.drawing.depth_grid_spacing},
            {"infinite_body_length", w.drawing.infinite_body_length},
            {"finite_body_left_clip", w.drawing.finite_body_left_clip},
            {"finite_body_right_clip", w.drawing.finite_body_right_clip},
            {"display", display_json(w.display)},
            {"formulas", formulas_name(w.formulas)},
            {"direction_x", w.direction_x},
            {"direction_y", w.direction_y},
            {"line_constant", w.line_constant},
            {"origin_east", w.origin_east},
            {"origin_north", w.origin_north},
            {"azimuth", w.azimuth}};
}

/// Ranges and base levels of what was read and calculated.
Json levels_json(const Workspace& w) {
    return {{"x_min", w.x_min},
            {"x_max", w.x_max},
            {"y_min", w.y_min},
            {"y_max", w.y_max},
            {"z_min", w.z_min},
            {"z_max", w.z_max},
            {"dtm_min", w.dtm_min},
            {"dtm_max", w.dtm_max},
            {"mag_min", w.mag.min},
            {"mag_max", w.mag.max},
            {"mag_base", w.mag.base},
            {"mag_mean", w.mag.mean},
            {"float_mag_base", w.mag.float_base},
            {"mag_range_min", w.mag.range_min},
            {"mag_range_max", w.mag.range_max},
            {"grav_min", w.grav.min},
            {"grav_max", w.grav.max},
            {"grav_base", w.grav.base},
            {"grav_mean", w.grav.mean},
            {"float_grav_base", w.grav.float_base},
            {"grav_range_min", w.grav.range_min},
            {"grav_range_max", w.grav.range_max},
            {"mag_calc_base", w.mag.calc_base},
            {"mag_calc_mean", w.mag.calc_mean},
            {"grav_calc_base", w.grav.calc_base},
            {"grav_calc_mean", w.grav.calc_mean},
            {"mag_regional_degree", w.mag.regional_degree},
            {"grav_regional_degree", w.grav.regional_degree},
            {"mag_noise", w.mag.noise},
            {"grav_noise", w.grav.noise}};
}

/// Counts, the station window, filters and marks.
Json state_json(const Workspace& w) {
    return {{"station_count", w.station_count},
            {"allocated_stations", w.allocated_stations},
            {"raw_row", w.raw_row},
            {"smoothed_row", w.smoothed_row},
            {"residual_row", w.residual_row},
            {"gradient_row", w.gradient_row},
            {"horizontal_row", w.horizontal_row},
            {"total_gradient_row", w.total_gradient_row},
            {"first_station", w.first_station},
            {"last_station", w.last_station},
            {"first_distance", w.first_distance},
            {"last_distance", w.last_distance},
            {"smooth_filter_width", w.processing.smooth_filter_width},
            {"smooth_filter_type", w.processing.smooth_filter_type},
            {"residual_filter_width", w.processing.residual_filter_width},
            {"display_total_gradient", w.processing.display_total_gradient},
            {"vg_filter_width", w.processing.vg_filter_width},
            {"vg_filter_step", w.processing.vg_filter_step},
            {"transform", transform_json(w.transform)},
            {"elevations_ready", w.elevations_ready},
            {"graph_ranges_ready", false}  // charts find their ranges as they draw
            ,
            {"mag_observed_filtered", w.mag.observed_filtered},
            {"mag_calculated_filtered", w.mag.calculated_filtered},
            {"grav_observed_filtered", w.grav.observed_filtered},
            {"grav_calculated_filtered", w.grav.calculated_filtered},
            {"body_count", w.body_count},
            {"body_capacity", w.body_capacity}};
}

Json derived_json(const ModelBody& b) {
    return {{"cos_dip", b.cos_dip},
            {"sin_dip", b.sin_dip},
            {"cos_strike", b.cos_strike},
            {"sin_strike", b.sin_strike},
            {"last_calculated", b.last_calculated},
            {"field_north", b.field_north},
            {"field_east", b.field_east},
            {"field_down", b.field_down},
            {"mag_north", b.mag_north},
            {"mag_east", b.mag_east},
            {"mag_down", b.mag_down},
            {"coef_a", b.coef_a},
            {"coef_b", b.coef_b},
            {"coef_c", b.coef_c},
            {"moment_x", b.moment_x},
            {"moment_y", b.moment_y},
            {"moment_z", b.moment_z},
            {"mag_response_valid", b.mag_response_valid},
            {"grav_response_valid", b.grav_response_valid},
            {"solid_point_count", b.solid.points.size()},
            {"solid_facet_count", b.solid.facets.size()},
            {"transformed_point_count", b.solid.transformed_points.size()}};
}

Json params_json(const ModelBody& body) {
    Json params = Json::object();
    for (const BodyParameter& row : body_parameters()) {
        const BodyParam& param = body.*row.slot;
        params[std::string(row.name)] = {
            {"value", param.value}, {"vary", param.vary}, {"min", param.min}, {"max", param.max}};
    }
    return params;
}

template <class Table>
Json rows_json(const Table& table, int rows, int first_column, int last_column) {
    Json all = Json::array();
    for (int row = 1; row <= rows; ++row) {
        Json one = Json::array();
        for (int column = first_column; column <= last_column; ++column) one.push_back(table(row, column));
        all.push_back(std::move(one));
    }
    return all;
}

Json workspace_json(const Workspace& workspace) {
    Json json = settings_json(workspace);
    json.update(levels_json(workspace));
    json.update(state_json(workspace));
    return json;
}

Json stations_json(const Workspace& workspace) {
    return rows_json(workspace.stations, workspace.station_count, column_line, column_ground);
}

Json channel_json(const Workspace& workspace, const ChannelTable& data) {
    const std::pair<const char*, int> rows[] = {{"raw", workspace.raw_row},
                                                {"smoothed", workspace.smoothed_row},
                                                {"residual", workspace.residual_row},
                                                {"gradient", workspace.gradient_row},
                                                {"horizontal", workspace.horizontal_row},
                                                {"total_gradient", workspace.total_gradient_row}};
    Json json = Json::object();
    const auto values = [&](int row, int stage) {
        Json all = data.row(row, stage);
        for (Json& value : all)
            if (value.get<double>() <= missing_limit) value = nullptr;
        return all;
    };
    for (const auto& [stage_name, stage] :
         {std::pair{"observed", stage_observed}, {"calculated", stage_calculated}}) {
        for (const auto& [row_name, row] : rows) json[stage_name][row_name] = values(row, stage);
    }
    return json;
}

Json body_json(const Workspace& workspace, const ModelBody& body) {
    Json json = {{"type", body.type},
                 {"east", body.east},
                 {"north", body.north},
                 {"top_elevation", body.top_elevation},
                 {"colour", body.colour},
                 {"name", body.name},
                 {"description", body.description},
                 {"rock_type", body.rock_type},
                 {"include_demagnetisation", body.include_demagnetisation},
                 {"vary", body.vary},
                 {"turned_off", body.turned_off},
                 {"end_width_a", body.end_width_a},
                 {"end_width_b", body.end_width_b},
                 {"shell_thickness", body.shell_thickness},
                 {"end_thickness", body.end_thickness},
                 {"num_sectors", body.num_sectors},
                 {"num_segments", body.num_segments},
                 {"max_triangle_size", body.max_triangle_size}};
    json.update(derived_json(body));
    json["params"] = params_json(body);
    const int rows = std::min(workspace.station_count, body.response.rows());
    json["response"] = rows_json(body.response, rows, 1, 5);
    return json;
}

/// The regional in force with its value at each station, nT or mGal.
Json regional_row_json(const Workspace& workspace, const Regional& regional) {
    Json json = regional_json<Json>(regional);
    if (json.is_null()) return json;
    Json& values = json["values"] = Json::array();
    for (int i = 1; i <= workspace.station_count; ++i) values.push_back(regional.at(workspace.distances[i]));
    return json;
}

/// The record of the last fit; `as_fitted` tells whether it speaks of this model.
Json last_fit_json(const Workspace& workspace) {
    if (!workspace.fit) return nullptr;
    Json json = fit_json<Json>(*workspace.fit);
    json["as_fitted"] = as_fitted(workspace);
    return json;
}

Json misfit_json(const std::optional<MisfitPair>& misfit) {
    return misfit ? Json(*misfit) : Json(nullptr);
}

}  // namespace

std::string dump_json_text(const Workspace& workspace, const DumpedMisfit& misfit, const BatchPrompts& told) {
    const bool loaded = workspace.station_count > 0;
    const auto channel = [&](bool has, const ChannelTable& data) {
        return loaded && has ? channel_json(workspace, data) : Json(nullptr);
    };
    Json json = {{"workspace", workspace_json(workspace)}, {"stations", stations_json(workspace)}};
    json["distances"] = loaded ? Json(workspace.distances.span()) : Json::array();
    json["mag_data"] = channel(workspace.has_mag(), workspace.mag.data);
    json["grav_data"] = channel(workspace.has_grav(), workspace.grav.data);
    json["mag_regional"] = regional_row_json(workspace, workspace.mag.regional);
    json["grav_regional"] = regional_row_json(workspace, workspace.grav.regional);
    json["bodies"] = Json::array();
    for (int number = 1; number <= workspace.body_count; ++number)
        json["bodies"].push_back(body_json(workspace, workspace.body(number)));
    json["misfit"] = {{"mag", misfit_json(misfit.mag)}, {"grav", misfit_json(misfit.grav)}};
    json["last_fit"] = last_fit_json(workspace);
    json[units_name] = dump_units_json<Json>(workspace);
    add_told(json, told);
    constexpr int compact = -1;  // a dump is for programs, and one number a line would double it
    return json_text(json, compact);
}

}  // namespace anomalis::batch

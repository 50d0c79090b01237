#pragma once

#include "core/formulas.h"
#include "core/workspace.h"

// The settings of a workspace and what was found of its line, as the dump tells them. As in fit_json.h the
// type of a JSON value is a parameter.
namespace anomalis::batch {

template <class Json>
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

template <class Json>
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

template <class Json>
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

template <class Json>
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
template <class Json>
Json settings_json(const Workspace& w) {
    return {{"model_file", w.model_file},
            {"model_file_date", w.model_file_date},
            {"definition", definition_json<Json>(w.definition)},
            {"station_spacing", w.station_spacing},
            {"min_station_spacing", w.min_station_spacing},
            {"gap_distance", w.gap_distance},
            {"source", source_json<Json>(w.source)},
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
            {"display", display_json<Json>(w.display)},
            {"formulas", formulas_name(w.formulas)},
            {"direction_x", w.direction_x},
            {"direction_y", w.direction_y},
            {"line_constant", w.line_constant},
            {"origin_east", w.origin_east},
            {"origin_north", w.origin_north},
            {"azimuth", w.azimuth}};
}

/// Ranges and base levels of what was read and calculated.
template <class Json>
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
template <class Json>
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
            {"transform", transform_json<Json>(w.transform)},
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

template <class Json>
Json workspace_json(const Workspace& workspace) {
    Json json = settings_json<Json>(workspace);
    json.update(levels_json<Json>(workspace));
    json.update(state_json<Json>(workspace));
    return json;
}

}  // namespace anomalis::batch

#pragma once

#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "core/stale.h"
#include "core/workspace.h"

// The settings of a workspace: what a file holds besides the bodies and the way the data are read.
namespace anomalis {

inline bool always_counts(const Workspace&) {
    return true;
}
/// A base level that floats follows the data and is no setting.
inline bool mag_base_counts(const Workspace& workspace) {
    return workspace.mag.float_base != 1;
}
inline bool grav_base_counts(const Workspace& workspace) {
    return workspace.grav.float_base != 1;
}

template <class Get>
struct SettingField {
    std::string_view name;
    Get get;  ///< a reference to the field of a workspace
    Stale stale{};
    bool (*counts)(const Workspace&) = always_counts;
};
template <class Get, class... Rest>
SettingField(std::string_view, Get, Rest...) -> SettingField<Get>;

/// A number that derived values may hang on; where the line came from is none.
template <class Row>
inline constexpr bool is_number_setting =
    !std::is_class_v<std::remove_cvref_t<decltype(std::declval<Row>().get(std::declval<Workspace&>()))>>;

inline constexpr Stale all_responses{.mag = true, .grav = true};
inline constexpr Stale all_rows{.mag_rows = true, .grav_rows = true};
/// Elevations move the sensor over the bodies, and the ground over their tops.
inline constexpr Stale all_of_elevations{
    .mag = true, .grav = true, .burial_depth = true, .elevations = true, .mag_rows = true, .grav_rows = true};

/// Every setting and what a change of it leaves out of date. The window of the fit is there because base
/// levels are means over it.
inline constexpr std::tuple setting_fields{SettingField{"formulas", [](auto& w) -> auto& {return w.formulas;
}  // namespace anomalis
, all_responses
}
, SettingField{"source", [](auto& w) -> auto& {return w.source;
}
}
, SettingField{"field_intensity", [](auto& w) -> auto& {return w.field.intensity;
}
, Stale {
    .mag = true
}
}
, SettingField{"field_inclination", [](auto& w) -> auto& {return w.field.inclination;
}
, Stale {
    .mag = true
}
}
, SettingField{"field_declination", [](auto& w) -> auto& {return w.field.declination;
}
, Stale {
    .mag = true
}
}
, SettingField{"surface_elevation", [](auto& w) -> auto& {return w.surface_elevation;
}
, all_of_elevations
}
, SettingField{"sensor_offset", [](auto& w) -> auto& {return w.sensor_offset;
}
, all_of_elevations
}
, SettingField{"smooth_filter_width", [](auto& w) -> auto& {return w.processing.smooth_filter_width;
}
, all_rows
}
, SettingField{"smooth_filter_type", [](auto& w) -> auto& {return w.processing.smooth_filter_type;
}
, all_rows
}
, SettingField{"residual_filter_width", [](auto& w) -> auto& {return w.processing.residual_filter_width;
}
, all_rows
}
, SettingField{"display_total_gradient", [](auto& w) -> auto& {return w.processing.display_total_gradient;
}
, all_rows
}
, SettingField{"vg_filter_width", [](auto& w) -> auto& {return w.processing.vg_filter_width;
}
, all_rows
}
, SettingField{"vg_filter_step", [](auto& w) -> auto& {return w.processing.vg_filter_step;
}
, all_rows
}
, SettingField{"gap_distance", [](auto& w) -> auto& {return w.gap_distance;
}
, all_rows
}
, SettingField{"mag_base", [](auto& w) -> auto& {return w.mag.base;
}
, Stale{.mag_rows = true}, mag_base_counts
}
, SettingField{"float_mag_base", [](auto& w) -> auto& {return w.mag.float_base;
}
, Stale {
    .mag_rows = true
}
}
, SettingField{"grav_base", [](auto& w) -> auto& {return w.grav.base;
}
, Stale{.grav_rows = true}, grav_base_counts
}
, SettingField{"float_grav_base", [](auto& w) -> auto& {return w.grav.float_base;
}
, Stale {
    .grav_rows = true
}
}
, SettingField{"mag_regional_degree", [](auto& w) -> auto& {return w.mag.regional_degree;
}
, Stale {
    .mag_rows = true
}
}
, SettingField{"grav_regional_degree", [](auto& w) -> auto& {return w.grav.regional_degree;
}
, Stale {
    .grav_rows = true
}
}
, SettingField{"mag_noise", [](auto& w) -> auto& {return w.mag.noise;
}
}
, SettingField{"grav_noise", [](auto& w) -> auto& {return w.grav.noise;
}
}
, SettingField{"first_station", [](auto& w) -> auto& {return w.first_station;
}
, all_rows
}
, SettingField{"last_station", [](auto& w) -> auto& {return w.last_station;
}
, all_rows
}
, SettingField{"first_distance", [](auto& w) -> auto& {return w.first_distance;
}
}
, SettingField{"last_distance", [](auto& w) -> auto& {return w.last_distance;
}
}
, SettingField{"profile_grid_spacing", [](auto& w) -> auto& {return w.drawing.profile_grid_spacing;
}
}
, SettingField{"depth_grid_spacing", [](auto& w) -> auto& {return w.drawing.depth_grid_spacing;
}
}
, SettingField{"infinite_body_length", [](auto& w) -> auto& {return w.drawing.infinite_body_length;
}
}
, SettingField{"finite_body_left_clip", [](auto& w) -> auto& {return w.drawing.finite_body_left_clip;
}
}
, SettingField{"finite_body_right_clip", [](auto& w) -> auto& {return w.drawing.finite_body_right_clip;
}
}
, SettingField{"show_body_label", [](auto& w) -> auto& {return w.display.show_body_label;
}
}
, SettingField{"maintain_aspect_ratio", [](auto& w) -> auto& {return w.display.maintain_aspect_ratio;
}
}
, SettingField{"tie_pipe_depth_susc", [](auto& w) -> auto& {return w.display.tie_pipe_depth_susc;
}
}
, SettingField{"tie_factor", [](auto& w) -> auto& {return w.display.tie_factor;
}
}
,
}
;

/// Calls `visit` with each row.
template <class Visit>
constexpr void for_each_setting(Visit&& visit) {
    std::apply([&](const auto&... row) { (visit(row), ...); }, setting_fields);
}

}  // namespace anomalis

#include "edit/settings_boxes.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/gaps.h"
#include "core/numbers.h"
#include "core/text.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "filter/gradient_unit.h"

namespace anomalis::edit {

namespace {

constexpr int last_smoothing = 4;
constexpr float default_body_length = 500;

SettingsChange mark_changed(Workbench& workbench, const char* what) {
    note_change(workbench, {what, "", false});
    return SettingsChange::stored;
}

/// A keyed field has no other origin. One that nobody gave yet is there with its intensity.
SettingsChange change_field(Workbench& workbench, float& field, std::string_view text) {
    const auto value = parse_single(text);
    Workspace& workspace = workbench.session.workspace;
    const bool intensity = &field == &workspace.field.intensity;
    if (!value || (intensity && !(*value > 0))) return SettingsChange::refused;
    if (*value == field) return SettingsChange::unchanged;
    field = *value;
    workspace.source.field_origin.clear();
    if (intensity) workspace.source.field_missing = false;
    return mark_changed(workbench, "magnetic field");
}

std::string field_text(const Workspace& workspace, float value) {
    return workspace.source.field_missing && value == 0 ? field_not_set : format_number(value, "0.0");
}

SettingsChange change_filter(Workbench& workbench, std::int32_t& field, std::string_view text) {
    double value = 0;
    if (!parse_number(text, value) || value < 0) return SettingsChange::refused;
    if (value == field) return SettingsChange::unchanged;
    try {
        field = round_to_even(value);
    } catch (const Fault&) {
        return SettingsChange::refused;
    }
    return mark_changed(workbench, "filter");
}

SettingsChange change_elevation(Workbench& workbench, float& field, std::string_view text,
                                bool allow_negative) {
    const auto value = parse_single(text);
    if (!value || (*value < 0 && !allow_negative)) return SettingsChange::refused;
    if (*value == field) return SettingsChange::unchanged;
    field = *value;
    return mark_changed(workbench, "elevation");
}

SettingsChange change_drawing(Workbench& workbench, float& field, std::string_view text,
                              float default_value) {
    const auto value = trim_blanks(text).empty() ? default_value : parse_single(text);
    if (!value || *value < 0) return SettingsChange::refused;
    if (*value == field) return SettingsChange::unchanged;
    field = *value;
    return mark_changed(workbench, "drawing");
}

float observed_mean(const ChannelTable& data) {
    double sum = 0, count = 0;
    for (const float value : data.row(row_raw, stage_observed)) {
        if (!is_reading(static_cast<double>(value))) continue;
        sum += static_cast<double>(value);
        ++count;
    }
    return static_cast<float>(sum / count);
}

SettingsChange change_base(Workbench& workbench, int channel, std::string_view text) {
    Workspace& workspace = workbench.session.workspace;
    const bool grav = channel == channel_grav;
    Channel& own = workspace.channel(channel);
    float& base = own.base;
    const auto typed = trim_blanks(text).empty() ? unset : parse_single(text);
    if (!typed) return SettingsChange::refused;

    const bool takes_mean = *typed == unset;
    const bool channel_loaded = line_loaded(workspace) && (grav ? workspace.has_grav() : workspace.has_mag());
    const float value = takes_mean && channel_loaded ? observed_mean(own.data) : *typed;
    const double tolerance = grav ? 0.01 : 0.1;
    if (!(std::abs(static_cast<double>(value) - base) > tolerance)) return SettingsChange::unchanged;
    base = value;
    workbench.base_from_mean[static_cast<std::size_t>(channel)] = takes_mean && channel_loaded;
    return mark_changed(workbench, "base level");
}

SettingsChange change_noise(Workbench& workbench, float& noise, std::string_view text) {
    const auto value = trim_blanks(text).empty() ? unset : parse_single(text);
    if (!value || (*value != unset && !(*value > 0))) return SettingsChange::refused;
    if (*value == noise) return SettingsChange::unchanged;
    noise = *value;
    return mark_changed(workbench, "noise of the readings");
}

std::string noise_text(float noise) {
    return noise == unset ? "" : shortest_text(noise);
}

}  // namespace

SettingsChange change_settings_box(Workbench& workbench, SettingsBox box, std::string_view text) {
    Workspace& w = workbench.session.workspace;
    switch (box) {
        case SettingsBox::mag_intensity:
            return change_field(workbench, w.field.intensity, text);
        case SettingsBox::mag_inclination:
            return change_field(workbench, w.field.inclination, text);
        case SettingsBox::mag_declination:
            return change_field(workbench, w.field.declination, text);
        case SettingsBox::smooth_filter_width:
            return change_filter(workbench, w.processing.smooth_filter_width, text);
        case SettingsBox::residual_filter_width:
            return change_filter(workbench, w.processing.residual_filter_width, text);
        case SettingsBox::vg_filter_width:
            return change_filter(workbench, w.processing.vg_filter_width, text);
        case SettingsBox::vg_filter_step:
            return change_filter(workbench, w.processing.vg_filter_step, text);
        case SettingsBox::mag_base:
            return change_base(workbench, channel_mag, text);
        case SettingsBox::grav_base:
            return change_base(workbench, channel_grav, text);
        case SettingsBox::mag_noise:
            return change_noise(workbench, w.mag.noise, text);
        case SettingsBox::grav_noise:
            return change_noise(workbench, w.grav.noise, text);
        case SettingsBox::surface_elevation:
            return change_elevation(workbench, w.surface_elevation, text, true);
        case SettingsBox::sensor_offset:
            return change_elevation(workbench, w.sensor_offset, text, false);
        case SettingsBox::profile_grid_spacing:
            return change_drawing(workbench, w.drawing.profile_grid_spacing, text, 0);
        case SettingsBox::depth_grid_spacing:
            return change_drawing(workbench, w.drawing.depth_grid_spacing, text, 0);
        case SettingsBox::infinite_body_length:
            return change_drawing(workbench, w.drawing.infinite_body_length, text, default_body_length);
        case SettingsBox::finite_body_left_clip:
            return change_drawing(workbench, w.drawing.finite_body_left_clip, text, 0);
        case SettingsBox::finite_body_right_clip:
            return change_drawing(workbench, w.drawing.finite_body_right_clip, text, 0);
    }
    return SettingsChange::unchanged;
}

std::string_view settings_box_rule(SettingsBox box) {
    switch (box) {
        case SettingsBox::mag_noise:
            return "key a number of nT above 0, or leave it blank to have it estimated";
        case SettingsBox::grav_noise:
            return "key a number of mGal above 0, or leave it blank to have it estimated";
        default:
            return "";
    }
}

std::string field_remark(const Workspace& workspace) {
    const LineSource& source = workspace.source;
    std::string remark = source.field_origin;
    if (source.field_missing)
        remark = "Not set: magnetics are not modelled. Give place and date, or key all three";
    if (source.igrf_change == igrf_kept) return remark;
    const char* readings = source.igrf_change == igrf_removed ? "IGRF is removed from the readings"
                                                              : "IGRF is added to the readings";
    return remark.empty() ? readings : remark + ". " + readings;
}

std::string settings_box_text(const Workspace& w, SettingsBox box) {
    switch (box) {
        case SettingsBox::mag_intensity:
            return field_text(w, w.field.intensity);
        case SettingsBox::mag_inclination:
            return field_text(w, w.field.inclination);
        case SettingsBox::mag_declination:
            return field_text(w, w.field.declination);
        case SettingsBox::smooth_filter_width:
            return format_number(w.processing.smooth_filter_width, "0");
        case SettingsBox::residual_filter_width:
            return format_number(w.processing.residual_filter_width, "0");
        case SettingsBox::vg_filter_width:
            return format_number(w.processing.vg_filter_width, "0");
        case SettingsBox::vg_filter_step:
            return format_number(w.processing.vg_filter_step, "0");
        case SettingsBox::mag_base:
            return w.mag.base == unset ? "" : shortest_text(w.mag.base);
        case SettingsBox::grav_base:
            return w.grav.base == unset ? "" : shortest_text(w.grav.base);
        case SettingsBox::mag_noise:
            return noise_text(w.mag.noise);
        case SettingsBox::grav_noise:
            return noise_text(w.grav.noise);
        case SettingsBox::surface_elevation:
            return shortest_text(w.surface_elevation);
        case SettingsBox::sensor_offset:
            return shortest_text(w.sensor_offset);
        case SettingsBox::profile_grid_spacing:
            return format_number(w.drawing.profile_grid_spacing, "0.##");
        case SettingsBox::depth_grid_spacing:
            return format_number(w.drawing.depth_grid_spacing, "0.##");
        case SettingsBox::infinite_body_length:
            return format_number(w.drawing.infinite_body_length, "0.##");
        case SettingsBox::finite_body_left_clip:
            return format_number(w.drawing.finite_body_left_clip, "0.##");
        case SettingsBox::finite_body_right_clip:
            return format_number(w.drawing.finite_body_right_clip, "0.##");
    }
    return "";
}

void change_smooth_filter_type(Workbench& workbench, int index) {
    Workspace& workspace = workbench.session.workspace;
    const int type = std::clamp(index, 0, last_smoothing);
    if (type == workspace.processing.smooth_filter_type) return;
    workspace.processing.smooth_filter_type = type;
    mark_changed(workbench, "filter");
}

void change_total_gradient(Workbench& workbench, bool total) {
    Workspace& workspace = workbench.session.workspace;
    workspace.processing.display_total_gradient = total ? 1 : 0;
    mark_changed(workbench, "gradient");
}

SettingsChange change_float_base(Workbench& workbench, int channel, bool floats) {
    Workspace& workspace = workbench.session.workspace;
    if (workspace.processing.residual_filter_width > 0) return SettingsChange::refused;
    workspace.channel(channel).float_base = floats ? 1 : 0;
    return mark_changed(workbench, "base level");
}

void change_regional(Workbench& workbench, int channel, int index) {
    std::int32_t& degree = workbench.session.workspace.channel(channel).regional_degree;
    const std::int32_t wanted = std::clamp(no_regional + index, no_regional, most_regional_degree);
    if (wanted == degree) return;
    degree = wanted;
    mark_changed(workbench, channel == channel_mag ? "magnetic regional" : "gravity regional");
}

int regional_index(const Workspace& workspace, int channel) {
    return std::clamp(workspace.channel(channel).regional_degree, no_regional, most_regional_degree) -
           no_regional;
}

void change_show_body_label(Workbench& workbench, bool show) {
    workbench.session.workspace.display.show_body_label = show ? 1 : 0;
    mark_changed(workbench, "body label");
}

void change_maintain_aspect_ratio(Workbench& workbench, bool maintain) {
    workbench.session.workspace.display.maintain_aspect_ratio = maintain ? 1 : 0;
    mark_changed(workbench, "aspect ratio");
}

int smooth_filter_index(const Workspace& workspace) {
    return std::clamp(workspace.processing.smooth_filter_type, 0, last_smoothing);
}

namespace {

std::string counted_stations(std::int32_t count) {
    return format_number(count, "0") + (count == 1 ? " station" : " stations");
}

/// "\n5 stations are 46.25 m at the present spacing"; "" without a line.
std::string stations_in_metres(const Workspace& w, std::int32_t count) {
    if (w.station_count < 2 || count < 1) return {};
    const double spacing = w.distances[w.station_count] / (w.station_count - 1);
    return "\n" + counted_stations(count) + (count == 1 ? " is " : " are ") +
           format_number(spacing * count, "0.##") + " m at the present spacing";
}

std::string gradient_meaning(const Workspace& w) {
    const std::string vertical =
        "VG is the vertical gradient, found by a filter from the smoothed curve along the line";
    const std::string total =
        "TG is the total gradient: the root of the squares of the vertical gradient and the derivative along "
        "the line, both found by filters from the smoothed curve";
    const bool both = w.has_mag() && w.has_grav();
    const std::int32_t step = w.processing.vg_filter_step;
    const std::string mag = filter::gradient_unit("nT", step), grav = filter::gradient_unit("mGal", step);
    return "\n" + (w.processing.display_total_gradient == 1 ? total : vertical) + ". It is in " +
           (both           ? mag + " and " + grav
            : w.has_grav() ? grav
                           : mag) +
           ": over the spacing of the filter's taps, not over a metre";
}

}  // namespace

std::string filter_tip(const Workspace& w, SettingsBox box) {
    const Processing& p = w.processing;
    switch (box) {
        case SettingsBox::smooth_filter_width:
            return "Half-width of the smoothing filter in stations: it averages over so many to each side (0 "
                   "smooths nothing)" +
                   stations_in_metres(w, p.smooth_filter_width);
        case SettingsBox::residual_filter_width:
            return "Half-width in stations of the filter that removes the background (0 removes nothing; "
                   "larger values remove less regional)" +
                   stations_in_metres(w, p.residual_filter_width);
        case SettingsBox::vg_filter_width:
            return "Half-width of the gradient filter: so many taps to each side of a station (must be >=1)" +
                   gradient_meaning(w) + stations_in_metres(w, p.vg_filter_width * p.vg_filter_step);
        case SettingsBox::vg_filter_step:
            return "Distance between the taps of the gradient filter in stations (must be >=1; 0 gives "
                   "gradients of zero)" +
                   gradient_meaning(w) + stations_in_metres(w, p.vg_filter_step);
        default:
            return {};
    }
}

GradientCaptions gradient_captions(bool total) {
    if (total)
        return {"TG Filter Half-Width", "TG filter spacing", "Calculated Total Gradient",
                "Calculated Gravity Total Gradient", "Invert Total Grad"};
    return {"VG Filter Half-Width", "VG filter spacing", "Calculated Vertical Gradient",
            "Calculated Gravity Vertical Gradient", "Invert Vertical Grad"};
}

}  // namespace anomalis::edit

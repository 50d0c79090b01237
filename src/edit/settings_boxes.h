#pragma once

#include <string>
#include <string_view>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The boxes for field, filters, base levels, elevations and drawing. They are taken over when the person
// leaves them, and none of them needs the data to be loaded again.
namespace anomalis::edit {

struct Workbench;

enum class SettingsBox {
    mag_intensity,
    mag_inclination,
    mag_declination,
    smooth_filter_width,
    residual_filter_width,
    vg_filter_width,
    vg_filter_step,
    mag_base,
    grav_base,
    mag_noise,
    grav_noise,
    surface_elevation,
    sensor_offset,
    profile_grid_spacing,
    depth_grid_spacing,
    infinite_body_length,
    finite_body_left_clip,
    finite_body_right_clip
};

enum class SettingsChange {
    unchanged,  ///< the text says what is stored already
    refused,    ///< the stored value stays and goes back into the box
    stored      ///< what depends on it is found out of date at the next calculation
};

/// Takes a text into the setting of its box.
/// Field: intensity (nT) above 0, angles (degrees) any number; a keyed field has no other origin. Filter
/// half-widths and tap step (stations): whole, not negative. Base levels (nT, mGal): any number that differs
/// by more than 0.1 or 0.01; blank or -99999 takes the mean of the data. Noise (nT, mGal): above 0; blank
/// lets the fit estimate it. Elevations (m): any number, the sensor offset not negative. Drawing settings
/// (m): not negative; blank is the default, 500 for the drawn length of endless bodies and else 0.
SettingsChange change_settings_box(Workbench& workbench, SettingsBox box, std::string_view text);

/// What the box takes, for a person whose text was refused; "" where its tip says enough.
std::string_view settings_box_rule(SettingsBox box);

/// In the boxes of a field that nobody gave yet.
inline constexpr const char* field_not_set = "not set";
/// Where the field came from, and what was done with it in the readings; "" for a keyed one.
std::string field_remark(const Workspace& workspace);

/// The text of a box as it is filled from the workspace. An unset base level is blank.
std::string settings_box_text(const Workspace& workspace, SettingsBox box);

/// The smoothing filter by its place in the list, brought to the nearest valid one.
void change_smooth_filter_type(Workbench& workbench, int index);
/// Whether the gradient charts show the total gradient in place of the vertical one.
void change_total_gradient(Workbench& workbench, bool total);
/// Channel 0 magnetics, 1 gravity. Without effect, and not even stored, while a residual filter is on: a
/// residual has no base level left.
SettingsChange change_float_base(Workbench& workbench, int channel, bool floats);
/// The degree by its place in the list: none, level, slope, bend, cubic. Stored under a residual filter too,
/// which switches it off.
void change_regional(Workbench& workbench, int channel, int index);
int regional_index(const Workspace& workspace, int channel);
void change_show_body_label(Workbench& workbench, bool show);
void change_maintain_aspect_ratio(Workbench& workbench, bool maintain);

/// The filter list's index as stored, brought into 0 to 4.
int smooth_filter_index(const Workspace& workspace);

/// What one of the four filter boxes means: a half-width or a distance of taps, counted in stations and,
/// while a line is loaded, told in m at its present spacing.
std::string filter_tip(const Workspace& workspace, SettingsBox box);

/// The words that follow the kind of gradient.
struct GradientCaptions {
    std::string_view width_label, step_label, mag_title, grav_title, invert_label;
};
GradientCaptions gradient_captions(bool total);

}  // namespace anomalis::edit

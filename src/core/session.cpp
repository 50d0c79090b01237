#include "core/session.h"

#include <utility>

#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"

namespace anomalis {

namespace {

constexpr double least_form_width = 9630;    // twips
constexpr double least_form_height = 11220;  // twips

/// A setting that is a number and fits a single.
std::optional<float> single_setting(const Settings& settings, std::string_view key) {
    const std::string text = settings.get(settings_section, key);
    if (!is_numeric(text)) return {};
    try {
        return to_single(prefix_number(text));
    } catch (const Fault&) {
        return {};
    }
}

std::optional<StartSettings::FormSize> stored_form_size(const Settings& settings) {
    const std::string text = settings.get(settings_section, "FormSize");
    std::string_view rest = text;
    const std::string_view width = next_token(rest);
    const std::string_view height = next_token(rest);
    if (!is_numeric(width) || !is_numeric(height)) return {};
    const StartSettings::FormSize size{prefix_number(width), prefix_number(height)};
    if (size.width > least_form_width && size.height > least_form_height) return size;
    return {};
}

void prepare_inversion(InversionState& inversion) {
    inversion = InversionState{};
    inversion.inversion_params.assign(1);
    inversion.inversion_param_map.assign(1);
    inversion.start_params.assign(1);
    inversion.best_params.assign(1);
    inversion.best_param_map.assign(1);
}

}  // namespace

Session::Session(Prompts& the_prompts, Settings the_settings)
    : settings(std::move(the_settings)), prompts(the_prompts) {}

StartSettings Session::start() {
    init_system(system);
    workspace.station_count = 0;
    initialise_workspace(workspace, prompts);
    reset_calculated_data(workspace, prompts);
    prepare_inversion(inversion);
    model_changed = false;
    preferences = read_preferences(settings);

    StartSettings read;
    restore_directory();
    if (const auto intensity = single_setting(settings, "MagIntensity"); intensity && *intensity > 0) {
        workspace.field.intensity = *intensity;
        read.mag_intensity = true;
    }
    if (const auto inclination = single_setting(settings, "MagInclination")) {
        workspace.field.inclination = *inclination;
        read.mag_inclination = true;
    }
    if (const auto declination = single_setting(settings, "MagDeclination")) {
        workspace.field.declination = *declination;
        read.mag_declination = true;
    }
    if (const auto axes = single_setting(settings, "DisplayAxes")) read.display_axes = *axes != 0;
    read.form_size = stored_form_size(settings);
    return read;
}

void Session::save_at_exit(const ExitValues& values) {
    save_directory();
    if (!trim_blanks(values.mag_inclination).empty()) {
        settings.set(settings_section, "MagIntensity", values.mag_intensity);
        settings.set(settings_section, "MagInclination", values.mag_inclination);
        settings.set(settings_section, "MagDeclination", values.mag_declination);
    }
    settings.set(settings_section, "FormSize",
                 number_to_text(values.form_width) + ";" + number_to_text(values.form_height));
    settings.set(settings_section, "DisplayAxes", values.display_axes ? "1" : "0");
}

std::optional<std::string> Session::open_file_dialog(const FileRequest& request) {
    return prompts.open_file(request);
}

std::optional<std::string> Session::save_file_dialog(const FileRequest& request) {
    return prompts.save_file(request);
}

void Session::save_body_defaults(int body_number) {
    if (body_number < 1 || body_number > workspace.body_count) return;
    const ModelBody& body = workspace.body(body_number);
    const auto keep = [&](std::string_view key, const std::string& text) {
        settings.set(settings_section, key, text);
    };
    keep("Type", format_number(body.type, "0"));
    keep("Dip", format_number(body.dip.value, "0.0"));
    keep("Thick", format_number(body.width.value, "0.00"));
    keep("Depth", format_number(body.depth_extent.value, "0.00"));
    keep("StrikeLength", format_number(body.length.value, "0.00"));
    keep("Density", format_number(body.density.value, "0.000"));
    keep("Susc", format_number(body.susc.value, "0.000"));
    keep("Colour", format_number(body.colour, "0"));
}

void Session::save_directory() {
    const std::string folder = current_folder();
    if (!folder.empty()) settings.set(settings_section, "WorkingDirectory", folder);
}

void Session::restore_directory() {
    const std::string folder = settings.get(settings_section, "WorkingDirectory");
    if (!folder_exists(folder)) return;
    change_to_folder(folder);
    first_dialog = false;
}

}  // namespace anomalis

#include "edit/display_check.h"

#include <array>
#include <limits>

#include "core/numbers.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

constexpr double least_above_zero = std::numeric_limits<double>::denorm_min();

struct Refusal {
    bool applies;
    SettingsBox box;
    const char* message;
};

}  // namespace

DisplayCheck validate_model_display(Workbench& workbench, const DisplayTexts& texts) {
    Session& session = workbench.session;
    Workspace& w = session.workspace;
    if (w.station_count <= 0) return {};
    const auto below = [](const std::string& text, double limit) {
        double value = 0;
        return parse_number(text, value) && value < limit;
    };
    const bool base_in_use = w.processing.residual_filter_width == 0;
    const std::array refusals{
        Refusal{!is_numeric(texts.residual_filter_width), SettingsBox::residual_filter_width,
                "The residual filter window width is invalid"},
        Refusal{!is_numeric(texts.vg_filter_width), SettingsBox::vg_filter_width,
                "The VG filter window width is invalid"},
        Refusal{w.processing.vg_filter_width <= 0 || below(texts.vg_filter_width, least_above_zero),
                SettingsBox::vg_filter_width, "The VG/TG filter window width must be positive"},
        Refusal{base_in_use && !texts.mag_base.empty() && !is_numeric(texts.mag_base), SettingsBox::mag_base,
                "The data background value is invalid"},
        Refusal{!is_numeric(texts.surface_elevation), SettingsBox::surface_elevation,
                "The surface elevation is invalid"},
        Refusal{!is_numeric(texts.sensor_offset), SettingsBox::sensor_offset, "The sensor offset is invalid"},
        Refusal{w.sensor_offset < 0 || below(texts.sensor_offset, 0), SettingsBox::sensor_offset,
                "The sensor offset must be non-negative"}};
    for (const Refusal& refusal : refusals) {
        if (!refusal.applies) continue;
        session.prompts.message(refusal.message);
        return {-1, refusal.box};
    }
    invalidate_filtered_data(0, w);
    return {0, {}};
}

}  // namespace anomalis::edit

#include "flow/inversion_panel.h"

#include <algorithm>

#include "core/numbers.h"
#include "core/text.h"
#include "flow/fit_remark.h"

namespace anomalis::flow {

namespace {

std::string misfit_text(float misfit) {
    return format_number(misfit, "0.000");
}

}  // namespace

QualityLines quality_lines(const show::FitQuality& quality, int channel) {
    constexpr int rms_digits = 3, noise_digits = 2;
    const std::string_view unit = show::channel_unit(channel);
    std::string line = std::string(channel == channel_mag ? "Mag" : "Grav") + " rms " +
                       show::quantity_text(quality.rms, rms_digits, unit) + ", " +
                       format_number(std::int32_t{quality.stations}, "0") +
                       (quality.stations == 1 ? " station" : " stations");
    if (quality.noise.value > 0)
        line += ", noise " + show::quantity_text(quality.noise.value, noise_digits, unit);
    return {line, std::string(channel == channel_mag ? "Magnetics: " : "Gravity: ") +
                      show::fit_quality_text(quality, channel)};
}

const char* InversionPanel::toggle_caption() const {
    return invert_frame ? "Move This Body" : "Perform Inversion";
}

int InversionPanel::iteration_limit() const {
    const std::string& text = max_iterations_text;
    if (trim_blanks(text).empty() || !is_numeric(text)) return inversion::default_iterations;
    constexpr double most = 2147483647;
    return std::max(round_to_even(std::clamp(prefix_number(text), 1.0, most)), 1);
}

int InversionPanel::starts() const {
    if (trim_blanks(starts_text).empty() || !is_numeric(starts_text)) return inversion::default_starts;
    return std::max(round_to_even(std::clamp(prefix_number(starts_text), 1.0, double{most_starts})), 1);
}

int InversionPanel::corrected_channel(int index, const Workspace& workspace) const {
    if (index == channel_joint) {
        if (workspace.has_mag() && workspace.has_grav() &&
            method == inversion::InversionMethod::least_squares)
            return index;
        index = channel_mag;
    }
    if (index == channel_mag && !workspace.has_mag()) index = channel_grav;
    if (index == channel_grav && !workspace.has_grav()) index = channel_mag;
    return index;
}

void InversionPanel::show_initial_misfit(const MisfitPair& pair) {
    misfit[0] = misfit_text(pair[0]);
    misfit[2] = misfit_text(pair[1]);
}

void InversionPanel::show_current_misfit(const MisfitPair& pair) {
    misfit[1] = misfit_text(pair[0]);
    misfit[3] = misfit_text(pair[1]);
}

void InversionPanel::disable_undo() {
    restore_best_enabled = false;
    reject_changes_enabled = false;
}

void InversionPanel::show_view(bool invert) {
    invert_frame = invert;
    stop_frame = false;
    end_told = status_visible = false;
}

void InversionPanel::begin_run() {
    end_told = status_visible = false;
    remark_text.clear();
    reject_changes_enabled = false;
    stop_frame = true;
    stage = inversion::RunStage::fit;
    num_iterations_text = "0";
    misfit.fill("");
}

void InversionPanel::end_run(const inversion::RunResult& result, int limit) {
    stop_frame = false;
    max_iterations_text = format_number(std::int32_t{limit}, "0");
    if (!trim_blanks(starts_text).empty()) starts_text = format_number(std::int32_t{starts()}, "0");
    // Without a list of its own a run has no start values: a reject would bring back those of an older one.
    reject_changes_enabled = result.filled;
    status_text = result.record ? fit_label(*result.record) : inversion::status_label(result);
    end_told = status_visible = true;
}

}  // namespace anomalis::flow

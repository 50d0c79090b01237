#include "flow/find_state.h"

#include <string_view>

#include "core/numbers.h"
#include "core/workspace.h"
#include "edit/workbench.h"
#include "show/fit_quality.h"

namespace anomalis::flow {

namespace {

constexpr int rms_digits = 3;

std::string_view stage_words(inversion::FindStage stage) {
    switch (stage) {
        case inversion::FindStage::noise:
            return "Noise and regional";
        case inversion::FindStage::search:
            return "Looking for sources";
        case inversion::FindStage::refine:
            return "Refining the model";
        case inversion::FindStage::alternatives:
            return "Trying other models";
        case inversion::FindStage::errors:
            return "Errors and intervals";
    }
    return "";
}

std::string counted(std::int32_t count, const char* one, const char* many) {
    return format_number(count, "0") + " " + (count == 1 ? one : many);
}

}  // namespace

std::int32_t FindState::corrected_channel(const Workspace& workspace) const {
    if (channel != channel_grav && !workspace.has_mag()) return channel_grav;
    if (channel != channel_mag && !workspace.has_grav()) return channel_mag;
    return channel;
}

inversion::FindRequest FindState::request(const Workspace& workspace) const {
    inversion::FindRequest request;
    request.channel = corrected_channel(workspace);
    request.most = most;
    request.thin = kinds != SheetKinds::thick;
    request.thick = kinds != SheetKinds::thin;
    request.free_present = free_present && workspace.body_count > 0;
    return request;
}

std::string find_window_text(const Workspace& workspace) {
    if (!edit::line_loaded(workspace)) return {};
    const std::int32_t first = workspace.first_station, last = workspace.last_station;
    const std::string span = format_number(workspace.distances[first], "0") + " to " +
                             format_number(workspace.distances[last], "0") + " m";
    const std::int32_t count = last - first + 1;
    if (count == workspace.station_count) return span + ", " + counted(count, "station", "stations");
    return span + ", " + format_number(count, "0") + " of " +
           counted(workspace.station_count, "station", "stations");
}

std::string find_progress_text(const FindState& state, const Workspace& workspace) {
    std::string text(stage_words(state.stage));
    if (state.bodies <= 0) return text;
    text += ": " + counted(state.bodies, "body", "bodies") + " so far";
    if (state.rms > 0) text += ", " + found_rms_text(state.rms, state.corrected_channel(workspace));
    return text;
}

std::string found_rms_text(double rms, std::int32_t channel) {
    const int shown = channel == channel_grav ? channel_grav : channel_mag;
    return "rms " + show::quantity_text(rms, rms_digits, show::channel_unit(shown));
}

std::string criterion_text(double criterion) {
    return "criterion " + format_number(criterion, "0.0");
}

}  // namespace anomalis::flow

#include "edit/pipe_tie.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/search.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "model/refresh_model.h"

namespace anomalis::edit {

namespace {

constexpr double largest_single = std::numeric_limits<float>::max();

/// Elevation of the sensor (m) at the last station that is not beyond `distance`, the first one before all.
double sensor_at(const Workspace& workspace, double distance) {
    const auto distances =
        workspace.distances.span().first(static_cast<std::size_t>(workspace.station_count));
    int station = search_sorted(distances, distance);
    if (workspace.distances[station] > distance) --station;
    return workspace.stations(std::max(station, 1), column_sensor);
}

}  // namespace

bool pipes_are_tied(const Workspace& workspace) {
    return workspace.display.tie_pipe_depth_susc;
}

void toggle_pipe_tie(Workbench& workbench) {
    Session& session = workbench.session;
    DisplaySettings& display = session.workspace.display;
    if (display.tie_pipe_depth_susc) {
        display.tie_pipe_depth_susc = false;
        note_change(workbench, {"pipe tie", "", false});
        return;
    }
    const std::string offered = display.tie_factor > 0 ? format_number(display.tie_factor, "0.00") : "2";
    const auto text = session.prompts.input_box("Pipe Model Decay Rate",
                                                "Enter the decay rate that you would like to use", offered);
    const auto rate = text ? parse_single(*text) : std::nullopt;
    if (!rate || *rate == 0) return;
    display.tie_factor = *rate;
    display.tie_pipe_depth_susc = true;
    note_change(workbench, {"pipe tie", "", false});
}

bool tie_susceptibility(Workbench& workbench, ModelBody& body, double step) {
    Workspace& workspace = workbench.session.workspace;
    if (!pipes_are_tied(workspace) || body.type != pipe || workspace.station_count <= 0) return false;
    Faults faults;
    model::refresh_elevations(workspace, faults);
    show_faults(faults, workbench.session.prompts);
    const double room =
        sensor_at(workspace, static_cast<double>(body.distance.value)) - static_cast<double>(body.top.value);
    if (!(room > 0)) return false;
    const double rate = static_cast<double>(workspace.display.tie_factor);
    const double susceptibility = static_cast<double>(body.susc.value) * std::pow((room - step) / room, rate);
    if (!(susceptibility > 0) || susceptibility > largest_single) return false;
    body.susc.value = static_cast<float>(susceptibility);
    return true;
}

}  // namespace anomalis::edit

#include "edit/add_bodies.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/angles.h"
#include "core/body_defaults.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "edit/body_form.h"
#include "edit/body_palette.h"
#include "edit/change.h"
#include "edit/new_body_size.h"
#include "edit/workbench.h"
#include "forward/shape/reference_point.h"
#include "model/refresh_model.h"

namespace anomalis::edit {

namespace {

constexpr float least_sine = 0.01F;
/// A dip flatter than this has no width along the profile to speak of.
constexpr double least_dip_sine = 0.01;
constexpr double part_of_line = 20;

double radians(float degrees) {
    return static_cast<double>(degrees) * radians_per_degree;
}

double sine_to_line(const Workspace& workspace, const ModelBody& body) {
    return std::sin(radians(body.strike.value) - static_cast<double>(workspace.azimuth));
}

/// Across the line, in degrees rounded to 0.0001 so that an east line gives 0.
float strike_across(const Workspace& workspace) {
    constexpr double unit = 1e4;
    const double degrees = static_cast<double>(workspace.azimuth) / radians_per_degree + 90;
    return static_cast<float>(std::round(degrees * unit) / unit + 0.0);
}

void place(const Workspace& workspace, ModelBody& body) {
    forward::update_body_reference_point(workspace, static_cast<double>(body.distance.value), body.east,
                                         body.north);
}

std::string numbered_name(int number) {
    return "Body " + format_number(number, "0");
}

/// How far (m along the profile) the copy, or the second half, lies behind the first.
float distance_to_copy(const Workspace& workspace, const ModelBody& body, AddMode mode, double sine) {
    const auto width = static_cast<double>(body.width.value);
    if (mode == AddMode::copy) return to_single(width + workspace.distances.last() / part_of_line);
    double dip_sine = std::sin(radians(body.dip.value));
    if (std::abs(dip_sine) < least_dip_sine) dip_sine = 1;
    return to_single(width / sine / dip_sine / 2);
}

bool crosses(double sine) {
    return std::abs(sine) >= static_cast<double>(least_sine);
}

/// Everything is computed before the list is touched.
bool insert_copy(Workbench& workbench, AddMode mode, int current) {
    Workspace& workspace = workbench.session.workspace;
    if (current < 1 || current > workspace.body_count) return false;
    const double sine = sine_to_line(workspace, workspace.body(current));
    if (!crosses(sine)) return false;
    const float shift = distance_to_copy(workspace, workspace.body(current), mode, sine);
    ModelBody copy = workspace.body(current);
    copy.distance.value += shift;
    if (!std::isfinite(copy.distance.value)) throw Fault(FaultKind::overflow);
    place(workspace, copy);
    copy.colour = default_body_colour;
    copy.name = numbered_name(current + 1);

    reserve_next_body(workspace);
    const auto first = workspace.bodies.begin();
    std::rotate(first + current + 1, first + workspace.body_count + 1, first + workspace.body_count + 2);
    ++workspace.body_count;
    workspace.body(current + 1) = std::move(copy);
    if (mode == AddMode::split) {
        workspace.body(current).width.value /= 2;
        workspace.body(current + 1).width.value /= 2;
    }
    workbench.view.current_body = current + 1;
    return true;
}

bool append_new(Workbench& workbench, double distance, double east, double north, double top) {
    Session& session = workbench.session;
    Workspace& workspace = session.workspace;
    const float place_on_line = to_single(distance);
    const float elevation = to_single(top);
    reserve_next_body(workspace);
    const int number = workspace.body_count + 1;
    ModelBody& body = workspace.body(number);
    // A place that a deleted body left must not pass anything on.
    body = ModelBody();
    body.response.assign(workspace.station_count);
    body.type = thick_sheet;
    initialise_body(workspace, number, session.settings, session.prompts);
    settle_body(body);
    body.distance.value = place_on_line;
    body.east = east;
    body.north = north;
    place(workspace, body);
    body.top.value = elevation;
    body.colour = default_body_colour;
    body.name = numbered_name(number);
    body.strike.value = strike_across(workspace);
    workspace.body_count = number;
    workbench.view.current_body = number;
    return true;
}

const char* step_name(AddMode mode) {
    switch (mode) {
        case AddMode::copy:
            return "copy body";
        case AddMode::split:
            return "split body";
        default:
            return "add body";
    }
}

bool add_unnoted(Workbench& workbench, AddMode mode, double distance, double east, double north, double top,
                 int current) {
    bool added = false;
    report_failure(workbench.session.prompts, "An error occurred while adding the new body: ", [&] {
        if (!line_loaded(workbench.session.workspace)) return;
        added = mode == AddMode::add ? append_new(workbench, distance, east, north, top)
                                     : insert_copy(workbench, mode, current);
    });
    return added;
}

void bring_elevations_up_to_date(Workbench& workbench) {
    Faults faults;
    model::refresh_elevations(workbench.session.workspace, faults);
    show_faults(faults, workbench.session.prompts);
}

/// The new body in a colour of its own and, unless it is a copy, suited to the line.
void suit(Workbench& workbench, AddMode mode) {
    Workspace& workspace = workbench.session.workspace;
    ModelBody& body = workspace.body(workbench.view.current_body);
    std::vector<std::int32_t> others;
    for (int number = 1; number <= workspace.body_count; ++number)
        if (number != workbench.view.current_body) others.push_back(workspace.body(number).colour);
    body.colour = next_body_colour(others);
    if (mode == AddMode::add) suit_new_body(workspace, workbench.view, workbench.session.settings, body);
}

/// As a person adds a body: the plain procedure, then what suits the line, as one step of the history.
bool add_suited(Workbench& workbench, AddMode mode, double distance, double east, double north, double top) {
    const bool added = add_unnoted(workbench, mode, distance, east, north, top, workbench.view.current_body);
    if (!added) return false;
    report_failure(workbench.session.prompts,
                   "An error occurred while adding the new body: ", [&] { suit(workbench, mode); });
    note_change(workbench, {step_name(mode), "", true});
    return true;
}

}  // namespace

bool MAGINV_add_body(Workbench& workbench, AddMode mode, double distance, double east, double north,
                     double top, int current) {
    if (!add_unnoted(workbench, mode, distance, east, north, top, current)) return false;
    note_change(workbench, {step_name(mode), "", true});
    return true;
}

bool stands_across(const Workspace& workspace, int number) {
    return crosses(sine_to_line(workspace, workspace.body(number)));
}

int middle_station(int station_count) {
    return std::max(1, static_cast<int>(round_to_even(station_count / 2.0)));
}

bool add_body_from_menu(Workbench& workbench, AddMode mode) {
    Workspace& workspace = workbench.session.workspace;
    if (!line_loaded(workspace)) return false;
    bring_elevations_up_to_date(workbench);
    // The ground is the middle station's even where the view shows another part of the line:
    // test `AddBodies, a_new_body_stands_in_the_view_on_the_ground_of_the_middle_station`.
    const int station = middle_station(workspace.station_count);
    const auto& stations = workspace.stations;
    return add_suited(workbench, mode, static_cast<double>(workbench.view.window_centre),
                      stations(station, column_east), stations(station, column_north),
                      stations(station, column_ground));
}

bool add_body_at(Workbench& workbench, double distance, double elevation) {
    const Workspace& workspace = workbench.session.workspace;
    if (!line_loaded(workspace)) return false;
    bring_elevations_up_to_date(workbench);
    return add_suited(workbench, AddMode::add, distance, workspace.stations(1, column_east),
                      workspace.stations(1, column_north), elevation);
}

}  // namespace anomalis::edit

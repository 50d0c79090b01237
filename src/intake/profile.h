#pragma once

namespace anomalis {
class Faults;
class Prompts;
struct Workspace;
}  // namespace anomalis

// From stations in file order to a profile: distances that rise from 0, to which all modelling refers.
namespace anomalis::intake {

/// Fixes the direction of the line, merges stations that do not advance by the minimum spacing, resamples at
/// a fixed spacing by cubic splines, fixes the base levels and the body elevations.
/// Returns 0, or -1 with a message when the line has no length or an error occurs.
int setup_profile_coordinates(Workspace& workspace, Prompts& prompts);

/// A base level that is unset becomes the mean that the readings of its channel had at the load.
void settle_base_levels(Workspace& workspace);

/// Finds the station window by its numbers, else by its distances; one that the line cannot hold becomes the
/// whole line. The stations must be there.
void find_station_window(Workspace& workspace);

/// Makes room for the chart series and every body's response, and finds the station window again by its
/// distances. Returns 0, or -1 with a message.
int setup_graphics_arrays(Workspace& workspace, Prompts& prompts);

/// Sensor and ground elevation of each station from what the file had. Does nothing while they are ready.
void setup_sensor_elevations(Workspace& workspace, Faults& faults);

}  // namespace anomalis::intake

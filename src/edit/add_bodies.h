#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct Workbench;

enum class AddMode : int { add = 0, copy = 1, split = 2 };

/// Adds a body to the end of the list, or puts a copy of body `current` right behind it; the new body becomes
/// the current one.
/// Add: a thick sheet, or the type that the settings keep, across the line at `distance` (m along the
/// profile) with its top at elevation `top`. Copy: beside the original by its width and a twentieth of the
/// line. Split: both halves have half the width and lie next to each other. A body that strikes within half
/// a degree of the line is neither copied nor split. `east` and `north` give way to the place of the distance
/// on the map.
/// Returns true when a body was added; a fault is shown and leaves the list as it was.
bool MAGINV_add_body(Workbench& workbench, AddMode mode, double distance, double east, double north,
                     double top, int current);

/// The menu's way: the new body stands in the middle of the view with its top on the ground at the middle
/// station, in the next colour of the palette and suited to the line (edit/new_body_size.h). Nothing happens
/// without a line.
bool add_body_from_menu(Workbench& workbench, AddMode mode);

/// The same with its top at a point of the section (m along the profile, m of elevation).
bool add_body_at(Workbench& workbench, double distance, double elevation);

/// Whether a body strikes across the line, so that it can be copied along it or split.
bool stands_across(const Workspace& workspace, int number);

/// Half the stations, ties to even, at least 1.
int middle_station(int station_count);

}  // namespace anomalis::edit

#pragma once

// The commands on the list of bodies that change their number, order or place.
namespace anomalis::edit {

struct Workbench;

/// No confirmation is asked: undo brings them back.
void delete_all_bodies(Workbench& workbench);
/// The body behind it, or the new last one, becomes the current one. Nothing happens without a current body.
bool delete_current_body(Workbench& workbench);

enum class BodyOrder : int { ascending = 0, descending = 1, current_first = 2, current_last = 3 };

/// By distance, bodies at equal distances staying in their order: all are then named "Body " and their place,
/// whatever they were called. Or moves the current body to one end of the list, names stay. The person is
/// told. Returns false without bodies, or without a current body to move.
bool sort_bodies(Workbench& workbench, BodyOrder order);

/// Asks for a distance (m) and moves all bodies along the profile by it. Blank, what is no number, and less
/// than 1 m either way do nothing.
bool shift_bodies(Workbench& workbench);

}  // namespace anomalis::edit

#pragma once

#include <array>
#include <string>
#include <string_view>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The text boxes that say how the observed data file is to be read. They act at every keystroke: an accepted
// change drops the stations, which only a new load brings back.
namespace anomalis::edit {

struct Workbench;

enum class DefinitionBox {
    first_data_line,
    read_increment,
    last_data_line,
    x_column,
    y_column,
    z_column,
    dtm_column,
    mag_column,
    grav_column,
    station_spacing,
    min_station_spacing
};

inline constexpr std::array all_definition_boxes{
    DefinitionBox::first_data_line, DefinitionBox::read_increment,     DefinitionBox::last_data_line,
    DefinitionBox::x_column,        DefinitionBox::y_column,           DefinitionBox::z_column,
    DefinitionBox::dtm_column,      DefinitionBox::mag_column,         DefinitionBox::grav_column,
    DefinitionBox::station_spacing, DefinitionBox::min_station_spacing};

/// What a keystroke in a box came to.
enum class DefinitionChange {
    unchanged,  ///< a blank spacing: nothing happens at all
    refused,    ///< field and stations stay, the box goes on showing the text
    /// The field is set and the stations are dropped. The box of their number is blanked; those of length and
    /// spacing stay: the Y, sensor and ground columns behave so.
    accepted_keep_length,
    accepted  ///< as before, and all three result boxes are blanked
};

/// Takes a text into the field of its box. Line numbers and columns are rounded to whole numbers, ties to
/// even, and must fit 32 bits. The first line, the step and the X column are above 0; the last line and the
/// channels' columns may be 0 (the whole file, absent); the others are any number. A spacing (m) that is no
/// number or not above 0 becomes 0.
DefinitionChange change_definition_box(Workbench& workbench, DefinitionBox box, std::string_view text);

/// The text of a box as it is filled from the workspace.
std::string definition_box_text(const Workspace& workspace, DefinitionBox box);

}  // namespace anomalis::edit

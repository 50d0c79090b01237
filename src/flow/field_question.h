#pragma once

#include <optional>
#include <string>

#include "field/main_field.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis
namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// The earth's field of a line from the place and the day of its survey.
namespace anomalis::flow {

inline constexpr const char* middle_of_the_line = "the middle of the line";

/// The place of the station nearest to the middle of a loaded line, at its sensor. Raises Fault without
/// stations and for a coordinate system that is not known or has no place for it.
field::Place middle_of_line(const Workspace& workspace, const std::string& coordinate_system);

/// Sets the field of a workspace to that of IGRF at a place on a date ("1990-07-01" or a decimal year), which
/// the source then tells: "IGRF-14 at WHERE, DATE". Raises Fault; nothing is changed then.
void set_main_field(Workspace& workspace, const field::Place& place, const std::string& where,
                    const std::string& date);

/// What a person says of place and date, as it stands in boxes.
struct FieldQuestion {
    bool at_middle = false;         ///< latitude, longitude and height follow the line
    std::string coordinate_system;  ///< of the line, any text that names one; "" where nobody knows
    std::string latitude, longitude, height, date;
};

/// As the workspace has it; without a line, or a system of its own, the place is to be given.
FieldQuestion field_question(const Workspace& workspace);

struct FieldAnswer {
    field::MainField field;
    field::Place place;
};
/// Raises Fault with what is wrong or lacking.
FieldAnswer answer(const FieldQuestion& question, const Workspace& workspace);

/// Takes the field over as one step, with date and coordinate system. Raises Fault; nothing is changed then.
void take_field(edit::Workbench& workbench, const FieldQuestion& question);

/// What becomes of IGRF in the magnetic readings: `step` -1 takes it out once more, +1 puts it back. The
/// stations are gone until the data are loaded again, and the base level is that of the readings then. False,
/// with the reason told, when coordinate system or date are not known or it is out (in) already.
bool change_igrf(edit::Workbench& workbench, int step);

}  // namespace anomalis::flow

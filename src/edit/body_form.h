#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

// The current body beside its parameters: type, name, marks, colour, the shape of a pipe.
namespace anomalis::edit {

struct Workbench;

/// The current body; null while there is none.
ModelBody* current_body(Workbench& workbench);
const ModelBody* current_body(const Workbench& workbench);

/// "dip of body 3": how a step on the current body is named.
std::string of_current_body(const Workbench& workbench, std::string_view what);

/// Puts a body in order that a file or the settings brought: a type without a name becomes a thin sheet; a
/// wire's diameter and length cannot vary. That is no step of the person's.
void settle_body(ModelBody& body);
/// All bodies of a workspace.
void settle_bodies(Workspace& workspace);

/// Gives the current body another type. A sheet that becomes a pipe or a wire loses 90 degrees of dip; a pipe
/// or a wire gains 90 whatever it becomes. False without stations, without a body and for its present type.
bool change_body_type(Workbench& workbench, std::int32_t type);

/// Line breaks become blanks. False when the name is the present one.
bool change_body_name(Workbench& workbench, std::string_view name);
/// A fixed body is left alone by every fit.
bool change_body_fixed(Workbench& workbench, bool fixed);
bool change_body_turned_off(Workbench& workbench, bool turned_off);
bool change_body_demagnetisation(Workbench& workbench, bool include);
/// Blue, green, red bytes, high to low.
bool change_body_colour(Workbench& workbench, std::int32_t colour);

/// "23.50 m": how deep the current body lies below the ground over it, as its label in the section says; ""
/// without a line or a body.
std::string burial_text(const Workbench& workbench);

/// What the mark for demagnetisation does, and whether it does anything to the current body; for people.
std::string demagnetisation_tip(const Workbench& workbench);

/// The boxes of a pipe's solid.
enum class PipeBox { shell_thickness, end_thickness, sectors, segments, max_triangle_size };

enum class BoxChange { unchanged, refused, stored };

/// Thicknesses and triangle size (m) are numbers, the two counts whole numbers rounded to even; none is below
/// 0. Both responses of the body are calculated anew.
BoxChange change_pipe_box(Workbench& workbench, PipeBox box, std::string_view text);

/// The text of a box; blank without a body.
std::string pipe_box_text(const Workbench& workbench, PipeBox box);

}  // namespace anomalis::edit

#pragma once

#include <span>
#include <string>

#include "core/body_parameters.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The bars that nudge one parameter of the current body, coarse or fine.
namespace anomalis::edit {

struct Workbench;

struct ParameterBar {
    const char* control;  ///< of both members: "HScroll_dip" holds members 0 and 1
    int first_member;     ///< the coarse one; the fine one follows
    ParamCode code;
    bool upright;  ///< up and down rather than right and left
};

/// One for each parameter, in the order of the grid.
std::span<const ParameterBar> parameter_bars();

/// The size of a step: of angles fixed, of lengths by the value, of the distance by the line's length. A fine
/// step is a tenth.
double bar_step(const Workspace& workspace, const ModelBody& body, ParamCode code, bool fine);

/// False without a current body and for a parameter that its type has not.
bool bar_usable(const Workbench& workbench, ParamCode code);

/// Moves the parameter by one step, up for a direction above 0. The step is not taken when it would leave the
/// values a person may give, bring a length to 0 or a susceptibility to 0 or through it. Returns true when
/// the parameter moved.
bool step_parameter(Workbench& workbench, const ParameterBar& bar, bool fine, int direction);

/// What the bar does to the current body; a line for people.
std::string bar_tip(const Workbench& workbench, const ParameterBar& bar, bool fine);

}  // namespace anomalis::edit

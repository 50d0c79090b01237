#pragma once

#include <array>

#include "core/body_parameters.h"

// Which parameters share a line of a body. Private to this room.
namespace anomalis::workspace_file {

/// The values stand first, in this order, then the mark and the limits of each.
inline constexpr std::array shape_line{param_strike, param_dip, param_width, param_depth_extent};
inline constexpr std::array magnetic_line{param_susc, param_rem_q, param_rem_i, param_rem_d};

}  // namespace anomalis::workspace_file

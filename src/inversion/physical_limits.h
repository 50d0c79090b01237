#pragma once

#include <span>
#include <string_view>

#include "core/body_parameters.h"
#include "core/fit_record.h"
#include "core/workspace.h"

// The limits that hold a parameter in a fit, keyed or not.
namespace anomalis::inversion {

/// `unset` where there is none.
struct ParameterLimits {
    float lower = unset, upper = unset;
};

/// What holds a parameter of a body in a fit by `method`: a keyed limit as it stands; of a blank one the wide
/// defaults of the sweep, or what physics asks for in least squares (`physical_limits`). There a value that
/// stands beyond a bound when the run begins is not held by it. Raises Fault subscript for a code that is
/// none.
ParameterLimits limits_in_force(const Workspace& workspace, const ModelBody& body, int param_code,
                                InversionMethod method);

/// A bound of physics in words, for whoever explains it.
struct PhysicalLimit {
    ParamCode code;
    std::string_view lower, upper;  ///< "" for none
};

/// What holds the parameters of a least-squares fit whose limits are blank, in the order of the grid.
std::span<const PhysicalLimit> physical_limits();

}  // namespace anomalis::inversion

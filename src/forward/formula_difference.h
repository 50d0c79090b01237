#pragma once

#include <string>

#include "core/workspace.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// How far the classic curves of a body are from its exact ones: the largest difference as a share of the
/// exact curve's largest value. 0 for a channel that is absent or has no response in either.
struct FormulaDifference {
    double magnetic = 0;
    double gravity = 0;
    /// Why the body was not compared; "" when it was. Its exact curve costs more than is granted, or than a
    /// comparison in passing may take.
    std::string left_out;

    double largest() const { return magnetic > gravity ? magnetic : gravity; }
};

/// The difference above this share is worth a warning.
inline constexpr double notable_difference = 0.05;
/// What counts when the exact curve is zero and the classic one is not.
inline constexpr double no_common_measure = 99.99;

/// A comparison that takes longer is left out, in the units of core/pacer.h: a tenth of a second.
inline constexpr double most_comparison_units = 1e8;

/// Compares the response table of a body, which must be up to date and classic, with the exact formulas. A
/// body that is switched off, or a workspace that has the exact formulas in force, differs by nothing.
FormulaDifference formula_difference(const Workspace& workspace, int body_number, Faults& faults);

}  // namespace anomalis::forward

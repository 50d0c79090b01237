#pragma once

#include "core/workspace.h"
#include "forward/body_columns.h"

namespace anomalis::forward {

/// The two values of a parameter between which a column is differenced, as the body can store them.
struct DifferenceStep {
    float behind = 0, ahead = 0;
    bool none = false;  ///< the value stands for no end: there is no change to either side
    double width() const { return static_cast<double>(ahead) - static_cast<double>(behind); }
};

/// Steps where the error of a central difference is least: for lengths a part of the distance from the
/// nearest sensor of the range to the body's top, for angles a part of a radian. The classic formulas round
/// to single precision and take a larger part. A width stays above 0, but for a width of 0, which steps ahead
/// alone.
DifferenceStep difference_step(const Workspace& workspace, const ModelBody& body, const StationRange& range,
                               int param_code);

}  // namespace anomalis::forward

#pragma once

#include <cstdint>
#include <span>

#include "inversion/fit_rows.h"

namespace anomalis::inversion {

/// Weighs each channel by the noise of its readings, keyed or estimated from the line, as the filters leave
/// it in the row that is fitted. A channel that tells no noise is weighed by its misfit scale.
void weigh_by_noise(const Workspace& workspace, std::int32_t target, FitRows& rows);

/// Weighs the channels of a joint fit by what their residuals at these values tell (variance components).
/// False when the weights stand as they are.
bool weigh_by_residuals(FitRows& rows, std::span<const float> values);

}  // namespace anomalis::inversion

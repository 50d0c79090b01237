#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "inversion/fit_rows.h"
#include "inversion/least_squares.h"

namespace anomalis::inversion {

/// The free bodies of a fit, those first round which its residuals are largest: each residual counts as far
/// as the body's own anomaly reaches there. The rows take the values over.
std::vector<std::int32_t> worst_fitted_bodies(FitRows& rows, std::span<const float> values);

/// Values for another start: those given with the parameters of the bodies by chance, at the best of
/// `candidates` tries with the best amplitudes. The same for the same `seed`.
std::vector<float> chance_start(const Workspace& workspace, FitRows& rows,
                                std::span<const FitParameter> parameters, std::span<const float> values,
                                std::span<const std::int32_t> bodies, int candidates, std::uint32_t seed);

}  // namespace anomalis::inversion

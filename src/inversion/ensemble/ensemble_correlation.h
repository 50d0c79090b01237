#pragma once

#include <cstddef>

#include "core/ensemble.h"

namespace anomalis::inversion {

/// Correlation coefficient of two parameters over the models that have both. Not a number for fewer than
/// three of them, or where one parameter is the same in all.
double sample_correlation(const Ensemble& ensemble, std::size_t one, std::size_t other);

}  // namespace anomalis::inversion

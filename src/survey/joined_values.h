#pragma once

#include <span>

#include "survey/joined_bodies.h"
#include "survey/line_families.h"

// One value of what several lines measured. Private to this room.
namespace anomalis::survey {

enum class MeanOf { values, logarithms };

/// The mean weighed by the squares of the errors; where the values differ by more than these its error is
/// larger by the root of the reduced chi-square (Birge 1932). A value without an error weighs like the worst
/// that has one; without any error the scatter tells it. Values that nobody knows are left out, and of
/// logarithms those that are not above 0. All `unknown` where none is left.
JoinedValue joined_value(std::span<const Measured> values, MeanOf mean = MeanOf::values);

/// What a body of the survey may go on beyond its first and last line: anywhere up to the next line on either
/// side. The quantile of the sum of two lengths that are equally likely from 0 to `first` and to `second`, m.
double sum_quantile(double first, double second, double probability);

}  // namespace anomalis::survey

#pragma once

#include <span>

#include "survey/joined/joined_bodies.h"
#include "survey/joined/line_families.h"

// One value of what several lines measured. Private to this room.
namespace anomalis::survey {

enum class MeanOf { values, logarithms };

/// The mean weighed by the squares of the errors; where the values differ by more than these its error is
/// larger by the root of the reduced chi-square (Birge 1932). A value without an error weighs like the worst
/// that has one; without any error the scatter tells it. Values that nobody knows are left out, and of
/// logarithms those that are not above 0. All `unknown` where none is left.
JoinedValue joined_value(std::span<const Measured> values, MeanOf mean = MeanOf::values);

/// How far a body may go on beyond the last line that shows it: anywhere up to the next line, and, where that
/// one missed it, up to the one behind.
struct EndGap {
    double next = 0, behind = 0;  ///< m to both lines; equal where there is none behind
    double missed = 0;            ///< part of the lines over a body that do not show it

    double to_next() const;   ///< probability that it ends before the next line
    double mean() const;      ///< m
    double variance() const;  ///< m2
};

/// The length below which both gaps together stay with a probability, m.
double gaps_quantile(const EndGap& first, const EndGap& second, double probability);

}  // namespace anomalis::survey

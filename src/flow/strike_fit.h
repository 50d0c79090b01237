#pragma once

#include <optional>
#include <span>

// The strike of a body from where it was found on several lines.
namespace anomalis::flow {

/// Where a line found the body.
struct StrikePoint {
    double east = 0, north = 0;            ///< of its reference point, m
    double line_east = 1, line_north = 0;  ///< unit vector along the profile there
    double error = 1;                      ///< standard error of its place along the profile, m, above 0
};

struct StrikeFit {
    double strike = 0;  ///< degrees clockwise from north
    double error = 0;   ///< standard error, degrees
    /// Root of the reduced chi-square, at least 1: above it the places do not lie on a straight line within
    /// their errors, and `error` is larger by it (Birge 1932). 1 for two lines, which leave nothing over.
    double birge_ratio = 1;
    int lines = 0;
};

/// The straight line on the map that passes the points nearest along their profiles, weighed by their errors
/// (least squares, Gauss and Newton), and its direction, of the two that nearer to `near_strike` (degrees).
/// No value for fewer than two points, points at one place, or a line along a profile.
std::optional<StrikeFit> fit_strike(std::span<const StrikePoint> points, double near_strike);

}  // namespace anomalis::flow

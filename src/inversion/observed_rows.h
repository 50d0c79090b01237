#pragma once

#include <Eigen/Core>
#include <cstdint>

#include "core/workspace.h"

// What a fit compares the bodies with, in double precision: rows of the station window.
namespace anomalis::inversion {

/// The observed row of a channel and target, as it stands, without a regional taken off. nT or mGal.
Eigen::VectorXd observed_rows(const Workspace& workspace, std::int32_t channel, std::int32_t target);

/// Distances along the profile, m.
Eigen::VectorXd window_distances(const Workspace& workspace);

/// Polynomials up to a degree, orthonormal over the stations; none for `no_regional`, fewer where the
/// stations stand at fewer places.
Eigen::MatrixXd polynomials(const Eigen::VectorXd& distance, std::int32_t degree);

/// Degree of the polynomial that is solved with the bodies: the regional, or the level that a floating base
/// gives to both curves. A gradient has none.
std::int32_t solved_degree(const Workspace& workspace, std::int32_t channel, std::int32_t target);

}  // namespace anomalis::inversion

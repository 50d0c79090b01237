#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/workspace.h"

// What a fit compares the bodies with, in double precision: rows of stations of the window.
namespace anomalis::inversion {

/// The observed row of a channel and target at these stations, as it stands, without a regional taken off. nT
/// or mGal.
Eigen::VectorXd observed_rows(const Workspace& workspace, std::int32_t channel, std::int32_t target,
                              std::span<const std::int32_t> stations);

/// Of these stations along the profile, m.
Eigen::VectorXd station_distances(const Workspace& workspace, std::span<const std::int32_t> stations);

/// Usual distance from a row to the next, m, at the rows where stretches begin (core/gaps.h) left out.
double spacing_in_stretches(const Eigen::VectorXd& distance, std::span<const std::size_t> starts);

/// Polynomials up to a degree, orthonormal over the stations; none for `no_regional`, fewer where the
/// stations stand at fewer places.
Eigen::MatrixXd polynomials(const Eigen::VectorXd& distance, std::int32_t degree);

/// Takes the part of each column that lies in the basis off.
void project_off(const Eigen::MatrixXd& basis, Eigen::Ref<Eigen::MatrixXd> columns);

/// Degree of the polynomial that is solved with the bodies: the regional, or the level that a floating base
/// gives to both curves. A gradient has none.
std::int32_t solved_degree(const Workspace& workspace, std::int32_t channel, std::int32_t target);

}  // namespace anomalis::inversion

#pragma once

#include <Eigen/Core>
#include <cstdint>

#include "core/workspace.h"

namespace anomalis::inversion {

/// What a fit knows of one channel where it stands: rows of the fit window, in the units of the channel (nT,
/// mGal; a gradient row: the same a station).
struct ChannelFit {
    std::int32_t channel = channel_mag;
    Eigen::VectorXd distance;  ///< m along the profile
    double spacing = 0;        ///< m from row to row beside the gaps of the line; 0: it has none
    Eigen::VectorXd residual;  ///< observed less regional less calculated
    Eigen::MatrixXd columns;   ///< rows by parameters: calculated by parameter, its own unit
    Eigen::MatrixXd regional;  ///< rows by coefficients: the polynomials that are solved with the bodies
    double sigma = 1;          ///< the residuals were weighed by it
    bool sigma_given = false;  ///< it was keyed
    bool coarse = false;       ///< the columns are differences of singles, good to some 1e-4
    double noise = 0;          ///< of the readings, keyed or from the line; 0: not known
};

}  // namespace anomalis::inversion

#pragma once

#include <Eigen/Core>
#include <span>
#include <vector>

#include "core/pacer.h"
#include "inversion/channel_fit.h"
#include "inversion/residual_covariance.h"

namespace anomalis::inversion {

/// What the residuals of one channel say, in its unit.
struct ChannelErrors {
    double rms = 0;
    /// Sum of squares over the noise of the readings, a degree of freedom; not a number without noise or
    /// freedom.
    double chi_square = 0;
    ResidualCovariance covariance;
};

/// What the columns at the end of a fit say of its parameters, by parameter, in their units. Not a number
/// where a parameter is held or not determined.
struct FitErrors {
    std::vector<double> errors;       ///< standard errors
    std::vector<double> correlation;  ///< row by row
    std::vector<bool> undetermined;   ///< the data say nothing of it
    std::vector<double>
        quantile;  ///< the 90 % interval is the value +- so many standard errors, 1.645 or more
    /// Standard errors if the residuals were white noise of the channels' sigmas: the weighted sum of
    /// squares, refitted with the parameter off by one of them, grows by 1.
    std::vector<double> unit_errors;
    /// Root of what the refitted sum of squares grows by at the end of a 90 % interval.
    std::vector<double> growth;
    /// How the parameters (rows) follow one (column) that is moved and held: change a unit of it.
    Eigen::MatrixXd following;
    std::vector<ChannelErrors> channels;  ///< as they were given
    bool too_few_data = false;            ///< the errors are open: residuals hardly outnumber what was fitted
};

/// The errors of a weighted fit: the covariance of its estimates when the residuals' covariance C is that of
/// the line and not the weights' (sandwich, Huber 1967; White 1980), (J'WJ)^-1 J'W C W J (J'WJ)^-1 with the
/// regional among the columns. C is found by restricted maximum likelihood, and what is not known of it
/// widens the intervals (Satterthwaite 1946). `held`: by parameter, those that do not take part. Raises
/// Stopped.
FitErrors find_fit_errors(std::span<const ChannelFit> channels, const std::vector<bool>& held, Pacer& pacer);

}  // namespace anomalis::inversion

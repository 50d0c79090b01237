#pragma once

#include <span>
#include <vector>

#include "inversion/channel_fit.h"

namespace anomalis::inversion {

/// The sigmas that the channels of a fit should be weighed by next, as their residuals tell (variance
/// components, Foerstner 1979): what the residuals leave over their redundancy, found by restricted maximum
/// likelihood, and where they are correlated along the line what the columns see of it, so that many stations
/// on one geology do not count as so many data. A keyed sigma stays, and one whose residuals tell nothing.
std::vector<double> component_sigmas(std::span<const ChannelFit> channels);

/// Whether weights by these sigmas stand: none differs by more than 2 % from what the channels were weighed
/// by, up to a factor that all share.
bool sigmas_stand(std::span<const ChannelFit> channels, std::span<const double> next);

}  // namespace anomalis::inversion

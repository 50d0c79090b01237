#pragma once

#include <span>
#include <string>
#include <vector>

#include "inversion/channel_fit.h"
#include "inversion/fit_errors.h"

namespace anomalis::inversion {

/// What there is to say of a fit, a sentence each: residuals that are no noise, a misfit far from the keyed
/// noise, too few data for errors, pairs of parameters that are hardly told apart (the strongest five).
/// `names` is by parameter, as "Body 1 top".
std::vector<std::string> fit_remarks(const FitErrors& errors, std::span<const ChannelFit> channels,
                                     std::span<const std::string> names);

}  // namespace anomalis::inversion

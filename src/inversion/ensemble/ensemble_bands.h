#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/ensemble.h"
#include "core/fit_record.h"
#include "inversion/ensemble/model_variants.h"
#include "inversion/ensemble/sample_refits.h"

// What the models of an ensemble have in common.
namespace anomalis::inversion {

/// The value that a part of a population lies below that these are drawn from, straight between two of them
/// (Hyndman and Fan 1996, type 6): between the quantiles for p and q another value falls with probability
/// q - p, however few there are. Not a number for no values. The values may be put in another order.
double quantile(std::span<double> values, double part);

/// Where the fit found no bound. A parameter that a limit holds has none that is open.
OpenSides open_sides(const FittedParameter& fitted);

/// The bands of the parameters of the first variant: 5 to 95 % of the samples. A side is open where the
/// profile of the fit is, and where the models stand on a limit.
std::vector<EnsembleParameter> parameter_bands(const ModelVariant& first, const FitRecord& record,
                                               std::span<const EnsembleSample> samples);

/// 5 to 95 % of the curves at each station; empty without curves.
EnsembleFan fan_of(std::span<const SampleRefit* const> samples, std::size_t channel_index,
                   std::int32_t channel, std::span<const std::int32_t> stations);

}  // namespace anomalis::inversion

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "core/pacer.h"
#include "inversion/ensemble/model_variants.h"

// The models of an ensemble: each fitted to what the fit explains and noise by chance.
namespace anomalis::inversion {

struct RefitRequest {
    int samples = 0;
    std::uint32_t seed = 1;
    double strike_within = 0;  ///< degrees
    int cores = 0;             ///< 0: all there are; the models do not hang on it
    int curves = 0;            ///< so many of the first samples keep their curves
    /// Told how many are done; true: what is under way is left.
    std::function<bool(int)> leave;
};

struct SampleRefit {
    std::size_t variant = 0;
    std::vector<float> values;  ///< of the parameters of the variant
    std::vector<double> rms;    ///< by channel, against the observed rows: nT, mGal
    /// By channel, the calculated curve at the stations of the window: the row that was fitted (of a gradient
    /// fit the anomaly itself).
    std::vector<std::vector<float>> curves;
};

/// By number; none for those that were left. Raises Stopped when the pacer has the work left.
std::vector<std::optional<SampleRefit>> refit_samples(std::span<const ModelVariant> variants,
                                                      const RefitRequest& request, Pacer& pacer);

}  // namespace anomalis::inversion

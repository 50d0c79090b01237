#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace anomalis {

/// A parameter over all models of an ensemble, in its own unit.
struct EnsembleParameter {
    static constexpr double open = std::numeric_limits<double>::quiet_NaN();

    std::int32_t body = 0;
    std::int32_t param_code = 0;
    float value = 0;  ///< of the model that the ensemble belongs to
    double lower = open,
           upper = open;  ///< 5 and 95 % of the models; a side that the data leave open is `open`
    double median = open;
    /// The 90 % interval of the profile likelihood.
    double profile_lower = open, profile_upper = open;
};

/// One model that explains the data within their noise.
struct EnsembleSample {
    /// By parameter of the ensemble; not a number where this model lacks the body.
    std::vector<float> values;
    std::int32_t mag_degree = -1, grav_degree = -1;  ///< of the regionals
    double mag_rms = 0, grav_rms = 0;                ///< nT, mGal; 0 for a channel that was not fitted
};

/// Where the calculated curve runs in 90 % of the models, at the stations of the fit.
struct EnsembleFan {
    std::int32_t channel = 0;
    std::int32_t first_station = 0;  ///< counted from 1; the others follow
    /// nT or mGal, as the charts show the calculated curve; missing (-1E32) where no reading is.
    std::vector<float> lower, upper;
};

/// Models that explain the data within their noise, about the model that was fitted. Shown as long as the
/// model is the one it was found for.
struct Ensemble {
    std::vector<EnsembleParameter> parameters;
    std::vector<EnsembleSample> samples;
    std::vector<EnsembleFan> fans;  ///< magnetics first
    /// What it says, a sentence each: "Top of body 2: 84 to 118 m below ground (90 %)".
    std::vector<std::string> words;
    std::uint32_t seed = 0;
    double strike_within = 0;  ///< degrees that the strikes were let vary to each side
    std::string model_mark;    ///< of the model and the line it was found for
};

}  // namespace anomalis

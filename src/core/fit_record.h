#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/formulas.h"
#include "core/regional.h"

namespace anomalis {

/// The ways of an inversion to its answer.
enum class InversionMethod : std::int32_t { sweep, least_squares };

/// "sweep" or "least-squares", as files and command lines say it.
std::string_view method_name(InversionMethod method);
/// The method of that name; no value for another word.
std::optional<InversionMethod> method_of_name(std::string_view name);

/// What a fit says of one parameter, in the parameter's unit.
struct FittedParameter {
    static constexpr double open = std::numeric_limits<double>::quiet_NaN();

    std::int32_t body = 0;
    std::int32_t param_code = 0;
    float value = 0;
    double error = open;  ///< standard error; open when the parameter is held or not determined
    /// The 90 % interval; a side that the data leave open is `open`.
    double lower = open, upper = open;
    bool undetermined = false;
    bool at_limit = false;
};

/// What a fit says of one channel, in nT or mGal (a gradient row: the same a station).
struct FittedChannel {
    std::int32_t stations = 0;  ///< rows that were fitted
    double rms = 0;             ///< root mean square of the residuals over those stations
    double noise = 0;           ///< standard deviation of the readings that the residuals were weighed by
    bool noise_given = false;   ///< the noise was keyed, not estimated from the line
    double chi_square = 0;      ///< reduced: near 1 when the residuals are noise
    double correlation = 0;     ///< m over which the residuals are correlated; 0 when they are not
    double independent = 0;     ///< how many independent data the rows amount to
    Regional regional;
};

/// The last fit, kept with the workspace and shown as long as the model is as fitted.
struct FitRecord {
    std::string date;  ///< ISO 8601, local time
    Formulas formulas = Formulas::classic;
    InversionMethod method = InversionMethod::least_squares;
    std::int32_t channel = 0;                      ///< ChannelCode
    std::int32_t target = 0;                       ///< Target
    double first_distance = 0, last_distance = 0;  ///< fit window, m along the profile
    std::string outcome;                           ///< as the label told it
    std::vector<FittedParameter> parameters;
    std::vector<double> correlation;  ///< of the parameters, row by row; not a number where there is none
    std::optional<FittedChannel> mag, grav;
    std::vector<std::string> remarks;  ///< what there is to say, a sentence each
    std::string model_mark;            ///< of the model and the line as they were fitted
};

}  // namespace anomalis

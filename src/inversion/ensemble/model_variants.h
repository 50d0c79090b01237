#pragma once

#include <memory>
#include <vector>

#include "core/fit_record.h"
#include "inversion/fit_errors.h"
#include "inversion/fit_rows.h"
#include "inversion/least_squares.h"

// The models that an ensemble is drawn about: the one that was fitted, and those with another regional or
// with a body less that explain the line as well.
namespace anomalis::inversion {

/// Sides on which the data bound a parameter nowhere, and where they do on the other one (not a number: nor
/// there).
struct OpenSides {
    bool below = false, above = false;
    double bound = FittedParameter::open;
};

struct ModelVariant {
    std::shared_ptr<Workspace> workspace;  ///< that the rows look at
    std::unique_ptr<FitRows> rows;         ///< where the fit of this variant stands
    std::vector<FitParameter> parameters;  ///< their values are those of this fit
    std::vector<std::size_t> place;        ///< of each among the parameters of the first variant
    std::vector<bool> drawn;               ///< a strike that is drawn; the fit itself holds it
    std::vector<OpenSides> open;
    std::vector<std::int32_t> degrees;  ///< of the regional of each channel
    std::int32_t missing_body = 0;      ///< 0: none
    FitErrors errors;
    std::vector<Eigen::VectorXd> centre;  ///< by channel: what this fit says of the observed rows
    std::vector<double> squares;          ///< by channel, of the weighed residuals
    double criterion = 0;  ///< Schwarz (1978) with the number of independent data; the lower the better
    double weight = 1;     ///< how often it is drawn, beside the others
};

/// A fit that was found.
struct FittedRun {
    std::shared_ptr<Workspace> workspace;  ///< with the fitted values, brought up to date
    FitRequest request;
    std::vector<FitParameter> parameters;  ///< their values are the fitted ones
    std::vector<OpenSides> open;           ///< by parameter
};

struct VariantRequest {
    bool vary_regional = true;
    bool vary_bodies = false;
    bool draw_strikes = false;  ///< strikes of bodies that are fitted become parameters that are held
};

/// The first is the fit itself. Raises Stopped.
std::vector<ModelVariant> find_variants(const FittedRun& fit, const VariantRequest& request, Faults& faults,
                                        Pacer& pacer);

}  // namespace anomalis::inversion

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "core/session.h"
#include "flow/find_report.h"
#include "flow/fit_window.h"
#include "flow/inversion_report.h"
#include "flow/open_unattended.h"
#include "inversion/ensemble/find_ensemble.h"

// What can be done with a line that nobody sits before, each as a command of its own would do it: refusals
// are told, the answer ends in the workspace of the session. A channel is "mag", "grav", "joint" or "" for
// what the line has.
namespace anomalis::flow {

/// So many bodies are looked for at most where nobody says it.
inline constexpr int usual_most_bodies = 8;

/// Looks for bodies. `options` without channel. `wrong_usage` becomes true for a window beside the line.
FindReport find_on_line(Session& session, OpenState state, const std::string& channel, FindOptions options,
                        bool& wrong_usage, const GrowthCallback& grew = {}, const StopCallback& stop = {});

/// Fits the model. `options` without channel. `wrong_usage` becomes true for a body that is not there.
InversionReport invert_on_line(Session& session, const std::string& channel, InvertOptions options,
                               bool& wrong_usage, const ProgressCallback& progress = {});

/// What is asked of an ensemble.
struct UncertaintyOptions {
    inversion::EnsembleRequest request;  ///< without channel
    /// In place of what the workspace says; it holds them afterwards.
    std::optional<std::int32_t> regional_degree = {};      ///< of each channel that is fitted
    std::optional<float> mag_noise = {}, grav_noise = {};  ///< nT, mGal, above 0
    std::optional<DistanceWindow> window = {};
};
struct UncertaintyReport {
    inversion::EnsembleRequest request;  ///< with its channel
    inversion::EnsembleResult result;    ///< without the ensemble, which the workspace has
};
/// Fits the model and finds its ensemble. `wrong_usage` becomes true for a window beside the line.
UncertaintyReport uncertainty_on_line(Session& session, OpenState state, const std::string& channel,
                                      const UncertaintyOptions& options, bool& wrong_usage,
                                      inversion::EnsembleObserver& observer);

}  // namespace anomalis::flow

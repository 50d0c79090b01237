#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/session.h"
#include "flow/fit_window.h"
#include "inversion/find/find_bodies.h"

// A search for bodies from first to last without a window.
namespace anomalis::flow {

struct FindOptions {
    /// A channel without a column gives way to the other one.
    inversion::FindRequest request;
    /// In place of what the workspace says; it holds them afterwards.
    std::optional<std::int32_t> regional_degree = {};      ///< of each channel; none lets it be found
    std::optional<float> mag_noise = {}, grav_noise = {};  ///< nT, mGal, above 0
    std::optional<DistanceWindow> window = {};
};

/// Why the line cannot show a body on a channel (`ChannelCode`): no field that magnetises it. "" when it can.
std::string find_refusal(const Workspace& workspace, std::int32_t channel);

struct FindReport {
    std::string refusal;                 ///< why nothing was looked for; "" when it was
    std::int32_t channel = channel_mag;  ///< that was looked at
    inversion::FindResult result;
    double rms_of_none = 0;  ///< of the model as it stood (joint: of magnetics), nT or mGal
};

/// Called when the model has grown or got better.
using GrowthCallback = std::function<void(const inversion::FoundModel&)>;
/// Asked again and again; true ends the search with what was found.
using StopCallback = std::function<bool()>;

/// Looks for bodies on the line of a session whose stations are loaded, and puts the best model there
/// (`take_found`); where none is found the bodies stay as they are. Ends with all numbers refreshed. What
/// went wrong is shown.
FindReport run_find(Session& session, const FindOptions& options, const GrowthCallback& grew = {},
                    const StopCallback& stop = {});

}  // namespace anomalis::flow

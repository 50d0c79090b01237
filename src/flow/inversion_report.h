#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/session.h"
#include "inversion/perform.h"
#include "show/fit_quality.h"

// An inversion from first to last without a window, and what there is to say about it.
namespace anomalis::flow {

struct InvertOptions {
    std::int32_t channel = channel_mag;
    std::int32_t target = target_data;
    InversionMethod method = InversionMethod::least_squares;
    int iterations = inversion::default_iterations;
    int body = 0;  ///< 0 inverts the whole model
    int starts = inversion::default_starts;
    /// In place of what the workspace says; it holds them afterwards.
    std::optional<std::int32_t> regional_degree = {};      ///< of each channel that is fitted
    std::optional<float> mag_noise = {}, grav_noise = {};  ///< nT, mGal, above 0
};

struct ReportedParameter {
    int body = 0;
    int param_code = 0;
    std::string name;
    std::string unit;  ///< "" for a plain number
    float start = 0, final = 0, lower = 0, upper = 0, step = 0;
};

/// What there is to say of a channel that was fitted.
struct ReportedChannel {
    std::int32_t channel = channel_mag;
    std::optional<FittedChannel> fitted;      ///< of a least-squares fit
    std::optional<show::FitQuality> quality;  ///< of the rows afterwards; none for a gradient
    Regional regional;                        ///< in force afterwards
};

struct InversionReport {
    std::string label;
    inversion::RunResult result;
    std::vector<ReportedParameter> parameters;
    std::vector<ReportedChannel> channels;  ///< magnetics first; empty after a refusal
    InversionMethod method = InversionMethod::least_squares;
    std::int32_t target = target_data;
    std::int32_t tap_step = 1;  ///< of the gradient, stations
    double seconds = 0;         ///< of the whole run, with other starts and errors
};

/// Called after each iteration. A stop is asked for by `session.inversion.stop_inversion`, here or in the
/// prompts' `yield`, which runs after each evaluation; the run ends with its iteration, or with
/// `leave_inversion` beside it here and now, with the values of the last accepted step.
using ProgressCallback = std::function<void(const inversion::InversionProgress&)>;

/// Inverts the model of a session whose stations are loaded, with the misfit scale of the inverted channel.
/// A channel without a column gives way to the other one. Ends with all numbers of the session refreshed; the
/// workspace keeps the record of a least-squares fit.
InversionReport run_inversion(Session& session, const InvertOptions& options,
                              const ProgressCallback& progress = {});

}  // namespace anomalis::flow

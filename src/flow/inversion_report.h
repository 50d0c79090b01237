#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/session.h"
#include "inversion/perform.h"

// An inversion from first to last without a window, and what there is to say about it.
namespace anomalis::flow {

struct InvertOptions {
    std::int32_t channel = channel_mag;
    std::int32_t target = target_data;
    inversion::InversionMethod method = inversion::InversionMethod::sweep;
    int iterations = inversion::default_iterations;
    int body = 0;  ///< 0 inverts the whole model
};

struct ReportedParameter {
    int body = 0;
    int param_code = 0;
    std::string name;
    float start = 0, final = 0, lower = 0, upper = 0, step = 0;
};

struct InversionReport {
    std::string label;
    inversion::RunResult result;
    std::vector<ReportedParameter> parameters;
    double seconds = 0;
};

/// Called after each iteration. A stop is asked for by `session.inversion.stop_inversion`, here or in the
/// prompts' `yield`, which runs after each evaluation; the run ends with its iteration.
using ProgressCallback = std::function<void(const inversion::InversionProgress&)>;

/// Inverts the model of a session whose stations are loaded, with the misfit scale of the inverted channel.
/// A channel without a column gives way to the other one. Ends with all numbers of the session refreshed.
InversionReport run_inversion(Session& session, const InvertOptions& options,
                              const ProgressCallback& progress = {});

}  // namespace anomalis::flow

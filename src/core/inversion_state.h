#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/array.h"
#include "core/workspace.h"

namespace anomalis {

/// Data row [0] and gradient row [1].
using MisfitPair = std::array<float, 2>;

enum Target : std::int32_t { target_data = 0, target_gradient = 1 };

/// One free parameter of a run. Singles, as they are compared and stepped.
struct InversionParam {
    float value = 0;
    float lower = 0;
    float upper = 0;
    float step = 0;
};

/// Which body and which parameter a free parameter is.
struct InversionParamPlace {
    std::int32_t body = 0;
    std::int32_t param_code = 0;
    bool operator==(const InversionParamPlace&) const = default;
};

/// What the inversion keeps between runs.
struct InversionState {
    std::int32_t inversion_channel = channel_mag;
    std::int32_t inversion_target = target_data;
    MisfitPair misfit_scale{1.0F, 10.0F};
    std::int32_t fit_station_count = 0;
    Array1<InversionParam> inversion_params;
    Array1<InversionParamPlace> inversion_param_map;
    Array1<float> start_params;
    Array1<float> best_params;
    Array1<InversionParamPlace> best_param_map;
    MisfitPair best_misfit{-99999.0F, -99999.0F};
    bool best_model_available = false;
    bool running = false;  ///< a run goes on before a window, which serves only its stop and a close
    bool stop_inversion = false;
    bool leave_inversion = false;  ///< asked for once more: the run does not even end its iteration
    std::int64_t evaluations = 0;  ///< model evaluations so far
};

/// Forgets the best model: the next run starts the comparison anew.
void forget_best_model(InversionState& inversion);

/// Forgets the best model and empties the list, so that no old value can land in another body. For every
/// read and every change of number, order or type of bodies.
void forget_run(InversionState& inversion);

}  // namespace anomalis

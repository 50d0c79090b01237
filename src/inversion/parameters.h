#pragma once

#include <cstdint>

#include "core/fit_record.h"
#include "inversion/fitted_model.h"

// The flat list of free parameters that the optimisers see, and the way of a value back into its body.
namespace anomalis::inversion {

/// Scans one body for free parameters in their fixed order. Mode 0 counts: `parameter_count` starts at 0.
/// Mode 1 fills `inversion_params` and `inversion_param_map` from index `parameter_count` + 1 on; the arrays
/// must be large enough. `channel` decides whether the magnetic or the density parameters end the list, or
/// both (`channel_joint`). A limit that a body sets stands; the others are those of the method
/// (physical_limits.h), +-1e32 for none.
void setup_body_parameters(int mode, int channel, int body_number, int& parameter_count,
                           const FittedModel& model, InversionMethod method = InversionMethod::sweep);

/// The same over all bodies in their order; in mode 1 with one running index.
void setup_all_body_parameters(int mode, int channel, int& parameter_count, const FittedModel& model,
                               InversionMethod method = InversionMethod::sweep);

/// Writes parameter `index` into its body; nothing happens when the body holds
/// the value already. `penalty` rises to the barrier of the parameter's limits; no decision reads it.
void apply_parameter(int index, double& penalty, const FittedModel& model);

/// `penalty` = 0, then every parameter in order.
void apply_all_parameters(double& penalty, const FittedModel& model);

/// Raises `penalty` to the barrier value of a parameter: 0 at one step from a limit, 10000 at a
/// ten-thousandth of a step.
void barrier_penalty(const BodyParam& param, float step, double& penalty, Faults& faults);

inline float larger_of(float a, float b) {
    return a > b ? a : b;
}
/// Decimal logarithm of |x|, 0 for 0.
double log10_abs(double x);

}  // namespace anomalis::inversion

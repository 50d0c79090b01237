#pragma once

#include "forward/body_job.h"

namespace anomalis::forward {

/// Fills column 1 with the anomaly (nT) of an endless straight current along strike, or of a pair with
/// opposite currents. `susc` is the current in mA, `offset` the separation of the pair (0 for a single wire),
/// `dip` its turn: 0 stands the pair upright, 90 lays it side by side. The anomaly is the difference of the
/// strengths of the whole field, not a projection; its rounding is that of singles of the anomaly itself.
void fill_wire(const BodyJob& job);

}  // namespace anomalis::forward

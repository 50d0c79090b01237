#pragma once

#include "forward/body_job.h"

namespace anomalis::forward {

/// Fills column 1 with the anomaly (nT) of a strike-limited thick sheet: the exact field of its prism,
/// without demagnetisation. With a negative `include_demagnetisation`, which only a file can say, face by
/// face through columns 3 to 5 instead. Rebuilds the moment of the body in north, east, down.
void fill_prism(const BodyJob& job);

/// Fills column 1 with the anomaly (nT) of a pipe of limited length, demagnetised when
/// `include_demagnetisation` is not 0. Where `attraction_too` its gravity is found in the same pass and stays
/// in the memory of the job: true then.
bool fill_pipe(const BodyJob& job, bool attraction_too);

/// Fills column 2 with the gravity (mGal) of a pipe, which may have been found with the anomaly.
void fill_pipe_gravity(const BodyJob& job, bool found);

}  // namespace anomalis::forward

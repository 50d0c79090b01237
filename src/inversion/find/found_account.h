#pragma once

#include "core/pacer.h"
#include "inversion/find/find_bodies.h"
#include "inversion/find/line_fit.h"
#include "inversion/find/model_trials.h"

namespace anomalis::inversion {

/// The model as it is proposed, its new bodies by distance, named and free as new ones are; without a record.
FoundModel found_model(const LineFit& line, const JudgedModel& judged);

/// Gives the model its record: errors, intervals, regionals, noise, as a fit has them. The intervals are
/// those of the columns alone. Raises Stopped.
void give_record(const LineFit& line, const FindRequest& request, FoundModel& model, Pacer& pacer);

}  // namespace anomalis::inversion

#pragma once

#include "inversion/find/find_bodies.h"
#include "inversion/find/model_growth.h"

namespace anomalis::inversion {

/// The model as it is proposed, its new bodies by distance, named and free as new ones are; without a record.
FoundModel found_model(const LineFit& line, const JudgedModel& judged);

}  // namespace anomalis::inversion

#pragma once

#include "core/model_body.h"

namespace anomalis {

/// The body's responses count as out of date, for tests of calculations that nobody compares the fields for.
inline void invalidate_body(ModelBody& body) {
    body.mag_response_valid = body.grav_response_valid = false;
}

}  // namespace anomalis

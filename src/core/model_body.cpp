#include "core/model_body.h"

namespace anomalis {

void invalidate_body(ModelBody& body) {
    body.last_calculated = -1.0F;
    body.mag_response_valid = false;
    body.grav_response_valid = false;
}

}  // namespace anomalis

#include "output/body_place.h"

#include <cmath>

#include "core/angles.h"
#include "core/model_body.h"

namespace anomalis::output {

BodyPlace body_place(const ModelBody& body) {
    const double strike = body.strike.value * radians_per_degree;
    const double sine = std::sin(strike);
    const double cosine = std::cos(strike);
    const double half_width = body.width.value / 2.0;
    const double along = body.offset.value;
    return {body.east + cosine * half_width + sine * along, body.north - sine * half_width + cosine * along};
}

}  // namespace anomalis::output

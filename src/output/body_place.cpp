#include "output/body_place.h"

#include <cmath>

#include "core/angles.h"
#include "core/body_types.h"
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

BodyPlace top_place(const ModelBody& body) {
    if (is_tabular(body.type)) return body_place(body);
    const double strike = body.strike.value * radians_per_degree;
    return {body.east + std::sin(strike) * body.offset.value,
            body.north + std::cos(strike) * body.offset.value};
}

}  // namespace anomalis::output

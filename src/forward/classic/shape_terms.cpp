#include "forward/classic/shape_terms.h"

#include <cmath>

namespace anomalis::forward {

namespace {

ShapeTerms of_unit_magnetisation(const ModelBody& body, double strike_sine) {
    if (body.type == sphere) return {body.coef_a, body.coef_b, body.coef_c};
    const double a = body.coef_a, b = body.coef_b;
    const double c = body.cos_dip, s = body.sin_dip;
    if (strike_sine > 0) return {-2 * a * c + b * s, -2 * a * s - b * c, 0};
    return {2 * a * c + b * s, -2 * a * s + b * c, 0};
}

}  // namespace

double ShapeTerms::size() const {
    return std::abs(p) + std::abs(q) + std::abs(r);
}

ShapeTerms shape_terms(const ModelBody& body, double strike_sine) {
    const ShapeTerms unit = of_unit_magnetisation(body, strike_sine);
    const double j = body.last_calculated;
    return {unit.p * j, unit.q * j, unit.r * j};
}

}  // namespace anomalis::forward

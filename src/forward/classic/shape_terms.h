#pragma once

#include "core/model_body.h"

namespace anomalis::forward {

/// The factors of the closed formulae in the plane across strike, in nT.
struct ShapeTerms {
    double p = 0, q = 0, r = 0;

    double size() const;
};

/// Shape terms from the coefficients of the body, times its magnetisation. `strike_sine` is the sine of the
/// strike against the profile: its sign tells to which side the body dips.
ShapeTerms shape_terms(const ModelBody& body, double strike_sine);

/// Shape terms below this in size give no response.
inline constexpr double least_shape_terms = 0.000001;

}  // namespace anomalis::forward

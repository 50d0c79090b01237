#pragma once

#include <string>

#include "core/fit_record.h"

// What a fit says of a parameter, in digits that its interval is worth.
namespace anomalis::edit {

/// Behind a value: "±10", "-4 +12" when the sides differ by more than a fifth, "<140", ">35", "±?" for one
/// that the data leave open, "at limit".
std::string interval_mark(const FittedParameter& parameter);

/// With its numbers in another unit: `factor` of that is one of the present.
FittedParameter in_unit(FittedParameter parameter, double factor);

/// In words: "247 to 268", "below 140", "above 35", "not determined", "held by its limit".
std::string interval_words(const FittedParameter& parameter);

}  // namespace anomalis::edit

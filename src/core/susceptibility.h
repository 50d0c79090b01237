#pragma once

#include <numbers>
#include <string_view>

#include "core/preferences.h"

namespace anomalis {

/// The unit as it stands behind a number.
constexpr std::string_view unit_name(SusceptibilityUnit unit) {
    switch (unit) {
        case SusceptibilityUnit::si:
            return "SI";
        case SusceptibilityUnit::cgs:
            return "cgs";
        default:
            return "µSI";
    }
}

/// A susceptibility of 1 micro SI in the unit. A volume susceptibility in cgs is that in SI over 4 pi.
constexpr double of_micro_si(SusceptibilityUnit unit) {
    constexpr double si = 1e-6;
    switch (unit) {
        case SusceptibilityUnit::si:
            return si;
        case SusceptibilityUnit::cgs:
            return si / (4 * std::numbers::pi);
        default:
            return 1;
    }
}

/// Digits of a tenth of a micro SI, as a pattern of `format_number`.
constexpr std::string_view number_format(SusceptibilityUnit unit) {
    switch (unit) {
        case SusceptibilityUnit::si:
            return "0.0######";
        case SusceptibilityUnit::cgs:
            return "0.0########";
        default:
            return "0.0";
    }
}

}  // namespace anomalis

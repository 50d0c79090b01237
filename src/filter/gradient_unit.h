#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace anomalis::filter {

/// The unit of a gradient row: data units over the distance of the filter's taps, whatever that is in metres.
/// "nT per station", or "nT per 3 stations" of taps so far apart.
inline std::string gradient_unit(std::string_view data_unit, std::int32_t tap_step) {
    const std::string unit(data_unit);
    return tap_step == 1 ? unit + " per station" : unit + " per " + std::to_string(tap_step) + " stations";
}

}  // namespace anomalis::filter

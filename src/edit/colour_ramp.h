#pragma once

#include <cstdint>

namespace anomalis::edit {

/// The colour of a part from 0 (low, dark violet) to 1 (high, yellow) as blue, green, red bytes, high to low;
/// parts outside are held to the ends.
///
/// The ramp is viridis (S. van der Walt and N. Smith, 2015): even steps look even, lightness rises all the
/// way so that it reads in grey too, and people with any of the common colour deficiencies see its order.
std::int32_t ramp_colour(double part);

}  // namespace anomalis::edit

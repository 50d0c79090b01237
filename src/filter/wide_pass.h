#pragma once

#include <span>

#include "filter/filters.h"

// A filter pass at a cost that does not grow with the width of the kernel. Private to this room.
namespace anomalis::filter {

/// A pass with a kernel of code 2, 3 or 100 to 104 and a tap step above 0 over a row whose ends are extended
/// by reach * tap_step values on both sides. Gives the filtered values in doubles, `pass.station_count` of
/// them, in memory of `scratch`. Codes 2 and 3 take their inner taps from `scratch.coefficients`.
/// Off by less than 1e-8 of each tap times its value; the taps of codes 100 to 103, and those of codes 2 and
/// 3 beyond the 64th, are not rounded to singles. Lets Stopped through.
std::span<const double> wide_pass(const FilterPass& pass, int reach, const double* input,
                                  FilterScratch& scratch, Pacer& pacer);

}  // namespace anomalis::filter

#pragma once

#include <complex>
#include <cstddef>
#include <span>

#include "core/pacer.h"

// Sums under a window that moves along a row, at a cost that does not grow with the window. Private to this
// room.
namespace anomalis::filter {

/// One term of a kernel: tap m of it is the real part of weight * base^m, 0 < |base| <= 1. A constant has
/// the base 1, a cosine a base on the unit circle, a tap that fades a real base below 1.
struct PowerTerm {
    std::complex<double> weight = 1;
    std::complex<double> base = 1;
};

/// Adds to out[k] the sum over the terms and over m = 0 ... window - 1 of tap m times in[k + m]; `in` holds
/// out.size() + window - 1 values. Nothing is ever taken off a sum again, so rounding does not pile up along
/// the row (relative to the largest tap below 1e-16 times the window), and what stands outside a window, be
/// it infinite, leaves the window's sum alone to the bit. Terms of four are reckoned side by side.
/// Tells `pacer` of its work by whole windows, of which a piece holds at least one.
void add_window_sums(std::span<const PowerTerm> terms, std::size_t window, std::span<const double> in,
                     std::span<double> out, Pacer& pacer = no_pace());

}  // namespace anomalis::filter

#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "filter/window_sums.h"

// The kernels as sums of a few terms each, so that a pass need not visit every tap. Private to this room.
namespace anomalis::filter {

/// A handful of terms without an allocation.
class TermList {
  public:
    void add(const PowerTerm& term) { terms_.at(count_++) = term; }
    std::span<const PowerTerm> span() const { return std::span(terms_).first(count_); }

  private:
    std::array<PowerTerm, 96> terms_;
    std::size_t count_ = 0;
};

/// Triangular, Sinc^2, Hanning, Hamming and Boxcar of a half-width, cut where the row ends.
struct SmoothingKernel {
    TermList terms;          ///< tap m is the one at distance m - reach
    double triangle = 0;     ///< and with it (reach + 1 - |distance|) times this
    double centre = 0;       ///< what the centre tap has beyond the terms
    double taps_beyond = 0;  ///< sum of the taps of one side beyond `reach`
};

/// `reach` taps of each side see the row, at most `half_width`. The taps are those of
/// `define_filter_coefficients` up to their rounding: cosines in closed form, Sinc^2 as the mean of
/// cos(2 t x) over 0 <= t <= 1 weighted with 2 (1 - t), by Gauss and Legendre with ten nodes (off by 5e-15 of
/// the largest tap).
SmoothingKernel smoothing_kernel(int filter_code, int half_width, int reach);

/// 1 / j squared for j = first, first + 2, ... up to `last`; with `alternating` every second one is negative.
/// From the integral of t exp(-j t) over 0 < t by the trapezoid rule in log t, off by 1e-8 of each tap.
TermList inverse_square_terms(int first, int last, bool alternating);

/// Sum of the taps of the vertical gradient at distances beyond `inner` up to `half_width`, one side, by the
/// midpoint rule (exact to 1e-15 beyond the tens of thousands of taps that are stored).
double vertical_gradient_taps_beyond(double inner, double half_width);

}  // namespace anomalis::filter

#include "filter/wide_pass.h"

#include <algorithm>
#include <cstddef>

#include "core/angles.h"
#include "filter/filter_work.h"
#include "filter/wide_kernels.h"

namespace anomalis::filter {

namespace {

/// Stations or values from station to station, forwards or backwards.
using Distance = std::ptrdiff_t;

/// One pass at work: the row with its ends extended, and the sums that grow.
struct WidePass {
    const double* input;
    Distance stations;
    std::span<double> sums;
    FilterScratch& scratch;
    Pacer& pacer;

    void row_done() const { pacer.done(row_units * static_cast<double>(stations)); }
};

/// Taps in a row, `stride` stations apart, the first of them `first` stations away.
struct TapRow {
    Distance first;
    Distance stride;  ///< negative: from the station to the left
    std::size_t taps;
};

/// Calls add(in, out) for the stations of each residue by the stride: to out[k] belong in[k], in[k + 1], ...
/// Along a stride of 1 they stand side by side already.
template <class Add>
void for_each_phase(const WidePass& pass, const TapRow& row, Add&& add) {
    if (row.stride == 1)
        return add(std::span(pass.input + row.first, pass.sums.size() + row.taps - 1), pass.sums);
    const Distance width = std::abs(row.stride);
    for (Distance phase = 0; phase < std::min(width, pass.stations); ++phase) {
        const Distance count = (pass.stations - 1 - phase) / width + 1;
        const Distance start = row.stride > 0 ? phase : phase + (count - 1) * width;
        pass.scratch.phase.resize(static_cast<std::size_t>(count) + row.taps - 1);
        const double* from = pass.input + start + row.first;
        for (std::size_t k = 0; k < pass.scratch.phase.size(); ++k)
            pass.scratch.phase[k] = from[static_cast<Distance>(k) * row.stride];
        pass.scratch.phase_sums.assign(static_cast<std::size_t>(count), 0.0);
        add(std::span<const double>(pass.scratch.phase), std::span(pass.scratch.phase_sums));
        double* const to = pass.sums.data() + start;
        for (Distance k = 0; k < count; ++k)
            to[k * row.stride] += pass.scratch.phase_sums[static_cast<std::size_t>(k)];
        pass.pacer.done(row_units * static_cast<double>(pass.scratch.phase.size()));
    }
}

/// A triangle is a boxcar over a boxcar.
void add_triangle(double scale, std::size_t width, std::span<const double> in, std::span<double> out,
                  std::vector<double>& boxcar, Pacer& pacer) {
    boxcar.assign(out.size() + width - 1, 0.0);
    add_window_sums({{PowerTerm{}}}, width, in, boxcar, pacer);
    const PowerTerm term{.weight = scale};
    add_window_sums({&term, 1}, width, boxcar, out, pacer);
}

void add_smoothing(const WidePass& work, const FilterPass& pass, int reach, double end_pair) {
    const SmoothingKernel kernel = smoothing_kernel(pass.filter_code, pass.half_width, reach);
    const double outer = kernel.taps_beyond * end_pair;
    for (std::size_t i = 0; i < work.sums.size(); ++i) work.sums[i] = kernel.centre * work.input[i] + outer;
    work.row_done();
    const Distance step = pass.tap_step;
    const TapRow row{-reach * step, step, 2 * static_cast<std::size_t>(reach) + 1};
    for_each_phase(work, row, [&](std::span<const double> in, std::span<double> out) {
        add_window_sums(kernel.terms.span(), row.taps, in, out, work.pacer);
        if (kernel.triangle != 0)
            add_triangle(kernel.triangle, static_cast<std::size_t>(reach) + 1, in, out, work.scratch.boxcar,
                         work.pacer);
    });
}

/// Taps that are added one by one: the largest, whose rounding to singles shows in the result.
constexpr int inner_taps = 64;

/// Sum of the taps of one side that see the end values alone.
double gradient_beyond(const FilterPass& pass, int reach, const FilterScratch& scratch) {
    const auto stored = scratch.coefficients.size() - 1;
    if (static_cast<std::size_t>(reach) >= stored)
        return pass.filter_code == filter_vertical_gradient
                   ? vertical_gradient_taps_beyond(reach, pass.half_width)
                   : 0.0;
    double sum = scratch.tail_sum;
    for (std::size_t j = static_cast<std::size_t>(reach) + 1; j <= stored; ++j)
        sum += static_cast<double>(scratch.coefficients[j]);
    return sum;
}

void add_gradient(const WidePass& work, const FilterPass& pass, int reach, double end_pair) {
    const bool odd = pass.filter_code == filter_horizontal_derivative;
    const double left_sign = odd ? -1 : 1;
    const auto tap = [&](int j) {
        return static_cast<double>(work.scratch.coefficients[static_cast<std::size_t>(j)]);
    };
    const Distance step = pass.tap_step;
    const double outer = gradient_beyond(pass, reach, work.scratch) * end_pair;
    for (std::size_t i = 0; i < work.sums.size(); ++i) work.sums[i] = tap(0) * work.input[i] + outer;
    for (int j = 1; j <= std::min(inner_taps, reach); j += 2) {
        const double *const right = work.input + j * step, *const left = work.input - j * step;
        const double own = tap(j), other = left_sign * own;
        for (std::size_t i = 0; i < work.sums.size(); ++i) work.sums[i] += own * right[i] + other * left[i];
        work.row_done();
    }
    constexpr int first = inner_taps + 1;
    if (reach < first) return;
    const int last = reach - (reach - first) % 2;
    const double scale = odd ? (first % 4 == 1 ? 2 / pi : -2 / pi) : -2 / pi;
    const TermList shape = inverse_square_terms(first, last, odd);
    const auto taps = static_cast<std::size_t>(last - first) / 2 + 1;
    for (const Distance side : {1, -1}) {
        TermList terms;
        for (PowerTerm term : shape.span()) {
            term.weight *= side > 0 ? scale : scale * left_sign;
            terms.add(term);
        }
        for_each_phase(work, {side * first * step, side * 2 * step, taps},
                       [&](std::span<const double> in, std::span<double> out) {
                           add_window_sums(terms.span(), taps, in, out, work.pacer);
                       });
    }
}

}  // namespace

std::span<const double> wide_pass(const FilterPass& pass, int reach, const double* input,
                                  FilterScratch& scratch, Pacer& pacer) {
    scratch.sums.resize(static_cast<std::size_t>(pass.station_count));
    const WidePass work{input, pass.station_count, scratch.sums, scratch, pacer};
    const double front = input[0], back = input[pass.station_count - 1];
    if (pass.filter_code == filter_horizontal_derivative) {
        add_gradient(work, pass, reach, back - front);
    } else if (pass.filter_code == filter_vertical_gradient) {
        add_gradient(work, pass, reach, front + back);
    } else {
        add_smoothing(work, pass, reach, front + back);
    }
    return scratch.sums;
}

}  // namespace anomalis::filter

#include "filter/window_sums.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "filter/filter_work.h"
#include "filter/window_kernel.h"

namespace anomalis::filter {

namespace {

/// Base to the power at which a tap is too small to be seen beside the others of its kernel.
constexpr double faded = 1e-25;

std::size_t window_until_faded(std::span<const PowerTerm> terms, std::size_t window) {
    double slowest = 0;
    for (const PowerTerm& term : terms) slowest = std::max(slowest, std::abs(term.base));
    if (slowest >= 1) return window;
    const double taps = std::ceil(std::log(faded) / std::log(slowest)) + 1;
    return taps < static_cast<double>(window) ? static_cast<std::size_t>(taps) : window;
}

/// Terms that fade at such different rates that the fastest would leave the range of numbers where the
/// slowest can still be seen do not go side by side.
std::size_t terms_side_by_side(std::span<const PowerTerm> terms, std::size_t window) {
    constexpr double smallest = 1e-250;
    const auto fit = [&](std::span<const PowerTerm> some) {
        const auto last = static_cast<double>(window_until_faded(some, window) - 1);
        return std::all_of(some.begin(), some.end(), [&](const PowerTerm& term) {
            return std::pow(std::abs(term.base), last) > smallest;
        });
    };
    std::size_t count = 1;
    while (count < std::min(terms.size(), side_by_side) && fit(terms.first(count + 1))) ++count;
    return count;
}

void set(FourNumbers& numbers, std::size_t place, std::complex<double> value) {
    numbers.re[place] = value.real();
    numbers.im[place] = value.imag();
}

constexpr auto values_a_piece = static_cast<std::size_t>(piece_units / window_units);

TermGroup group_of(std::span<const PowerTerm> terms, std::size_t window) {
    TermGroup group{};
    group.window = window_until_faded(terms, window);
    const auto last = static_cast<double>(group.window - 1);
    for (std::size_t place = 0; place < side_by_side; ++place) {
        const PowerTerm term = place < terms.size() ? terms[place] : PowerTerm{.weight = 0};
        set(group.weight, place, term.weight);
        set(group.base, place, term.base);
        set(group.inverse, place, 1.0 / term.base);
        set(group.last, place,
            term.weight * std::polar(std::pow(std::abs(term.base), last), std::arg(term.base) * last));
    }
    return group;
}

}  // namespace

void add_window_sums(std::span<const PowerTerm> terms, std::size_t window, std::span<const double> in,
                     std::span<double> out, Pacer& pacer) {
    if (window == 0 || out.empty()) return;
    assert(in.size() >= out.size() + window - 1);
    const bool real = std::all_of(terms.begin(), terms.end(), [](const PowerTerm& term) {
        return term.base.imag() == 0 && term.weight.imag() == 0;
    });
    const auto level = vector::widest_vector_level();
    const auto add = real ? add_real_windows_at(level) : add_complex_windows_at(level);
    while (!terms.empty()) {
        const std::size_t count = terms_side_by_side(terms, window);
        const TermGroup group = group_of(terms.first(count), window);
        // Pieces end where a window's own blocks end, so that they change no bit.
        const std::size_t windows = std::max<std::size_t>(1, values_a_piece / group.window);
        for (std::size_t at = 0; at < out.size(); at += windows * group.window) {
            const std::size_t piece = std::min(windows * group.window, out.size() - at);
            add(group, in.data() + at, out.data() + at, piece);
            pacer.done(window_units * static_cast<double>(std::max(piece, group.window)));
        }
        terms = terms.subspan(count);
    }
}

}  // namespace anomalis::filter

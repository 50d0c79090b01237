#include "survey/map/results_map_scales.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/tick_rule.h"
#include "core/numbers.h"
#include "edit/colour_ramp.h"
#include "show/map_colours.h"
#include "show/map_parts.h"

namespace anomalis::survey {

namespace {

struct ScaleEnds {
    double low = 0, high = 0;
};

/// Lest a few strange ones take the whole scale.
ScaleEnds usual_ends(std::vector<double>& values) {
    constexpr std::size_t many = 50;
    constexpr double low_part = 0.02, high_part = 0.98;
    const auto [least, greatest] = std::ranges::minmax(values);
    if (values.size() < many) return {least, greatest};
    return {show::part_of(values, low_part), show::part_of(values, high_part)};
}

constexpr std::array<double, 3> round_steps{1, 2, 5};

/// Of 1, 2, 5 times the powers of ten: the greatest that is not above a value. Its number counts them.
int round_number_below(double value) {
    const auto decade = static_cast<int>(std::floor(std::log10(value)));
    const double power = std::pow(10, decade);
    int step = 0;
    while (step + 1 < 3 && round_steps.at(static_cast<std::size_t>(step + 1)) * power <= value * (1 + 1e-9))
        ++step;
    return 3 * decade + step;
}

double round_number(int number) {
    const int decade = number >= 0 ? number / 3 : -((2 - number) / 3);
    return round_steps.at(static_cast<std::size_t>(number - 3 * decade)) * std::pow(10, decade);
}

int round_number_above(double value) {
    const int below = round_number_below(value);
    return round_number(below) >= value * (1 - 1e-9) ? below : below + 1;
}

void note_beyond(const std::vector<double>& values, double low, double high, bool& under, bool& over) {
    const double little = 1e-9 * (std::abs(low) + std::abs(high));
    under = std::ranges::any_of(values, [&](double value) { return value < low - little; });
    over = std::ranges::any_of(values, [&](double value) { return value > high + little; });
}

void take_logarithmic(DepthScale& scale, ScaleEnds ends) {
    constexpr int most_ticks = 7;
    const int first = round_number_below(ends.low), last = round_number_above(ends.high);
    scale.logarithmic = true;
    scale.low = round_number(first);
    scale.high = round_number(last);
    const bool all = last - first < most_ticks;
    for (int i = first; i <= last; ++i)
        if (all || i == first || i == last || i % 3 == 0) scale.ticks.push_back(round_number(i));
}

void take_linear(DepthScale& scale, ScaleEnds ends) {
    constexpr int intervals = 5;
    if (!(ends.high > ends.low)) {
        const double more = std::max(0.1 * std::abs(ends.high), 0.5);
        ends = {ends.low - more, ends.high + more};
    }
    const chart::TickLimits limits = chart::outward_tick_limits(ends.low, ends.high, intervals);
    scale.low = limits.low;
    scale.high = limits.high;
    const auto steps = std::lround((limits.high - limits.low) / limits.interval);
    for (long i = 0; i <= steps; ++i)
        scale.ticks.push_back(limits.low + static_cast<double>(i) * limits.interval);
}

}  // namespace

double DepthScale::part(double depth) const {
    if (!logarithmic) return std::clamp((depth - low) / (high - low), 0.0, 1.0);
    if (depth <= low) return 0;
    return std::clamp(std::log(depth / low) / std::log(high / low), 0.0, 1.0);
}

DepthScale depth_scale(std::vector<double> depths) {
    constexpr double far_apart = 20, least_part = 1e-4;
    std::erase_if(depths, [](double depth) { return !std::isfinite(depth); });
    DepthScale scale;
    if (depths.empty()) {
        scale.ticks = {0, 1};
        return scale;
    }
    const ScaleEnds ends = usual_ends(depths);
    const bool wide = ends.high > 0 && ends.high > far_apart * ends.low && depths.size() > 2;
    std::vector<double> below = depths;
    std::erase_if(below, [&](double depth) { return depth <= least_part * ends.high; });
    // Bodies that reach the surface have no logarithm; those below it tell how far apart depths are.
    const ScaleEnds inner = wide && !below.empty() ? usual_ends(below) : ends;
    if (wide && inner.low > 0 && inner.high > far_apart * inner.low)
        take_logarithmic(scale, inner);
    else
        take_linear(scale, ends);
    note_beyond(depths, scale.low, scale.high, scale.under, scale.over);
    return scale;
}

chart::Colour depth_shade(int shade) {
    return edit::ramp_colour(1 - static_cast<double>(shade) / (depth_shades - 1));
}

chart::Colour depth_colour(double depth, const DepthScale& scale) {
    if (!std::isfinite(depth)) return show::no_value_grey;
    return depth_shade(static_cast<int>(std::lround(scale.part(depth) * (depth_shades - 1))));
}

double SizeScale::part(double value) const {
    constexpr double least = 0.4, steps = 6;
    if (!(value > low)) return least;
    const double own = std::min(std::log(value / low) / std::log(high / low), 1.0);
    return least + (1 - least) * std::round(own * steps) / steps;
}

SizeScale size_scale(std::vector<double> values) {
    std::erase_if(values, [](double value) { return !std::isfinite(value) || value <= 0; });
    SizeScale scale;
    if (values.empty()) {
        scale.samples = {};
        return scale;
    }
    const ScaleEnds ends = usual_ends(values);
    int first = round_number_below(ends.low), last = round_number_above(ends.high);
    if (last == first) {
        --first;
        ++last;
    }
    scale.low = round_number(first);
    scale.high = round_number(last);
    scale.samples = {scale.low, scale.high};
    if (last - first > 1) scale.samples = {scale.low, round_number((first + last) / 2), scale.high};
    note_beyond(values, scale.low, scale.high, scale.under, scale.over);
    return scale;
}

std::string scale_number(double value) {
    return format_number(value, "0.######");
}

}  // namespace anomalis::survey

#include "inversion/noise.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "core/gaps.h"
#include "core/workspace.h"

namespace anomalis::inversion {

namespace {

constexpr std::size_t least_readings = 10;
constexpr int first_order = 3, last_order = 6;
/// What lies beyond so many standard deviations is no noise.
constexpr double clip = 3;
/// Variance of a normal number that lies inside the clip: 1 - 2 c phi(c) / (2 Phi(c) - 1).
constexpr double clipped_variance = 0.97334;
/// Median of the size of a normal number, as a part of its standard deviation.
constexpr double median_size = 0.67449;
constexpr int most_rounds = 30;

std::vector<double> finite(std::span<const double> readings) {
    std::vector<double> values;
    for (const double value : readings)
        if (std::isfinite(value)) values.push_back(value);
    return values;
}

/// Divided so that white noise keeps its standard deviation; none of fewer values than it takes.
std::vector<double> differences(std::vector<double> values, int order) {
    if (values.size() <= static_cast<std::size_t>(order)) return {};
    double squares = 1;  // sum of the squared binomials: the middle binomial of 2 n
    for (int k = 1; k <= order; ++k) {
        for (std::size_t i = 0; i + 1 < values.size(); ++i) values[i] = values[i + 1] - values[i];
        values.pop_back();
        squares *= 2.0 * (2 * k - 1) / k;
    }
    for (double& value : values) value = std::abs(value) / std::sqrt(squares);
    return values;
}

/// Standard deviation from sizes, most of which are normal.
double clipped_deviation(std::vector<double> sizes, double least) {
    const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
    std::nth_element(sizes.begin(), middle, sizes.end());
    double deviation = std::max(*middle / median_size, least);
    for (int round = 0; round < most_rounds; ++round) {
        double sum = 0, count = 0;
        for (const double size : sizes) {
            if (size > clip * deviation) continue;
            sum += size * size;
            count += 1;
        }
        const double next = count > 0 ? std::sqrt(sum / count / clipped_variance) : 0;
        if (!(std::abs(next - deviation) > 1e-3 * deviation)) break;
        deviation = std::max(next, least);
    }
    return deviation;
}

/// Whether all values are whole multiples of the step from the least one, as far as single precision keeps
/// them.
bool all_multiples(const std::vector<double>& sorted, double step) {
    return std::ranges::all_of(sorted, [&](double value) {
        const double off = (value - sorted.front()) / step;
        const double blur = 2.0 * static_cast<double>(std::numeric_limits<float>::epsilon()) *
                            std::max(std::abs(value), std::abs(sorted.front())) / step;
        return std::abs(off - std::round(off)) <= std::max(blur, 1e-6) && blur < 0.25;
    });
}

}  // namespace

double reading_step(std::span<const double> readings) {
    std::vector<double> sorted = finite(readings);
    std::ranges::sort(sorted);
    if (sorted.empty()) return 0;
    const double blur = 2.0 * static_cast<double>(std::numeric_limits<float>::epsilon()) *
                        std::max(std::abs(sorted.front()), std::abs(sorted.back()));
    double step = 0;
    std::size_t shared = 0;
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        const double gap = sorted[i] - sorted[i - 1];
        if (gap <= blur) {
            ++shared;
        } else {
            step = step == 0 ? gap : std::min(step, gap);
        }
    }
    if (step == 0 || shared * 20 < sorted.size()) return 0;
    // The least gap is blurred; the step is a short decimal, or the gap itself.
    const double power = std::pow(10.0, std::floor(std::log10(step)) - 1);
    const double short_step = std::round(step / power) * power;
    if (all_multiples(sorted, short_step)) return short_step;
    return all_multiples(sorted, step) ? step : 0;
}

double estimate_noise(std::span<const double> readings) {
    const std::vector<double> whole(readings.begin(), readings.end());
    return estimate_stretches_noise(std::span(&whole, 1));
}

double estimate_stretches_noise(std::span<const std::vector<double>> stretches) {
    std::vector<double> all;
    std::vector<std::vector<double>> values;
    for (const std::vector<double>& stretch : stretches) {
        values.push_back(finite(stretch));
        all.insert(all.end(), values.back().begin(), values.back().end());
    }
    if (all.size() < least_readings) return 0;
    const double least = reading_step(all) / std::sqrt(12.0);
    double noise = std::numeric_limits<double>::infinity();
    for (int order = first_order; order <= last_order; ++order) {
        std::vector<double> sizes;
        for (const std::vector<double>& stretch : values)
            std::ranges::copy(differences(stretch, order), std::back_inserter(sizes));
        if (!sizes.empty()) noise = std::min(noise, clipped_deviation(std::move(sizes), least));
    }
    return std::isfinite(noise) ? noise : 0;
}

double noise_of_readings(const Workspace& workspace, int channel, int first, int last) {
    std::vector<std::vector<double>> stretches;
    for (const Stretch& stretch : channel_stretches(workspace, channel)) {
        std::vector<double>& readings = stretches.emplace_back();
        for (const int station : reading_stations(workspace, channel, std::max(stretch.first, first),
                                                  std::min(stretch.last, last)))
            readings.push_back(static_cast<double>(
                workspace.channel(channel).data(station, workspace.raw_row, stage_observed)));
    }
    return estimate_stretches_noise(stretches);
}

}  // namespace anomalis::inversion

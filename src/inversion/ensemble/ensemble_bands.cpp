#include "inversion/ensemble/ensemble_bands.h"

#include <algorithm>
#include <cmath>

namespace anomalis::inversion {

namespace {

constexpr double outside = 0.05;  // of the models, on each side
constexpr double open = EnsembleParameter::open;

const FittedParameter* fitted_of(const FitRecord& record, const InversionParamPlace& place) {
    for (const FittedParameter& fitted : record.parameters)
        if (fitted.body == place.body && fitted.param_code == place.param_code) return &fitted;
    return nullptr;
}

bool on_limit(double value, float limit) {
    constexpr double near = 1e-5;
    const auto there = static_cast<double>(limit);
    return std::abs(limit) < no_limit && std::abs(value - there) <= near * std::max(std::abs(there), 1e-3);
}

void open_where_told(const FitParameter& parameter, const FittedParameter& fitted, EnsembleParameter& band) {
    band.profile_lower = fitted.lower;
    band.profile_upper = fitted.upper;
    const OpenSides told = open_sides(fitted);
    if (told.below || on_limit(band.lower, parameter.lower)) band.lower = open;
    if (told.above || on_limit(band.upper, parameter.upper)) band.upper = open;
}

}  // namespace

OpenSides open_sides(const FittedParameter& fitted) {
    const bool told = std::isfinite(fitted.error) || fitted.undetermined;
    OpenSides open{told && std::isnan(fitted.lower), told && std::isnan(fitted.upper)};
    if (open.below != open.above) open.bound = open.below ? fitted.upper : fitted.lower;
    return open;
}

double quantile(std::span<double> values, double part) {
    if (values.empty()) return open;
    const auto count = static_cast<double>(values.size());
    const double place = std::clamp(part * (count + 1) - 1, 0.0, count - 1);
    const auto below = static_cast<std::size_t>(place);
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(below);
    std::ranges::nth_element(values, at);
    const double first = *at;
    if (below + 1 >= values.size()) return first;
    const double next = *std::ranges::min_element(at + 1, values.end());
    return first + (place - static_cast<double>(below)) * (next - first);
}

std::vector<EnsembleParameter> parameter_bands(const ModelVariant& first, const FitRecord& record,
                                               std::span<const EnsembleSample> samples) {
    std::vector<EnsembleParameter> bands;
    for (std::size_t i = 0; i < first.parameters.size(); ++i) {
        const InversionParamPlace& place = first.rows->request().places[i];
        EnsembleParameter& band = bands.emplace_back();
        band.body = place.body;
        band.param_code = place.param_code;
        band.value = first.parameters[i].value;
        std::vector<double> values;
        for (const EnsembleSample& sample : samples)
            if (!std::isnan(sample.values[i])) values.push_back(sample.values[i]);
        band.lower = quantile(values, outside);
        band.median = quantile(values, 0.5);
        band.upper = quantile(values, 1 - outside);
        const FittedParameter* fitted = fitted_of(record, place);
        if (fitted && !first.drawn[i]) open_where_told(first.parameters[i], *fitted, band);
    }
    return bands;
}

EnsembleFan fan_of(std::span<const SampleRefit* const> samples, std::size_t channel_index,
                   std::int32_t channel, std::span<const std::int32_t> stations) {
    EnsembleFan fan{.channel = channel, .first_station = stations.front(), .lower = {}, .upper = {}};
    std::vector<const std::vector<float>*> curves;
    for (const SampleRefit* sample : samples)
        if (channel_index < sample->curves.size()) curves.push_back(&sample->curves[channel_index]);
    if (curves.empty()) return fan;
    const auto count = static_cast<std::size_t>(stations.back() - stations.front()) + 1;
    fan.lower.assign(count, empty_high);
    fan.upper.assign(count, empty_high);
    std::vector<double> values(curves.size());
    for (std::size_t row = 0; row < curves.front()->size(); ++row) {
        std::ranges::transform(curves, values.begin(), [row](const std::vector<float>* curve) {
            return static_cast<double>((*curve)[row]);
        });
        const auto place = static_cast<std::size_t>(stations[row] - stations.front());
        fan.lower[place] = static_cast<float>(quantile(values, outside));
        fan.upper[place] = static_cast<float>(quantile(values, 1 - outside));
    }
    return fan;
}

}  // namespace anomalis::inversion

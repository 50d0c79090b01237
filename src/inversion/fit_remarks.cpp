#include "inversion/fit_remarks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/numbers.h"

namespace anomalis::inversion {

namespace {

/// Root mean square of the residuals, in units of the noise, beyond which the keyed noise is doubted.
constexpr double far_from_noise = 1.5;
constexpr double strong_correlation = 0.95;
constexpr std::size_t most_pairs = 5;

std::string name_of(const ChannelFit& channel) {
    return channel.channel == channel_grav ? "gravity" : "magnetics";
}

/// Two digits.
std::string rounded(double value) {
    if (!(value > 0)) return "0";
    const double power = std::pow(10.0, std::floor(std::log10(value)) - 1);
    return shortest_text(static_cast<float>(std::round(value / power) * power));
}

void tell_correlation(const ChannelErrors& told, const std::string& whose,
                      std::vector<std::string>& remarks) {
    if (!(told.covariance.correlated > 0)) return;
    remarks.push_back("Residuals" + whose + " are correlated over " + rounded(told.covariance.length()) +
                      " m: a body or the regional is missing.");
}

void tell_chi_square(const ChannelFit& channel, const ChannelErrors& told,
                     std::vector<std::string>& remarks) {
    const double times = std::sqrt(told.chi_square);
    if (!channel.sigma_given || !std::isfinite(times)) return;
    const double noise = channel.noise > 0 ? channel.noise : channel.sigma;
    const std::string fact = "The misfit of " + name_of(channel) + " is " + rounded(times) +
                             " times the noise of " + shortest_text(static_cast<float>(noise)) +
                             (channel.channel == channel_grav ? " mGal: " : " nT: ");
    if (times > far_from_noise)
        remarks.push_back(fact + "a body or the regional is missing, or the noise is larger.");
    if (times < 1 / far_from_noise) remarks.push_back(fact + "the noise is smaller, or too much is free.");
}

void tell_too_few_data(const FitErrors& errors, std::vector<std::string>& remarks) {
    if (!errors.too_few_data) return;
    double independent = 0;
    for (const ChannelErrors& told : errors.channels) independent += told.covariance.independent;
    remarks.push_back("The stations amount to " + format_number(independent, "0") +
                      " independent data, too few for what is free: the errors are open. Hold parameters, or "
                      "fit a longer line.");
}

struct Pair {
    std::size_t first, second;
    double correlation;
};

void tell_pairs(const FitErrors& errors, std::span<const std::string> names,
                std::vector<std::string>& remarks) {
    const std::size_t size = errors.errors.size();
    std::vector<Pair> pairs;
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t j = i + 1; j < size; ++j)
            if (std::abs(errors.correlation[i * size + j]) > strong_correlation)
                pairs.push_back({i, j, errors.correlation[i * size + j]});
    std::ranges::stable_sort(pairs, std::ranges::greater{},
                             [](const Pair& pair) { return std::abs(pair.correlation); });
    for (std::size_t k = 0; k < std::min(pairs.size(), most_pairs); ++k)
        remarks.push_back("The data hardly tell " + names[pairs[k].first] + " from " +
                          names[pairs[k].second] + ": correlation " +
                          format_number(pairs[k].correlation, "0.000") + ".");
    if (pairs.size() > most_pairs)
        remarks.push_back(format_number(static_cast<std::int32_t>(pairs.size() - most_pairs), "0") +
                          " more pairs of parameters are correlated above " +
                          shortest_text(static_cast<float>(strong_correlation)) + ".");
}

}  // namespace

std::vector<std::string> fit_remarks(const FitErrors& errors, std::span<const ChannelFit> channels,
                                     std::span<const std::string> names) {
    std::vector<std::string> remarks;
    for (std::size_t c = 0; c < channels.size(); ++c) {
        const std::string whose = channels.size() > 1 ? " of " + name_of(channels[c]) : "";
        tell_correlation(errors.channels[c], whose, remarks);
        tell_chi_square(channels[c], errors.channels[c], remarks);
    }
    tell_too_few_data(errors, remarks);
    tell_pairs(errors, names, remarks);
    return remarks;
}

}  // namespace anomalis::inversion

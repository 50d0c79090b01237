#include "inversion/ensemble/ensemble_correlation.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace anomalis::inversion {

double sample_correlation(const Ensemble& ensemble, std::size_t one, std::size_t other) {
    std::vector<std::pair<double, double>> pairs;
    double mean = 0, other_mean = 0;
    for (const EnsembleSample& sample : ensemble.samples) {
        const auto a = static_cast<double>(sample.values[one]), b = static_cast<double>(sample.values[other]);
        if (std::isnan(a) || std::isnan(b)) continue;
        pairs.emplace_back(a, b);
        mean += a;
        other_mean += b;
    }
    const auto count = static_cast<double>(pairs.size());
    if (count < 3) return EnsembleParameter::open;
    mean /= count;
    other_mean /= count;
    double squares = 0, other_squares = 0, products = 0;
    for (const auto& [a, b] : pairs) {
        squares += (a - mean) * (a - mean);
        other_squares += (b - other_mean) * (b - other_mean);
        products += (a - mean) * (b - other_mean);
    }
    const double both = std::sqrt(squares * other_squares);
    return both > 0 ? std::clamp(products / both, -1.0, 1.0) : EnsembleParameter::open;
}

}  // namespace anomalis::inversion

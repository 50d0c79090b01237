#pragma once

#include <Eigen/Core>
#include <cmath>
#include <random>

// Noise along a line, the same for a seed wherever it is made.
namespace anomalis::inversion {

/// n distances from 0 on.
inline Eigen::VectorXd equal_spacing(Eigen::Index count, double spacing) {
    return Eigen::VectorXd::LinSpaced(count, 0, spacing * static_cast<double>(count - 1));
}

/// Normal numbers (Box and Muller 1958): the standard library's differ from one to the next.
class NormalNumbers {
  public:
    explicit NormalNumbers(unsigned seed) : generator_(seed) {}
    double operator()() {
        const double radius = std::sqrt(-2 * std::log(uniform()));
        return radius * std::cos(2 * 3.14159265358979324 * uniform());
    }
    /// Above 0, below 1.
    double uniform() { return (static_cast<double>(generator_()) + 0.5) / 4294967296.0; }

  private:
    std::mt19937 generator_;
};

inline Eigen::VectorXd white_noise(Eigen::Index count, double sigma, unsigned seed) {
    NormalNumbers normal(seed);
    Eigen::VectorXd noise(count);
    for (double& value : noise) value = sigma * normal();
    return noise;
}

enum class NoiseKind { exponential, gaussian };

/// Noise whose correlation over a distance d is exp(-d / length) or exp(-(d / length)^2), m. Distances
/// ascend.
inline Eigen::VectorXd correlated_noise(const Eigen::VectorXd& distance, NoiseKind kind, double sigma,
                                        double length, unsigned seed) {
    NormalNumbers normal(seed);
    const Eigen::Index count = distance.size();
    Eigen::VectorXd noise(count);
    if (kind == NoiseKind::exponential) {
        for (Eigen::Index i = 0; i < count; ++i) {
            const double kept = i == 0 ? 0 : std::exp(-(distance[i] - distance[i - 1]) / length);
            noise[i] = (i == 0 ? 0 : kept * noise[i - 1]) + sigma * std::sqrt(1 - kept * kept) * normal();
        }
        return noise;
    }
    // White noise on a fine raster, smoothed by a bell that is narrower by the root of 2.
    const double raster = length / 8, width = length / std::sqrt(2.0), reach = 4 * width;
    const auto points =
        static_cast<Eigen::Index>((distance[count - 1] - distance[0] + 2 * reach) / raster) + 2;
    Eigen::VectorXd source(points);
    for (double& value : source) value = normal();
    for (Eigen::Index i = 0; i < count; ++i) {
        double sum = 0, squares = 0;
        const double place = distance[i] - distance[0] + reach;
        const auto first = static_cast<Eigen::Index>((place - reach) / raster);
        for (Eigen::Index k = first; k < points && static_cast<double>(k) * raster < place + reach; ++k) {
            const double t = (static_cast<double>(k) * raster - place) / width;
            const double weight = std::exp(-t * t);
            sum += weight * source[k];
            squares += weight * weight;
        }
        noise[i] = sigma * sum / std::sqrt(squares);
    }
    return noise;
}

}  // namespace anomalis::inversion

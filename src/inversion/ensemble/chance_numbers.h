#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>

namespace anomalis::inversion {

/// Numbers by chance, the same for a seed and a stream wherever they are drawn: the distributions of the
/// standard library differ from one to the next.
class ChanceNumbers {
  public:
    ChanceNumbers(std::uint32_t seed, std::uint32_t stream) {
        std::seed_seq both{seed, stream};
        generator_.seed(both);
    }
    /// Above 0, below 1.
    double uniform() { return (static_cast<double>(generator_()) + 0.5) / 4294967296.0; }
    /// Of variance 1 (Box and Muller 1958).
    double normal() {
        const double radius = std::sqrt(-2 * std::log(uniform()));
        return radius * std::cos(2 * std::numbers::pi * uniform());
    }

  private:
    std::mt19937 generator_;
};

}  // namespace anomalis::inversion

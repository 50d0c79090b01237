#pragma once

#include <array>
#include <string_view>
#include <vector>

// The coefficients of the model of the main field. Private to this room.
namespace anomalis::field {

/// The published file igrf14.shc: IAGA Division V-MOD, DOI 10.5281/zenodo.14012302, CC BY 4.0. Comment lines
/// begin with #; then a line with degrees and counts, the epochs, and a line a coefficient: degree, order
/// (below 0 for h), nT at each epoch. The last epoch is the one before it carried on by the secular
/// variation.
extern const char* const igrf14_text;

inline constexpr int most_degree = 13;

/// Schmidt quasi-normalised coefficients g and h of degree n and order m, nT.
class Coefficients {
  public:
    double& g(int n, int m) { return values_[place(n, m)]; }
    double& h(int n, int m) { return values_[count + place(n, m)]; }
    double g(int n, int m) const { return values_[place(n, m)]; }
    double h(int n, int m) const { return values_[count + place(n, m)]; }

    /// In place: `share` of the way to `other`.
    void approach(const Coefficients& other, double share);

  private:
    static constexpr std::size_t count = (most_degree + 1) * (most_degree + 2) / 2;
    static std::size_t place(int n, int m) { return static_cast<std::size_t>(n * (n + 1) / 2 + m); }
    std::array<double, 2 * count> values_{};
};

struct Epoch {
    double year = 0;
    Coefficients coefficients;
};

/// The epochs of such a text, in rising order. Raises Fault for a text that is not whole.
std::vector<Epoch> parse_epochs(std::string_view text);

/// Linear between the epochs. Raises Fault for a year outside of them.
Coefficients coefficients_at(double year);

}  // namespace anomalis::field

#pragma once

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace anomalis::intake {

/// Easting and northing on a UTM zone of WGS 84 by the series of Krueger (1912) in the form of Karney (2011,
/// eq. 35), good to a micrometre within some degrees of the central meridian.
inline std::pair<double, double> utm_place(double longitude, double latitude, int zone, bool south) {
    constexpr double degree = std::numbers::pi / 180, axis = 6378137, flattening = 1 / 298.257223563;
    const double n = flattening / (2 - flattening), e = std::sqrt(flattening * (2 - flattening));
    const double lambda = (longitude - (6 * zone - 183)) * degree;
    const double tau = std::tan(latitude * degree);
    const double sigma = std::sinh(e * std::atanh(e * tau / std::hypot(1, tau)));
    const double conformal = tau * std::hypot(1, sigma) - sigma * std::hypot(1, tau);
    const double xi = std::atan2(conformal, std::cos(lambda));
    const double eta = std::asinh(std::sin(lambda) / std::hypot(conformal, std::cos(lambda)));
    const std::array<double, 4> alpha{n / 2 - 2 * n * n / 3 + 5 * n * n * n / 16 + 41 * n * n * n * n / 180,
                                      13 * n * n / 48 - 3 * n * n * n / 5 + 557 * n * n * n * n / 1440,
                                      61 * n * n * n / 240 - 103 * n * n * n * n / 140,
                                      49561 * n * n * n * n / 161280};
    double north = xi, east = eta;
    for (int j = 1; j <= 4; ++j) {
        const double a = alpha[static_cast<std::size_t>(j - 1)];
        north += a * std::sin(2 * j * xi) * std::cosh(2 * j * eta);
        east += a * std::cos(2 * j * xi) * std::sinh(2 * j * eta);
    }
    const double radius = axis / (1 + n) * (1 + n * n / 4 + n * n * n * n / 64);
    return {500000 + 0.9996 * radius * east, (south ? 10000000 : 0) + 0.9996 * radius * north};
}

}  // namespace anomalis::intake

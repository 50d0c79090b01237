#include "field/main_field.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "core/failure.h"
#include "core/numbers.h"
#include "field/model_coefficients.h"

namespace anomalis::field {

namespace {

constexpr double degree = std::numbers::pi / 180;
constexpr double reference_radius = 6371200;  ///< m, of the coefficients
// WGS 84 (NIMA TR8350.2).
constexpr double semi_major_axis = 6378137;  ///< m
constexpr double flattening = 1 / 298.257223563;
constexpr double lowest_km = -10, highest_km = 600;

void require(bool holds, const char* what, double value, const char* rule) {
    if (!holds) throw Fault(std::string(what) + " " + shortest_text(value) + " " + rule);
}

void require_place(const Place& place) {
    require(std::abs(place.latitude) <= 90, "The latitude", place.latitude, "must be -90 to 90 degrees");
    require(place.longitude >= -180 && place.longitude <= 360, "The longitude", place.longitude,
            "must be -180 to 360 degrees");
    require(place.height_m >= lowest_km * 1000 && place.height_m <= highest_km * 1000, "The height",
            place.height_m, "m must be -10 to 600 km above the ellipsoid");
}

/// A place in geocentric coordinates.
struct Geocentric {
    double radius = 0;  ///< m
    double cosine = 0;  ///< of the colatitude
    double sine = 0;
    double tilt = 0;  ///< geodetic less geocentric latitude, radians
};

Geocentric geocentric(const Place& place) {
    constexpr double squared_eccentricity = flattening * (2 - flattening);
    const double latitude = place.latitude * degree;
    const double sine = std::sin(latitude);
    const double normal = semi_major_axis / std::sqrt(1 - squared_eccentricity * sine * sine);
    const double out = (normal + place.height_m) * std::cos(latitude);
    const double up = (normal * (1 - squared_eccentricity) + place.height_m) * sine;
    const double radius = std::hypot(out, up);
    return {radius, up / radius, out / radius, latitude - std::atan2(up, out)};
}

/// Schmidt quasi-normalised functions of the colatitude. Those of an order above 0 are divided by its sine,
/// which takes the poles out of all that follows.
class Legendre {
  public:
    Legendre(double cosine, double sine) : cosine_(cosine), sine_(sine) {
        at(0, 0) = 1;
        for (int m = 0; m <= most_degree; ++m) {
            if (m == 1) at(1, 1) = 1;
            if (m > 1) at(m, m) = std::sqrt((2.0 * m - 1) / (2.0 * m)) * sine * at(m - 1, m - 1);
            for (int n = m + 1; n <= most_degree; ++n) {
                const double before = n - 2 < m ? 0 : root(n - 1, m) * at(n - 2, m);
                at(n, m) = ((2.0 * n - 1) * cosine * at(n - 1, m) - before) / root(n, m);
            }
        }
    }
    double value(int n, int m) const { return m == 0 ? at(n, 0) : sine_ * at(n, m); }
    /// An order above 0.
    double over_sine(int n, int m) const { return at(n, m); }
    /// By the colatitude.
    double slope(int n, int m) const {
        if (m == 0) return -std::sqrt(n * (n + 1) / 2.0) * sine_ * at(n, 1);
        return n * cosine_ * at(n, m) - (n == m ? 0 : root(n, m) * at(n - 1, m));
    }

  private:
    using Table = std::array<std::array<double, most_degree + 1>, most_degree + 1>;
    static double root(int n, int m) { return std::sqrt(static_cast<double>(n * n - m * m)); }
    double& at(int n, int m) { return table_[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)]; }
    double at(int n, int m) const { return table_[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)]; }
    double cosine_, sine_;
    Table table_{};
};

struct Vector {
    double north = 0, east = 0, down = 0;
};

/// Cosines and sines of the multiples of a longitude in radians.
struct Multiples {
    std::array<double, most_degree + 1> cosines{1}, sines{};
    explicit Multiples(double longitude) {
        const double cosine = std::cos(longitude), sine = std::sin(longitude);
        for (std::size_t m = 1; m < cosines.size(); ++m) {
            cosines[m] = cosines[m - 1] * cosine - sines[m - 1] * sine;
            sines[m] = sines[m - 1] * cosine + cosines[m - 1] * sine;
        }
    }
};

/// The negative gradient of the potential, in geocentric directions (Alken et al. 2021, eq. 1).
Vector synthesise(const Geocentric& place, const Multiples& around, const Coefficients& coefficients) {
    const Legendre legendre(place.cosine, place.sine);
    const double ratio = reference_radius / place.radius;
    Vector field;
    double scale = ratio * ratio;
    for (int n = 1; n <= most_degree; ++n) {
        scale *= ratio;
        for (int m = 0; m <= n; ++m) {
            const double cosine = around.cosines[static_cast<std::size_t>(m)];
            const double sine = around.sines[static_cast<std::size_t>(m)];
            const double g = coefficients.g(n, m), h = coefficients.h(n, m);
            const double along = scale * (g * cosine + h * sine);
            field.north += along * legendre.slope(n, m);
            field.down -= (n + 1) * along * legendre.value(n, m);
            if (m > 0) field.east += scale * m * (g * sine - h * cosine) * legendre.over_sine(n, m);
        }
    }
    return field;
}

}  // namespace

MainFieldModel::MainFieldModel(double year)
    : coefficients_(std::make_unique<const Coefficients>(coefficients_at(year))) {}
MainFieldModel::~MainFieldModel() = default;

MainField MainFieldModel::at(const Place& place) const {
    require_place(place);
    const Geocentric centred = geocentric(place);
    const Vector vector = synthesise(centred, Multiples(place.longitude * degree), *coefficients_);
    const double cosine = std::cos(centred.tilt), sine = std::sin(centred.tilt);
    MainField field;
    field.north_nT = vector.north * cosine + vector.down * sine;
    field.east_nT = vector.east;
    field.down_nT = vector.down * cosine - vector.north * sine;
    const double horizontal = std::hypot(field.north_nT, field.east_nT);
    field.total_nT = std::hypot(horizontal, field.down_nT);
    field.inclination_deg = std::atan2(field.down_nT, horizontal) / degree;
    field.declination_deg = std::atan2(field.east_nT, field.north_nT) / degree;
    return field;
}

MainField main_field(const Place& place, double year) {
    return MainFieldModel(year).at(place);
}

}  // namespace anomalis::field

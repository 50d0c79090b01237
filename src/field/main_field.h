#pragma once

#include <memory>
#include <string_view>

// The main field of the earth from the International Geomagnetic Reference Field, 14th generation (IAGA
// V-MOD, Alken et al. 2021 for the model's form; coefficients DOI 10.5281/zenodo.14012302).
namespace anomalis::field {

/// At a place: geodetic WGS 84 latitude and longitude in degrees, height above the ellipsoid in m.
struct Place {
    double latitude = 0, longitude = 0, height_m = 0;
};

/// nT and degrees; inclination down positive, declination east positive.
struct MainField {
    double north_nT = 0, east_nT = 0, down_nT = 0;
    double total_nT = 0, inclination_deg = 0, declination_deg = 0;
};

inline constexpr double first_year = 1900, last_year = 2030;
inline constexpr std::string_view model_name = "IGRF-14";

class Coefficients;

/// The model at one time, for many places. Degree 13, linear between epochs.
class MainFieldModel {
  public:
    /// Raises Fault for a year outside of 1900 to 2030.
    explicit MainFieldModel(double year);
    ~MainFieldModel();

    /// Raises Fault for a latitude beyond 90 degrees, a longitude outside of -180 to 360, a height outside of
    /// -10 to 600 km.
    MainField at(const Place& place) const;

  private:
    std::unique_ptr<const Coefficients> coefficients_;
};

/// The same for one place.
MainField main_field(const Place& place, double year);

/// "1990-07-01", "1990" or "1990.5" as a decimal year. Raises Fault with what is wrong.
double year_of_date(std::string_view text);

}  // namespace anomalis::field

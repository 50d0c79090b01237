#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

// Coordinate systems by name or number, and coordinates from one to another.
namespace anomalis::intake {

/// A system that is known: "EPSG:32754", "WGS 84 / UTM zone 54S".
struct CoordinateSystem {
    std::string code;  ///< "EPSG:32754"; the text that was given where it has no number
    std::string name;
    bool geographic = false;     ///< longitude and latitude in degrees
    double metres_per_unit = 1;  ///< of a projected system

    bool operator==(const CoordinateSystem&) const = default;
};

/// Finds a system by number ("EPSG:32754", "32754"), by name or by any text that PROJ takes. Raises Fault,
/// with the nearest names where there are some. Of a system with heights it is the
/// part without.
CoordinateSystem find_coordinate_system(const std::string& text);

/// The definition of a system in the well-known text that other programs read (OGC 01-009). Raises Fault.
std::string coordinate_system_wkt(const std::string& text);

/// Systems whose names have most words of a text in common with it, best first; for a person who looks for
/// one.
std::vector<CoordinateSystem> coordinate_systems_like(const std::string& text, std::size_t most);

/// WGS 84 longitude and latitude.
inline constexpr const char* wgs84 = "EPSG:4326";
/// The UTM zone of WGS 84 that a place lies in: "EPSG:32754". Degrees; raises Fault outside of 80 S to 84 N.
std::string utm_zone_of(double longitude, double latitude);

/// From one system to another. Longitude before latitude, east before north, whatever the authority says.
class CoordinateChange {
  public:
    /// Raises Fault for a system that is not known, or two that do not go together.
    CoordinateChange(const std::string& from, const std::string& to);
    ~CoordinateChange();
    CoordinateChange(CoordinateChange&&) noexcept;
    CoordinateChange& operator=(CoordinateChange&&) noexcept;

    /// In place, all at once; a point that has no image, or a NaN, becomes NaN. For one thread.
    void forward(std::span<double> first, std::span<double> second);
    void inverse(std::span<double> first, std::span<double> second);

  private:
    struct State;
    class Spare;
    std::unique_ptr<State> state_;
};

}  // namespace anomalis::intake

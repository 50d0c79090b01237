#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "intake/coordinates/coordinate_system.h"
#include "intake/survey/survey_index.h"

namespace anomalis::intake {

/// How the places of a survey file come to m.
struct PlaceWay {
    std::size_t first = 0, second = 0;  ///< columns of the layout: east and north, or longitude and latitude
    bool degrees = false;
    std::string from, to;    ///< systems; the same text, or "" both, where coordinates stay as they are
    bool zone_open = false;  ///< `to` is the UTM zone at the middle of the survey, once that is known
    /// Of a system in feet: what the metres that the reader gives are divided by before the change.
    double file_unit = 1;

    bool changes() const { return from != to || zone_open; }
};

/// Which columns tell the place and what becomes of it. Raises Fault: no such columns, a system that is not
/// known or not in metres.
PlaceWay place_way(const SurveyLayout& layout, const CoordinateChoice& coordinates);
/// The way that the places of an index went.
PlaceWay place_way(const SurveyIndex& index);

/// The UTM zone of WGS 84 in which eastings and northings agree with the longitudes and latitudes beside
/// them, to some m; "" for none. NaN stands for no value.
std::string agreeing_zone(std::span<const double> east, std::span<const double> north,
                          std::span<const double> longitude, std::span<const double> latitude);

/// Brings the places of a survey to m, block by block.
class PlaceChange {
  public:
    explicit PlaceChange(PlaceWay way);

    /// In place; a place that is none becomes NaN. An open zone becomes that of the first place.
    void change(std::span<double> first, std::span<double> second, std::span<const long> file_line);

    /// The zone at the middle of what was met, where it was open; "" when the one that was used is the same.
    std::string other_zone() const;
    const std::string& system() const { return way_.to; }
    /// The system of metres that stay as they are became known.
    void take_system(const std::string& code) { way_.from = way_.to = code; }
    /// Rows without a place, places outside of the globe, and those that the system cannot hold.
    std::vector<RowLoss> losses() const;

  private:
    void check_degrees(std::span<double> first, std::span<double> second, std::span<const long> file_line);
    void note_missing(std::span<const double> first, std::span<const double> second,
                      std::span<const long> file_line);
    void note_lost(std::span<const double> first, std::span<const long> file_line);
    void open(std::span<const double> first, std::span<const double> second);

    PlaceWay way_;
    std::optional<CoordinateChange> change_;
    std::optional<double> anchor_;  ///< longitudes are counted within 180 degrees of it
    double west_ = 1e9, east_ = -1e9, south_ = 1e9, north_ = -1e9;  ///< degrees
    std::vector<char> there_;                                       ///< rows of the block that have a place
    RowLoss missing_, beyond_globe_, beyond_system_;
};

}  // namespace anomalis::intake

#include "intake/survey/survey_places.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/failure.h"
#include "core/paths.h"

namespace anomalis::intake {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double international_foot = 0.3048;  // m

/// Nothing for a text that names no system. A file may call its system what it likes.
std::optional<CoordinateSystem> known_system(const std::string& text) {
    if (text.empty()) return {};
    try {
        return find_coordinate_system(text);
    } catch (const Fault&) {
        return {};
    }
}

bool in_metres(const CoordinateSystem& system) {
    return std::abs(system.metres_per_unit - 1) < 1e-9;
}

void refuse_without_metres(const CoordinateSystem& to) {
    if (to.geographic)
        throw Fault(to.code + " (" + to.name +
                    ") has degrees: a line is modelled in metres. Choose a projected system, or none for the "
                    "UTM zone of the survey");
    if (!in_metres(to))
        throw Fault(to.code + " (" + to.name +
                    ") is not in metres. Choose a system that is, or none for the UTM zone of the survey");
}

/// The system that somebody chose for the file, or that it says.
std::optional<CoordinateSystem> system_of_file(const SurveyLayout& layout, const CoordinateChoice& choice) {
    if (!choice.from.empty()) return find_coordinate_system(choice.from);
    return known_system(layout.coordinate_system);
}

/// Coordinates in degrees: the file's own datum where it says one; a projected system that it names is where
/// they are to go.
void settle_degrees(PlaceWay& way, const std::optional<CoordinateSystem>& of_file,
                    const std::optional<CoordinateSystem>& to) {
    way.degrees = true;
    way.from = of_file && of_file->geographic ? of_file->code : wgs84;
    if (to) {
        way.to = to->code;
    } else if (of_file && !of_file->geographic && in_metres(*of_file)) {
        way.to = of_file->code;
    } else {
        way.zone_open = true;
    }
}

/// Coordinates east and north: as they are, unless another system is asked for.
void settle_projected(PlaceWay& way, const std::optional<CoordinateSystem>& of_file,
                      const std::optional<CoordinateSystem>& to, Unit unit) {
    if (of_file && !of_file->geographic) {
        way.from = of_file->code;
        // The reader has turned feet to metres; the system counts its own units.
        if (!in_metres(*of_file) && unit == Unit::foot) way.file_unit = international_foot;
        way.zone_open = !to && !in_metres(*of_file);
        way.to = to ? to->code : way.zone_open ? "" : way.from;
    } else if (to) {
        way.from = way.to = to->code;
    }
}

}  // namespace

PlaceWay place_way(const SurveyLayout& layout, const CoordinateChoice& coordinates) {
    const auto east = layout.column_of(Role::easting), north = layout.column_of(Role::northing);
    const auto longitude = layout.column_of(Role::longitude), latitude = layout.column_of(Role::latitude);
    if (!(east && north) && !(longitude && latitude))
        throw Fault(
            file_name(layout.path) +
            " tells no place: choose which columns are easting and northing, or longitude and latitude");
    const auto of_file = system_of_file(layout, coordinates);
    std::optional<CoordinateSystem> to;
    if (!coordinates.to.empty()) {
        to = find_coordinate_system(coordinates.to);
        refuse_without_metres(*to);
    }
    const bool east_known = of_file && !of_file->geographic;
    const bool by_degrees =
        longitude && latitude && (!(east && north) || (!east_known && (to || !coordinates.from.empty())));
    PlaceWay way;
    way.first = by_degrees ? *longitude : *east;
    way.second = by_degrees ? *latitude : *north;
    if (by_degrees) {
        settle_degrees(way, of_file, to);
    } else {
        settle_projected(way, of_file, to, layout.columns[*east].unit);
    }
    return way;
}

PlaceWay place_way(const SurveyIndex& index) {
    const SurveyLayout& layout = index.layout;
    PlaceWay way;
    way.degrees = index.in_degrees;
    way.first = layout.column_of(way.degrees ? Role::longitude : Role::easting).value();
    way.second = layout.column_of(way.degrees ? Role::latitude : Role::northing).value();
    way.from = index.from_system;
    way.to = index.coordinate_system;
    if (way.changes() && !way.degrees && layout.columns[way.first].unit == Unit::foot &&
        !in_metres(find_coordinate_system(way.from)))
        way.file_unit = international_foot;
    return way;
}

std::string agreeing_zone(std::span<const double> east, std::span<const double> north,
                          std::span<const double> longitude, std::span<const double> latitude) {
    constexpr std::size_t enough = 100;
    constexpr double agreed = 5;  // m: longitudes are rounded, and other datums are farther off
    std::vector<double> easts, norths, projected_east, projected_north;
    for (std::size_t i = 0; i < east.size() && easts.size() < enough; ++i) {
        if (std::isnan(east[i] + north[i] + longitude[i] + latitude[i])) continue;
        if (std::abs(longitude[i]) > 180 || std::abs(latitude[i]) > 80) return "";
        easts.push_back(east[i]);
        norths.push_back(north[i]);
        projected_east.push_back(longitude[i]);
        projected_north.push_back(latitude[i]);
    }
    if (easts.empty()) return "";
    const std::string zone = utm_zone_of(projected_east[0], projected_north[0]);
    CoordinateChange(wgs84, zone).forward(projected_east, projected_north);
    for (std::size_t i = 0; i < easts.size(); ++i)
        if (!(std::hypot(easts[i] - projected_east[i], norths[i] - projected_north[i]) <= agreed)) return "";
    return zone;
}

PlaceChange::PlaceChange(PlaceWay way) : way_(std::move(way)) {
    if (way_.changes() && !way_.zone_open) change_.emplace(way_.from, way_.to);
    missing_.why = "the place is missing";
    beyond_globe_.why = "no longitude is outside of -180 to 360 degrees, no latitude beyond 90";
    beyond_system_.why = "the place lies outside of " + way_.to;
}

void PlaceChange::note_missing(std::span<const double> first, std::span<const double> second,
                               std::span<const long> file_line) {
    there_.resize(first.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        there_[i] = !std::isnan(first[i]) && !std::isnan(second[i]);
        if (!there_[i] && missing_.count++ == 0) missing_.first_line = file_line[i];
    }
}

void PlaceChange::check_degrees(std::span<double> first, std::span<double> second,
                                std::span<const long> file_line) {
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (!there_[i]) continue;
        const double longitude = first[i], latitude = second[i];
        if (longitude < -180 || longitude > 360 || std::abs(latitude) > 90) {
            if (beyond_globe_.count++ == 0) beyond_globe_.first_line = file_line[i];
            first[i] = second[i] = none;
            there_[i] = false;
            continue;
        }
        if (!anchor_) anchor_ = longitude;
        const double near = longitude - *anchor_ > 180   ? longitude - 360
                            : *anchor_ - longitude > 180 ? longitude + 360
                                                         : longitude;
        west_ = std::min(west_, near);
        east_ = std::max(east_, near);
        south_ = std::min(south_, latitude);
        north_ = std::max(north_, latitude);
    }
}

/// By the first place; a projected one is brought to degrees for that.
void PlaceChange::open(std::span<const double> first, std::span<const double> second) {
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (!there_[i]) continue;
        double longitude = first[i], latitude = second[i];
        if (!way_.degrees) CoordinateChange(way_.from, wgs84).forward({&longitude, 1}, {&latitude, 1});
        if (std::isnan(longitude)) continue;
        way_.to = utm_zone_of(longitude, latitude);
        change_.emplace(way_.from, way_.to);
        beyond_system_.why = "the place lies outside of " + way_.to;
        return;
    }
}

void PlaceChange::change(std::span<double> first, std::span<double> second, std::span<const long> file_line) {
    note_missing(first, second, file_line);
    if (way_.degrees) check_degrees(first, second, file_line);
    if (!way_.changes()) return;
    if (way_.file_unit != 1) {
        for (double& value : first) value /= way_.file_unit;
        for (double& value : second) value /= way_.file_unit;
    }
    if (!change_) open(first, second);
    if (!change_) return;
    change_->forward(first, second);
    note_lost(first, file_line);
}

void PlaceChange::note_lost(std::span<const double> first, std::span<const long> file_line) {
    for (std::size_t i = 0; i < first.size(); ++i)
        if (there_[i] && std::isnan(first[i]) && beyond_system_.count++ == 0)
            beyond_system_.first_line = file_line[i];
}

std::string PlaceChange::other_zone() const {
    if (!way_.zone_open || !way_.degrees || way_.to.empty()) return "";
    const std::string zone = utm_zone_of(std::remainder((west_ + east_) / 2, 360.0), (south_ + north_) / 2);
    return zone == way_.to ? "" : zone;
}

std::vector<RowLoss> PlaceChange::losses() const {
    std::vector<RowLoss> losses;
    for (const RowLoss& loss : {missing_, beyond_globe_, beyond_system_})
        if (loss.count > 0) losses.push_back(loss);
    return losses;
}

}  // namespace anomalis::intake

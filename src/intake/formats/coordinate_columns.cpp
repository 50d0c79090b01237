#include "intake/formats/coordinate_columns.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

namespace anomalis::intake {

namespace {

/// Stations a centimetre apart are no survey in metres; a survey in degrees has them 0.00001 apart.
constexpr double degree_step = 0.01;

bool within(const ColumnValues& values, double limit) {
    return values.numbers > 0 && values.least >= -limit && values.greatest <= limit;
}

bool may_be_degrees(const ColumnValues& a, const ColumnValues& b) {
    if (!within(a, 360) || !within(b, 360) || (!within(a, 90) && !within(b, 90))) return false;
    // A line along a meridian has one longitude.
    const double step = std::max(a.typical_step, b.typical_step);
    return step > 0 && step < degree_step && !(a.whole && b.whole);
}

void tell(SurveyLayout& layout, std::size_t column, const std::string& what) {
    layout.remarks.push_back("\"" + layout.columns[column].name + "\" " + what);
}

/// Sets a pair of columns to longitude and latitude; beyond 90 degrees is the longitude.
void set_degrees(SurveyLayout& layout, const ValueSample& sample, std::size_t first, std::size_t second) {
    const bool swapped = !within(sample.columns[second], 90);
    layout.columns[swapped ? second : first].role = Role::longitude;
    layout.columns[swapped ? first : second].role = Role::latitude;
}

bool is_free(const SurveyLayout& layout, std::size_t column) {
    return layout.columns[column].role == Role::none && !layout.columns[column].text;
}

/// Projected coordinates of a pair, in the order of the file.
bool may_be_projected(const ColumnValues& a, const ColumnValues& b) {
    const auto large = [](const ColumnValues& one) {
        return std::abs(one.middle) >= 1e4 && std::abs(one.middle) <= 2e7 && one.spread() < 2e6;
    };
    // A line along an axis of the grid has one coordinate.
    return large(a) && large(b) && (a.spread() > 0 || b.spread() > 0);
}

/// Local coordinates in metres: they change from row to row and never jump far within a line.
bool may_be_local(const ColumnValues& a, const ColumnValues& b) {
    const auto smooth = [](const ColumnValues& one) {
        return one.numbers > 1 && one.typical_step <= 0.1 * std::max(one.spread(), 1e-9);
    };
    return (a.spread() > 0 || b.spread() > 0) && a.numbers > 1 && b.numbers > 1 &&
           (smooth(a) || a.spread() == 0) && (smooth(b) || b.spread() == 0);
}

template <class Test>
std::optional<std::size_t> first_pair(const SurveyLayout& layout, const ValueSample& sample, Test&& test) {
    for (std::size_t i = 0; i + 1 < layout.columns.size(); ++i)
        if (is_free(layout, i) && is_free(layout, i + 1) && test(sample.columns[i], sample.columns[i + 1]))
            return i;
    return {};
}

}  // namespace

void check_coordinates(SurveyLayout& layout, const ValueSample& sample) {
    const auto east = layout.column_of(Role::easting), north = layout.column_of(Role::northing);
    const auto longitude = layout.column_of(Role::longitude), latitude = layout.column_of(Role::latitude);
    if (east && north && may_be_degrees(sample.columns[*east], sample.columns[*north])) {
        layout.columns[*east].role = layout.columns[*north].role = Role::none;
        if (!longitude && !latitude) {
            set_degrees(layout, sample, *east, *north);
            tell(layout, *east,
                 "and \"" + layout.columns[*north].name +
                     "\" hold degrees by their values, whatever their names: they are taken as "
                     "longitude and latitude.");
        }
        return;
    }
    if (!longitude || !latitude) return;
    const ColumnValues &x = sample.columns[*longitude], &y = sample.columns[*latitude];
    if (within(y, 90) || !within(x, 90)) {
        // DDMM.mmm stays below; what is beyond is in metres.
        constexpr double most_ddmm = 36000;
        if (within(x, most_ddmm) && within(y, most_ddmm)) return;
        layout.columns[*longitude].role = east ? Role::none : Role::easting;
        layout.columns[*latitude].role = north ? Role::none : Role::northing;
        if (!east) tell(layout, *longitude, "holds metres by its values: it is taken as easting.");
        return;
    }
    if (!within(y, 360)) return;
    std::swap(layout.columns[*longitude].role, layout.columns[*latitude].role);
    tell(layout, *latitude,
         "lies beyond 90 degrees: it is taken as longitude, and \"" + layout.columns[*longitude].name +
             "\" as latitude.");
}

void find_coordinates(SurveyLayout& layout, const ValueSample& sample) {
    const auto has = [&](Role a, Role b) { return layout.column_of(a) && layout.column_of(b); };
    if (has(Role::easting, Role::northing) || has(Role::longitude, Role::latitude)) return;
    for (SurveyColumn& column : layout.columns)
        if (column.role == Role::easting || column.role == Role::northing || column.role == Role::longitude ||
            column.role == Role::latitude)
            column.role = Role::none;
    std::optional<std::size_t> pair;
    if ((pair = first_pair(layout, sample, may_be_degrees))) {
        set_degrees(layout, sample, *pair, *pair + 1);
    } else if ((pair = first_pair(layout, sample, may_be_projected)) ||
               (pair = first_pair(layout, sample, may_be_local))) {
        // Northings on the southern half, and north of 1000 km, exceed any easting.
        const bool swapped = sample.columns[*pair].middle > 1e6 && sample.columns[*pair + 1].middle < 1e6;
        layout.columns[*pair].role = swapped ? Role::northing : Role::easting;
        layout.columns[*pair + 1].role = swapped ? Role::easting : Role::northing;
    }
    if (pair)
        tell(layout, *pair,
             "and \"" + layout.columns[*pair + 1].name +
                 "\" are taken as coordinates by their values: see whether that is right.");
}

/// The number behind the last "zone " of a name, as it stands there; empty for none.
std::string_view zone_in(std::string_view name) {
    constexpr std::string_view word = "zone ";
    const std::size_t at = name.rfind(word);
    if (at == std::string_view::npos) return {};
    name.remove_prefix(at + word.size());
    return name.substr(0, std::min({name.find_first_not_of("0123456789"), name.size(), std::size_t{2}}));
}

void check_zone(SurveyLayout& layout, const ValueSample& sample) {
    const std::string before = layout.coordinate_system;
    const std::string_view stated = zone_in(before);
    const auto east = layout.column_of(Role::easting), longitude = layout.column_of(Role::longitude),
               latitude = layout.column_of(Role::latitude);
    if (!east || !longitude || !latitude || stated.empty()) return;
    const ColumnValues &x = sample.columns[*east], &lon = sample.columns[*longitude],
                       &lat = sample.columns[*latitude];
    if (x.values.empty() || lon.values.empty() || lat.values.empty() || !within(lon, 360) || !within(lat, 90))
        return;
    for (std::size_t row = 0; row < sample.rows; ++row) {
        if (std::isnan(x.values[row]) || std::isnan(lon.values[row]) || std::isnan(lat.values[row])) continue;
        // The arc to the middle meridian on a sphere; good to a few kilometres, zones differ by hundreds.
        constexpr double metres_a_degree = 111320, false_easting = 500000, half_zone = 3,
                         degrees_to_radians = 0.017453292519943295;
        const double arc = (x.values[row] - false_easting) /
                           (metres_a_degree * std::cos(lat.values[row] * degrees_to_radians));
        const double meridian = lon.values[row] - arc;
        const long zone = std::lround((meridian + 180 + half_zone) / 6);
        const bool sure = std::abs(6.0 * static_cast<double>(zone) - 180 - half_zone - meridian) < 0.3;
        if (!sure || zone < 1 || zone > 60 || std::to_string(zone) == stated) return;
        layout.coordinate_system.replace(static_cast<std::size_t>(stated.data() - before.data()),
                                         stated.size(), std::to_string(zone));
        layout.remarks.push_back("The file names the system \"" + before +
                                 "\", but its longitudes and eastings agree in zone " + std::to_string(zone) +
                                 ": that is taken.");
        return;
    }
}

}  // namespace anomalis::intake

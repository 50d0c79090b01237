#include "intake/igrf_readings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/workspace.h"
#include "field/main_field.h"
#include "intake/coordinates/coordinate_system.h"

namespace anomalis::intake {

namespace {

std::vector<double> copy_of(std::span<const double> values) {
    return {values.begin(), values.end()};
}

/// A height that was not read counts as 0: 100 m make 3 nT at most.
double height_or_zero(std::span<const double> heights, std::size_t index) {
    return index < heights.size() && is_reading(heights[index]) ? heights[index] : 0;
}

std::span<const double> heights_of(const Workspace& w) {
    if (w.definition.z_column > 0) return w.stations.column(column_sensor);
    if (w.definition.dtm_column > 0) return w.stations.column(column_ground);
    return {};
}

void find_range(std::span<const float> readings, Channel& channel) {
    channel.min = empty_low;
    channel.max = empty_high;
    for (const float reading : readings) {
        if (!is_reading(reading)) continue;
        channel.min = std::min(channel.min, reading);
        channel.max = std::max(channel.max, reading);
    }
}

}  // namespace

void add_igrf(std::int32_t sign, const ReadingPlaces& places, std::span<float> readings) {
    const field::MainFieldModel model(places.year);
    std::vector<double> longitudes = copy_of(places.first), latitudes = copy_of(places.second);
    CoordinateChange(places.coordinate_system, wgs84).forward(longitudes, latitudes);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        if (!is_reading(readings[i])) continue;
        if (std::isnan(longitudes[i]))
            throw Fault("Station " + std::to_string(i + 1) + " has no place on the globe in " +
                        places.coordinate_system);
        const field::MainField field =
            model.at({latitudes[i], longitudes[i], height_or_zero(places.heights, i)});
        readings[i] = static_cast<float>(readings[i] + sign * field.total_nT);
    }
}

void change_igrf(Workspace& w) {
    const LineSource& source = w.source;
    if (source.igrf_change == igrf_kept || !w.has_mag()) return;
    if (source.coordinate_system.empty() || source.date.empty())
        throw Fault(source.coordinate_system.empty() ? "the coordinate system of the line is not known"
                                                     : "the date of the survey is not known");
    const std::span<float> readings = w.mag.data.row(row_raw, stage_observed);
    const StationTable& stations = w.stations;
    add_igrf(source.igrf_change,
             {source.coordinate_system, stations.column(column_east), stations.column(column_north),
              heights_of(w), field::year_of_date(source.date)},
             readings);
    find_range(readings, w.mag);
}

}  // namespace anomalis::intake

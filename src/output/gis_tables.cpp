#include "output/gis_tables.h"

#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "intake/coordinates/coordinate_system.h"

namespace anomalis::output {

GisValue gis_number(double value) {
    return std::isfinite(value) ? GisValue(value) : GisValue();
}

namespace {

void change_points(intake::CoordinateChange& change, GisLayer& layer, const std::string& target) {
    std::vector<double> first, second;
    for (const GisFeature& feature : layer.features)
        for (const GisPoint& point : feature.points) {
            first.push_back(point.x);
            second.push_back(point.y);
        }
    change.forward(first, second);
    std::size_t next = 0;
    for (GisFeature& feature : layer.features)
        for (GisPoint& point : feature.points) {
            if (std::isnan(first[next]))
                throw Fault("The place " + format_number(point.x, "0.##") + ", " +
                            format_number(point.y, "0.##") + " has no image in " + target);
            point.x = first[next];
            point.y = second[next];
            ++next;
        }
}

}  // namespace

void change_system(std::vector<GisLayer>& layers, const std::string& from, const std::string& to) {
    intake::CoordinateChange change(from, to);
    for (GisLayer& layer : layers) change_points(change, layer, to);
}

}  // namespace anomalis::output

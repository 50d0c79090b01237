#include "show/map_colours.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "edit/colour_ramp.h"
#include "intake/survey/survey_index.h"
#include "show/map_parts.h"

namespace anomalis::show {

namespace {

std::vector<double> values_of(const intake::SurveyIndex& index) {
    std::vector<double> values;
    for (const intake::SurveyLineInfo& line : index.lines)
        for (const intake::MapPoint& point : line.track)
            if (std::isfinite(point.value)) values.push_back(static_cast<double>(point.value));
    return values;
}

std::string unit_of(const intake::SurveyIndex& index) {
    const bool magnetic = std::ranges::any_of(
        index.lines, [](const intake::SurveyLineInfo& line) { return line.mag_nT.has_value(); });
    return magnetic ? "nT" : "mGal";
}

}  // namespace

MapColours map_colours(const intake::SurveyIndex& index) {
    constexpr double low_part = 0.02, high_part = 0.98;
    MapColours colours;
    std::vector<double> values = values_of(index);
    if (values.empty()) return colours;
    colours.unit = unit_of(index);
    const auto [least, greatest] = std::ranges::minmax(values);
    colours.low = part_of(values, low_part);
    colours.high = part_of(values, high_part);
    if (!(colours.high > colours.low)) {
        colours.low = least;
        colours.high = greatest;
    }
    if (!(colours.high > colours.low)) {
        colours.low -= 0.5;
        colours.high += 0.5;
    }
    colours.cut = least < colours.low || greatest > colours.high;
    return colours;
}

chart::Colour ramp_shade(int shade) {
    return edit::ramp_colour(static_cast<double>(shade) / (ramp_shades - 1));
}

chart::Colour map_colour(float value, const MapColours& colours) {
    if (!std::isfinite(value)) return no_value_grey;
    const double part = (static_cast<double>(value) - colours.low) / (colours.high - colours.low);
    return ramp_shade(static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * (ramp_shades - 1))));
}

}  // namespace anomalis::show

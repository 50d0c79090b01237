#include "intake/survey/line_gathering.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace anomalis::intake {

namespace {

bool any_value(const std::vector<double>& values) {
    return std::ranges::any_of(values, [](double value) { return !std::isnan(value); });
}

/// Drops the rows without a place, in every column.
void drop_placeless_rows(GatheredLine& line) {
    const std::vector<double>&first = line.values[gathered_first], &second = line.values[gathered_second];
    std::vector<std::size_t> kept;
    for (std::size_t i = 0; i < first.size(); ++i)
        if (!std::isnan(first[i]) && !std::isnan(second[i])) kept.push_back(i);
    if (kept.size() == first.size()) return;
    const auto keep = [&](auto& values) {
        if (values.empty()) return;
        for (std::size_t i = 0; i < kept.size(); ++i) values[i] = values[kept[i]];
        values.resize(kept.size());
    };
    for (auto& values : line.values) keep(values);
    keep(line.file_line);
}

/// `to[i] + sign * by[i]`
std::vector<double> combined(const std::vector<double>& to, double sign, const std::vector<double>& by) {
    std::vector<double> values(to.size());
    for (std::size_t i = 0; i < to.size(); ++i) values[i] = to[i] + sign * by[i];
    return values;
}

/// Two of sensor height, clearance and terrain give the third.
void find_heights(GatheredLine& from, SurveyLine& line) {
    std::vector<double>&height = from.values[gathered_height], &clearance = from.values[gathered_clearance],
    &terrain = from.values[gathered_terrain];
    for (auto* values : {&height, &clearance, &terrain})
        if (!any_value(*values)) values->clear();
    if (height.empty() && !terrain.empty() && !clearance.empty()) {
        height = combined(terrain, 1, clearance);
    } else if (terrain.empty() && !height.empty() && !clearance.empty()) {
        terrain = combined(height, -1, clearance);
    } else if (height.empty() && terrain.empty() && !clearance.empty()) {
        height = std::move(clearance);
        line.height_is_clearance = true;
    }
    line.height = std::move(height);
    line.ground = std::move(terrain);
}

}  // namespace

LineGathering::LineGathering(const SurveyIndex& index)
    : index_(index), way_(place_way(index)), places_(way_) {
    where_.fill(not_wanted);
    const SurveyLayout& layout = index.layout;
    want(gathered_first, way_.first);
    want(gathered_second, way_.second);
    if (!way_.degrees && way_.to.empty()) {
        want(gathered_longitude, layout.column_of(Role::longitude));
        want(gathered_latitude, layout.column_of(Role::latitude));
    }
    want(gathered_height, layout.column_of(Role::sensor_height));
    want(gathered_clearance, layout.column_of(Role::clearance));
    want(gathered_terrain, layout.column_of(Role::terrain));
    want(gathered_mag, layout.column_of(Role::mag));
    want(gathered_grav, layout.column_of(Role::grav));
    want(gathered_fiducial, layout.column_of(Role::fiducial));
    if (!way_.to.empty() && !(way_.degrees && way_.from == wgs84)) to_degrees_.emplace(way_.to, wgs84);
}

void LineGathering::want(GatheredColumn what, std::optional<std::size_t> column) {
    if (!column) return;
    where_[what] = columns_.size();
    columns_.push_back(*column);
}

void LineGathering::take(const RowBlock& block, std::size_t row, GatheredLine& line) const {
    for (std::size_t what = 0; what < gathered_columns; ++what)
        if (where_[what] != not_wanted) line.values[what].push_back(block.values[where_[what]][row]);
    line.file_line.push_back(block.file_line[row]);
}

/// Before the places of `gathered` go into the line.
void LineGathering::find_degrees(SurveyLine& line, GatheredLine& gathered) {
    if (to_degrees_) {
        line.longitude = line.east;
        line.latitude = line.north;
        to_degrees_->forward(line.longitude, line.latitude);
    } else if (any_value(gathered.values[gathered_longitude]) &&
               any_value(gathered.values[gathered_latitude])) {
        line.longitude = std::move(gathered.values[gathered_longitude]);
        line.latitude = std::move(gathered.values[gathered_latitude]);
    }
}

SurveyLine LineGathering::finish(std::size_t number, GatheredLine&& gathered) {
    const SurveyLineInfo& info = index_.lines[number];
    SurveyLine line;
    line.name = info.name;
    line.year = info.year;
    line.coordinate_system = way_.to;
    std::vector<double>&first = gathered.values[gathered_first], &second = gathered.values[gathered_second];
    if (way_.degrees && !to_degrees_) {
        gathered.values[gathered_longitude] = first;
        gathered.values[gathered_latitude] = second;
    }
    places_.change(first, second, gathered.file_line);
    drop_placeless_rows(gathered);
    line.east = std::move(first);
    line.north = std::move(second);
    find_degrees(line, gathered);
    find_heights(gathered, line);
    line.mag = std::move(gathered.values[gathered_mag]);
    line.grav = std::move(gathered.values[gathered_grav]);
    line.fiducial = std::move(gathered.values[gathered_fiducial]);
    line.file_line = std::move(gathered.file_line);
    return line;
}

SurveyLine piece_of(SurveyLine&& line, LinePiece piece) {
    const auto cut = [&](auto& values) {
        if (values.empty()) return;
        const auto count = static_cast<long>(values.size());
        const long last = std::min(piece.last, count - 1), first = std::clamp(piece.first, 0L, last + 1);
        values.erase(values.begin() + last + 1, values.end());
        values.erase(values.begin(), values.begin() + first);
    };
    for (auto* values : {&line.east, &line.north, &line.height, &line.ground, &line.mag, &line.grav,
                         &line.fiducial, &line.longitude, &line.latitude})
        cut(*values);
    cut(line.file_line);
    return std::move(line);
}

}  // namespace anomalis::intake

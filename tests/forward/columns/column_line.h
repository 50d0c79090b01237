#pragma once

#include <gtest/gtest.h>
#include <random>

#include "core/body_parameters.h"
#include "forward/body_columns.h"
#include "forward/exact/exact_line.h"
#include "forward/gravity_constant.h"

namespace anomalis::forward {

/// Numbers that are the same with every library.
class Dice {
  public:
    explicit Dice(unsigned seed) : engine_(seed) {}
    double between(double low, double high) { return low + (high - low) * (engine_() / 4294967296.0); }
    bool one_in(int sides) { return between(0, sides) < 1; }

  private:
    std::mt19937 engine_;
};

/// A line that begins at 0, 0, so that the places of its stations have all their digits.
struct PlaceLine : ExactLine {
    PlaceLine(const std::vector<double>& along, double bearing, Dice& dice)
        : ExactLine(static_cast<int>(along.size()), 10, bearing, 60) {
        const double east = std::sin(exact_radians(bearing)), north = std::cos(exact_radians(bearing));
        for (int i = 1; i <= workspace.station_count; ++i) {
            const double at = along[static_cast<std::size_t>(i - 1)];
            workspace.distances[i] = at;
            workspace.stations(i, column_east) = east * at;
            workspace.stations(i, column_north) = north * at;
            workspace.stations(i, column_sensor) = 60 + dice.between(0, 5);
        }
    }
};

inline std::vector<double> close_stations(Dice& dice) {
    std::vector<double> along;
    for (double at = -400; at < 1000; at += dice.between(60, 260)) along.push_back(at);
    return along;
}

/// A body of any shape at a distance of some 300 m.
inline ModelBody& add_random(Line& line, BodyType type, Dice& dice) {
    ModelBody& body = line.add(type, dice.between(250, 350), dice.between(0, 360));
    const auto roll = [&](BodyParam& param, double low, double high) {
        param.value = static_cast<float>(dice.between(low, high));
    };
    roll(body.dip, 20, 160);
    roll(body.top, -60, 55);
    if (type == thin_sheet) {
        roll(body.width, 0.5, 10);
    } else {
        roll(body.width, 5, 200);
    }
    roll(body.depth_extent, 20, 400);
    if (dice.one_in(3)) body.depth_extent.value = 0;
    if (is_sheet(type)) roll(body.slope, -15, 15);
    body.length.value = 0;
    roll(body.susc, 1000, 90000);
    roll(body.rem_q, -1, 3);
    roll(body.rem_i, -90, 90);
    roll(body.rem_d, -180, 180);
    roll(body.density, -1, 3);
    return body;
}

inline std::vector<int> all_codes() {
    std::vector<int> codes;
    for (const BodyParameter& row : body_parameters()) codes.push_back(row.code);
    return codes;
}

/// Columns and values of body 1 of a line, at all its stations.
struct Columns {
    std::vector<double> values, columns;
    Faults faults;

    Columns(const Line& line, int channel, std::span<const int> codes) {
        ModelBody body = line.workspace.body(1);
        BodyBench bench;
        ExactNotes exact;
        BodyNotes notes{1, exact, faults};
        values.resize(static_cast<std::size_t>(line.workspace.station_count));
        columns.resize(values.size() * codes.size());
        body_columns(line.workspace, body, channel, {1, line.workspace.station_count}, bench, codes, values,
                     columns, notes);
    }
    std::vector<double> column_of(std::span<const int> codes, int param_code) const {
        const auto k = static_cast<std::size_t>(std::ranges::find(codes, param_code) - codes.begin());
        return {column(k).begin(), column(k).end()};
    }
    std::span<const double> column(std::size_t k) const {
        return std::span(columns).subspan(k * values.size(), values.size());
    }
};

/// A step for such a slope: a turn moves what lies far away.
inline float difference_of(int param_code) {
    if (param_code == param_susc) return 512;
    return param_code == param_strike || param_code == param_dip ? 1.0F / 128 : 1.0F / 32;
}

/// The slope of the values of body 1 by a parameter: differences with their error of the second order taken
/// out.
inline std::vector<double> slope_of_values(Line& line, int channel, int param_code) {
    BodyBench bench;
    ExactNotes exact;
    Faults faults;
    BodyNotes notes{1, exact, faults};
    const StationRange range{1, line.workspace.station_count};
    ModelBody body = line.body();
    BodyParam& param = body_param(body, param_code);
    const float middle = param.value;
    const auto values_at = [&](float value) {
        std::vector<double> values(range.count());
        param.value = value;
        body_values(line.workspace, body, channel, range, bench, values, notes);
        return values;
    };
    const auto slope = [&](float by) {
        const double width = static_cast<double>(middle + by) - static_cast<double>(middle - by);
        return times(minus(values_at(middle + by), values_at(middle - by)), 1 / width);
    };
    const float step = difference_of(param_code);
    return times(minus(times(slope(step), 4), slope(2 * step)), 1.0 / 3);
}

/// What the rounding of the terms that a value is the sum of leaves: poles times
/// logarithms and angles, or those times a density and a kilometre. And what the rounding of a corner's place
/// leaves, a kilometre away, by which a sheet is wider or not.
inline double rounding_of_values(const Workspace& workspace, int channel,
                                 const std::vector<double>& by_width) {
    constexpr double of_a_term = 1e-15, logarithm = 10, kilometre = 1000, of_a_place = 5e-13;
    const double of_corners = of_a_place * peak_of(by_width);
    const ModelBody& body = workspace.body(1);
    if (channel == channel_grav)
        return of_corners +
               of_a_term * logarithm * kilometre * gravity_constant * std::abs(body.density.value);
    return of_corners + of_a_term * logarithm * workspace.field.intensity * (body.susc.value / 1e6) *
                            (1 + std::abs(body.rem_q.value)) / (4 * exact_pi);
}

/// All columns of a channel against such slopes, as parts of the largest value of each.
inline void expect_slopes_of_values(Line& line, int channel, double tolerance, const std::string& what) {
    const std::vector<int> codes = all_codes();
    const Columns found(line, channel, codes);
    const double rounding = rounding_of_values(line.workspace, channel, found.column_of(codes, param_width));
    for (std::size_t k = 0; k < codes.size(); ++k) {
        // 0 stands for no end, and has no neighbours.
        const float value = body_param(line.body(), codes[k]).value;
        if (value == 0 && (codes[k] == param_length || codes[k] == param_depth_extent)) continue;
        const std::vector<double> expected = slope_of_values(line, channel, codes[k]);
        const std::vector<double> column(found.column(k).begin(), found.column(k).end());
        EXPECT_LE(largest_difference(column, expected),
                  tolerance * peak_of(expected) + rounding / difference_of(codes[k]))
            << what << ", " << param_name(codes[k]) << ", channel " << channel;
    }
}

}  // namespace anomalis::forward

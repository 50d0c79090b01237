#include <gtest/gtest.h>
#include <random>

#include "forward/body_columns.h"
#include "forward/exact/exact_line.h"
#include "plane_reference.h"

namespace anomalis::forward {
namespace {

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

std::vector<double> close_stations(Dice& dice) {
    std::vector<double> along;
    for (double at = -400; at < 1000; at += dice.between(60, 260)) along.push_back(at);
    return along;
}

/// A body of any shape at a distance of some 300 m.
ModelBody& add_random(Line& line, BodyType type, Dice& dice) {
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

std::vector<int> all_codes() {
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
    std::span<const double> column(std::size_t k) const {
        return std::span(columns).subspan(k * values.size(), values.size());
    }
};

/// All columns of both channels against the reference, as parts of the largest value of each.
void expect_those_of_the_reference(const Line& line, const std::string& what) {
    const Workspace& workspace = line.workspace;
    const QuadBody body(workspace.body(1));
    const std::vector<int> codes = all_codes();
    for (const int channel : {channel_mag, channel_grav}) {
        const Columns found(line, channel, codes);
        const auto reference = channel == channel_mag ? reference_anomaly : reference_gravity;
        for (std::size_t k = 0; k < codes.size(); ++k) {
            // 0 stands for no end, and has no neighbours.
            if (codes[k] == param_depth_extent && body[param_depth_extent] == 0) continue;
            const std::vector<double> expected = reference_slope(workspace, body, codes[k], reference);
            const std::vector<double> column(found.column(k).begin(), found.column(k).end());
            EXPECT_LE(largest_difference(column, expected), 1e-9 * peak_of(expected))
                << what << ", " << param_name(codes[k]) << ", channel " << channel;
        }
    }
}

constexpr BodyType plane_types[] = {thin_sheet, thick_sheet, edge, sloping_step};

TEST(PlaneColumns, are_those_of_a_textbook_polygon_in_quadruple_precision) {
    Dice dice(20);
    for (const BodyType type : plane_types)
        for (int turn = 0; turn < 3; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            add_random(line, type, dice);
            expect_those_of_the_reference(line, std::string(body_type_name(type)) + std::to_string(turn));
        }
}

TEST(PlaneColumns, keep_their_digits_far_from_the_body) {
    Dice dice(21);
    for (const BodyType type : plane_types) {
        PlaceLine line({-9000, -6000, -5000, 0, 5000, 20000}, dice.between(0, 360), dice);
        // Far stations alone: the norm is theirs.
        line.workspace.stations(4, column_sensor) = 4000;
        ModelBody& body = add_random(line, type, dice);
        body.depth_extent.value = 150;
        expect_those_of_the_reference(line, std::string(body_type_name(type)));
    }
}

TEST(PlaneColumns, hold_just_over_a_corner_and_within_the_body) {
    Dice dice(22);
    for (const BodyType type : plane_types) {
        PlaceLine line({-200, 290, 300, 301, 320}, 75, dice);
        ModelBody& body = add_random(line, type, dice);
        body.distance.value = 300;
        body.strike.value = 170;
        body.top.value = 59;  // the sensors stand 1 to 6 m above
        expect_those_of_the_reference(line, "over " + std::string(body_type_name(type)));
        body.top.value = 75;
        body.width.value = 40;
        body.slope.value = 5;
        expect_those_of_the_reference(line, "within " + std::string(body_type_name(type)));
    }
}

TEST(PlaneColumns, are_numbers_on_corners_and_faces) {
    for (const BodyType type : plane_types)
        for (const float depth : {0.0F, 40.0F})
            for (const float dip : {90.0F, 45.0F, 0.0F, 180.0F}) {
                ExactLine line(41, 10, 90, 60);
                ModelBody& body = line.add(type, 200, 0);
                body.top.value = 60;
                body.width.value = 40;
                body.dip.value = dip;
                body.length.value = 0;
                body.depth_extent.value = depth;
                for (const int channel : {channel_mag, channel_grav}) {
                    const Columns found(line, channel, all_codes());
                    for (const double slope : found.columns) EXPECT_TRUE(std::isfinite(slope));
                    EXPECT_TRUE(found.faults.empty());
                }
            }
}

/// With demagnetisation the textbook has no short way: differences of the exact values, with their error of
/// the second order taken out.
TEST(PlaneColumns, follow_the_demagnetised_magnetisation) {
    Dice dice(23);
    BodyBench bench;
    ExactNotes exact;
    Faults faults;
    BodyNotes notes{1, exact, faults};
    for (const BodyType type : plane_types)
        for (int turn = 0; turn < 3; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            ModelBody& body = add_random(line, type, dice);
            body.include_demagnetisation = 1;
            body.susc.value = static_cast<float>(dice.between(5e5, 4e6));
            const std::vector<int> codes = all_codes();
            const Columns found(line, channel_mag, codes);
            const StationRange range{1, line.workspace.station_count};
            for (std::size_t k = 0; k < codes.size(); ++k) {
                BodyParam& param = body_param(body, codes[k]);
                const float middle = param.value;
                if (codes[k] == param_depth_extent && middle == 0) continue;
                if (codes[k] == param_length) continue;
                const float step = codes[k] == param_susc ? 1024 : 1.0F / 32;
                const auto slope = [&](float by) {
                    std::vector<double> ahead(found.values.size()), behind(found.values.size());
                    param.value = middle + by;
                    const double high = param.value;
                    body_values(line.workspace, body, channel_mag, range, bench, ahead, notes);
                    param.value = middle - by;
                    const double low = param.value;
                    body_values(line.workspace, body, channel_mag, range, bench, behind, notes);
                    param.value = middle;
                    return times(minus(ahead, behind), 1 / (high - low));
                };
                const std::vector<double> expected =
                    times(minus(times(slope(step), 4), slope(2 * step)), 1.0 / 3);
                const auto column = found.column(k);
                EXPECT_LE(largest_difference({column.begin(), column.end()}, expected),
                          1e-7 * peak_of(expected) + 1e-9)
                    << body_type_name(type) << turn << ", " << param_name(codes[k]);
            }
        }
}

TEST(PlaneColumns, values_are_those_of_the_exact_formulas_bit_for_bit) {
    Dice dice(24);
    for (const BodyType type : plane_types)
        for (int turn = 0; turn < 8; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            add_random(line, type, dice).include_demagnetisation = turn % 2;
            EXPECT_EQ(Columns(line, channel_mag, all_codes()).values, line.curve(Curve::magnetic));
            EXPECT_EQ(Columns(line, channel_grav, all_codes()).values, line.curve(Curve::gravity));
        }
}

}  // namespace
}  // namespace anomalis::forward

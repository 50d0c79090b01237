#include "forward/classic/talwani.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/classic/talwani_kernel.h"
#include "forward/line.h"
#include "forward/shape/reference_point.h"

namespace anomalis::forward {

namespace {

/// The sum over the section of body 1 by single edges.
double by_edges(const Line& line, Faults& faults, int i) {
    const ModelBody& body = line.workspace.body(1);
    const SheetBottom bottom = gravity_bottom(body);
    const double x = body.cos_strike * (line.workspace.stations(i, column_east) - body.east) -
                     body.sin_strike * (line.workspace.stations(i, column_north) - body.north);
    const double h = line.workspace.stations(i, column_sensor) - body.top.value;
    const double w = body.width.value, b = bottom.offset, d = bottom.depth;
    const double xs[5] = {0, w, w + b, b, 0}, zs[5] = {0, 0, -d, -d, 0};
    double sum = 0;
    for (int j = 0; j < 4; ++j)
        sum += talwani_edge(xs[j] - x, xs[j + 1] - x, zs[j] - h, zs[j + 1] - h, faults);
    return sum;
}

std::vector<double> filled(Line& line) {
    ModelBody& body = line.body();
    set_body_angles(body);
    update_body_reference_point(line.workspace, body.distance.value, body.east, body.north);
    fill_talwani(line.workspace, body, gravity_bottom(body), line.faults);
    const auto column = body.response.column(2);
    return {column.begin(), column.end()};
}

}  // namespace

TEST(TalwaniEdge, of_a_half_endless_slab_is_half_its_angle) {
    Faults faults;
    // A slab from far left to far right, 100 thick: the two level edges alone count.
    const double far = 1e7;
    const double top = talwani_edge(-far, far, -50, -50, faults);
    const double bottom = talwani_edge(far, -far, -150, -150, faults);
    EXPECT_NEAR(top + bottom, pi * 100, 0.01);
    EXPECT_TRUE(faults.empty());
}

TEST(TalwaniEdge, a_station_over_an_end_has_no_value) {
    for (const double end : {0.0, 5.0}) {
        Faults faults;
        EXPECT_EQ(talwani_edge(end, end == 0 ? 5 : 0, -10, -40, faults), 0);
        ASSERT_EQ(faults.entries().size(), 1U);
        EXPECT_EQ(texts_of(faults)[0],
                  "An error occurred calculating the Talwani gravity response: Division by zero");
    }
}

TEST(TalwaniEdge, a_short_edge_is_drawn_out_whatever_its_sign) {
    Faults faults;
    const double across = talwani_edge(5, 5.001, -10, -40, faults);
    EXPECT_NEAR(talwani_edge(5, 5, -10, -40, faults), across, 1e-9 * across);
    EXPECT_NEAR(talwani_edge(5, 4.9995, -10, -40, faults), across, 1e-9 * across);
    const double up = talwani_edge(5, 9, -10, -9.999, faults);
    EXPECT_NEAR(talwani_edge(5, 9, -10, -10.0005, faults), up, 1e-9 * std::abs(up));
}

TEST(TalwaniEdge, an_edge_that_points_at_the_station_has_no_value_or_little) {
    Faults faults;
    const double term = talwani_edge(30, 60, -30, -60, faults);
    EXPECT_LT(std::abs(term), 1e-9);
}

TEST(Talwani, stations_in_a_loop_agree_with_single_edges) {
    for (const double sensor : {100.0, 0.0, -40.0, -250.0}) {
        for (const double dip : {90.0, 35.0, 140.0, 0.0}) {
            Line line(101, 10, 0, sensor);
            ModelBody& body = line.add(thick_sheet, 433, 80);
            body.dip.value = static_cast<float>(dip);
            const std::vector<double> values = filled(line);
            Faults faults;
            for (int i = 1; i <= 101; ++i) {
                const double expected = by_edges(line, faults, i);
                EXPECT_NEAR(values[static_cast<std::size_t>(i - 1)], expected,
                            1e-6 * std::abs(expected) + 1e-7)
                    << "sensor " << sensor << " dip " << dip << " station " << i;
            }
            EXPECT_EQ(texts_of(faults), texts_of(line.faults));
        }
    }
}

TEST(Talwani, a_station_straight_over_a_corner_tells_it_and_loses_the_edge) {
    Line line(11);
    ModelBody& body = line.add(thick_sheet, 50, 90);
    body.dip.value = 60;
    const std::vector<double> values = filled(line);
    ASSERT_EQ(line.faults.entries().size(), 1U);
    EXPECT_EQ(line.faults.entries()[0].count, 2) << "two edges meet in the corner";
    Faults faults;
    EXPECT_NEAR(values[5], by_edges(line, faults, 6), 1e-6 * values[5]);
    EXPECT_GT(std::abs(values[5] - (values[4] + values[6]) / 2), 1) << "nothing was lost";
}

TEST(Talwani, a_thousand_stations_over_a_corner_are_told_in_one_text) {
    Line line(1000, 0.01);
    for (int i = 1; i <= 1000; ++i) line.workspace.stations(i, column_north) = 6500000;
    ModelBody& body = line.add(thick_sheet, 0, 90);
    body.dip.value = 60;
    const std::vector<double> values = filled(line);
    ASSERT_EQ(line.faults.entries().size(), 1U);
    EXPECT_EQ(line.faults.entries()[0].count, 2000) << "two edges a station";
    for (const double value : values) ASSERT_EQ(value, values[0]);
}

TEST(Talwani, a_body_over_which_stations_lose_edges_tells_it_once_where_it_stands) {
    Line line(41);
    ModelBody& body = line.add(thick_sheet, 100, 90);
    body.length.value = 0;
    body.dip.value = 60;
    const auto told_times = [&] {
        line.faults.clear();
        line.response(2);
        return line.faults.empty() ? 0 : line.faults.entries()[0].count;
    };
    EXPECT_EQ(told_times(), 4) << "two corners, two edges each";
    EXPECT_EQ(told_times(), 0) << "calculated again where it stands";
    body.density.value = 1;
    EXPECT_EQ(told_times(), 0) << "the density loses no edge";
    body.distance.value = 110;
    EXPECT_EQ(told_times(), 4) << "another step, other stations";
    EXPECT_EQ(told_times(), 0);
    body.distance.value = 113;
    EXPECT_EQ(told_times(), 0) << "nothing is lost here";
    body.distance.value = 110;
    EXPECT_EQ(told_times(), 4) << "back again";
    line.workspace.stations(12, column_sensor) += 1000;
    EXPECT_EQ(told_times(), 0) << "a station higher up is over the same corner";
    line.workspace.stations(12, column_north) += 3;
    EXPECT_EQ(told_times(), 2) << "one station left the corner";
}

TEST(Talwani, stations_beside_one_that_loses_edges_stay_right) {
    // The same section with its stations moved by a hair, so that none stands over a corner.
    const auto curve = [](double moved) {
        Line line(41);
        ModelBody& body = line.add(thick_sheet, 200, 90);
        body.length.value = 0;
        body.dip.value = 60;
        for (int i = 1; i <= 41; ++i) line.workspace.stations(i, column_north) += moved;
        // The reference point stays where it was.
        body.distance.value = static_cast<float>(200 - moved);
        return line.response(2);
    };
    const std::vector<double> over = curve(0), beside = curve(1.0 / 1024);
    int lost = 0;
    for (std::size_t i = 0; i < over.size(); ++i) {
        if (std::abs(over[i] - beside[i]) < 1e-4 * peak_of(beside)) continue;
        ++lost;
        EXPECT_TRUE(i == 10 || i == 20) << i;
    }
    EXPECT_EQ(lost, 2);
}

TEST(Talwani, a_sheet_without_width_and_depth_is_next_to_nothing) {
    Line line(11);
    ModelBody& body = line.add(thick_sheet, 53, 90);
    body.width.value = 0;
    body.depth_extent.value = 0;
    EXPECT_LT(peak_of(filled(line)), 0.01);
}

TEST(Talwani, gives_the_same_bits_at_every_vector_level) {
    Line line(203, 7);
    const StationView stations{line.workspace.stations.column(column_east).data(),
                               line.workspace.stations.column(column_north).data(),
                               line.workspace.stations.column(column_sensor).data(), 203};
    const BodyFrame frame{0.3, 0.95, 350100, 6500650, 0, 1};
    const SheetPolygon polygon{{0, 100, 180, 80, 0}, {0, 0, -200, -200, 0}};
    const auto run = [&](vector::VectorLevel level) {
        std::vector<double> all(2 * 203);
        talwani_stations_at(level)(stations, frame, polygon, all.data(), all.data() + 203);
        return all;
    };
    const std::vector<double> expected = run(vector::VectorLevel::baseline);
    for (const vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512})
        if (level <= vector::widest_vector_level()) {
            EXPECT_EQ(run(level), expected) << vector::vector_level_name(level);
        }
}

}  // namespace anomalis::forward

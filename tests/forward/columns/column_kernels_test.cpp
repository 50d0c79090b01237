#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include "column_line.h"
#include "forward/columns/plane_columns_kernel.h"
#include "forward/columns/solid_columns_kernel.h"
#include "forward/columns/solid_shape.h"
#include "forward/columns/term_weights.h"
#include "forward/exact/column_kernel.h"
#include "forward/exact/plane_strip.h"
#include "forward/station_columns.h"
#include "quad.h"

namespace anomalis::forward {
namespace {

using vector::VectorLevel;

constexpr int most = most_solid_terms;

/// A column for every term.
TermWeights each_term(int terms) {
    TermWeights weights;
    for (int term = 0; term < terms; ++term) {
        std::vector<double> column(static_cast<std::size_t>(terms));
        column[static_cast<std::size_t>(term)] = 1;
        weights.add_column(column);
    }
    return weights;
}

/// Runs a kernel at every level that the processor has: the same bits, and none of them without a number.
void expect_one_answer(const std::function<void(VectorLevel, double*, double*)>& kernel,
                       std::size_t stations) {
    std::vector<double> first, values(stations), columns(stations * most);
    for (const VectorLevel level : {VectorLevel::baseline, VectorLevel::avx2, VectorLevel::avx512}) {
        if (level > vector::widest_vector_level()) continue;
        kernel(level, values.data(), columns.data());
        std::vector<double> all = values;
        all.insert(all.end(), columns.begin(), columns.end());
        if (first.empty()) first = all;
        EXPECT_EQ(all, first) << vector::vector_level_name(level);
        EXPECT_TRUE(std::ranges::all_of(all, [](double v) { return std::isfinite(v); }));
    }
    EXPECT_GT(peak_of(first), 0);
}

SheetShape some_sheet(double depth) {
    SheetShape sheet;
    sheet.cotangent = 0.4;
    sheet.width = 60;
    sheet.rise = 7;
    sheet.depth = depth;
    sheet.limited = true;
    sheet.near_end = -90;
    sheet.far_end = 140;
    sheet.plunge = 0.1;
    return sheet;
}

const ExactField some_field{{0.3, 0.5, -std::sqrt(1 - 0.34)}, 50000, {40, 10, -90}};

struct Stations {
    ExactLine line{53, 13, 70, 40};
    StationView view = station_view(line.workspace);
    BodyFrame frame{std::cos(0.6), std::sin(0.6), 350310, 6500120, 5, 1};
};

TEST(ColumnKernels, of_the_plane_give_the_same_bits_at_every_level) {
    const Stations at;
    for (const double depth : {0.0, 120.0}) {
        Strip strip = strip_of(some_sheet(depth));
        strip.turn();
        const PlaneStrip poles = plane_strip(strip, some_field);
        StripMass mass(strip);
        mass.mass.factor = 0.01;
        const TermWeights anomaly =
            each_term(depth == 0 ? +anomaly_term::endless_count : +anomaly_term::count);
        const TermWeights gravity = each_term(depth == 0 ? +wall_term::count : +mass_term::count);
        const auto poles_at = [&](VectorLevel level, double* values, double* columns) {
            strip_anomaly_columns_at(level)(at.view, at.frame, poles, anomaly.columns(columns, at.view.count),
                                            values);
        };
        const auto mass_at = [&](VectorLevel level, double* values, double* columns) {
            strip_gravity_columns_at(level)(at.view, at.frame, mass.mass,
                                            gravity.columns(columns, at.view.count), values);
        };
        expect_one_answer(poles_at, at.view.count);
        expect_one_answer(mass_at, at.view.count);
    }
}

TEST(ColumnKernels, of_solids_give_the_same_bits_at_every_level) {
    const Stations at;
    for (const double depth : {0.0, 120.0})
        for (const bool gravity : {false, true}) {
            SolidSection section = section_of(corners_of(some_sheet(depth)));
            if (gravity) {
                set_gravity_weights(0.02, section);
            } else {
                set_anomaly_weights(some_field, section);
            }
            const int each = gravity ? 4 : 1;
            const TermWeights weights =
                each_term(each * (section.edges + section.faces) + 3 * section.corners + 4);
            expect_one_answer(
                [&](VectorLevel level, double*, double* columns) {
                    solid_columns_at(level)(at.view, at.frame, section,
                                            weights.columns(columns, at.view.count));
                },
                at.view.count);
        }
}

/// A polygon of the plane with its first corner repeated.
struct SomePolygon {
    double x[6] = {-40, 15, 70, 55, -10, -40};
    double z[6] = {-20, -35, -5, 30, 3, -20};
    double log_factor[5] = {1.5, -0.3, 0.7, 2, -1};
    double angle_factor[5] = {0.1, 0.9, -1.4, 0.6, 0.3};
};

TEST(ColumnKernels, of_responses_give_the_same_bits_at_every_level) {
    const Stations at;
    const SomePolygon p;
    const PlanePolygon polygon{p.x, p.z, p.log_factor, p.angle_factor, 5};
    const PlaneRing ring{polygon, 70, 3, -2, 5, 0.01};
    const PlaneMass mass{p.x, p.z, 5, false, 0, 0, 0, 0.01};
    const auto summed = [&](const auto& add) {
        expect_one_answer(
            [&](VectorLevel level, double* values, double*) {
                std::fill_n(values, at.view.count, 0.0);
                add(level, values);
            },
            at.view.count);
    };
    summed([&](VectorLevel level, double* values) {
        add_polygon_magnetics_at(level)(at.view, at.frame, polygon, values);
    });
    summed([&](VectorLevel level, double* values) {
        add_ring_magnetics_at(level)(at.view, at.frame, ring, values);
    });
    summed([&](VectorLevel level, double* values) {
        add_plane_gravity_at(level)(at.view, at.frame, mass, values);
    });
    for (const double depth : {0.0, 120.0}) {
        Strip strip = strip_of(some_sheet(depth));
        strip.turn();
        const PlaneStrip poles = plane_strip(strip, some_field);
        summed([&](VectorLevel level, double* values) {
            strip_magnetics_at(level)(at.view, at.frame, poles, values);
        });
    }
}

/// Stations about the middle of an edge, from beside it to 10^9 m off, near and far ones by turns.
struct StationsAbout {
    std::vector<double> east, north, sensor;

    StationsAbout(double x, double z) {
        for (int k = 0; k < 240; ++k) {
            const double distance = std::pow(10.0, 0.3 + 8.7 * (k * 7 % 60) / 60), angle = 0.1 + 1.7 * k;
            east.push_back(x + distance * std::cos(angle));
            north.push_back(0);
            sensor.push_back(z + distance * std::sin(angle));
        }
    }
    StationView view() const { return {east.data(), north.data(), sensor.data(), east.size()}; }
};

TEST(ColumnKernels, an_edge_keeps_its_digits_at_every_distance) {
    const double x[2] = {3, 10}, z[2] = {-4, -1}, one = 1, none = 0;
    const StationsAbout at(6.5, -2.5);
    const StationView view = at.view();
    const BodyFrame frame{1, 0, 0, 0, 0, 1};
    std::vector<double> log(view.count), angle(view.count), gravity(view.count);
    const auto zeroed = [](std::vector<double>& values) {
        std::ranges::fill(values, 0.0);
        return values.data();
    };
    for (const VectorLevel level : {VectorLevel::baseline, VectorLevel::avx2, VectorLevel::avx512}) {
        if (level > vector::widest_vector_level()) continue;
        add_polygon_magnetics_at(level)(view, frame, {x, z, &one, &none, 1}, zeroed(log));
        add_polygon_magnetics_at(level)(view, frame, {x, z, &none, &one, 1}, zeroed(angle));
        add_plane_gravity_at(level)(view, frame, {x, z, 1, false, 0, 0, 0, 1}, zeroed(gravity));
        for (std::size_t i = 0; i < view.count; ++i) {
            const QuadPair w1{Quad(x[0]) - view.east[i], Quad(z[0]) - view.sensor[i]};
            const QuadPair w2{Quad(x[1]) - view.east[i], Quad(z[1]) - view.sensor[i]};
            const QuadPair d = w2 - w1;
            const Quad n1 = dot(w1, w1), left = cross(w1, d);
            const QuadPair turn = quad_log({dot(w1, w2) / n1, cross(w1, w2) / n1});
            const auto size = static_cast<double>(quad_sqrt(dot(turn, turn)));
            EXPECT_NEAR(static_cast<double>(log[i] + 2 * turn.x), 0, 3e-15 * size) << i;
            EXPECT_NEAR(static_cast<double>(angle[i] - turn.z), 0, 2e-15 * size) << i;
            const Quad pull = left / dot(d, d) * (d.x * turn.z - d.z * turn.x);
            const double whole = static_cast<double>(quad_sqrt(dot(w1, w1))) * size;
            EXPECT_NEAR(static_cast<double>(gravity[i] - pull), 0, 3e-15 * whole) << i;
        }
    }
}

TEST(ColumnKernels, near_and_far_stations_side_by_side_give_the_same_bits_at_every_level) {
    const StationsAbout at(30, -3);
    const StationView view = at.view();
    const BodyFrame frame{1, 0, 0, 0, 0, 1};
    for (const double depth : {0.0, 120.0}) {
        Strip strip = strip_of(some_sheet(depth));
        strip.turn();
        const PlaneStrip poles = plane_strip(strip, some_field);
        expect_one_answer([&](VectorLevel level, double* values,
                              double*) { strip_magnetics_at(level)(view, frame, poles, values); },
                          view.count);
        StripMass mass(strip);
        mass.mass.factor = 0.01;
        expect_one_answer(
            [&](VectorLevel level, double* values, double*) {
                std::fill_n(values, view.count, 0.0);
                add_plane_gravity_at(level)(view, frame, mass.mass, values);
            },
            view.count);
    }
}

/// A polygon of more edges than are prepared at once is the sum of its parts.
TEST(ColumnKernels, a_polygon_of_many_edges_is_the_sum_of_its_parts) {
    constexpr int edges = 150, part = 50;
    std::vector<double> x, z, factor(edges, 0.7);
    for (int k = 0; k <= edges; ++k) {
        x.push_back(50 * std::cos(6.2831853 * k / edges));
        z.push_back(40 * std::sin(6.2831853 * k / edges) - 60);
    }
    const StationsAbout at(30, -3);
    const StationView view = at.view();
    const BodyFrame frame{1, 0, 0, 0, 0, 1};
    const VectorLevel level = vector::widest_vector_level();
    std::vector<double> whole(view.count), parts(view.count), mass(view.count), masses(view.count);
    add_polygon_magnetics_at(level)(view, frame, {x.data(), z.data(), factor.data(), factor.data(), edges},
                                    whole.data());
    add_plane_gravity_at(level)(view, frame, {x.data(), z.data(), edges, true, 0.6, -0.8, 2, 1}, mass.data());
    for (int from = 0; from < edges; from += part) {
        const double *px = x.data() + from, *pz = z.data() + from;
        add_polygon_magnetics_at(level)(view, frame, {px, pz, factor.data(), factor.data(), part},
                                        parts.data());
        add_plane_gravity_at(level)(view, frame, {px, pz, part, true, 0.6, -0.8, from == 0 ? 2.0 : 0.0, 1},
                                    masses.data());
    }
    for (std::size_t i = 0; i < view.count; ++i) {
        EXPECT_NEAR(whole[i], parts[i], 1e-12);
        // The walls of the parts cancel but for their rounding.
        EXPECT_NEAR(mass[i], masses[i], 1e-10 * std::hypot(view.east[i], view.sensor[i], 100));
    }
}

TEST(ColumnKernels, of_an_endless_column_give_the_same_bits_at_every_level) {
    const Stations at;
    ColumnBody column{{{0, -90, 9}, {60, -90, 16}, {60, 140, -7}, {0, 140, -14}},
                      {0.6, 0, -0.8},
                      {{0.1, 0.2, 0.97}, {0, -1, 0}, {0.8, 0, 0.6}, {0, 1, 0}, {-0.8, 0, -0.6}},
                      {14000, 50, 230, 50, 230},
                      {60.4, 231, 60.4, 231},
                      {0.4, -1.2, 0.3, 0.8, -0.5, 0.7, 1.1, -0.2},
                      {},
                      {0.3, 0.9, -0.4, 0.2, 0.6},
                      {},
                      true,
                      1e-6};
    for (auto& gradient : column.edge_gradient)
        for (int k = 0; k < 3; ++k) gradient[k] = 0.01 * (k - 1.3);
    expect_one_answer([&](VectorLevel level, double* values,
                          double*) { column_stations_at(level)(at.view, at.frame, column, values); },
                      at.view.count);
}

}  // namespace
}  // namespace anomalis::forward

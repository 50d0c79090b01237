// The exact kernels on one thread against textbook formulas as plain loops over stations, over sizes: the
// prism by its eight corners (Nagy 1966, Geophysics 31; Bhattacharyya 1964, Geophysics 29), the polygon by
// its edges (Talwani, Worzel and Landisman 1959, J. Geophys. Res. 64), a polyhedron facet by facet.

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "forward/exact/plane_kernel.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/prism.h"
#include "lumpy_body.h"
#include "timing.h"

namespace anomalis {
namespace {

const Point3 low{-50, -125, -300}, high{50, 125, -50};
const Point3 magnetisation{120, -340, 250};
const Point3 direction{-0.03, 0.42, -0.907};
constexpr int turns = 10;
constexpr forward::Execution one_thread{vector::VectorLevel::avx512, 1};

struct Line {
    std::vector<double> east, north, up, field, gravity;

    explicit Line(std::size_t n) : east(n), north(n), up(n, 1.5), field(n), gravity(n) {
        for (std::size_t i = 0; i < n; ++i) {
            east[i] = 1500 * (2 * static_cast<double>(i) / static_cast<double>(n) - 1);
            north[i] = 0.1 * east[i] + 3;
        }
    }
    forward::StationSpans spans() const { return {east, north, up}; }
    Point3 place(std::size_t i) const { return {east[i], north[i], up[i]}; }
    std::size_t size() const { return east.size(); }
};

/// Calls use(x, y, z, r, sign) for every corner of the prism from a station.
template <class Use>
void for_corners(const Point3& at, const Use& use) {
    for (int corner = 0; corner < 8; ++corner) {
        const double x = ((corner & 1) != 0 ? high.x : low.x) - at.x;
        const double y = ((corner & 2) != 0 ? high.y : low.y) - at.y;
        const double z = ((corner & 4) != 0 ? high.z : low.z) - at.z;
        const int ones = (corner & 1) + (corner >> 1 & 1) + (corner >> 2 & 1);
        use(x, y, z, std::sqrt(x * x + y * y + z * z), ones % 2 == 1 ? 1.0 : -1.0);
    }
}

double corner_gravity(const Point3& at) {
    double sum = 0;
    for_corners(at, [&](double x, double y, double z, double r, double sign) {
        sum += sign * (x * std::log(y + r) + y * std::log(x + r) - z * std::atan2(x * y, z * r));
    });
    return sum;
}

double corner_field(const Point3& at) {
    double xx = 0, yy = 0, zz = 0, xy = 0, xz = 0, yz = 0;
    for_corners(at, [&](double x, double y, double z, double r, double sign) {
        xx -= sign * std::atan2(y * z, x * r);
        yy -= sign * std::atan2(x * z, y * r);
        zz -= sign * std::atan2(x * y, z * r);
        xy += sign * std::log(z + r);
        xz += sign * std::log(y + r);
        yz += sign * std::log(x + r);
    });
    const Point3 &m = magnetisation, &f = direction;
    return f.x * (xx * m.x + xy * m.y + xz * m.z) + f.y * (xy * m.x + yy * m.y + yz * m.z) +
           f.z * (xz * m.x + yz * m.y + zz * m.z);
}

void prism(benchmark::State& state) {
    Line line(static_cast<std::size_t>(state.range(0))), peer = line;
    std::vector<Point3> corners;
    for (const double z : {high.z, low.z})
        corners.insert(corners.end(), {Point3{low.x, high.y, z}, Point3{low.x, low.y, z},
                                       Point3{high.x, low.y, z}, Point3{high.x, high.y, z}});
    forward::Polyhedron body(corners, forward::prism_triangles);
    BestTime field, gravity, both, peer_field, peer_gravity;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            state.SetIterationTime(field.take(
                [&] { body.total_field(line.spans(), magnetisation, direction, line.field, one_thread); }));
            gravity.take([&] { body.gravity(line.spans(), 2.67, line.gravity, one_thread); });
            both.take([&] {
                body.total_field_and_gravity(line.spans(), magnetisation, direction, 2.67, line.field,
                                             line.gravity, one_thread);
            });
            peer_field.take([&] {
                for (std::size_t i = 0; i < peer.size(); ++i) peer.field[i] = corner_field(peer.place(i));
            });
            peer_gravity.take([&] {
                for (std::size_t i = 0; i < peer.size(); ++i) peer.gravity[i] = corner_gravity(peer.place(i));
            });
            benchmark::DoNotOptimize(peer.field.data());
            benchmark::DoNotOptimize(peer.gravity.data());
        }
    const double each = 1e9 / static_cast<double>(line.size());
    state.counters["field_ns"] = field.seconds() * each;
    state.counters["gravity_ns"] = gravity.seconds() * each;
    state.counters["both_of_field"] = both.seconds() / field.seconds();
    state.counters["field_times"] = peer_field.seconds() / field.seconds();
    state.counters["gravity_times"] = peer_gravity.seconds() / gravity.seconds();
}
BENCHMARK(prism)->Arg(64)->Arg(1000)->Arg(8193)->Arg(100000)->UseManualTime()->Iterations(3)->Unit(
    benchmark::kMicrosecond);

/// The vertical attraction of a polygon, edge by edge: logarithms and angles of both ends.
double edge_by_edge(const std::vector<double>& x, const std::vector<double>& z, double sx, double sz) {
    double sum = 0;
    for (std::size_t k = 0; k + 1 < x.size(); ++k) {
        const double x1 = x[k] - sx, z1 = z[k] - sz, x2 = x[k + 1] - sx, z2 = z[k + 1] - sz;
        const double dx = x2 - x1, dz = z2 - z1, l2 = dx * dx + dz * dz;
        double angle = std::atan2(z2, x2) - std::atan2(z1, x1);
        if (angle > 3.14159265358979323846) angle -= 2 * 3.14159265358979323846;
        if (angle < -3.14159265358979323846) angle += 2 * 3.14159265358979323846;
        const double log = 0.5 * std::log((x2 * x2 + z2 * z2) / (x1 * x1 + z1 * z1));
        sum += (x1 * z2 - x2 * z1) / l2 * (dx * angle - dz * log);
    }
    return sum;
}

void polygon(benchmark::State& state) {
    const auto edges = static_cast<int>(state.range(0));
    Line line(2000), peer = line;
    std::vector<double> x, z, factor(static_cast<std::size_t>(edges), 1.5);
    for (int k = 0; k <= edges; ++k) {
        const double angle = 2 * 3.14159265358979323846 * k / edges;
        x.push_back(100 * std::cos(angle) * (1 + 0.2 * std::cos(3 * angle)));
        z.push_back(100 * std::sin(angle) - 160);
    }
    const forward::StationView view{line.east.data(), line.north.data(), line.up.data(), line.size()};
    const forward::BodyFrame frame{1, 0, 0, 0, 0, 1};
    const vector::VectorLevel level = vector::widest_vector_level();
    BestTime magnetics, gravity, textbook;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            state.SetIterationTime(magnetics.take([&] {
                forward::add_polygon_magnetics_at(level)(
                    view, frame, {x.data(), z.data(), factor.data(), factor.data(), edges},
                    line.field.data());
            }));
            gravity.take([&] {
                forward::add_plane_gravity_at(level)(
                    view, frame, {x.data(), z.data(), edges, false, 0, 0, 0, 1}, line.gravity.data());
            });
            textbook.take([&] {
                for (std::size_t i = 0; i < peer.size(); ++i)
                    peer.gravity[i] = edge_by_edge(x, z, peer.east[i], peer.up[i]);
            });
            benchmark::DoNotOptimize(peer.gravity.data());
        }
    const double each = 1e9 / static_cast<double>(line.size()) / edges;
    state.counters["magnetics_ns_an_edge"] = magnetics.seconds() * each;
    state.counters["gravity_ns_an_edge"] = gravity.seconds() * each;
    state.counters["magnetics_times"] = textbook.seconds() / magnetics.seconds();
    state.counters["gravity_times"] = textbook.seconds() / gravity.seconds();
}
BENCHMARK(polygon)->Arg(4)->Arg(20)->Arg(100)->Arg(500)->UseManualTime()->Iterations(3)->Unit(
    benchmark::kMicrosecond);

/// Solid angles of the facets and logarithms of their sides, each facet for itself.
double facet_by_facet(const Surface& surface, const Point3& at) {
    double sum = 0;
    for (const forward::Facet& facet : surface.facets) {
        std::array<Point3, 3> p;
        std::array<double, 3> r{};
        for (std::size_t i = 0; i < 3; ++i) {
            const Point3& q = surface.points[static_cast<std::size_t>(facet[i])];
            p[i] = {q.x - at.x, q.y - at.y, q.z - at.z};
            r[i] = std::sqrt(p[i].x * p[i].x + p[i].y * p[i].y + p[i].z * p[i].z);
        }
        const auto dot = [](const Point3& a, const Point3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; };
        const auto cross = [](const Point3& a, const Point3& b) {
            return Point3{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
        };
        const auto minus = [](const Point3& a, const Point3& b) {
            return Point3{a.x - b.x, a.y - b.y, a.z - b.z};
        };
        Point3 n = cross(minus(p[1], p[0]), minus(p[2], p[0]));
        const double size = std::sqrt(dot(n, n));
        n = {n.x / size, n.y / size, n.z / size};
        const double angle =
            2 * std::atan2(dot(p[0], cross(p[1], p[2])), r[0] * r[1] * r[2] + dot(p[0], p[1]) * r[2] +
                                                             dot(p[1], p[2]) * r[0] + dot(p[2], p[0]) * r[1]);
        double field = -dot(n, direction) * angle;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t j = (i + 1) % 3;
            const Point3 side = minus(p[j], p[i]);
            const double l = std::sqrt(dot(side, side));
            field += dot(cross(side, n), direction) / l * std::log((r[i] + r[j] + l) / (r[i] + r[j] - l));
        }
        sum += dot(n, magnetisation) * field;
    }
    return sum;
}

void polyhedron(benchmark::State& state) {
    const Surface surface = lumpy_body_of(static_cast<int>(state.range(0)));
    forward::Polyhedron body(surface.points, surface.facets);
    Line line(500), peer = line;
    BestTime field, textbook;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            state.SetIterationTime(field.take(
                [&] { body.total_field(line.spans(), magnetisation, direction, line.field, one_thread); }));
            textbook.take([&] {
                for (std::size_t i = 0; i < peer.size(); ++i)
                    peer.field[i] = facet_by_facet(surface, peer.place(i));
            });
            benchmark::DoNotOptimize(peer.field.data());
        }
    state.counters["field_ns_a_facet"] =
        field.seconds() * 1e9 / static_cast<double>(line.size() * body.facet_count());
    state.counters["times"] = textbook.seconds() / field.seconds();
}
BENCHMARK(polyhedron)
    ->Arg(12)
    ->Arg(48)
    ->Arg(1000)
    ->Arg(10000)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace anomalis

// The exact polyhedron: nanoseconds for each station and facet on one thread, against the plain route facet
// by facet over the same triangles and against its own logarithms and arc tangents alone.

#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "allocations.h"
#include "core/faults.h"
#include "core/workspace.h"
#include "elementary_loops.h"
#include "forward/classic/facet.h"
#include "forward/polyhedron/polyhedron.h"
#include "lumpy_body.h"
#include "timing.h"

namespace anomalis {
namespace {

const Point3 magnetisation{120, -340, 250};
const Point3 direction{-0.03, 0.42, -0.907};
constexpr double density = 2.67;

/// A profile that crosses the body and stays within 16 radii of it, where every station sees every facet.
struct Profile {
    std::vector<double> east, north, up, field, gravity;

    explicit Profile(std::size_t n, double half_length = 700)
        : east(n), north(n), up(n, 1.5), field(n), gravity(n) {
        for (std::size_t i = 0; i < n; ++i) {
            east[i] = half_length * (2 * static_cast<double>(i) / static_cast<double>(n) - 1);
            north[i] = 0.1 * east[i] + 3;
        }
    }
    forward::StationSpans spans() const { return {east, north, up}; }
    std::size_t size() const { return east.size(); }
};

void total_field(forward::Polyhedron& body, Profile& at,
                 const forward::Execution& how = {vector::widest_vector_level(), 1}) {
    body.total_field(at.spans(), magnetisation, direction, at.field, how);
}

void both(forward::Polyhedron& body, Profile& at,
          const forward::Execution& how = {vector::widest_vector_level(), 1}) {
    body.total_field_and_gravity(at.spans(), magnetisation, direction, density, at.field, at.gravity, how);
}

/// The plain route over the same triangles, at fewer stations where the body is large.
class FacetRoute {
  public:
    FacetRoute(const Surface& surface, int stations) {
        workspace_.station_count = stations;
        workspace_.stations.assign(stations);
        const Profile profile(static_cast<std::size_t>(stations));
        for (int i = 1; i <= stations; ++i) {
            const auto from = static_cast<std::size_t>(i - 1);
            workspace_.stations(i, column_east) = profile.east[from];
            workspace_.stations(i, column_north) = profile.north[from];
            workspace_.stations(i, column_sensor) = profile.up[from];
        }
        body_.response.assign(stations);
        for (const forward::Facet& facet : surface.facets) {
            std::array<forward::NedVector, 3> corners;
            for (std::size_t i = 0; i < 3; ++i) {
                const Point3& p = surface.points[static_cast<std::size_t>(facet[i])];
                corners[i] = {p.y - profile.north[0], p.x - profile.east[0], profile.up[0] - p.z};
            }
            triangles_.push_back(corners);
        }
    }
    void run() {
        for (const auto& corners : triangles_)
            forward::calculate_facet_response(workspace_, body_, {true, true},
                                              {magnetisation.y, magnetisation.x, -magnetisation.z}, corners,
                                              faults_);
    }
    double count() const { return static_cast<double>(triangles_.size()) * workspace_.station_count; }
    bool failed() const { return !faults_.empty(); }

  private:
    Workspace workspace_;
    ModelBody body_;
    std::vector<std::array<forward::NedVector, 3>> triangles_;
    Faults faults_;
};

/// Logarithms and arc tangents of as many edges and faces, nanoseconds for each facet.
class Elementary {
  public:
    Elementary() : low_(count), high_(count), result_(count) {
        for (std::size_t i = 0; i < count; ++i) {
            low_[i] = 0.01 + 0.001 * static_cast<double>(i);
            high_[i] = 1.5 + 0.002 * static_cast<double>(i % 100);
        }
    }
    void run() {
        logarithm_.take([&] { repeat(logarithms_at(vector::widest_vector_level()), high_, low_); });
        arc_tangent_.take([&] { repeat(arc_tangents_at(vector::widest_vector_level()), low_, high_); });
    }
    double nanoseconds(double edges_a_facet) const {
        return (edges_a_facet * logarithm_.seconds() + arc_tangent_.seconds()) * 1e9 / (turns * count);
    }

  private:
    static constexpr std::size_t count = 512;
    static constexpr int turns = 20;

    template <class Loop>
    void repeat(Loop loop, const std::vector<double>& a, const std::vector<double>& b) {
        for (int turn = 0; turn < turns; ++turn) {
            loop(a.data(), b.data(), result_.data(), count);
            benchmark::DoNotOptimize(result_.data());
            benchmark::ClobberMemory();
        }
    }
    std::vector<double> low_, high_, result_;
    BestTime logarithm_, arc_tangent_;
};

void field_of_a_body(benchmark::State& state) {
    const Surface surface = lumpy_body_of(static_cast<int>(state.range(0)));
    forward::Polyhedron body(surface.points, surface.facets);
    Profile at(static_cast<std::size_t>(state.range(1)));
    const auto facets = static_cast<double>(body.facet_count());
    FacetRoute route(surface, static_cast<int>(std::clamp(1e5 / facets, 16.0, 1000.0)));
    Elementary elementary;
    BestTime one, two, plain;
    both(body, at);  // takes its memory
    long allocations = 0;
    for (auto _ : state) {
        const long before = allocation_count();
        one.take([&] { total_field(body, at); });
        state.SetIterationTime(two.take([&] { both(body, at); }));
        allocations += allocation_count() - before;
        plain.take([&] { route.run(); });
        elementary.run();
    }
    if (route.failed()) state.SkipWithError("the facet route failed");
    const double each = 1e9 / (facets * static_cast<double>(at.size()));
    const double facet_route = plain.seconds() * 1e9 / route.count();
    const double of_functions = elementary.nanoseconds(static_cast<double>(body.edge_count()) / facets);
    state.counters["field_ns"] = one.seconds() * each;
    state.counters["both_ns"] = two.seconds() * each;
    state.counters["facet_route_ns"] = facet_route;
    state.counters["times_faster"] = facet_route / (two.seconds() * each);
    state.counters["log_and_atan_share"] = of_functions / (one.seconds() * each);
    state.counters["allocations"] = static_cast<double>(allocations);
}
BENCHMARK(field_of_a_body)
    ->ArgNames({"facets", "stations"})
    ->ArgsProduct({{12, 48, 1000, 20000}, {1000, 8193}})
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond);

void every_vector_level(benchmark::State& state) {
    const Surface surface = lumpy_body_of(1000);
    forward::Polyhedron body(surface.points, surface.facets);
    Profile at(1000);
    BestTime time[3];
    for (auto _ : state)
        for (int level = 0; level <= static_cast<int>(vector::widest_vector_level()); ++level)
            state.SetIterationTime(time[level].take([&] {
                both(body, at, {static_cast<vector::VectorLevel>(level), 1});
            }));
    for (int level = 0; level <= static_cast<int>(vector::widest_vector_level()); ++level) {
        const std::string name(vector::vector_level_name(static_cast<vector::VectorLevel>(level)));
        state.counters[name + "_ns"] =
            time[level].seconds() * 1e9 / (static_cast<double>(body.facet_count()) * 1000);
    }
}
BENCHMARK(every_vector_level)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

/// Nanoseconds for each station and facet over facets and stations: level lines mean linear cost. Preparing a
/// shape counts as nanoseconds a facet.
void cost_by_size(benchmark::State& state) {
    const Surface surface = lumpy_body_of(static_cast<int>(state.range(0)));
    Profile at(static_cast<std::size_t>(state.range(1)));
    forward::Polyhedron body;
    BestTime prepare, field;
    for (auto _ : state) {
        prepare.take([&] { body.assign(surface.points, surface.facets); });
        state.SetIterationTime(field.take([&] { total_field(body, at); }));
    }
    const auto facets = static_cast<double>(body.facet_count());
    state.counters["facets"] = facets;
    state.counters["field_ns"] = field.seconds() * 1e9 / (facets * static_cast<double>(at.size()));
    state.counters["prepare_ns_a_facet"] = prepare.seconds() * 1e9 / facets;
}
BENCHMARK(cost_by_size)
    ->ArgNames({"facets", "stations"})
    ->ArgsProduct({{100, 1000, 10000, 100000}, {256}})
    ->ArgsProduct({{1000}, {64, 1000, 10000, 100000}})
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

double wall_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void spread_over_threads(benchmark::State& state) {
    const Surface surface = lumpy_body_of(1000);
    forward::Polyhedron body(surface.points, surface.facets);
    Profile at(8193);
    double one = 1e9, all = 1e9;
    for (auto _ : state) {
        const double start = wall_seconds();
        total_field(body, at);
        const double middle = wall_seconds();
        total_field(body, at, {});
        const double end = wall_seconds();
        one = std::min(one, middle - start);
        all = std::min(all, end - middle);
        state.SetIterationTime(end - middle);
    }
    state.counters["times_faster_than_one"] = one / all;
}
BENCHMARK(spread_over_threads)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);

/// A body that moves: its shape is taken anew and its total field calculated. On a profile of 1.4 km all
/// stations see every facet, on one of 40 km most are far.
void moving_body(benchmark::State& state) {
    Surface surface = lumpy_body_of(static_cast<int>(state.range(0)));
    Profile at(8193, static_cast<double>(state.range(1)) * 500);
    forward::Polyhedron body;
    BestTime time;
    for (auto _ : state) {
        for (Point3& p : surface.points) p.x += 0.25;
        state.SetIterationTime(time.take([&] {
            body.assign(surface.points, surface.facets);
            total_field(body, at);
        }));
    }
    state.counters["ms"] = time.seconds() * 1e3;
}
BENCHMARK(moving_body)
    ->ArgNames({"facets", "profile_km"})
    ->ArgsProduct({{12, 48, 1000}, {1, 40}})
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis

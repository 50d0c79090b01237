// The exact formulas at 8193 stations: each body against its classic form, plane polygons a station and edge,
// solids against the kernel of polyhedra.

#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "core/faults.h"
#include "forward/classic/gravity_response.h"
#include "forward/classic/mag_response.h"
#include "forward/driver.h"
#include "forward/exact/exact_response.h"
#include "forward/exact/exact_solid.h"
#include "forward/exact/plane_kernel.h"
#include "forward/shape/exact_shape.h"
#include "level_line.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int stations = 8193;
constexpr int turns = 20;

struct Kind {
    const char* name;
    BodyType type;
    float depth_extent, length;
    bool gravity;
};
constexpr Kind kinds[] = {{"thin sheet", thin_sheet, 250, 0, false},
                          {"thin sheet, endless", thin_sheet, 0, 0, false},
                          {"thick sheet", thick_sheet, 250, 0, false},
                          {"thick sheet, endless", thick_sheet, 0, 0, false},
                          {"edge", edge, 250, 0, false},
                          {"step", sloping_step, 250, 0, false},
                          {"sphere", sphere, 0, 0, false},
                          {"prism", thick_sheet, 250, 250, false},
                          {"column", thick_sheet, 0, 250, false},
                          {"pipe", pipe, 0, 250, false},
                          {"pipe, endless", pipe, 0, 0, false},
                          {"wire", wire, 0, 0, false},
                          {"thick sheet, gravity", thick_sheet, 250, 0, true},
                          {"thick sheet, endless, gravity", thick_sheet, 0, 0, true},
                          {"prism, gravity", thick_sheet, 250, 250, true},
                          {"column, gravity", thick_sheet, 0, 250, true},
                          {"pipe, gravity", pipe, 0, 250, true},
                          {"pipe, endless, gravity", pipe, 0, 0, true}};

// `of_classic` compares what a person waits for, the model with one changed body; `formula_of_classic` the
// formulas alone.

/// A body of its kind on an east-west line. The sphere's classic form has no response there, but as much
/// work.
Workspace line_with(const Kind& kind) {
    Workspace workspace = level_line(stations);
    workspace.definition.grav_column = 4;
    ModelBody& body = add_body(workspace, kind.type, 4000);
    body.depth_extent.value = kind.depth_extent;
    body.length.value = kind.length;
    if (kind.type == sphere) workspace.azimuth = 1;
    return workspace;
}

void exact_over_classic(benchmark::State& state) {
    const Kind& kind = kinds[state.range(0)];
    Faults faults;
    Workspace workspace = line_with(kind);
    forward::ExactNotes notes;
    BestTime exact, classic, exact_model, classic_model;
    const auto recalculate = [&](Formulas formulas) {
        workspace.formulas = formulas;
        (kind.gravity ? workspace.body(1).grav_response_valid : workspace.body(1).mag_response_valid) = false;
        forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults);
    };
    recalculate(Formulas::classic);
    workspace.body(1).mag_response_valid = workspace.body(1).grav_response_valid = true;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            exact_model.take([&] { recalculate(Formulas::exact); });
            classic_model.take([&] { recalculate(Formulas::classic); });
            state.SetIterationTime(exact.take([&] {
                if (kind.gravity)
                    return forward::calculate_exact_gravity_response(workspace, 1, notes, faults);
                forward::calculate_exact_mag_response(workspace, 1, notes, faults);
            }));
            classic.take([&] {
                if (kind.gravity) return forward::calculate_gravity_response(workspace, 1, faults);
                forward::calculate_mag_response(workspace, 1, faults);
            });
        }
    state.SetLabel(kind.name);
    state.counters["of_classic"] = exact_model.seconds() / classic_model.seconds();
    state.counters["formula_of_classic"] = exact.seconds() / classic.seconds();
    state.counters["ns_a_station"] = exact.seconds() * 1e9 / stations;
}
BENCHMARK(exact_over_classic)
    ->DenseRange(0, static_cast<int>(std::size(kinds)) - 1)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMicrosecond);

/// Anything with a surface of triangles against the kernel alone on the same triangles.
void solid_over_kernel(benchmark::State& state) {
    Faults faults;
    const bool round = state.range(0) == 1;
    Workspace workspace = line_with({"", round ? pipe : thin_sheet, 250, 250, false});
    ModelBody& body = workspace.body(1);
    forward::ExactNotes notes;
    forward::calculate_exact_mag_response(workspace, 1, notes, faults);
    forward::Polyhedron polyhedron;
    if (round) {
        forward::assign_pipe(forward::exact_frame(body), forward::pipe_shape(body), polyhedron);
    } else {
        forward::assign_prism(forward::exact_frame(body), forward::sheet_shape(body), polyhedron);
    }
    std::vector<double> values(stations);
    const forward::StationSpans spans{workspace.stations.column(column_east),
                                      workspace.stations.column(column_north),
                                      workspace.stations.column(column_sensor)};
    BestTime exact, kernel;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            state.SetIterationTime(
                exact.take([&] { forward::calculate_exact_mag_response(workspace, 1, notes, faults); }));
            kernel.take([&] { polyhedron.total_field(spans, {1, 2, 3}, {0, 0, 1}, values); });
        }
    state.SetLabel(round ? "pipe" : "thin sheet with a length");
    state.counters["exact_over_kernel"] = exact.seconds() / kernel.seconds();
}
BENCHMARK(solid_over_kernel)->Arg(0)->Arg(1)->UseManualTime()->Iterations(5)->Unit(benchmark::kMicrosecond);

/// A regular polygon of 100 corners on one thread.
void plane_polygon(benchmark::State& state) {
    constexpr int edges = 100;
    const Workspace workspace = level_line(stations);
    std::vector<double> x, z, factor(edges, 1.5);
    for (int k = 0; k <= edges; ++k) {
        x.push_back(100 * std::cos(2 * forward::exact_pi * k / edges));
        z.push_back(100 * std::sin(2 * forward::exact_pi * k / edges));
    }
    const forward::StationView view{workspace.stations.column(column_east).data(),
                                    workspace.stations.column(column_north).data(),
                                    workspace.stations.column(column_sensor).data(), stations};
    const forward::BodyFrame frame{0.8, 0.6, 354000, 6500000, 30, 1};
    std::vector<double> values(stations);
    BestTime magnetics, gravity;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            state.SetIterationTime(magnetics.take([&] {
                forward::add_polygon_magnetics_at(vector::widest_vector_level())(
                    view, frame, {x.data(), z.data(), factor.data(), factor.data(), edges}, values.data());
            }));
            gravity.take([&] {
                forward::add_plane_gravity_at(vector::widest_vector_level())(
                    view, frame, {x.data(), z.data(), edges, false, 0, 0, 0, 1}, values.data());
            });
            benchmark::DoNotOptimize(values.data());
        }
    state.counters["ns_a_station_and_edge"] = magnetics.seconds() * 1e9 / stations / edges;
    state.counters["gravity_ns_a_station_and_edge"] = gravity.seconds() * 1e9 / stations / edges;
}
BENCHMARK(plane_polygon)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);

/// What the tensor of a prism costs, in stations of its response.
void prism_tensor(benchmark::State& state) {
    Faults faults;
    Workspace workspace = line_with({"", thick_sheet, 250, 250, false});
    ModelBody& body = workspace.body(1);
    forward::ExactNotes notes;
    BestTime tensor, response;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            state.SetIterationTime(tensor.take([&] {
                body.demagnetisation.known = false;
                benchmark::DoNotOptimize(forward::body_demagnetisation(body));
            }));
            response.take([&] { forward::calculate_exact_mag_response(workspace, 1, notes, faults); });
        }
    state.counters["as_many_stations"] = tensor.seconds() / response.seconds() * stations;
}
BENCHMARK(prism_tensor)->UseManualTime()->Iterations(3)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace anomalis

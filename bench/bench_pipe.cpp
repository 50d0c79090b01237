// A demagnetised hollow pipe over the number of its segments, classic formulas, 12 sectors: its factors, and
// the model of 201 stations with it. Beside each what the same would take where every segment is a ring of
// facets of its own: its points asked one after the other over all of them, as many as ten and the rest in
// proportion.
//
// One run of the machine that this was written on (milliseconds of processor; `ratio` is `by_rings` over
// `factors`, `error` the largest difference of a factor at the ten points):
//
//     segments  factors_ms  by_rings_ms   ratio  model_ms    error
//           50       0.064         4.69      74     0.125  5.0e-13
//          100       0.108           19     177     0.184  6.4e-13
//          200       0.193         77.9     404     0.293  8.3e-13
//          500       0.437          493    1127     0.536  9.3e-13
//         1000        0.88         2007    2280     0.945  9.9e-13
//         2000        1.92         8163    4252      2.03  9.8e-13
//         4000        3.59        32559    9082      3.72  9.8e-13

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "core/faults.h"
#include "forward/classic/demagnetisation.h"
#include "forward/driver.h"
#include "forward/shape/body_solid.h"
#include "level_line.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int stations = 201;
constexpr int asked_points = 10;
constexpr int turns = 5;

ModelBody& add_hollow_pipe(Workspace& workspace, int segments) {
    ModelBody& body = add_body(workspace, pipe, 1000);
    body.length.value = 2000;
    body.width.value = 200;
    body.shell_thickness = 20;
    body.end_thickness = 0;
    body.num_segments = segments;
    body.include_demagnetisation = 1;
    body.susc.value = 1e6F;
    return body;
}

/// The tensor in the middle of the wall of a segment, over the surface with all its rings.
forward::Tensor3 tensor_by_rings(const ModelBody& body, forward::Polyhedron& rings, int segment) {
    const double step = 2 * std::acos(-1.0) / 12;
    const double mean_diameter = body.width.value / 2.0 - body.shell_thickness / 2.0;
    const double along = (segment + 0.5) * body.length.value / body.num_segments;
    return rings.demagnetising_tensor(
        {-mean_diameter * (1 + std::cos(step)) / 4, along, mean_diameter * std::sin(step) / 4});
}

void demagnetised_hollow_pipe(benchmark::State& state) {
    Workspace workspace = level_line(stations);
    const int segments = static_cast<int>(state.range(0));
    ModelBody& body = add_hollow_pipe(workspace, segments);
    Faults faults;
    forward::setup_cylinder_body(body, body.solid, faults);
    forward::Polyhedron kernel, rings(body.solid.points, body.solid.facets);
    BestTime factors, by_rings, model;
    const int asked = std::min(segments, asked_points);
    std::array<double, 2> sum{};
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            factors.take([&] {
                body.solid.demagnetisation.known = false;
                forward::demagnetised_pipe(body, {1, 1, 1}, kernel);
            });
            by_rings.take([&] {
                sum = {};
                for (int k = 0; k < asked; ++k) {
                    const forward::Tensor3 n = tensor_by_rings(body, rings, k * segments / asked);
                    sum[0] += n.yy;
                    sum[1] += (n.xx + n.zz) / 2;
                }
            });
            model.take([&] {
                body.solid.demagnetisation.known = false;
                body.mag_response_valid = false;
                forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults);
            });
        }
    // The same points over the surface without segments.
    forward::PlainSolid memory;
    const forward::PlainSurface plain = forward::plain_surface(body.solid, memory);
    kernel.assign(plain.points, plain.facets);
    double error = 0;
    for (int k = 0; k < asked; ++k) {
        const forward::Tensor3 n = tensor_by_rings(body, kernel, k * segments / asked);
        const forward::Tensor3 r = tensor_by_rings(body, rings, k * segments / asked);
        error = std::max({error, std::abs(n.yy - r.yy), std::abs(n.xx + n.zz - r.xx - r.zz) / 2});
    }
    state.counters["factors_ms"] = 1e3 * factors.seconds();
    state.counters["by_rings_ms"] = 1e3 * by_rings.seconds() * segments / asked;
    state.counters["ratio"] = by_rings.seconds() * segments / asked / factors.seconds();
    state.counters["model_ms"] = 1e3 * model.seconds();
    state.counters["error"] = error;
}
BENCHMARK(demagnetised_hollow_pipe)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Arg(500)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis

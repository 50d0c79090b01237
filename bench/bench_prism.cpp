// Dragging a strike-limited body at 8193 stations: what one step of a scroll bar costs, on one thread and
// with the gravity of a sheet against its six faces one by one.

#include <array>
#include <benchmark/benchmark.h>

#include "core/faults.h"
#include "forward/classic/facet.h"
#include "forward/driver.h"
#include "forward/shape/prism.h"
#include "level_line.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int stations = 8193;

struct Dragged {
    Workspace workspace = level_line(stations);
    Faults faults;

    explicit Dragged(BodyType type, bool with_gravity) {
        workspace.definition.grav_column = with_gravity ? 4 : 0;
        add_body(workspace, type, 4000);
        step();
    }
    ModelBody& body() { return workspace.body(1); }
    /// One step of the drag: the body moves along the profile and turns a little.
    void step() {
        body().distance.value += 0.5F;
        body().dip.value += 0.01F;
        body().mag_response_valid = body().grav_response_valid = false;
        forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults);
    }
};

void moving_a_pipe(benchmark::State& state) {
    Dragged drag(pipe, state.range(0) != 0);
    BestTime best;
    for (auto _ : state) state.SetIterationTime(best.take([&] { drag.step(); }));
    state.counters["ms"] = best.seconds() * 1e3;
    state.counters["ns_a_station_and_facet"] = best.seconds() * 1e9 / stations / 48;
}
BENCHMARK(moving_a_pipe)->ArgName("gravity")->Arg(0)->Arg(1)->UseManualTime()->Iterations(50);

void moving_a_prism(benchmark::State& state) {
    Dragged drag(thick_sheet, true);
    drag.body().include_demagnetisation = static_cast<std::int32_t>(state.range(0));
    BestTime best;
    for (auto _ : state) state.SetIterationTime(best.take([&] { drag.step(); }));
    state.counters["ms"] = best.seconds() * 1e3;
}
BENCHMARK(moving_a_prism)->ArgName("by_faces")->Arg(0)->Arg(-1)->UseManualTime()->Iterations(50);

void gravity_by_single_faces(Dragged& drag) {
    const auto corners =
        forward::relative_to_first_station(forward::gravity_prism(drag.body()), drag.workspace);
    for (const auto& face : forward::prism_faces) {
        std::array<forward::NedVector, 4> list;
        for (std::size_t i = 0; i < 4; ++i) list[i] = corners[face[i]];
        forward::calculate_facet_response(drag.workspace, drag.body(), {false, true}, {}, list, drag.faults);
    }
}

void prism_gravity_against_single_faces(benchmark::State& state) {
    Dragged drag(thick_sheet, true);
    BestTime together, apart;
    for (auto _ : state) {
        drag.body().grav_response_valid = false;
        together.take([&] {
            forward::calculate_model(drag.workspace, drag.workspace.mag.data, drag.workspace.grav.data,
                                     drag.faults);
        });
        state.SetIterationTime(apart.take([&] { gravity_by_single_faces(drag); }));
    }
    state.counters["ms_together"] = together.seconds() * 1e3;
    state.counters["ms_face_by_face"] = apart.seconds() * 1e3;
    state.counters["times_as_fast"] = apart.seconds() / together.seconds();
}
BENCHMARK(prism_gravity_against_single_faces)->UseManualTime()->Iterations(10);

}  // namespace
}  // namespace anomalis

// 50 bodies at 8193 stations as a program of its own calculates them; python_forward.py sets its time against
// that of the module. Prints the median of a calculation, ms.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "core/faults.h"
#include "core/threads.h"
#include "core/workspace.h"
#include "forward/driver.h"

namespace {

using namespace anomalis;

/// The line and the bodies of python_forward.py.
void set_scene(Workspace& workspace, int bodies, int stations, bool limited) {
    workspace.formulas = Formulas::exact;
    workspace.field = {52000, -61, 5};
    workspace.station_count = stations;
    workspace.stations.assign(stations);
    workspace.distances.assign(stations);
    workspace.mag.data.assign(stations);
    workspace.grav.data.assign(stations);
    for (int i = 1; i <= stations; ++i) {
        workspace.distances[i] = workspace.stations(i, column_east) = 12.5 * (i - 1);
        workspace.stations(i, column_sensor) = 300 + 5 * std::sin(workspace.distances[i] / 400);
    }
    workspace.body_count = bodies;
    workspace.bodies.resize(static_cast<std::size_t>(bodies) + 1);
    for (int i = 0; i < bodies; ++i) {
        ModelBody& body = workspace.body(i + 1);
        body.type = thick_sheet;
        body.distance.value = static_cast<float>(workspace.distances.last() * (i + 0.5) / bodies);
        body.top.value = 240;
        body.strike.value = 5;
        body.dip.value = static_cast<float>(50 + i);
        body.width.value = 40;
        body.susc.value = static_cast<float>(20000 + 100 * i);
        body.length.value = limited ? 600 : 0;
        body.depth_extent.value = limited ? 400 : 0;
        body.response.assign(stations);
    }
}

double calculate(Workspace& workspace) {
    for (ModelBody& body : workspace.bodies) body.mag_response_valid = false;
    Faults faults;
    const auto start = std::chrono::steady_clock::now();
    forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
    const int bodies = argc > 1 ? std::atoi(argv[1]) : 50, stations = argc > 2 ? std::atoi(argv[2]) : 8193;
    const bool limited = argc > 3 && std::atoi(argv[3]) != 0;
    limit_threads(argc > 4 ? std::atoi(argv[4]) : 0);
    const int turns = argc > 5 ? std::atoi(argv[5]) : 25;
    Workspace workspace;
    set_scene(workspace, bodies, stations, limited);
    std::vector<double> times;
    calculate(workspace);
    for (int turn = 0; turn < turns; ++turn) times.push_back(calculate(workspace));
    std::ranges::nth_element(times, times.begin() + turns / 2);
    std::printf("%.4f\n", times[static_cast<std::size_t>(turns / 2)]);
    return 0;
}

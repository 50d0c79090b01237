// What a body costs a station over the range of sizes, depths and lines that users have: one table a kind of
// body, in nanoseconds a station of one channel on one thread, and last the ratio of the dearest to the
// cheapest row of each sweep; then what the demagnetising tensor of a changed shape costs. `--quick` takes
// fewer turns.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "core/faults.h"
#include "core/threads.h"
#include "forward/classic/gravity_response.h"
#include "forward/classic/mag_response.h"
#include "forward/exact/exact_response.h"
#include "level_line.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int stations = 8193;

/// A body and the line over it.
struct Setting {
    BodyType type = thick_sheet;
    double width = 100, depth_extent = 250, length = 250, top = 60, spacing = 1, height_steps = 0;
    double dip = 70, offset = 0, distance = 0.5;  ///< distance as a part of the line
    bool one_place = false;                       ///< all stations where the first is
};

struct Kind {
    const char* name;
    BodyType type;
    double length;
};
constexpr Kind kinds[] = {{"thick sheet that ends along strike", thick_sheet, 250},
                          {"thin sheet that ends along strike", thin_sheet, 250},
                          {"endless thick sheet", thick_sheet, 0},
                          {"endless thin sheet", thin_sheet, 0},
                          {"pipe", pipe, 250}};

Workspace workspace_of(const Setting& setting) {
    Workspace workspace = level_line(stations);
    workspace.definition.grav_column = 4;
    workspace.field = {50000, -60, 5};
    for (int i = 1; i <= stations; ++i) {
        const double along = setting.one_place ? 0 : (i - 1) * setting.spacing;
        workspace.distances[i] = (i - 1) * setting.spacing;
        workspace.stations(i, column_east) = 350000 + along;
    }
    ModelBody& body = add_body(workspace, setting.type, setting.distance * (stations - 1) * setting.spacing);
    body.top.value = static_cast<float>(150 - setting.top);
    body.width.value = static_cast<float>(setting.width);
    body.depth_extent.value = static_cast<float>(setting.depth_extent);
    body.length.value = static_cast<float>(setting.length);
    body.offset.value = static_cast<float>(setting.offset);
    body.dip.value = static_cast<float>(setting.type == pipe ? 10 : setting.dip);
    return workspace;
}

/// One way to calculate a channel.
struct Route {
    const char* name;
    int by_faces;
    void (*calculate)(Workspace&, Faults&);
};
constexpr Route routes[] = {
    {"classic nT", 0, [](Workspace& w, Faults& f) { forward::calculate_mag_response(w, 1, f); }},
    {"by faces nT", -1, [](Workspace& w, Faults& f) { forward::calculate_mag_response(w, 1, f); }},
    {"classic mGal", 0, [](Workspace& w, Faults& f) { forward::calculate_gravity_response(w, 1, f); }},
    {"exact nT", 0,
     [](Workspace& w, Faults& f) {
         forward::ExactNotes notes;
         forward::calculate_exact_mag_response(w, 1, notes, f, no_pace());
     }},
    {"exact mGal", 0,
     [](Workspace& w, Faults& f) {
         forward::ExactNotes notes;
         forward::calculate_exact_gravity_response(w, 1, notes, f, no_pace());
     }},
};
constexpr std::size_t route_count = std::size(routes);

using Costs = std::array<double, route_count>;

int turns = 15;

Costs costs_of(const Setting& setting) {
    Workspace workspace = workspace_of(setting);
    Faults faults;
    std::array<BestTime, route_count> best;
    for (int turn = 0; turn < turns; ++turn)
        for (std::size_t r = 0; r < route_count; ++r) {
            workspace.body(1).include_demagnetisation = routes[r].by_faces;
            best[r].take([&] { routes[r].calculate(workspace, faults); });
        }
    Costs costs{};
    for (std::size_t r = 0; r < route_count; ++r) costs[r] = best[r].seconds() * 1e9 / stations;
    return costs;
}

class Table {
  public:
    explicit Table(const Kind& kind) : kind_(kind) {
        std::printf("\n%s\n%-34s", kind.name, "");
        for (const Route& route : routes) std::printf("%14s", route.name);
        std::printf("\n");
    }

    /// Rows of one sweep; their dearest over their cheapest is its last line.
    template <class Set>
    void sweep(const char* what, const std::vector<double>& values, const Set& set) {
        std::vector<Costs> rows;
        for (const double value : values) {
            Setting setting;
            setting.type = kind_.type;
            setting.length = kind_.length;
            set(setting, value);
            rows.push_back(costs_of(setting));
            char name[64];
            std::snprintf(name, sizeof name, "%s %g", what, value);
            line(name, rows.back(), "%14.1f");
        }
        Costs ratio{};
        for (std::size_t r = 0; r < route_count; ++r) {
            const auto cost = [&](const Costs& a, const Costs& b) { return a[r] < b[r]; };
            const auto [least, most] = std::minmax_element(rows.begin(), rows.end(), cost);
            ratio[r] = (*most)[r] / (*least)[r];
            if (rows.size() > 1) worst_[r] = std::max(worst_[r], ratio[r]);
        }
        line("  dearest over cheapest", ratio, "%14.2f");
    }
    void tell_worst() { line("worst of all sweeps", worst_, "%14.2f"); }

  private:
    static void line(const char* name, const Costs& costs, const char* format) {
        std::printf("%-34s", name);
        for (const double cost : costs) std::printf(format, cost);
        std::printf("\n");
    }

    const Kind& kind_;
    Costs worst_{};
};

void measure(const Kind& kind) {
    Table table(kind);
    table.sweep("width m", {0.1, 0.5, 1, 2, 5, 10, 20, 50, 100, 200, 500, 1000},
                [](Setting& s, double v) { s.width = v; });
    table.sweep("top m below", {0.5, 2, 10, 30, 60, 100, 300, 1000, 5000},
                [](Setting& s, double v) { s.top = v; });
    table.sweep("narrow, top m below", {0.5, 2, 10, 30, 60, 100, 300, 1000, 5000}, [](Setting& s, double v) {
        s.top = v;
        s.width = 5;
    });
    table.sweep("depth extent m", {1, 10, 100, 250, 1000, 5000},
                [](Setting& s, double v) { s.depth_extent = v; });
    table.sweep("spacing m", {0.01, 0.1, 1, 5, 10, 25}, [](Setting& s, double v) { s.spacing = v; });
    table.sweep("narrow, spacing m", {0.01, 0.1, 1, 5, 10, 25}, [](Setting& s, double v) {
        s.spacing = v;
        s.width = 5;
    });
    if (kind.length > 0)
        table.sweep("length m", {1, 10, 100, 250, 1000, 10000, 100000},
                    [](Setting& s, double v) { s.length = v; });
    table.tell_worst();
    table.sweep("spacing of 100 m, width m", {0.1, 1, 10, 100, 1000}, [](Setting& s, double v) {
        s.spacing = 100;
        s.width = v;
    });
    // Places that no survey has by the thousand, and what is hardly a body.
    table.sweep("width of hardly anything m", {0, 1e-6}, [](Setting& s, double v) { s.width = v; });
    table.sweep("line on an edge, offset m", {kind.length / 2}, [](Setting& s, double v) {
        s.top = 0;
        s.offset = v;
    });
    table.sweep("all stations on a corner", {0}, [](Setting& s, double) {
        s.one_place = true;
        s.top = s.distance = 0;
        s.offset = s.length / 2;
    });
    table.sweep("all stations under a corner", {90}, [](Setting& s, double v) {
        s.one_place = true;
        s.top = -100;
        s.distance = 0;
        s.dip = v;
        s.offset = s.length / 2;
    });
}

/// What the tensor of a body costs when its shape changes, beside what it takes part in: a strike-limited
/// thick sheet or a pipe, exact, at as many stations as cost the same.
void measure_tensors() {
    std::printf("\ndemagnetising tensor%14s%28s\n", "us", "as many stations cost");
    for (const double width : {0.1, 5.0, 100.0, 1000.0})
        for (const BodyType type : {thick_sheet, pipe}) {
            Setting setting;
            setting.type = type;
            setting.width = width;
            const Costs costs = costs_of(setting);
            Workspace workspace = workspace_of(setting);
            BestTime best;
            for (int turn = 0; turn < turns; ++turn) {
                workspace.body(1).demagnetisation.known = false;
                best.take([&] { forward::body_demagnetisation(workspace.body(1)); });
            }
            char name[64];
            std::snprintf(name, sizeof name, "%s, width m %g", type == pipe ? "pipe" : "thick sheet", width);
            std::printf("%-20s%14.1f%28.0f\n", name, best.seconds() * 1e6, best.seconds() * 1e9 / costs[3]);
        }
}

}  // namespace
}  // namespace anomalis

int main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "--quick") == 0) anomalis::turns = 5;
    anomalis::limit_threads(1);
    std::printf("ns a station, one channel, %d stations, one thread\n", anomalis::stations);
    for (const anomalis::Kind& kind : anomalis::kinds) anomalis::measure(kind);
    anomalis::measure_tensors();
    return 0;
}

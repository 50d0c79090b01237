// How the cost of a model grows: growth exponents in stations, bodies and facets on one thread (goal at most
// 1.1), what both channels cost in one pass against the dearer of the two (goal 1.15), and what two threads
// gain (goal 1.8) for many bodies, for one body on a long line and for a fit. Ratios of one run, the best of
// several turns. `--quick` takes fewer turns and leaves the longest out.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/body_parameters.h"
#include "core/faults.h"
#include "core/session.h"
#include "core/threads.h"
#include "forward/driver.h"
#include "intake/profile.h"
#include "inversion/perform.h"
#include "level_line.h"
#include "model/refresh_model.h"
#include "quiet_prompts.h"
#include "timing.h"

namespace anomalis {
namespace {

bool quick = false;

struct Kind {
    const char* name;
    BodyType type;
    float length;
    Formulas formulas;
};
constexpr Kind kinds[] = {{"endless sheets, classic", thick_sheet, 0, Formulas::classic},
                          {"prisms, classic", thick_sheet, 250, Formulas::classic},
                          {"pipes, classic", pipe, 250, Formulas::classic},
                          {"endless sheets, exact", thick_sheet, 0, Formulas::exact},
                          {"prisms, exact", thick_sheet, 250, Formulas::exact},
                          {"pipes, exact", pipe, 250, Formulas::exact}};

/// Bodies spread along a line of some 8 km whatever its count of stations.
Workspace model_of(const Kind& kind, int stations, int bodies) {
    constexpr double whole = 8192;
    Workspace workspace = level_line(stations);
    workspace.definition.grav_column = 4;
    workspace.field = {50000, -60, 5};
    workspace.formulas = kind.formulas;
    const double spacing = whole / std::max(stations - 1, 1);
    for (int i = 1; i <= stations; ++i) {
        workspace.distances[i] = (i - 1) * spacing;
        workspace.stations(i, column_east) = 350000 + (i - 1) * spacing;
    }
    for (int b = 0; b < bodies; ++b) {
        ModelBody& body = add_body(workspace, kind.type, (b + 0.503) * whole / bodies);
        body.length.value = kind.length;
    }
    return workspace;
}

void calculate(Workspace& workspace) {
    Faults faults;
    for (int b = 1; b <= workspace.body_count; ++b)
        workspace.body(b).mag_response_valid = workspace.body(b).grav_response_valid = false;
    forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults);
    for (const Faults::Entry& entry : faults.entries()) std::printf("  %s\n", entry.text.c_str());
}

double wall_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// The best of some turns after one that takes memory.
template <class Work>
double best_seconds(Work&& work, double (*clock)() = cpu_seconds) {
    work();
    double best = 1e30, spent = 0;
    for (int turn = 0; turn < (quick ? 3 : 9) && (turn < 2 || spent < 2.0); ++turn) {
        const double start = clock();
        work();
        const double seconds = clock() - start;
        best = std::min(best, seconds);
        spent += seconds;
    }
    return best;
}

/// Seconds over a size: the steepest step, and the exponent from end to end.
class Growth {
  public:
    Growth(const char* name, const char* unit) : name_(name), unit_(unit) {}

    void add(double size, double seconds) {
        sizes_.push_back(size);
        seconds_.push_back(seconds);
    }
    void print() const {
        std::printf("%-26s", name_);
        for (std::size_t i = 0; i < sizes_.size(); ++i)
            std::printf("  %8.0f: %9.3f ms", sizes_[i], seconds_[i] * 1e3);
        std::printf("  exponent in %s %.2f (steepest %.2f)\n", unit_, exponent(0, sizes_.size() - 1),
                    steepest());
    }
    double steepest() const {
        double most = 0;
        for (std::size_t i = 1; i < sizes_.size(); ++i) most = std::max(most, exponent(i - 1, i));
        return most;
    }

  private:
    double exponent(std::size_t from, std::size_t to) const {
        return std::log(seconds_[to] / seconds_[from]) / std::log(sizes_[to] / sizes_[from]);
    }
    const char* name_;
    const char* unit_;
    std::vector<double> sizes_, seconds_;
};

double growth_in_stations() {
    std::printf("\nStations, 4 bodies, both channels, one thread\n");
    double steepest = 0;
    for (const Kind& kind : kinds) {
        Growth growth(kind.name, "stations");
        for (const int stations : {1000, 8193, 65536, 1000000}) {
            if (quick && stations > 100000) continue;
            Workspace workspace = model_of(kind, stations, 4);
            growth.add(stations, best_seconds([&] { calculate(workspace); }));
        }
        growth.print();
        steepest = std::max(steepest, growth.steepest());
    }
    return steepest;
}

double growth_in_bodies() {
    std::printf("\nBodies, 200 stations, both channels, one thread\n");
    double steepest = 0;
    for (const Kind& kind : kinds) {
        Growth growth(kind.name, "bodies");
        for (const int bodies : {20, 200, 2000, 20000}) {
            if (quick && bodies > 2000) continue;
            Workspace workspace = model_of(kind, 200, bodies);
            growth.add(bodies, best_seconds([&] { calculate(workspace); }));
        }
        growth.print();
        steepest = std::max(steepest, growth.steepest());
    }
    return steepest;
}

double growth_in_facets() {
    std::printf("\nSectors of a pipe, 500 stations, both channels, one thread\n");
    double steepest = 0;
    for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
        const Kind kind{formulas == Formulas::classic ? "a pipe, classic" : "a pipe, exact", pipe, 250,
                        formulas};
        Growth growth(kind.name, "sectors");
        for (const int sectors : {12, 96, 768, 6144, 49152}) {
            if (quick && sectors > 10000) continue;
            Workspace workspace = model_of(kind, 500, 1);
            workspace.body(1).num_sectors = sectors;
            growth.add(sectors, best_seconds([&] { calculate(workspace); }));
        }
        growth.print();
        steepest = std::max(steepest, growth.steepest());
    }
    return steepest;
}

/// Seconds of the channels with these columns.
double channel_seconds(const Kind& kind, int mag, int grav) {
    Workspace workspace = model_of(kind, 8193, 10);
    workspace.definition.mag_column = mag;
    workspace.definition.grav_column = grav;
    return best_seconds([&] { calculate(workspace); });
}

double both_channels() {
    std::printf("\n10 bodies, 8193 stations, one thread: channels in ms, both against the dearer\n");
    double most = 0;
    for (const Kind& kind : kinds) {
        const double mag = channel_seconds(kind, 3, 0);
        const double grav = channel_seconds(kind, 0, 4);
        const double both = channel_seconds(kind, 3, 4);
        const double ratio = both / std::max(mag, grav);
        std::printf("%-26s  nT %8.3f  mGal %8.3f  both %8.3f  ratio %.2f\n", kind.name, mag * 1e3, grav * 1e3,
                    both * 1e3, ratio);
        most = std::max(most, ratio);
    }
    return most;
}

/// Prints what two threads gain of one, and gives it. Turns of both take turns.
double gain_of_two(const std::string& name, const std::function<void()>& work) {
    double one = 1e30, two = 1e30;
    for (int turn = 0; turn < (quick ? 3 : 7); ++turn) {
        limit_threads(1);
        one = std::min(one, best_seconds(work, wall_seconds));
        limit_threads(2);
        two = std::min(two, best_seconds(work, wall_seconds));
    }
    limit_threads(1);
    std::printf("%-44s  1 thread %9.3f ms  2 threads %9.3f ms  gain %.2f\n", name.c_str(), one * 1e3,
                two * 1e3, one / two);
    return one / two;
}

double threads_for_models() {
    std::printf("\nTwo threads, both channels\n");
    double least = 1e30;
    for (const Kind& kind : kinds) {
        Workspace many = model_of(kind, 8193, 50);
        least = std::min(least, gain_of_two(std::string("50 ") + kind.name, [&] { calculate(many); }));
    }
    for (const Kind& kind : kinds) {
        Workspace one = model_of(kind, quick ? 60000 : 400000, 1);
        least = std::min(
            least, gain_of_two(std::string("1 body on a long line: ") + kind.name, [&] { calculate(one); }));
    }
    return least;
}

/// A session whose 20 bodies stand off those that made its data.
std::unique_ptr<Session> fit_session(QuietPrompts& prompts, const Kind& kind) {
    constexpr int stations = 2000, bodies = 20;
    auto session = std::make_unique<Session>(prompts, Settings());
    Workspace& w = session->workspace;
    w = level_line(stations);
    w.definition.z_column = 4;
    w.formulas = kind.formulas;
    w.first_station = 1;
    w.last_station = stations;
    w.last_distance = stations - 1;
    w.mag.base = 0;
    intake::setup_graphics_arrays(w, prompts);
    for (int b = 0; b < bodies; ++b) {
        ModelBody& body = add_body(w, kind.type, (b + 0.5) * stations / bodies);
        body.length.value = kind.length;
        body.width.value = 30;
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        body.vary = 1;
        body.distance.vary = body.top.vary = body.dip.vary = body.width.vary = body.susc.vary = 1;
        body.susc.max = 400000;
    }
    model::finish_load(*session);
    model::refresh_model(*session);
    const auto calculated = w.mag.data.row(row_raw, stage_calculated);
    const auto observed = w.mag.data.row(row_raw, stage_observed);
    for (std::size_t i = 0; i < observed.size(); ++i)
        observed[i] = calculated[i] + 2 * std::sin(static_cast<float>(i * i % 1013));
    for (int b = 1; b <= bodies; ++b) {
        w.body(b).distance.value += 3;
        w.body(b).top.value -= 4;
        w.body(b).susc.value *= 0.9F;
    }
    invalidate_filtered_data(0, w);
    model::refresh_model(*session);
    return session;
}

double threads_for_fits() {
    std::printf("\nTwo threads, a fit of 20 bodies with 5 parameters each at 2000 stations\n");
    double least = 1e30;
    for (const Kind& kind : kinds) {
        if (kind.type == pipe) continue;
        QuietPrompts prompts;
        const std::unique_ptr<Session> start = fit_session(prompts, kind);
        const auto fit = [&] {
            Session session(prompts, Settings());
            session.workspace = start->workspace;
            inversion::RunObserver observer;
            inversion::RunResult result;
            model::finish_load(session);
            inversion::perform_inversion(session.workspace, session.inversion,
                                         {.max_iterations = 8, .method = InversionMethod::least_squares},
                                         observer, result);
            for (const Faults::Entry& entry : result.faults.entries())
                std::printf("  %s\n", entry.text.c_str());
        };
        least = std::min(least, gain_of_two(std::string("20 ") + kind.name, fit));
    }
    return least;
}

void run() {
    limit_threads(1);
    const double in_stations = growth_in_stations();
    const double in_bodies = growth_in_bodies();
    const double in_facets = growth_in_facets();
    const double channels = both_channels();
    const double models = threads_for_models();
    const double fits = threads_for_fits();
    std::printf(
        "\nSteepest growth: stations %.2f, bodies %.2f, facets %.2f (goal 1.1). Both channels at most %.2f "
        "times one (goal 1.15).\nTwo threads at least: models %.2f, fits %.2f (goal 1.8).\n",
        in_stations, in_bodies, in_facets, channels, models, fits);
}

}  // namespace
}  // namespace anomalis

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) anomalis::quick |= std::strcmp(arguments[i], "--quick") == 0;
    anomalis::run();
}

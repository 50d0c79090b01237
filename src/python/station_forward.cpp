#include "python/station_forward.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "core/angles.h"
#include "core/failure.h"
#include "core/shared_pieces.h"
#include "forward/body_columns.h"
#include "forward/body_price.h"
#include "forward/exact/exact_response.h"
#include "forward/shape/reference_point.h"
#include "intake/profile_line.h"

namespace anomalis::python {

namespace {

/// So many values of bodies that wait for their turn in the sum are held at a time.
constexpr std::size_t most_held_values = std::size_t{1} << 22;

constexpr double metres_of_segment = 1000;

void require_numbers(const StationArrays& stations) {
    const auto check = [](std::span<const double> values, const char* name) {
        constexpr double most = std::numeric_limits<double>::max();
        std::uint64_t beyond = 0;
        for (const double value : values) beyond |= static_cast<std::uint64_t>(!(std::abs(value) <= most));
        if (beyond == 0) return;
        const auto bad = std::ranges::find_if_not(values, [](double value) { return std::isfinite(value); });
        throw Fault(std::string("the ") + name + " of station " + std::to_string(bad - values.begin() + 1) +
                    " is not a number");
    };
    check(stations.east, "east coordinate");
    check(stations.north, "north coordinate");
    check(stations.elevation, "elevation");
}

/// Two stations in the table of a workspace, with their distances.
void set_segment(Workspace& segment, const StationArrays& stations, std::size_t from, std::size_t to,
                 double near, double far) {
    segment.station_count = 2;
    segment.stations.assign(2);
    segment.distances.assign(2);
    const auto set = [&](int row, std::size_t i, double distance) {
        segment.stations(row, column_east) = stations.east[i];
        segment.stations(row, column_north) = stations.north[i];
        segment.distances[row] = distance;
    };
    set(1, from, near);
    set(2, to, far);
}

/// The line through the stations, and how far along it each of them is.
class StationLine {
  public:
    StationLine(const StationArrays& stations, Workspace& geometry) : stations_(stations) {
        const std::size_t count = stations.east.size();
        if (count < 2)
            throw Fault("one station is no line to place bodies along: give line=(east, north, bearing)");
        set_segment(geometry, stations, 0, count - 1, 0, 0);
        intake::ProfileLine line = intake::profile_line(geometry.stations, 2);
        if (!line.long_enough())
            throw Fault(
                "the first and the last station stand at one place, so that nobody knows along what bodies "
                "are placed: give line=(east, north, bearing)");
        backwards_ = line.runs_backwards();
        if (backwards_) {
            set_segment(geometry, stations, count - 1, 0, 0, 0);
            line.dx = -line.dx;
            line.dy = -line.dy;
        }
        intake::set_line_geometry(line, geometry.stations, geometry);
        distances_.resize(count);
        // As intake::distance_along, all at once.
        for (std::size_t i = 0; i < count; ++i)
            distances_[i] = (stations.east[i] - geometry.origin_east) * geometry.direction_y -
                            (stations.north[i] - geometry.origin_north) * geometry.direction_x;
        if (backwards_) std::ranges::reverse(distances_);
        require_advance();
        geometry.station_count = 0;
    }

    /// Puts a body at its distance, between the stations about it.
    void place(ModelBody& body) const {
        const auto distance = static_cast<double>(body.distance.value);
        const auto above = std::ranges::lower_bound(distances_, distance) - distances_.begin();
        const auto last = static_cast<std::ptrdiff_t>(distances_.size()) - 1;
        const auto far = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(
            above < last && distances_[static_cast<std::size_t>(above)] == distance ? above + 1 : above, 1,
            last));
        Workspace segment;
        set_segment(segment, stations_, at(far - 1), at(far), distances_[far - 1], distances_[far]);
        forward::update_body_reference_point(segment, distance, body.east, body.north);
    }

    /// The line as a workspace has it, for formulas that read one; `backwards` tells the order.
    void copy_to(Workspace& workspace) const {
        const std::size_t count = distances_.size();
        workspace.station_count = static_cast<std::int32_t>(count);
        workspace.stations.assign(workspace.station_count);
        workspace.distances.assign(workspace.station_count);
        for (std::size_t i = 0; i < count; ++i) {
            const auto row = static_cast<int>(i) + 1;
            workspace.stations(row, column_east) = stations_.east[at(i)];
            workspace.stations(row, column_north) = stations_.north[at(i)];
            workspace.stations(row, column_sensor) = stations_.elevation[at(i)];
            workspace.distances[row] = distances_[i];
        }
    }
    bool backwards() const { return backwards_; }

  private:
    std::size_t at(std::size_t i) const { return backwards_ ? distances_count() - 1 - i : i; }
    std::size_t distances_count() const { return stations_.east.size(); }

    void require_advance() const {
        for (std::size_t i = 1; i < distances_.size(); ++i)
            if (!(distances_[i] > distances_[i - 1]))
                throw Fault("station " + std::to_string(at(i) + 1) + " does not advance from station " +
                            std::to_string(at(i - 1) + 1) +
                            " along the line from the first to the last, so that nobody knows along what "
                            "bodies are placed: give line=(east, north, bearing)");
    }

    const StationArrays& stations_;
    std::vector<double> distances_;
    bool backwards_ = false;
};

void place_along(const PlacedLine& line, ModelBody& body) {
    const double bearing = line.bearing * radians_per_degree;
    const auto distance = static_cast<double>(body.distance.value);
    body.east = line.east + std::sin(bearing) * distance;
    body.north = line.north + std::cos(bearing) * distance;
}

/// Sums of one channel, bodies side by side.
class ChannelSum {
  public:
    ChannelSum(ForwardRequest& request, const StationArrays& stations, const Workspace& workspace,
               bool backwards, int channel)
        : request_(request),
          stations_(stations),
          workspace_(workspace),
          backwards_(backwards),
          channel_(channel) {}

    std::vector<double> sum(Faults& faults, forward::ExactNotes& notes, Pacer& pacer) {
        const std::size_t count = stations_.east.size(), bodies = request_.bodies.size();
        double work = 0;
        for (const ModelBody& body : request_.bodies)
            work += forward::work_of(forward::body_price(body, request_.formulas, stations_many()),
                                     stations_many());
        std::vector<double> total(count);
        if (request_.formulas == Formulas::exact) {
            const int workers = bodies > 1 ? worker_count(work, count / least_stretch + 1) : 1;
            if (workers > 1 && add_stretches(workers, total, pacer)) return total;
            std::ranges::fill(total, 0.0);
        }
        const int workers =
            request_.formulas == Formulas::exact || bodies == 1 ? 1 : worker_count(work, bodies);
        benches_.resize(static_cast<std::size_t>(workers));
        const std::size_t held =
            workers == 1 ? 1
                         : std::clamp<std::size_t>(most_held_values / std::max<std::size_t>(count, 1),
                                                   static_cast<std::size_t>(workers), bodies);
        for (std::size_t first = 0; first < bodies; first += held)
            add(first, std::min(held, bodies - first), workers, total, faults, notes, pacer);
        return total;
    }

  private:
    /// Stations that are worth a thread of their own.
    static constexpr std::size_t least_stretch = 512;

    std::int64_t stations_many() const { return static_cast<std::int64_t>(stations_.east.size()); }

    struct Bench {
        forward::BodyBench memory;
        forward::ExactNotes notes;
    };

    /// All bodies at a stretch of stations for each worker: a station hangs on no other one. False where
    /// something went wrong, which must be told once and of the whole line.
    bool add_stretches(int workers, std::vector<double>& total, Pacer& pacer) {
        const auto many = static_cast<std::size_t>(workers);
        std::atomic<bool> wrong = false;
        for_each_piece(many, workers, pacer, [&](PieceWorker& worker, std::size_t i) {
            PiecePacer own(worker);
            const std::size_t first = total.size() * i / many, end = total.size() * (i + 1) / many;
            Bench bench;
            Faults faults;
            std::vector<double> values(end - first);
            for (std::size_t k = 0; k < request_.bodies.size() && !wrong; ++k) {
                ModelBody body = request_.bodies[k];
                fill_exactly(body, static_cast<int>(k) + 1, first, values, bench, faults, own);
                if (!faults.empty() || bench.notes.polygon || bench.notes.steep_top) wrong = true;
                for (std::size_t at = 0; at < values.size(); ++at) total[first + at] += values[at];
            }
        });
        return !wrong;
    }

    /// Bodies side by side; they are added in their order.
    void add(std::size_t first, std::size_t many, int workers, std::vector<double>& total, Faults& faults,
             forward::ExactNotes& notes, Pacer& pacer) {
        const std::size_t count = total.size();
        values_.resize(many * count);
        std::vector<Faults> told(many);
        const auto one = [&](std::size_t i, std::size_t bench, Pacer& own) {
            fill(first + i, {values_.data() + i * count, count}, benches_[bench], told[i], own);
        };
        // A body by itself shares its stations among the cores.
        for (std::size_t i = 0; workers == 1 && i < many; ++i) one(i, 0, pacer);
        if (workers > 1)
            for_each_piece(many, workers, pacer, [&](PieceWorker& worker, std::size_t i) {
                PiecePacer own(worker);
                one(i, static_cast<std::size_t>(worker.number()), own);
            });
        for (std::size_t i = 0; i < many; ++i) {
            const double* const values = values_.data() + i * count;
            for (std::size_t k = 0; k < count; ++k) total[k] += values[k];
            for (const auto& [text, times, severity] : told[i].entries()) faults.add(text, times, severity);
        }
        for (const Bench& bench : benches_) {
            notes.polygon |= bench.notes.polygon;
            notes.steep_top |= bench.notes.steep_top;
        }
    }

    void fill(std::size_t index, std::span<double> values, Bench& bench, Faults& faults, Pacer& pacer) {
        ModelBody& body = request_.bodies[index];
        const auto number = static_cast<int>(index) + 1;
        if (request_.formulas == Formulas::exact)
            return fill_exactly(body, number, 0, values, bench, faults, pacer);
        forward::BodyNotes notes{number, bench.notes, faults, pacer};
        const forward::StationRange all{1, workspace_.station_count};
        forward::body_values(workspace_, body, channel_, all, bench.memory, values, notes);
        if (backwards_) std::ranges::reverse(values);
    }

    void fill_exactly(ModelBody& body, int number, std::size_t first, std::span<double> values, Bench& bench,
                      Faults& faults, Pacer& pacer) const {
        forward::BodyNotes notes{number, bench.notes, faults, pacer};
        const forward::StationView view{stations_.east.data() + first, stations_.north.data() + first,
                                        stations_.elevation.data() + first, values.size()};
        forward::exact_values_at(workspace_, body, channel_, view, bench.memory, values, notes);
    }

    ForwardRequest& request_;
    const StationArrays& stations_;
    const Workspace& workspace_;
    bool backwards_;
    int channel_;
    std::vector<Bench> benches_;
    std::vector<double> values_;
};

/// What the formulas read of a workspace, and the bodies at their places.
struct Scene {
    Workspace workspace;
    bool backwards = false;
};

Scene set_scene(ForwardRequest& request, const StationArrays& stations) {
    Scene scene;
    scene.workspace.field = request.field;
    scene.workspace.formulas = request.formulas;
    if (request.line) {
        if (request.formulas == Formulas::classic)
            throw Fault(
                "the classic formulas know bodies along the line of the stations alone: leave out line, or "
                "take formulas=\"exact\"");
        for (ModelBody& body : request.bodies) place_along(*request.line, body);
        return scene;
    }
    const StationLine line(stations, scene.workspace);
    for (ModelBody& body : request.bodies) line.place(body);
    if (request.formulas == Formulas::classic) {
        line.copy_to(scene.workspace);
        scene.backwards = line.backwards();
    }
    return scene;
}

}  // namespace

ForwardResult forward_at(const ForwardRequest& asked, const StationArrays& stations, Pacer& pacer) {
    ForwardResult result;
    require_numbers(stations);
    if (stations.east.empty() || asked.bodies.empty()) {
        if (asked.mag) result.mag.resize(stations.east.size());
        if (asked.grav) result.grav.resize(stations.east.size());
        return result;
    }
    ForwardRequest request = asked;
    const Scene scene = set_scene(request, stations);
    forward::ExactNotes notes;
    for (const int channel : {channel_mag, channel_grav}) {
        if (!(channel == channel_mag ? request.mag : request.grav)) continue;
        ChannelSum sum(request, stations, scene.workspace, scene.backwards, channel);
        (channel == channel_mag ? result.mag : result.grav) = sum.sum(result.faults, notes, pacer);
    }
    forward::report_notes(notes, result.faults);
    return result;
}

}  // namespace anomalis::python

#include "forward/columns/body_response.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/faults.h"
#include "forward/classic/gravity_response.h"
#include "forward/classic/mag_response.h"
#include "forward/exact/exact_response.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

int response_number(int channel) {
    return channel == channel_mag ? 1 : 2;
}

/// The line of the workspace in the bench's own one.
Workspace& classic_line(const Workspace& workspace, BodyBench& memory, int body_number) {
    if (!memory.classic) memory.classic = std::make_unique<Workspace>();
    Workspace& own = *memory.classic;
    if (own.stations != workspace.stations || own.distances != workspace.distances) {
        own.stations = workspace.stations;
        own.distances = workspace.distances;
    }
    own.station_count = workspace.station_count;
    own.azimuth = workspace.azimuth;
    own.field = workspace.field;
    own.formulas = Formulas::classic;
    const auto places = static_cast<std::size_t>(body_number) + 1;
    if (own.bodies.size() < places) own.bodies.resize(places);
    return own;
}

/// A body that stands in a workspace of the bench for as long as this lives; its own response table stays
/// out.
class BorrowedBody {
  public:
    BorrowedBody(ModelBody& body, ModelBody& place, ResponseTable& response)
        : body_(body), place_(place), response_(response) {
        std::swap(body_.response, response_);
        std::swap(body_, place_);
    }
    ~BorrowedBody() {
        std::swap(body_, place_);
        std::swap(body_.response, response_);
    }
    BorrowedBody(const BorrowedBody&) = delete;
    BorrowedBody& operator=(const BorrowedBody&) = delete;

  private:
    ModelBody& body_;
    ModelBody& place_;
    ResponseTable& response_;
};

void respond_classically(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                         BodyBench& memory, std::span<double> values, BodyNotes& notes) {
    Workspace& own = classic_line(workspace, memory, notes.body_number);
    ModelBody& place = own.body(notes.body_number);
    memory.response.assign(own.station_count);
    const BorrowedBody borrowed(body, place, memory.response);
    if (channel == channel_mag) {
        calculate_mag_response(own, notes.body_number, notes.faults, notes.pacer);
    } else {
        calculate_gravity_response(own, notes.body_number, notes.faults, notes.pacer);
    }
    const float* const from = response_column(own, place, response_number(channel)) + (range.first - 1);
    std::copy_n(from, values.size(), values.begin());
}

}  // namespace

void require_finite_values(const Workspace& workspace, const ModelBody& body, int channel,
                           std::span<const double> values, int body_number) {
    // Without a branch at a value: this is a good part of what a body costs that has few edges.
    std::uint64_t beyond = 0;
    for (const double value : values)
        beyond |= static_cast<std::uint64_t>(!(std::abs(value) <= std::numeric_limits<float>::max()));
    if (beyond != 0)
        throw Fault(FaultKind::overflow, beyond_text(workspace, body, body_number, response_number(channel)));
}

StationView stations_of(const Workspace& workspace, const StationRange& range, std::size_t values) {
    const StationView all = station_view(workspace);
    if (range.first < 1 || range.last > workspace.station_count || values != range.count())
        throw Fault(FaultKind::subscript);
    return part_of(all, static_cast<std::size_t>(range.first) - 1, values);
}

bool respond_exactly(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                     BodyBench& memory, std::span<double> values, BodyNotes& notes) {
    return work_exactly(workspace, body, channel, values, {}, notes, [&] {
        exact_values(workspace, body, channel, stations, memory.polyhedron, values, notes.exact, notes.pacer);
    });
}

bool respond(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
             BodyBench& memory, std::span<double> values, BodyNotes& notes) {
    const StationView stations = stations_of(workspace, range, values.size());
    if (body.turned_off == 1 || values.empty()) {
        std::fill(values.begin(), values.end(), 0.0);
        return true;
    }
    if (workspace.formulas == Formulas::exact)
        return respond_exactly(workspace, body, channel, stations, memory, values, notes);
    respond_classically(workspace, body, channel, range, memory, values, notes);
    return true;
}

}  // namespace anomalis::forward

#include "forward/classic/talwani.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "core/angles.h"
#include "core/faults.h"
#include "forward/classic/talwani_kernel.h"
#include "forward/station_columns.h"
#include "forward/station_stretches.h"

namespace anomalis::forward {

namespace {

constexpr std::size_t near_stations = 256;  ///< whose sums stay in the nearest memory
constexpr double units_a_station = 100;

double drawn_out(double extent) {
    return std::abs(extent) < least_edge_extent ? least_edge_extent : extent;
}

/// One edge, or why it has none.
struct EdgeTerm {
    double value = 0;
    std::optional<FaultKind> fault;
};

EdgeTerm edge_term(double x1, double x2, double z1, double z2) {
    constexpr auto divided_by_zero = FaultKind::division_by_zero;
    const double dx = drawn_out(x2 - x1);
    const double dz = drawn_out(z2 - z1);
    const double xb = dx + x1;
    const double zb = dz + z1;
    const double r = std::sqrt(dx * dx + dz * dz);
    const double r1 = std::sqrt(x1 * x1 + z1 * z1);
    const double r2 = std::sqrt(xb * xb + zb * zb);
    if (x1 == 0 || r1 == 0 || xb == 0 || r2 == 0) return {0, divided_by_zero};
    const double near_part = (z1 / x1 - dz / dx) * (x1 / r1);
    const double far_part = (zb / xb - dz / dx) * (xb / r2);
    if (far_part == 0) return {0, divided_by_zero};
    const double quotient = near_part / far_part;
    if (quotient <= 0) return {0, FaultKind::invalid_call};
    return {(xb - zb * dx / dz) * (dz / r) * (dx / r) *
                (guarded_atan2(z1, x1) - guarded_atan2(zb, xb) + dz / dx * std::log(quotient)),
            std::nullopt};
}

/// Notes a fault of an edge, `times` over.
void note_edge(FaultKind fault, long times, Faults& faults) {
    Faults once;
    report_failure(
        once, "An error occurred calculating the Talwani gravity response: ", [&] { throw Fault(fault); });
    for (const auto& [text, count, severity] : once.entries()) faults.add(text, times, severity);
}

/// A station whose sum lacks edges.
struct LackingSum {
    std::size_t station;
    unsigned left_out;
    double sum;
};

/// Gathers what single edges note over a calculation, and tells it unless the same was the last that the body
/// told: a body that is calculated again where it stands has nothing new to say.
class EdgeNotes {
  public:
    /// One station by its four single edges, as far as `left_out` names them.
    double left_out_edges(const SheetPolygon& polygon, unsigned left_out, std::size_t station, double x,
                          double h) {
        double sum = 0;
        for (unsigned j = 0; j < 4; ++j) {
            if ((left_out >> j & 1U) == 0) continue;
            const EdgeTerm term =
                edge_term(polygon.x[j] - x, polygon.x[j + 1] - x, polygon.z[j] - h, polygon.z[j + 1] - h);
            sum += term.value;
            if (!term.fault) continue;
            count(*term.fault);
            mix(4 * station + j + 1);
        }
        return sum;
    }

    void tell(const SheetPolygon& polygon, const BodyFrame& frame, LostEdges& told, Faults& faults) const {
        LostEdges lost;
        if (!lost_.empty())
            lost = {{polygon.x[1], polygon.x[2], polygon.x[3], polygon.z[2], frame.cos_strike,
                     frame.sin_strike, frame.east, frame.north, frame.top, frame.sense},
                    stations_};
        if (lost == told) return;
        told = lost;
        for (const auto& [fault, times] : lost_) note_edge(fault, times, faults);
    }

  private:
    void mix(std::uint64_t value) {
        stations_ = (stations_ ^ value) * 0x9E3779B97F4A7C15U;
        stations_ ^= stations_ >> 29;
    }

    void count(FaultKind fault) {
        const auto known = std::ranges::find(lost_, fault, &std::pair<FaultKind, long>::first);
        if (known == lost_.end()) {
            lost_.emplace_back(fault, 1);
        } else {
            ++known->second;
        }
    }

    std::vector<std::pair<FaultKind, long>> lost_;  ///< in the order of their first time
    std::uint64_t stations_ = 0;
};

}  // namespace

double talwani_edge(double x1, double x2, double z1, double z2, Faults& faults) {
    const EdgeTerm term = edge_term(x1, x2, z1, z2);
    if (term.fault) note_edge(*term.fault, 1, faults);
    return term.value;
}

void fill_talwani(const Workspace& workspace, ModelBody& body, const SheetBottom& bottom, Faults& faults,
                  Pacer& pacer) {
    const double width = body.width.value;
    const SheetPolygon polygon{{0, width, width + bottom.offset, bottom.offset, 0},
                               {0, 0, -bottom.depth, -bottom.depth, 0}};
    const StationView stations = station_view(workspace);
    const BodyFrame frame = body_frame(body);
    float* response = response_column(workspace, body, 2);
    std::mutex mutex;
    std::vector<LackingSum> lacking;
    for_stretches(stations.count, units_a_station, pacer, [&](std::size_t first, std::size_t count) {
        std::array<double, near_stations> sum, left_out;
        for (std::size_t at = first; at < first + count; at += near_stations) {
            const StationView part = part_of(stations, at, std::min(near_stations, first + count - at));
            talwani_stations_at(vector::widest_vector_level())(part, frame, polygon, sum.data(),
                                                               left_out.data());
            for (std::size_t i = 0; i < part.count; ++i) {
                response[at + i] = static_cast<float>(sum[i]);
                if (left_out[i] == 0) continue;
                const std::lock_guard lock(mutex);
                lacking.push_back({at + i, static_cast<unsigned>(left_out[i]), sum[i]});
            }
        }
    });
    // In the order of the stations, whichever thread came first.
    std::ranges::sort(lacking, {}, &LackingSum::station);
    EdgeNotes notes;
    for (const auto& [station, left_out, sum] : lacking)
        response[station] = static_cast<float>(
            sum + notes.left_out_edges(polygon, left_out, station, across_strike(stations, frame, station),
                                       height_over_top(stations, frame, station)));
    notes.tell(polygon, frame, body.told_edges, faults);
}

}  // namespace anomalis::forward

#include "forward/driver.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "core/faults.h"
#include "core/free_memory.h"
#include "core/zero_values.h"
#include "forward/body_price.h"
#include "forward/body_responses.h"
#include "forward/exact/exact_response.h"
#include "forward/station_columns.h"
#include "forward/station_stretches.h"

namespace anomalis::forward {

namespace {

constexpr std::string_view driver_failure = "An error occurred calculating the maginv model: ";

/// What differs between the two channels.
struct ChannelRoute {
    bool ModelBody::*valid;
    std::uint64_t ModelBody::*calculation;
    Channel Workspace::*channel;
    int column;  ///< of the response
};

constexpr ChannelRoute magnetic{&ModelBody::mag_response_valid, &ModelBody::mag_calculation, &Workspace::mag,
                                1};
constexpr ChannelRoute gravity{&ModelBody::grav_response_valid, &ModelBody::grav_calculation,
                               &Workspace::grav, 2};

/// A body is to be calculated, or the bodies are no longer those of the sum, or stand in another order.
bool sum_out_of_date(const Workspace& workspace, const ChannelRoute& route) {
    const std::vector<std::uint64_t>& summed = (workspace.*route.channel).summed;
    if (summed.size() != static_cast<std::size_t>(workspace.body_count)) return true;
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        if (!(body.*route.valid) || body.*route.calculation != summed[static_cast<std::size_t>(number - 1)])
            return true;
    }
    return false;
}

void note_sum(Workspace& workspace, const ChannelRoute& route) {
    std::vector<std::uint64_t>& summed = (workspace.*route.channel).summed;
    summed.clear();
    for (int number = 1; number <= workspace.body_count; ++number)
        summed.push_back(workspace.body(number).*route.calculation);
}

void zero_calculated(const Workspace& workspace, ChannelTable& data) {
    constexpr double zeros = 1;  // nanoseconds a station
    const auto count = static_cast<std::size_t>(std::min(data.stations(), workspace.station_count));
    for_stretches(count, zeros, no_pace(), [&](std::size_t first, std::size_t part) {
        for (int row = row_raw; row <= row_total_gradient; ++row)
            make_zero(data.row(row, stage_calculated).subspan(first, part));
    });
}

/// Whether a stretch of the sum is within single precision.
bool add_stretch(const Workspace& workspace, const ChannelRoute& route, std::size_t first, std::size_t count,
                 float* sum) {
    for (int number = 1; number <= workspace.body_count; ++number) {
        const float* response = held_column(workspace, workspace.body(number), route.column);
        if (!response) continue;
        for (std::size_t i = 0; i < count; ++i) sum[i] += response[first + i];
    }
    unsigned beyond = 0;
    for (std::size_t i = 0; i < count; ++i)
        beyond |= !(std::abs(sum[i]) <= std::numeric_limits<float>::max());
    return beyond == 0;
}

/// Sums all bodies, a stretch of stations at a time so that the sum stays in the nearest memory. Each station
/// adds the bodies in their order. Nothing can stop it: the curves would be neither of before nor of now.
void sum_responses(Workspace& workspace, const ChannelRoute& route, std::span<float> sum) {
    constexpr double addition = 0.25;  // nanoseconds
    const auto count = static_cast<std::size_t>(workspace.station_count);
    if (sum.size() < count) throw Fault(FaultKind::subscript);
    std::atomic<bool> within = true;
    for_stretches(
        count, addition * workspace.body_count, no_pace(), [&](std::size_t first, std::size_t part) {
            constexpr std::size_t near = 2048;
            for (std::size_t at = first; at < first + part; at += near)
                if (!add_stretch(workspace, route, at, std::min(near, first + part - at), sum.data() + at))
                    within = false;
        });
    if (within) return;
    std::fill(sum.begin(), sum.end(), 0.0F);
    throw Fault(FaultKind::overflow, "the sum of the bodies is out of all proportion; it counts as zero");
}

void rebuild_sum(Workspace& workspace, const ChannelRoute& route, ChannelTable& data) {
    zero_calculated(workspace, data);
    (workspace.*route.channel).calculated_filtered = false;
    note_sum(workspace, route);
    sum_responses(workspace, route, data.row(row_raw, stage_calculated));
}

/// Before work begins that could not be ended.
void require_room(const Workspace& workspace) {
    const std::uint64_t bytes = memory_ahead(workspace);
    if (bytes <= little_memory) return;  // and no text is made for nothing
    require_free_memory(bytes,
                        "the responses of " + std::to_string(workspace.body_count) + " bodies at " +
                            std::to_string(workspace.station_count) + " stations",
                        "fewer bodies, or a larger station spacing, take less");
}

void calculate(Workspace& workspace, ChannelTable& mag_data, ChannelTable& grav_data, Faults& faults,
               Pacer& pacer) {
    if (workspace.body_count <= 0) {
        zero_calculated(workspace, mag_data);
        zero_calculated(workspace, grav_data);
        workspace.mag.summed.clear();
        workspace.grav.summed.clear();
        workspace.mag.calculated_filtered = workspace.grav.calculated_filtered = false;
        return;
    }
    const bool mag = workspace.has_mag() && sum_out_of_date(workspace, magnetic);
    const bool grav = workspace.has_grav() && sum_out_of_date(workspace, gravity);
    if (mag || grav) require_room(workspace);
    // All that takes long comes first: a calculation that is left leaves the curves of before.
    const ExactNotes notes = calculate_bodies(workspace, {mag, grav}, faults, pacer);
    const std::string_view prefix = driver_failure;
    if (mag) report_failure(faults, prefix, [&] { rebuild_sum(workspace, magnetic, mag_data); });
    if (grav) report_failure(faults, prefix, [&] { rebuild_sum(workspace, gravity, grav_data); });
    report_notes(notes, faults);
}

}  // namespace

void calculate_model(Workspace& workspace, ChannelTable& mag_data, ChannelTable& grav_data, Faults& faults,
                     Pacer& pacer) {
    if (workspace.station_count <= 0) return;
    report_failure(faults, driver_failure, [&] { calculate(workspace, mag_data, grav_data, faults, pacer); });
}

}  // namespace anomalis::forward

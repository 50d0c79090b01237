#include "forward/station_columns.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <utility>

#include "core/body_parameters.h"

namespace anomalis::forward {

namespace {

std::string reason_of(const Workspace& workspace, const ModelBody& body) {
    for (const BodyParameter& row : body_parameters())
        if (!std::isfinite((body.*row.slot).value))
            return "its " + std::string(row.name) + " is not a number";
    const auto finite = [](double v) { return std::isfinite(v); };
    const auto values = workspace.stations.span();
    if (!std::all_of(values.begin(), values.end(), finite)) return "a station is not a number";
    return "its parameters are out of all proportion";
}

}  // namespace

StationView station_view(const Workspace& workspace) {
    if (workspace.station_count < 0 || workspace.stations.rows() < workspace.station_count)
        throw Fault(FaultKind::subscript);
    return {workspace.stations.column(column_east).data(), workspace.stations.column(column_north).data(),
            workspace.stations.column(column_sensor).data(),
            static_cast<std::size_t>(workspace.station_count)};
}

StationView part_of(const StationView& stations, std::size_t from, std::size_t count) {
    return {stations.east + from, stations.north + from, stations.sensor + from, count};
}

namespace {

void require_rows(const Workspace& workspace, const ModelBody& body) {
    if (body.response.rows() != workspace.station_count) throw Fault(FaultKind::subscript);
}

}  // namespace

float* response_column(const Workspace& workspace, ModelBody& body, int column) {
    require_rows(workspace, body);
    return body.response.column(column).data();
}

const float* held_column(const Workspace& workspace, const ModelBody& body, int column) {
    require_rows(workspace, body);
    const std::span<const float> values = body.response.column(column);
    return values.empty() ? nullptr : values.data();
}

void zero_column(const Workspace& workspace, ModelBody& body, int column) {
    if (held_column(workspace, body, column))
        std::fill_n(response_column(workspace, body, column), workspace.station_count, 0.0F);
}

BodyFrame body_frame(const ModelBody& body) {
    return {body.cos_strike, body.sin_strike, body.east, body.north, body.top.value, 1.0};
}

double across_strike(const StationView& stations, const BodyFrame& frame, std::size_t i) {
    const double x = frame.cos_strike * (stations.east[i] - frame.east) -
                     frame.sin_strike * (stations.north[i] - frame.north);
    return x * frame.sense;
}

double height_over_top(const StationView& stations, const BodyFrame& frame, std::size_t i) {
    return stations.sensor[i] - frame.top;
}

std::string beyond_text(const Workspace& workspace, const ModelBody& body, int body_number, int column) {
    return std::string(column == 2 ? "the gravity" : "the magnetic response") + " of body " +
           std::to_string(body_number) + ", " + body.name +
           ", is not a finite number: " + reason_of(workspace, body) + "; it counts as zero";
}

void require_finite_column(const Workspace& workspace, ModelBody& body, int body_number, int column) {
    unsigned beyond = 0;
    for (const float value : std::as_const(body.response).column(column))
        beyond |= !(std::abs(value) <= std::numeric_limits<float>::max());
    if (beyond == 0) return;
    body.response.drop(column);
    throw Fault(FaultKind::overflow, beyond_text(workspace, body, body_number, column));
}

}  // namespace anomalis::forward

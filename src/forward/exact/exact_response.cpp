#include "forward/exact/exact_response.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "core/faults.h"
#include "forward/body_price.h"
#include "forward/exact/exact_column.h"
#include "forward/exact/exact_plane.h"
#include "forward/exact/exact_point.h"
#include "forward/exact/exact_solid.h"
#include "forward/exact/shape_demagnetisation.h"
#include "forward/forward_memory.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

enum class Channel { magnetic, gravity };

/// Stations of all vector levels.
constexpr std::size_t whole_vectors = 8;
/// Of closed forms: of a station, and of one edge of a ring for a station.
constexpr double units_a_station = 200, units_an_edge = 20;
/// What is done between two words with the pacer.
constexpr double stretch_units = 2e6;

/// One body at the stations of a line. The procedures below return false where it gives nothing.
struct Task {
    ExactPlace place;
    ModelBody& body;
    ExactField field;
    Polyhedron& polyhedron;
    std::span<double> values;
    ExactNotes& notes;
    Channel channel;
    Pacer& pacer;

    double density() const { return body.density.value; }
    bool magnetic() const { return channel == Channel::magnetic; }
};

void demagnetise(Task& task) {
    if (!task.magnetic() || task.body.include_demagnetisation != 1) return;
    task.field.magnetisation =
        demagnetised(body_demagnetisation(task.body), task.body.susc.value / 1e6, task.field.magnetisation);
}

bool fill_solid(Task& task) {
    if (task.magnetic()) {
        fill_solid_anomaly(task.place, task.field, task.polyhedron, task.values, task.pacer);
    } else {
        fill_solid_gravity(task.place, task.density(), task.polyhedron, task.values, task.pacer);
    }
    return true;
}

/// Calls step(place, values) for one stretch of stations after the other, each of `stretch_units` when a
/// station takes `units`. Stretches begin at whole vectors, so that they change no bit.
template <class Step>
void in_stretches(Task& task, double units, const Step& step) {
    const auto fits = static_cast<std::size_t>(stretch_units / units);
    const std::size_t stretch = std::max(fits / whole_vectors, std::size_t{1}) * whole_vectors;
    const StationView& all = task.place.stations;
    for (std::size_t at = 0; at < all.count; at += stretch) {
        const std::size_t count = std::min(stretch, all.count - at);
        step(ExactPlace{part_of(all, at, count), task.place.frame}, task.values.subspan(at, count));
        task.pacer.done(units * static_cast<double>(count));
    }
}

/// One of two procedures for a shape, with what each channel needs. `units` are what a station takes.
template <class Shape, class Anomaly, class Gravity>
bool fill_shape(Task& task, const Shape& shape, Anomaly anomaly, Gravity gravity,
                double units = units_a_station) {
    in_stretches(task, units, [&](const ExactPlace& place, std::span<double> values) {
        if (task.magnetic()) {
            anomaly(place, shape, task.field, values);
        } else {
            gravity(place, shape, task.density(), values);
        }
    });
    return true;
}

bool fill_sheet(Task& task) {
    const SheetShape sheet = sheet_shape(task.body);
    if (!sheet.meets) task.notes.steep_top = true;
    if (!sheet.meets || sheet.empty()) return false;
    demagnetise(task);
    if (!sheet.limited) return fill_shape(task, sheet, fill_plane_sheet_anomaly, fill_plane_sheet_gravity);
    if (sheet.depth == 0) return fill_shape(task, sheet, fill_column_anomaly, fill_column_gravity);
    assign_prism(task.place.frame, sheet, task.polyhedron, task.pacer);
    return fill_solid(task);
}

bool fill_step(Task& task) {
    demagnetise(task);
    return fill_shape(task, step_shape(task.body), fill_step_anomaly, fill_step_gravity);
}

bool fill_sphere(Task& task) {
    const double radius = std::abs(static_cast<double>(task.body.width.value)) / 2;
    if (radius == 0) return false;
    demagnetise(task);
    return fill_shape(task, radius, fill_sphere_anomaly, fill_sphere_gravity);
}

bool fill_pipe(Task& task) {
    require_affordable(
        body_price(task.body, Formulas::exact, static_cast<std::int64_t>(task.place.stations.count)));
    const PipeShape pipe = pipe_shape(task.body);
    if (pipe.outer == 0) return false;
    demagnetise(task);
    if (!pipe.limited)
        return fill_shape(task, pipe, fill_plane_pipe_anomaly, fill_plane_pipe_gravity,
                          units_an_edge * pipe.sectors);
    assign_pipe(task.place.frame, pipe, task.polyhedron, task.pacer);
    return fill_solid(task);
}

bool fill_wire(Task& task) {
    in_stretches(task, units_a_station, [&](const ExactPlace& place, std::span<double> values) {
        fill_wire_anomaly(place, task.body, task.field, values);
    });
    return true;
}

bool fill_by_type(Task& task) {
    switch (task.body.type) {
        case thin_sheet:
        case thick_sheet:
            return fill_sheet(task);
        case edge:
        case sloping_step:
            return fill_step(task);
        case polygon:
            task.notes.polygon = true;
            return false;
        case sphere:
            return fill_sphere(task);
        case pipe:
            return fill_pipe(task);
        case wire:
            if (!task.magnetic()) return false;
            return fill_wire(task);
        default:
            return false;
    }
}

void fill(const Workspace& workspace, ModelBody& body, const StationView& stations, Polyhedron& polyhedron,
          std::span<double> values, ExactNotes& notes, Channel channel, Pacer& pacer) {
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    const ExactPlace place{stations, exact_frame(body)};
    if (values.size() != place.stations.count) throw Fault(FaultKind::subscript);
    Task task{place,   body, exact_field(workspace, body, place.frame), polyhedron, values, notes,
              channel, pacer};
    if (!fill_by_type(task)) std::fill(values.begin(), values.end(), 0.0);
}

/// The numbers that the tensor of a body hangs on.
std::array<double, 8> shape_numbers(const ModelBody& body) {
    const auto type = static_cast<double>(body.type);
    if (body.type == pipe) {
        const PipeShape p = pipe_shape(body);
        return {type,
                p.outer,
                p.inner,
                p.cap,
                p.limited ? p.length() : -1,
                p.sin_fall,
                p.cos_fall,
                static_cast<double>(p.sectors)};
    }
    if (!is_sheet(body.type)) return {type};
    const SheetShape s = sheet_shape(body);
    return {type, s.width, s.rise, s.depth, s.cotangent, s.limited ? s.far_end - s.near_end : -1.0, s.plunge};
}

Tensor3 tensor_of(const ModelBody& body) {
    switch (body.type) {
        case thin_sheet:
        case thick_sheet:
            return sheet_demagnetisation(sheet_shape(body));
        case edge:
        case sloping_step:
            return slab_demagnetisation();
        case pipe:
            return pipe_demagnetisation(pipe_shape(body));
        default:
            return sphere_demagnetisation();
    }
}

void fill_column(Workspace& workspace, int body_number, ExactNotes& notes, Channel channel, Faults& faults,
                 Pacer& pacer) {
    ModelBody& body = workspace.body(body_number);
    const int column = channel == Channel::magnetic ? 1 : 2;
    const std::string_view failure = exact_failure(channel == Channel::magnetic ? channel_mag : channel_grav);
    const int status = report_failure(faults, failure, [&] {
        ForwardMemory& memory = forward_memory(workspace);
        fill(workspace, body, station_view(workspace), memory.polyhedron, memory.values, notes, channel,
             pacer);
        store_values(workspace, body, column, memory.values);
    });
    report_failure(faults, failure, [&] {
        if (status != 0) std::fill_n(response_column(workspace, body, column), workspace.station_count, 0.0F);
        require_finite_column(workspace, body_number, column);
    });
}

}  // namespace

Tensor3 body_demagnetisation(ModelBody& body) {
    const std::array<double, 8> numbers = shape_numbers(body);
    ShapeTensor& kept = body.demagnetisation;
    if (!kept.known || kept.shape != numbers) {
        const Tensor3 n = tensor_of(body);
        kept = {true, numbers, {n.xx, n.xy, n.xz, n.yy, n.yz, n.zz}};
    }
    const auto& [xx, xy, xz, yy, yz, zz] = kept.tensor;
    return {xx, xy, xz, yy, yz, zz};
}

std::string_view exact_failure(int channel) {
    // The prefixes of the classic route, letter by letter, so that one search finds the failures of both.
    return channel == channel_mag ? "An error occured while calculating the response: "
                                  : "An error occurred while calculating the gravity response: ";
}

void exact_values(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                  Polyhedron& polyhedron, std::span<double> values, ExactNotes& notes, Pacer& pacer) {
    fill(workspace, body, stations, polyhedron, values, notes,
         channel == channel_mag ? Channel::magnetic : Channel::gravity, pacer);
}

void exact_anomaly(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron,
                   std::span<double> values, ExactNotes& notes, Pacer& pacer) {
    exact_values(workspace, body, channel_mag, station_view(workspace), polyhedron, values, notes, pacer);
}

void exact_gravity(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron,
                   std::span<double> values, ExactNotes& notes, Pacer& pacer) {
    exact_values(workspace, body, channel_grav, station_view(workspace), polyhedron, values, notes, pacer);
}

void calculate_exact_mag_response(Workspace& workspace, int body_number, ExactNotes& notes, Faults& faults,
                                  Pacer& pacer) {
    fill_column(workspace, body_number, notes, Channel::magnetic, faults, pacer);
}

void calculate_exact_gravity_response(Workspace& workspace, int body_number, ExactNotes& notes,
                                      Faults& faults, Pacer& pacer) {
    fill_column(workspace, body_number, notes, Channel::gravity, faults, pacer);
}

void report_notes(const ExactNotes& notes, Faults& faults) {
    if (notes.polygon) faults.add("A Polygon body has no shape in this version: its response is zero");
    if (notes.steep_top)
        faults.add("The sloping top of the body does not meet its far wall: its response is zero");
}

}  // namespace anomalis::forward

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
#include "forward/station_stretches.h"

namespace anomalis::forward {

namespace {

/// Of closed forms: of a station, and of one edge of a ring for a station.
constexpr double units_a_station = 200, units_an_edge = 20;
/// What the widest vectors take of that.
constexpr double wide_share = 1.0 / 8;

/// What is wanted of a body at the stations: nT and mGal, null where a channel is not asked for.
struct Wanted {
    double* anomaly;
    double* attraction;

    int channels() const { return (anomaly ? 1 : 0) + (attraction ? 1 : 0); }
    Wanted from(std::size_t at) const {
        return {anomaly ? anomaly + at : nullptr, attraction ? attraction + at : nullptr};
    }
};

/// One body at the stations of a line. The procedures below return false where it gives nothing.
struct Task {
    ExactPlace place;
    ModelBody& body;
    ExactField field;
    Polyhedron& polyhedron;
    Wanted wanted;
    ExactNotes& notes;
    Pacer& pacer;

    double density() const { return body.density.value; }
    std::size_t count() const { return place.stations.count; }
};

void zero(double* values, std::size_t count) {
    if (values) std::fill_n(values, count, 0.0);
}

void demagnetise(Task& task) {
    if (!task.wanted.anomaly || task.body.include_demagnetisation != 1) return;
    task.field.magnetisation =
        demagnetised(body_demagnetisation(task.body), task.body.susc.value / 1e6, task.field.magnetisation);
}

bool fill_solid(Task& task) {
    const auto [anomaly, attraction] = task.wanted;
    const std::size_t count = task.count();
    if (anomaly && attraction) {
        fill_solid_responses(task.place, task.field, task.density(), task.polyhedron, {anomaly, count},
                             {attraction, count}, task.pacer);
    } else if (anomaly) {
        fill_solid_anomaly(task.place, task.field, task.polyhedron, {anomaly, count}, task.pacer);
    } else {
        fill_solid_gravity(task.place, task.density(), task.polyhedron, {attraction, count}, task.pacer);
    }
    return true;
}

/// Calls step(place, wanted) for stretches of stations, each of which takes `units`.
template <class Step>
void in_stretches(Task& task, double units, const Step& step) {
    const StationView& all = task.place.stations;
    for_stretches(
        all.count, units, task.pacer,
        [&](std::size_t first, std::size_t count) {
            step(ExactPlace{part_of(all, first, count), task.place.frame}, task.wanted.from(first));
        },
        wide_share * units);
}

/// The procedures for a shape, with what each channel needs. `units` are what a station takes in one channel.
template <class Shape, class Anomaly, class Gravity>
bool fill_shape(Task& task, const Shape& shape, Anomaly anomaly, Gravity gravity,
                double units = units_a_station) {
    in_stretches(task, units * task.wanted.channels(), [&](const ExactPlace& place, const Wanted& wanted) {
        const std::size_t count = place.stations.count;
        if (wanted.anomaly) anomaly(place, shape, task.field, {wanted.anomaly, count});
        if (wanted.attraction) gravity(place, shape, task.density(), {wanted.attraction, count});
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
    require_affordable(body_price(task.body, Formulas::exact, static_cast<std::int64_t>(task.count())));
    const PipeShape pipe = pipe_shape(task.body);
    if (pipe.outer == 0) return false;
    demagnetise(task);
    if (!pipe.limited)
        return fill_shape(task, pipe, fill_plane_pipe_anomaly, fill_plane_pipe_gravity,
                          units_an_edge * pipe.sectors);
    assign_pipe(task.place.frame, pipe, task.polyhedron, task.pacer);
    return fill_solid(task);
}

/// A current has no mass.
bool fill_wire(Task& task) {
    zero(task.wanted.attraction, task.count());
    if (!task.wanted.anomaly) return true;
    in_stretches(task, units_a_station, [&](const ExactPlace& place, const Wanted& wanted) {
        fill_wire_anomaly(place, task.body, task.field, {wanted.anomaly, place.stations.count});
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
            return fill_wire(task);
        default:
            return false;
    }
}

void fill(const Workspace& workspace, ModelBody& body, const StationView& stations, Polyhedron& polyhedron,
          const Wanted& wanted, ExactNotes& notes, Pacer& pacer) {
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    const ExactPlace place{stations, exact_frame(body)};
    Task task{place, body, exact_field(workspace, body, place.frame), polyhedron, wanted, notes, pacer};
    if (fill_by_type(task)) return;
    zero(wanted.anomaly, stations.count);
    zero(wanted.attraction, stations.count);
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

/// What is written of one channel.
struct Column {
    int channel, number;  ///< channel_mag or channel_grav; of the response
    std::vector<double> BodyMemory::*values;
    Faults& faults;
};

Column magnetic_column(const BodyJob& job) {
    return {channel_mag, 1, &BodyMemory::anomaly, job.mag_faults};
}

Column gravity_column(const BodyJob& job) {
    return {channel_grav, 2, &BodyMemory::attraction, job.grav_faults};
}

void fill_wanted(const BodyJob& job, const Wanted& wanted) {
    fill(job.workspace, job.body, station_view(job.workspace), job.memory.polyhedron, wanted, job.notes,
         job.pacer);
}

/// False after a failure, which is told by the channel that it concerns when each is calculated alone.
bool fill_both(const BodyJob& job) {
    try {
        fill_wanted(job, {station_values(job.memory.anomaly, job.workspace).data(),
                          station_values(job.memory.attraction, job.workspace).data()});
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

void store(const BodyJob& job, const Column& column) {
    report_failure(column.faults, exact_failure(column.channel), [&] {
        store_values(job.workspace, job.body, column.number, job.memory.*column.values);
        require_finite_column(job.workspace, job.body, job.number, column.number);
    });
}

void fill_alone(const BodyJob& job, const Column& column) {
    const bool magnetic = column.channel == channel_mag;
    const int status = report_failure(column.faults, exact_failure(column.channel), [&] {
        double* const values = station_values(job.memory.*column.values, job.workspace).data();
        fill_wanted(job, {magnetic ? values : nullptr, magnetic ? nullptr : values});
    });
    if (status == 0) return store(job, column);
    job.body.response.drop(column.number);
}

}  // namespace

void calculate_exact_responses(const BodyJob& job) {
    const Column magnetic = magnetic_column(job), gravity = gravity_column(job);
    if (job.both() && fill_both(job)) {
        store(job, magnetic);
        store(job, gravity);
        return;
    }
    if (job.mag) fill_alone(job, magnetic);
    if (job.grav) fill_alone(job, gravity);
}

namespace {

void calculate_one(Workspace& workspace, int body_number, bool mag, ExactNotes& notes, Faults& faults,
                   Pacer& pacer) {
    calculate_exact_responses({workspace, body_number, workspace.body(body_number), mag, !mag,
                               body_memory(forward_memory(workspace)), notes, faults, faults, pacer});
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
    if (values.size() != stations.count) throw Fault(FaultKind::subscript);
    const bool magnetic = channel == channel_mag;
    fill(workspace, body, stations, polyhedron,
         {magnetic ? values.data() : nullptr, magnetic ? nullptr : values.data()}, notes, pacer);
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
    calculate_one(workspace, body_number, true, notes, faults, pacer);
}

void calculate_exact_gravity_response(Workspace& workspace, int body_number, ExactNotes& notes,
                                      Faults& faults, Pacer& pacer) {
    calculate_one(workspace, body_number, false, notes, faults, pacer);
}

void report_notes(const ExactNotes& notes, Faults& faults) {
    if (notes.polygon) faults.add("A Polygon body has no shape in this version: its response is zero");
    if (notes.steep_top)
        faults.add("The sloping top of the body does not meet its far wall: its response is zero");
}

}  // namespace anomalis::forward

#include "forward/exact_response.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "core/prompts.h"
#include "forward/exact_column.h"
#include "forward/exact_plane.h"
#include "forward/exact_point.h"
#include "forward/exact_solid.h"
#include "forward/forward_memory.h"
#include "forward/reference_point.h"
#include "forward/shape_demagnetisation.h"
#include "forward/station_columns.h"

namespace anomalis {

namespace {

enum class Channel { magnetic, gravity };

/// One body at the stations of a line.
struct Task {
    ExactPlace place;
    ModelBody& body;
    ExactField field;
    Polyhedron& polyhedron;
    std::span<double> values;
    ExactNotes& notes;
    Channel channel;

    double density() const { return body.density.value; }
    bool magnetic() const { return channel == Channel::magnetic; }
};

void demagnetise(Task& task) {
    if (!task.magnetic() || task.body.include_demagnetisation != 1) return;
    task.field.magnetisation =
        demagnetised(body_demagnetisation(task.body), task.body.susc.value / 1e6, task.field.magnetisation);
}

void fill_solid(Task& task) {
    if (task.magnetic()) return fill_solid_anomaly(task.place, task.field, task.polyhedron, task.values);
    fill_solid_gravity(task.place, task.density(), task.polyhedron, task.values);
}

void fill_sheet(Task& task) {
    const SheetShape sheet = sheet_shape(task.body);
    if (!sheet.meets) {
        task.notes.steep_top = true;
        return;
    }
    if (sheet.empty()) return;
    demagnetise(task);
    if (!sheet.limited) {
        if (task.magnetic()) return fill_plane_sheet_anomaly(task.place, sheet, task.field, task.values);
        return fill_plane_sheet_gravity(task.place, sheet, task.density(), task.values);
    }
    if (sheet.depth == 0) {
        if (task.magnetic()) return fill_column_anomaly(task.place, sheet, task.field, task.values);
        return fill_column_gravity(task.place, sheet, task.density(), task.values);
    }
    assign_prism(task.place.frame, sheet, task.polyhedron);
    fill_solid(task);
}

void fill_step(Task& task) {
    const StepShape step = step_shape(task.body);
    demagnetise(task);
    if (task.magnetic()) return fill_step_anomaly(task.place, step, task.field, task.values);
    fill_step_gravity(task.place, step, task.density(), task.values);
}

void fill_sphere(Task& task) {
    const double radius = std::abs(static_cast<double>(task.body.width.value)) / 2;
    if (radius == 0) return;
    demagnetise(task);
    if (task.magnetic()) return fill_sphere_anomaly(task.place, radius, task.field, task.values);
    fill_sphere_gravity(task.place, radius, task.density(), task.values);
}

void fill_pipe(Task& task) {
    const PipeShape pipe = pipe_shape(task.body);
    if (pipe.outer == 0) return;
    demagnetise(task);
    if (pipe.limited) {
        assign_pipe(task.place.frame, pipe, task.polyhedron);
        return fill_solid(task);
    }
    if (task.magnetic()) return fill_plane_pipe_anomaly(task.place, pipe, task.field, task.values);
    fill_plane_pipe_gravity(task.place, pipe, task.density(), task.values);
}

void fill_by_type(Task& task) {
    switch (task.body.type) {
        case thin_sheet:
        case thick_sheet:
            return fill_sheet(task);
        case edge:
        case sloping_step:
            return fill_step(task);
        case polygon:
            task.notes.polygon = true;
            return;
        case sphere:
            return fill_sphere(task);
        case pipe:
            return fill_pipe(task);
        case wire:
            if (task.magnetic()) fill_wire_anomaly(task.place, task.body, task.field, task.values);
            return;
        default:
            return;
    }
}

void fill(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron, std::span<double> values,
          ExactNotes& notes, Channel channel) {
    std::fill(values.begin(), values.end(), 0.0);
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    const ExactPlace place{station_view(workspace), exact_frame(body)};
    if (values.size() != place.stations.count) throw Fault(FaultKind::subscript);
    Task task{place, body, exact_field(workspace, body, place.frame), polyhedron, values, notes, channel};
    fill_by_type(task);
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
    if (body.type != thin_sheet && body.type != thick_sheet) return {type};
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

/// The prefix of the classic route's messages, misspelt as it always was in the first.
struct ChannelTexts {
    std::string_view failure;
    int column;
};
constexpr ChannelTexts magnetic_texts{"An error occured while calculating the response: ", 1};
constexpr ChannelTexts gravity_texts{"An error occurred while calculating the gravity response: ", 2};

void fill_column(Workspace& workspace, int body_number, ExactNotes& notes, Channel channel,
                 const ChannelTexts& texts, Prompts& prompts) {
    ModelBody& body = workspace.body(body_number);
    report_failure(prompts, texts.failure, [&] {
        float* column = response_column(workspace, body, texts.column);
        std::fill_n(column, workspace.station_count, 0.0F);
        ForwardMemory& memory = forward_memory(workspace);
        fill(workspace, body, memory.polyhedron, memory.values, notes, channel);
        store_values(workspace, body, texts.column, memory.values);
    });
    report_failure(prompts, texts.failure,
                   [&] { require_finite_column(workspace, body_number, texts.column); });
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

void exact_anomaly(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron,
                   std::span<double> values, ExactNotes& notes) {
    fill(workspace, body, polyhedron, values, notes, Channel::magnetic);
}

void exact_gravity(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron,
                   std::span<double> values, ExactNotes& notes) {
    fill(workspace, body, polyhedron, values, notes, Channel::gravity);
}

void calculate_exact_mag_response(Workspace& workspace, int body_number, ExactNotes& notes,
                                  Prompts& prompts) {
    fill_column(workspace, body_number, notes, Channel::magnetic, magnetic_texts, prompts);
}

void calculate_exact_gravity_response(Workspace& workspace, int body_number, ExactNotes& notes,
                                      Prompts& prompts) {
    fill_column(workspace, body_number, notes, Channel::gravity, gravity_texts, prompts);
}

void show_notes(const ExactNotes& notes, Prompts& prompts) {
    if (notes.polygon) prompts.message("A Polygon body has no shape in this version: its response is zero");
    if (notes.steep_top)
        prompts.message("The sloping top of the body does not meet its far wall: its response is zero");
}

}  // namespace anomalis

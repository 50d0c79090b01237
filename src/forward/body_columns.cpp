#include "forward/body_columns.h"

#include <algorithm>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/faults.h"
#include "forward/columns/body_response.h"
#include "forward/columns/difference_step.h"
#include "forward/columns/plane_columns.h"
#include "forward/columns/point_columns.h"
#include "forward/columns/solid_columns.h"
#include "forward/shape/reference_point.h"

namespace anomalis::forward {

namespace {

/// What both ways to a column need.
struct ColumnTask {
    const Workspace& workspace;
    ModelBody& body;
    int channel;
    const StationRange& range;
    BodyBench& memory;
    BodyNotes& notes;
};

/// The response with a parameter at another value. What it notes is not told: the body does not stand there.
void respond_changed(const ColumnTask& task, BodyParam& param, float value, std::span<double> response) {
    ExactNotes unused;
    Faults untold;
    BodyNotes notes{task.notes.body_number, unused, untold, task.notes.pacer};
    const float kept = param.value;
    param.value = value;
    const auto put_back = [&] { param.value = kept; };
    try {
        respond(task.workspace, task.body, task.channel, task.range, task.memory, response, notes);
    } catch (...) {
        put_back();
        throw;
    }
    put_back();
}

void difference_column(const ColumnTask& task, int param_code, std::span<double> column) {
    const DifferenceStep step = difference_step(task.workspace, task.body, task.range, param_code);
    if (step.none || !(step.width() > 0)) {
        std::ranges::fill(column, 0.0);
        return;
    }
    task.memory.behind.resize(column.size());
    BodyParam& param = body_param(task.body, param_code);
    respond_changed(task, param, step.ahead, column);
    respond_changed(task, param, step.behind, task.memory.behind);
    for (std::size_t i = 0; i < column.size(); ++i)
        column[i] = (column[i] - task.memory.behind[i]) / step.width();
}

/// How the columns of a body are found.
enum class Way {
    plane,       ///< closed, with the values
    solid,       ///< closed, beside the values
    point,       ///< closed, beside the values
    differences  ///< but for amplitudes
};

Way way_of(const Workspace& workspace, const ModelBody& body) {
    if (workspace.formulas != Formulas::exact || body.turned_off == 1) return Way::differences;
    if (lies_in_plane(body)) return Way::plane;
    if (is_limited_sheet(body)) return Way::solid;
    return is_point_body(body) ? Way::point : Way::differences;
}

bool has_part(int channel, int param_code) {
    const Stale& stale = body_parameter(param_code).stale;
    return channel == channel_mag ? stale.mag : stale.grav;
}

/// The values are proportional to the parameter: a susceptibility or a density that is not 0.
bool is_amplitude(const ModelBody& body, int channel, int param_code) {
    if (channel == channel_grav) return param_code == param_density && body.density.value != 0;
    return param_code == param_susc && body.susc.value != 0 && body.include_demagnetisation == 0 &&
           !carries_current(body.type);
}

/// One column by differences, or zeros. Those of amplitudes are left to their values.
void fill_column(const ColumnTask& task, int param_code, std::span<double> column) {
    if (is_amplitude(task.body, task.channel, param_code)) return;
    if (has_part(task.channel, param_code)) return difference_column(task, param_code, column);
    std::ranges::fill(column, 0.0);
}

/// All columns that have no closed form, the values last: so all that is derived in the body is of the
/// values that it holds.
void difference_columns(const ColumnTask& task, std::span<const int> param_codes, std::span<double> values,
                        std::span<double> columns) {
    const std::size_t count = values.size();
    const ShapeTensor tensor = task.body.demagnetisation;
    const LostEdges told = task.body.told_edges;
    const auto column = [&](std::size_t k) { return columns.subspan(k * count, count); };
    for (std::size_t k = 0; k < param_codes.size() && task.body.turned_off != 1; ++k)
        fill_column(task, param_codes[k], column(k));
    task.body.demagnetisation = tensor;
    task.body.told_edges = told;
    const bool stands =
        respond(task.workspace, task.body, task.channel, task.range, task.memory, values, task.notes);
    if (!stands || task.body.turned_off == 1) {
        std::ranges::fill(columns, 0.0);
        return;
    }
    for (std::size_t k = 0; k < param_codes.size(); ++k) {
        if (!is_amplitude(task.body, task.channel, param_codes[k])) continue;
        const double amplitude = body_param(task.body, param_codes[k]).value;
        std::ranges::transform(values, column(k).begin(), [&](double value) { return value / amplitude; });
    }
    zero_what_is_no_number(columns);
}

}  // namespace

void body_values(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                 BodyBench& memory, std::span<double> values, BodyNotes& notes) {
    respond(workspace, body, channel, range, memory, values, notes);
}

void exact_values_at(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                     BodyBench& memory, std::span<double> values, BodyNotes& notes) {
    if (values.size() != stations.count) throw Fault(FaultKind::subscript);
    if (body.turned_off == 1 || stations.count == 0) {
        std::ranges::fill(values, 0.0);
        return;
    }
    respond_exactly(workspace, body, channel, stations, memory, values, notes);
}

void body_columns(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                  BodyBench& memory, std::span<const int> param_codes, std::span<double> values,
                  std::span<double> columns, BodyNotes& notes) {
    const std::size_t count = range.count();
    const StationView stations = stations_of(workspace, range, values.empty() ? count : values.size());
    if (columns.size() != count * param_codes.size()) throw Fault(FaultKind::subscript);
    const Way way = way_of(workspace, body);
    const bool beside = way == Way::solid || way == Way::point;
    if (values.empty() && !beside) {
        memory.unasked.resize(count);
        values = memory.unasked;
    }
    if (way == Way::differences) {
        const ColumnTask task{workspace, body, channel, range, memory, notes};
        return difference_columns(task, param_codes, values, columns);
    }
    if (beside && values.empty()) {
        update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    } else if (beside && !respond(workspace, body, channel, range, memory, values, notes)) {
        std::ranges::fill(columns, 0.0);
        return;
    }
    work_exactly(workspace, body, channel, values, columns, notes, [&] {
        if (way == Way::plane) {
            plane_columns(workspace, body, channel, stations, param_codes, values, columns, notes.pacer);
        } else if (way == Way::solid) {
            solid_columns(workspace, body, channel, stations, param_codes, columns, notes.pacer);
        } else {
            point_columns(workspace, body, channel, stations, param_codes, columns);
        }
    });
}

bool has_derivative(const Workspace& workspace, const ModelBody& body, int channel, int param_code) {
    return way_of(workspace, body) != Way::differences || body.turned_off == 1 ||
           !has_part(channel, param_code) || is_amplitude(body, channel, param_code);
}

}  // namespace anomalis::forward

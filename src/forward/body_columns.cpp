#include "forward/body_columns.h"

#include <algorithm>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/faults.h"
#include "forward/columns/body_response.h"
#include "forward/columns/difference_step.h"
#include "forward/columns/plane_columns.h"
#include "forward/columns/solid_columns.h"

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

bool closed_in_plane(const Workspace& workspace, const ModelBody& body) {
    return workspace.formulas == Formulas::exact && body.turned_off != 1 && lies_in_plane(body);
}

bool closed_in_space(const Workspace& workspace, const ModelBody& body) {
    return workspace.formulas == Formulas::exact && body.turned_off != 1 && is_limited_sheet(body);
}

}  // namespace

void body_values(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                 BodyBench& memory, std::span<double> values, BodyNotes& notes) {
    respond(workspace, body, channel, range, memory, values, notes);
}

void body_columns(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
                  BodyBench& memory, std::span<const int> param_codes, std::span<double> values,
                  std::span<double> columns, BodyNotes& notes) {
    const std::size_t count = range.count();
    const StationView stations = stations_of(workspace, range, values.size());
    if (columns.size() != count * param_codes.size()) throw Fault(FaultKind::subscript);
    if (closed_in_plane(workspace, body)) {
        work_exactly(workspace, body, channel, values, columns, notes, [&] {
            plane_columns(workspace, body, channel, stations, param_codes, values, columns, notes.pacer);
        });
        return;
    }
    if (closed_in_space(workspace, body)) {
        if (!respond(workspace, body, channel, range, memory, values, notes)) {
            std::ranges::fill(columns, 0.0);
            return;
        }
        work_exactly(workspace, body, channel, values, columns, notes, [&] {
            solid_columns(workspace, body, channel, stations, param_codes, columns, notes.pacer);
        });
        return;
    }
    const ColumnTask task{workspace, body, channel, range, memory, notes};
    const ShapeTensor tensor = body.demagnetisation;
    const LostEdges told = body.told_edges;
    for (std::size_t k = 0; k < param_codes.size() && body.turned_off != 1; ++k)
        difference_column(task, param_codes[k], columns.subspan(k * count, count));
    body.demagnetisation = tensor;
    body.told_edges = told;
    // Last, so that all that is derived in the body is of the values that it holds.
    const bool stands = respond(workspace, body, channel, range, memory, values, notes);
    if (!stands || body.turned_off == 1) std::ranges::fill(columns, 0.0);
}

bool has_derivative(const Workspace& workspace, const ModelBody& body, int /*channel*/, int /*param_code*/) {
    return closed_in_plane(workspace, body) || closed_in_space(workspace, body);
}

}  // namespace anomalis::forward

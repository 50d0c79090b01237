#pragma once

#include <algorithm>
#include <cmath>
#include <span>

#include "core/failure.h"
#include "core/faults.h"
#include "forward/body_columns.h"
#include "forward/exact/exact_response.h"

// One body's response by the formulas in force; private to the columns of a body.
namespace anomalis::forward {

/// As `body_values`. False for a body that failed, which was noted and gave zeros.
bool respond(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
             BodyBench& memory, std::span<double> values, BodyNotes& notes);

/// The same by the exact formulas at any stations.
bool respond_exactly(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                     BodyBench& memory, std::span<double> values, BodyNotes& notes);

/// Raises Fault overflow where a value is none that single precision can hold: that is no response for the
/// model either.
void require_finite_values(const Workspace& workspace, const ModelBody& body, int channel,
                           std::span<const double> values, int body_number);

/// A slope that is not finite counts as 0.
inline void zero_what_is_no_number(std::span<double> columns) {
    for (double& slope : columns)
        if (!std::isfinite(slope)) slope = 0;
}

/// Does `work`, which fills the values and columns of a body by the exact formulas; after a failure, or where
/// a value is not finite, this is noted and they are zeros. A column's value that is not finite counts as 0.
template <class Work>
bool work_exactly(const Workspace& workspace, const ModelBody& body, int channel, std::span<double> values,
                  std::span<double> columns, BodyNotes& notes, Work&& work) {
    const int status = report_failure(notes.faults, exact_failure(channel), [&] {
        work();
        require_finite_values(workspace, body, channel, values, notes.body_number);
    });
    if (status != 0) {
        std::ranges::fill(values, 0.0);
        std::ranges::fill(columns, 0.0);
    }
    zero_what_is_no_number(columns);
    return status == 0;
}

/// The stations of a range. Raises Fault subscript for a range that the line does not hold or for as many
/// values as it has not.
StationView stations_of(const Workspace& workspace, const StationRange& range, std::size_t values);

}  // namespace anomalis::forward

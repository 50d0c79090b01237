#pragma once

#include <span>

#include "forward/exact/exact_axes.h"
#include "forward/shape/exact_shape.h"

// Bodies without end along strike: sheets, edges, steps and pipes, in closed form in the plane across
// strike. `field` holds the demagnetised magnetisation; `values` is one a station.
namespace anomalis::forward {

/// What a calculation of one body needs to know: where the stations are and how the body lies.
struct ExactPlace {
    StationView stations;
    BodyFrame frame;
};

void fill_plane_sheet_anomaly(const ExactPlace& place, const SheetShape& sheet, const ExactField& field,
                              std::span<double> values);
void fill_step_anomaly(const ExactPlace& place, const StepShape& step, const ExactField& field,
                       std::span<double> values);
void fill_plane_pipe_anomaly(const ExactPlace& place, const PipeShape& pipe, const ExactField& field,
                             std::span<double> values);

/// Attraction in mGal. A sheet without lower end has no level of its own: it gets that of one which ends
/// `deepest` down.
void fill_plane_sheet_gravity(const ExactPlace& place, const SheetShape& sheet, double density,
                              std::span<double> values);
void fill_step_gravity(const ExactPlace& place, const StepShape& step, double density,
                       std::span<double> values);
void fill_plane_pipe_gravity(const ExactPlace& place, const PipeShape& pipe, double density,
                             std::span<double> values);

}  // namespace anomalis::forward

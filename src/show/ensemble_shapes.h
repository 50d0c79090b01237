#pragma once

#include <vector>

#include "chart/chart_table.h"
#include "chart/drawing_types.h"
#include "core/model_body.h"

namespace anomalis {
struct Ensemble;
struct Workspace;
}  // namespace anomalis
namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis::edit {
struct ViewState;
}  // namespace anomalis::edit

// How an ensemble is drawn: some of its models as faint outlines behind the bodies, the room that the
// calculated curve keeps to in 90 % of them.
namespace anomalis::show {

inline constexpr int most_ghosts = 30;  ///< of a body
inline constexpr chart::Colour ghost_grey = chart::colour_of(206, 203, 216);
inline constexpr chart::Colour fan_green = chart::colour_of(205, 240, 205);

/// A body as up to `most_ghosts` of the models have it, spread evenly over them, without responses; none for
/// a body that the ensemble held fixed. Models that lack the body are left out.
std::vector<ModelBody> ghosts_of(const Workspace& workspace, const Ensemble& ensemble, int body);

/// Records the ghosts of all bodies as lines, which no click finds. The chart's limits must have been laid
/// out; the bodies are recorded after them.
void record_section_ghosts(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                           const Ensemble& ensemble);
void record_plan_ghosts(chart::AX_Grapher& chart, const Workspace& workspace, const Ensemble& ensemble);

/// Bands, whose cells are those of the workspace and of the ensemble, or of a line with gaps its own.
struct FanBands {
    std::vector<chart::ChartBand> bands = {};
    std::vector<double> distances = {};
    std::vector<float> lower = {}, upper = {};
};

/// The fan of a profile chart over the stations of the fit, open at gaps; none for a chart that has no fan.
FanBands fan_bands(const Workspace& workspace, const Ensemble& ensemble, int chart);

}  // namespace anomalis::show

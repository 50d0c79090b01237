#pragma once

#include <array>
#include <span>

#include "core/workspace.h"
#include "edit/view_state.h"

namespace anomalis::show {

/// Lowest and highest value of each profile chart, over both its curves.
struct GraphRanges {
    std::array<double, edit::profile_chart_count> low{};
    std::array<double, edit::profile_chart_count> high{};
};

/// The channel (0 magnetics, 1 gravity) whose curves a profile chart shows.
int channel_of_chart(int chart);

/// One curve of a profile chart, a value a station: of charts 0 and 2 the residual row, of 1 and 3 the
/// vertical or the total gradient. The calculated curve has no values while there is no body.
std::span<const float> chart_curve(const Workspace& workspace, int chart, Stage stage);

/// The ranges of the curves as their rows stand. Values that are missing or not finite do not count; 0 to 0
/// for a chart that has no others. Where the fit had some of the stations only, the observed curve counts no
/// further than it would go if the regional stayed beyond them as it is at their ends: a bend that was found
/// over 1 km says nothing of what lies 5 km away, and would leave the fit itself a flat line.
GraphRanges graph_ranges(const Workspace& workspace);

/// Which charts have something to show: those of the channels with a column, gradients only when a gradient
/// filter is on, the section always.
std::array<bool, edit::model_chart_count> charts_with_data(const Workspace& workspace);

}  // namespace anomalis::show

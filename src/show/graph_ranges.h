#pragma once

#include <array>

#include "edit/view_state.h"

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The value that stands for "no model" in a calculated curve.
inline constexpr double no_model_value = -99999.0;

/// Lowest and highest value of each profile chart, over both its curves.
struct GraphRanges {
    std::array<double, edit::profile_chart_count> low{};
    std::array<double, edit::profile_chart_count> high{};
};

/// Fills the chart series of the workspace from the filtered rows: charts 0 and 2 from the residual rows,
/// 1 and 3 from the vertical or the total gradient. Calculated curves are `no_model_value` throughout without
/// a body. Does nothing while the workspace's mark says that the series are up to date.
void setup_graph_data_ranges(Workspace& workspace, GraphRanges& ranges, Prompts& prompts);

/// Which charts have something to show: those of the channels with a column, gradients only when a gradient
/// filter is on, the section always.
std::array<bool, edit::model_chart_count> charts_with_data(const Workspace& workspace);

}  // namespace anomalis::show

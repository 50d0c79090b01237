#pragma once

#include <array>

#include "workbench/view_state.h"

namespace anomalis {

/// Heights of the charts, from top to bottom; 0 for a chart that is not shown.
using ChartHeights = std::array<int, model_chart_count>;

/// Shares a height (pixels) among the charts: section, magnetics and gravity as 2000 : 2500 : 2500, what is
/// there of them; within a channel the data and the gradient as 3 : 2.
ChartHeights share_height(int height, const std::array<bool, model_chart_count>& shown);

}  // namespace anomalis

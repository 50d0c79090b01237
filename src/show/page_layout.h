#pragma once

#include <array>
#include <string>
#include <string_view>

#include "edit/view_state.h"

namespace anomalis::show {

/// Heights of the charts, from top to bottom; 0 for a chart that is not shown.
using ChartHeights = std::array<int, edit::model_chart_count>;

/// Shares a height (pixels) among the charts: section, magnetics and gravity as 2000 : 2500 : 2500, what is
/// there of them; within a channel the data and the gradient as 3 : 2. A splitter that was moved (see
/// PaneFractions) keeps its place; both channels together then have what the section leaves.
ChartHeights share_height(int height, const std::array<bool, edit::model_chart_count>& shown,
                          const edit::PaneFractions& moved = {});

/// Where the splitters stand between charts of these heights. A splitter that is not there keeps `before`.
edit::PaneFractions splitter_places(const ChartHeights& heights, const edit::PaneFractions& before);

/// What a workspace file keeps: where the splitters stand, as far as they have been laid out.
edit::PaneFractions places_to_keep(const edit::ViewState& view);

/// The places as the settings keep them, "0.5;0.6;0"; what is no place for a splitter is 0.
std::string places_text(const edit::PaneFractions& places);
edit::PaneFractions places_of_text(std::string_view text);

/// Fractions of a workspace file; those that are no place for a splitter become 0.
edit::PaneFractions usable_places(const std::array<float, 4>& fractions);

}  // namespace anomalis::show

#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "edit/colour_property.h"

namespace anomalis::edit {

/// The charts of a line, from top to bottom. The first four are curves along the profile.
enum ModelChart : int { chart_mag = 0, chart_mag_gradient, chart_grav, chart_grav_gradient, chart_section };
inline constexpr int profile_chart_count = 4;
inline constexpr int model_chart_count = 5;

/// The splitters between the charts: above the section, between data and gradient of a channel.
enum PaneSplitter : std::size_t { splitter_section = 0, splitter_mag, splitter_grav };

/// Where each splitter was put, as the fraction of the height above it; 0 for one that was not moved.
using PaneFractions = std::array<float, 3>;

/// The vertical window of one chart.
struct ChartWindow {
    float chart_min = 0, chart_max = 0;      ///< as automatic scaling last set them
    float chart_span = 0, chart_centre = 0;  ///< on show
    int chart_zoom_index = 1;                ///< 1 to 8; the factor is zoom list entry `chart_zoom_index` - 1
    bool panned = false;                     ///< moved by hand: automatic scaling leaves the window alone
};

/// What the person looks at: the shared horizontal window (distances in m), a vertical window a chart, the
/// body that is selected.
struct ViewState {
    std::array<ChartWindow, model_chart_count> charts;
    float zoom_factor = 1;  ///< 1 is the whole profile
    float profile_window_min = 0, profile_window_max = 0;
    float window_span = 0, window_centre = 0;
    int window_pan = 0;  ///< steps from the middle, at most `pan_limit` either way
    int pan_limit = 0;   ///< 0 while the whole profile is shown
    int current_body = 0;
    bool highlight_on = true;                   ///< the selected body is drawn in magenta
    bool show_axes = true;                      ///< axes and numbers on the charts
    bool show_regional = true;                  ///< the dashed curve of a regional on the charts of the data
    bool show_ensemble = true;                  ///< ghosts and fan of the ensemble in force
    PaneFractions pane_fractions{};             ///< as the person or the file has put the splitters
    PaneFractions pane_places{};                ///< as the splitters stand now
    std::optional<ColourProperty> coloured_by;  ///< what the bodies were last coloured by
    bool body_held = false;                     ///< a hand drags the current body: the section's window stays
    bool show_plan = false;                     ///< the plan stands in place of the section
    bool on_page = false;                       ///< the page of the charts is on show
    /// Charts that are left out although the line has their data are false.
    std::array<bool, model_chart_count> wanted{true, true, true, true, true};
};

}  // namespace anomalis::edit

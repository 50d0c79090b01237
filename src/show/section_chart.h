#pragma once

#include "show/polygon_table.h"
#include "show/section_shapes.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis::edit {
struct ViewState;
}  // namespace anomalis::edit
namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// Records what the section shows over its ground line: grid, sensors, bodies with their reference points,
/// the label of the selected body. The chart's limits must have been laid out. Fills `polygons`.
void record_section(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                    PolygonTable& polygons);

/// Every so many stations a sensor is drawn: the smallest stride that leaves at most 128.
int sensor_stride(int station_count);

/// Draws a body's outline, filled with the selection's or the body's colour; white means no fill.
void record_body_outline(chart::AX_Grapher& chart, int body_number, const std::vector<double>& xs,
                         const std::vector<double>& ys, chart::Colour outline, chart::Colour fill, int width,
                         PolygonTable& polygons);

/// The colour a body is filled with: magenta while it is selected and highlighting is on.
chart::Colour body_fill(const ModelBody& body, int body_number, const edit::ViewState& view);
bool is_highlighted(int body_number, const edit::ViewState& view);

inline constexpr chart::Colour magenta = 16711935;
inline constexpr chart::Colour sphere_green = 65280;
inline constexpr int reference_marker = 3;  ///< a square outline

}  // namespace anomalis::show

#pragma once

#include <optional>
#include <string>

#include "chart/ax_grapher.h"
#include "chart/colour_key.h"
#include "chart/detail/bands.h"
#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/dots.h"
#include "chart/detail/failure_notes.h"
#include "chart/detail/graphics_list.h"
#include "chart/detail/layout.h"
#include "chart/detail/lower_picture.h"
#include "chart/detail/series_painter.h"
#include "chart/detail/series_table.h"
#include "chart/detail/shown_picture.h"
#include "chart/detail/tracks.h"
#include "chart/detail/view_state.h"
#include "chart/linked_crosshair.h"
#include "chart/screen_palette.h"
#include "chart/top_marks.h"

namespace anomalis::chart {

/// The gestures of the mouse; the numbers are what MouseMode tells.
enum class GestureMode : int {
    none = 0,
    pan = 1,
    magnifier = 2,
    drag_zoom = 4,
    box = 8,
    held = 16,  ///< by the host
    drag_zooming = -4
};

struct Gesture {
    GestureMode mode = GestureMode::none;
    Point press;                  ///< surface units, y up; moves on with a pan or a drag
    Point press_world;            ///< transformed units, of the button press itself
    Point press_user;             ///< the same in user units
    Point box_centre;             ///< of the magnifier, surface units
    Point box_size;               ///< of the magnifier, surface units
    bool box_moved = false;       ///< of the magnifier: it follows the pointer
    std::optional<Point> corner;  ///< the second corner of a box
    ZoomValues zoom;              ///< at the start of a magnifier
    bool overlay_suspended = false;
    int held_button = 0;  ///< of a press that the host holds
    Point button_press;   ///< where a button went down; a right one released near it opens the menu
    bool right_click = false;
};

/// Everything that makes up one chart. Free functions beside it do the work, a file for each subject.
struct GrapherState {
    ChartProperties properties;
    DrawingDevice* surface = nullptr;
    GrapherEvents* events = nullptr;
    PropertyBag* bag = nullptr;

    SeriesTable series;
    BandTable bands;
    TrackTable tracks;
    DotTable dots;
    AxisRange x;
    AxisRange y;
    ChartLayout layout;
    GraphicsList overlay;
    FailureNotes notes;
    Canvas canvas{notes};
    SeriesPainter painter;
    BandPainter band_painter;
    TrackPainter track_painter;
    DotPainter dot_painter;
    LowerPicture lower;
    ShownPicture shown;

    Gesture gesture;
    std::optional<SelectedPoint> selected;
    ZoomValues saved_zoom;
    bool zoom_saved = false;
    bool lock_x = false;
    bool lock_y = false;
    bool crosshair = false;
    std::optional<LinkedCrosshair> linked;
    std::string x_unit;  ///< of what is read off; "" for none
    std::string y_unit;
    bool equal_scales = false;
    bool picture_legend = false;
    std::optional<ColourKey> colour_key;
    int legend_corner = 0;  ///< where the one on screen stands
    std::optional<ScreenPalette> palette;
    TopMarks top_marks;
    PointerShape pointer_shape = PointerShape::usual;
    std::optional<Point> pointer;  ///< surface units, y up
    int wheel_sum = 0;             ///< eighths of a degree that do not make a step yet

    bool displayed = false;
    bool base_kept = false;  ///< the surface's base picture shows the present layout
    bool busy_refresh = false;
    bool busy_event = false;

    PlotFrame frame() const { return {properties, layout, x, y}; }
    Canvas::Fonts fonts() const { return {&properties.font, &properties.title_font}; }
    bool zoomed() const { return x.zoomed() || y.zoomed(); }
    bool selection_valid() const {
        return selected && series.has_point(selected->group, selected->series, selected->point);
    }
};

/// A flag that is set while its guard lives.
class Busy {
  public:
    explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
    ~Busy() { flag_ = false; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    bool& flag_;
};

/// Hands the gathered failures to the host. Called when no redraw is running.
void tell_failures(GrapherState& state);
void tell_failure(GrapherState& state, const std::string& text);
/// A colour with the desktop's palette resolved by the surface, if there is one.
Colour resolved_colour(const GrapherState& state, Colour colour);

}  // namespace anomalis::chart

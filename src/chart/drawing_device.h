#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "chart/drawing_types.h"
#include "chart/surface_mapping.h"

namespace anomalis::chart {

/// A marker as strokes and a filled polygon about its anchor, so that a raster device may stamp it.
/// Coordinates are surface units relative to the anchor; all spans live as long as the call.
struct MarkerShape {
    struct Stroke {
        Point from;
        Point to;
        bool operator==(const Stroke&) const = default;
    };
    int style = 0;                         ///< the number it was made from
    double radius = 0.0;                   ///< surface units
    std::span<const Stroke> strokes = {};  ///< drawn with `pen`
    std::span<const Point> outline = {};   ///< a closed polygon (the last point joins the first)
    bool filled = false;                   ///< fill `outline` as well
    Pen pen = {};
    Colour fill = no_colour;  ///< of a filled outline; none: the pen's
};

/// What the chart needs of a platform. Every coordinate and every length is in surface units (15 a screen
/// pixel, origin lower left, y up); the device maps them by the SurfaceMapping that it was given. The chart
/// has cut everything of the plot at the frame, so a device needs no clipping of its own. A primitive that
/// fails throws a std::exception; the chart gathers it, goes on, and tells its host once a redraw.
///
/// A raster device draws what falls on the far edge (x = width, y = 0 or height) in its last pixel.
class DrawingDevice {
  public:
    virtual ~DrawingDevice() = default;

    // -- What the target is.

    /// The size of the surface in surface units.
    virtual double width() const = 0;
    virtual double height() const = 0;
    /// True for a target of pixels: long series may be thinned to what its pixel columns can show.
    virtual bool is_raster() const { return false; }
    /// Surface units a device pixel; on a screen of high density smaller than 15. Used on rasters only.
    virtual double pixel_size() const { return units_per_screen_pixel; }
    /// What an entry of the desktop's palette stands for (0x0F button face, 0x12 button text).
    virtual Colour system_colour(int entry) const { return entry == 0x0F ? Colour{0xF0F0F0} : black; }
    virtual void set_mapping(const SurfaceMapping& mapping) = 0;

    // -- Primitives.

    /// An open line through 2 or more points.
    virtual void polyline(std::span<const Point> points, const Pen& pen) = 0;
    /// Many short lines of one pen that stand by themselves. The default draws one after the other; a raster
    /// may draw them all at once and unsmoothed.
    virtual void strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen);
    /// A closed outline (the last point joins the first), unfilled.
    virtual void polygon_outline(std::span<const Point> points, const Pen& pen) = 0;
    /// A filled polygon without an outline, by the even-odd rule.
    virtual void polygon_fill(std::span<const Point> points, Colour colour) = 0;
    /// UTF-8 text without line breaks. `anchor` is the lower left corner of its box (the bottom of the
    /// descent); the box is turned about the anchor by `angle` degrees counter-clockwise.
    virtual void text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) = 0;
    /// The box of a text, always in surface units and independent of the mapping.
    virtual TextExtent measure(std::string_view text, const Font& font) const = 0;
    /// One marker at each anchor. The default draws strokes and polygons; a raster may stamp a picture.
    virtual void markers(const MarkerShape& shape, std::span<const Point> anchors);

    // -- Pictures, for a screen. Other targets have one picture and leave these alone.

    /// `base` is the kept picture of axes and series, `surface` what is shown: base and overlay.
    enum class Layer { base, surface };
    /// Where the primitives draw from now on.
    virtual void select_layer(Layer) {}
    /// Fills the selected layer; a back style of 0 leaves it transparent.
    virtual void clear(Colour, int /*back_style*/) {}
    /// Keeps the base picture as it is now, apart; `take_lower` makes it the base picture again, and says
    /// false when there is none of this size.
    virtual void keep_lower() {}
    virtual bool take_lower() { return false; }
    /// The whole base picture onto the surface.
    virtual void copy_base_to_surface() {}
    /// The surface is complete, or the top layer has changed: show it at the next turn of the event loop.
    virtual void present() {}
    /// True while the pictures are as they were when the surface was last presented: one that would be the
    /// same need not be drawn.
    virtual bool is_as_presented() const { return false; }
    /// 0 none, 1 single line around the control.
    virtual void set_border_style(int) {}

    // -- Page, for files and printers.

    /// Before the first and after the last primitive of an output. Throw on failure; a device that writes a
    /// file has checked it before `end_page` returns.
    virtual void begin_page() {}
    virtual void end_page() {}
};

}  // namespace anomalis::chart

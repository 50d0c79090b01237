#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "chart/detail/failure_notes.h"
#include "chart/detail/graphic_item.h"
#include "chart/detail/point_thinner.h"
#include "chart/drawing_device.h"
#include "chart/screen_palette.h"

namespace anomalis::chart {

/// The low-level primitives of a chart, in surface units: each is cut at the present window and then drawn on
/// a device, or appended to a list while a chart is captured. A device that fails is noted; drawing goes on.
/// Whatever numbers a host gave, a device meets only finite places within twice the longest surface, drawn
/// with pens, markers and texts of a size that can be seen; a raster no more points than its window has
/// pixels.
class Canvas {
  public:
    explicit Canvas(FailureNotes& notes) : notes_(notes) {}

    struct Fonts {
        const Font* chart = nullptr;
        const Font* title = nullptr;
    };

    /// Everything goes to `device` from here on, in the colours of a palette if there is one; the window is
    /// unbounded.
    void open(DrawingDevice& device, Fonts fonts, const std::optional<ScreenPalette>& palette = std::nullopt);
    /// The colour in which lines and texts of `colour` are seen.
    Colour shown(Colour colour) const;
    bool wears_palette() const { return palette_.has_value(); }
    /// While not null, items go here and the device only measures texts.
    void capture_into(std::vector<GraphicItem>* items) { captured_ = items; }
    bool capturing() const { return captured_ != nullptr; }
    DrawingDevice& device() const { return *device_; }
    /// A file or a sheet gets every point, whatever device it is drawn by.
    void keep_every_point(bool keep) { every_point_ = keep; }
    /// True when long series may be thinned to the pixel columns of the target.
    bool thins() const { return !every_point_ && !capturing() && device_->is_raster(); }

    void set_window(const Rect& window);
    const Rect& window() const { return window_; }

    void line(Point a, Point b, const Pen& pen);
    void polyline(std::span<const Point> points, const Pen& pen);
    /// Many short pieces of one pen, each inside the window; for rasters.
    void strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen);
    void polygon(std::span<const Point> points, Colour pen, Colour fill, double width);
    void rectangle(const Rect& rect, Colour pen, Colour fill, double width);
    /// A piece of a key of colours, in the colour that a body is filled with.
    void swatch(const Rect& rect, Colour fill);
    /// Markers of one style whose anchors have been tested to be inside.
    void markers(int style, double radius, Colour colour, double width, std::span<const Point> anchors);
    /// A shape of the caller's own about a place, drawn whole wherever that is; alike at all places.
    void mark(const MarkerShape& shape, Point at) { marks(shape, {&at, 1}); }
    void marks(MarkerShape shape, std::span<const Point> places);
    /// Text at a position, moved along and across its direction by factors of its width and height.
    void text(Point at, double angle, double along, double across, std::string_view words, FontRole role,
              Colour colour);
    /// The same with the lower left corner given and the words clean: for replaying what was captured.
    void placed_text(Point anchor, double angle, std::string_view words, FontRole role, Colour colour);
    TextExtent measure(std::string_view words, FontRole role);

    /// Line breaks and other control characters become blanks.
    static std::string clean_text(std::string_view words);

  private:
    template <class Work>
    void guarded(const char* prefix, Work&& work);
    const Font& font(FontRole role) const { return role == FontRole::title ? *fonts_.title : *fonts_.chart; }
    Colour filled(Colour fill, Colour pen) const;
    Pen resolved(const Pen& pen) const;
    void draw_pieces(std::span<const Point> points, bool closed, const Pen& pen);
    void flush_piece(const Pen& pen);
    void draw_polygon(std::span<const Point> points, Colour pen, Colour fill, double width);
    GraphicItem& captured(ItemKind kind);
    void capture_mark(const MarkerShape& shape, Point at);

    FailureNotes& notes_;
    DrawingDevice* device_ = nullptr;
    Fonts fonts_;
    std::optional<ScreenPalette> palette_;
    std::vector<GraphicItem>* captured_ = nullptr;
    bool every_point_ = false;
    Rect window_;
    PathThinner path_;
    std::vector<Point> piece_;
    std::vector<Point> cut_;
    std::vector<Point> scratch_;
};

}  // namespace anomalis::chart

#pragma once

#include <array>
#include <functional>
#include <vector>

#include <QImage>
#include <QPainter>

#include "chart/detail/sharp_painter.h"
#include "chart/qt/painter_device.h"
#include "chart/qt/stamps.h"

namespace anomalis::chart {

/// The screen picture of a chart: pictures one on the other - the lower part, with the upper curves, with the
/// overlay - each a copy of the one below that is made late and only where the two differ; and apart from
/// them what lies on top of all. Everything is drawn in whole device pixels by one painter, so it is as sharp
/// at 125 % as at 100 %.
class ScreenDevice : public PainterDevice {
  public:
    /// `on_present` is called when the picture is complete.
    explicit ScreenDevice(std::function<void()> on_present = {});

    /// Gives the picture so many logical pixels at a scale factor (1.5 on a display of 150 %).
    void resize(QSize logical_size, double device_pixel_ratio);
    QSize logical_size() const { return size_; }
    double device_pixel_ratio() const { return ratio_; }
    /// What is shown. Valid until the next redraw.
    const QImage& picture() const { return content(surface_level); }
    int border_style() const { return border_style_; }

    /// The primitives draw on the transparent top, which is emptied, until `end_top`.
    void begin_top();
    void end_top();
    /// Picture and top onto a painter, the upper left corner at `origin`: pixel for pixel where the painter
    /// has the scale of this device.
    void show(QPainter& painter, QPointF origin) const;

    bool is_raster() const override { return true; }
    double pixel_size() const override { return units_per_screen_pixel / ratio_; }
    void polyline(std::span<const Point> points, const Pen& pen) override;
    void strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen) override;
    void polygon_outline(std::span<const Point> points, const Pen& pen) override;
    void polygon_fill(std::span<const Point> points, Colour colour) override;
    void text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) override;
    void markers(const MarkerShape& shape, std::span<const Point> anchors) override;
    void select_layer(Layer layer) override;
    void clear(Colour colour, int back_style) override;
    void keep_lower() override;
    bool take_lower() override;
    void copy_base_to_surface() override;
    void present() override;
    bool is_as_presented() const override { return as_presented_; }
    void set_border_style(int style) override { border_style_ = style; }

  private:
    static constexpr std::size_t lower_level = 0, base_level = 1, surface_level = 2, levels = 3;

    struct Sheet {
        QImage image;
        TileSet differs;        ///< where `image` may differ from what the sheet below shows
        bool as_below = false;  ///< the sheet shows what the one below shows, whatever `image` holds
    };
    const QImage& content(std::size_t level) const;
    QImage& target() { return on_top_ ? top_ : sheets_[current_].image; }
    void begin_as_below(std::size_t level);
    bool make_ready();
    void settle();
    void release_painter();
    Point to_pixels(Point point) const;
    std::span<const Point> pixels_of(std::span<const Point> points);
    double pen_pixels(const Pen& pen) const { return pen.width * mapping().pen_factor * ratio_; }

    std::function<void()> on_present_;
    QSize size_;
    double ratio_ = 1.0;
    std::array<Sheet, levels> sheets_;
    bool lower_kept_ = false;
    bool as_presented_ = false;  ///< no picture below the top was touched since `present`
    std::size_t current_ = base_level;
    QImage top_;
    TileSet top_drawn_;
    bool on_top_ = false;
    QPainter active_;  ///< on the sheet that is drawn on, while one is
    SharpPainter sharp_;
    std::vector<Point> pixels_;
    std::vector<QLineF> pieces_;
    Stamps stamps_;
    int border_style_ = 0;
};

}  // namespace anomalis::chart

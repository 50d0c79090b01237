#pragma once

#include <functional>
#include <vector>

#include <QImage>
#include <QPainter>

#include "chart/qt/painter_device.h"

namespace anomalis::chart {

/// The screen picture of a chart: two images, the kept one of axes and series and the one that is shown.
/// Lines along an axis stand on whole pixels; wide and noisy lines go to the raster in short pieces, since
/// one long antialiased path costs hundreds of times as much there.
class ScreenDevice : public PainterDevice {
  public:
    /// `on_present` is called when the picture is complete.
    explicit ScreenDevice(std::function<void()> on_present = {});

    /// Gives the picture so many logical pixels at a scale factor (1.5 on a display of 150 %).
    void resize(QSize logical_size, double device_pixel_ratio);
    QSize logical_size() const { return size_; }
    double device_pixel_ratio() const { return ratio_; }
    /// What is shown. Valid until the next redraw.
    const QImage& picture() const { return surface_; }
    int border_style() const { return border_style_; }

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
    void set_border_style(int style) override { border_style_ = style; }

  private:
    QImage& image(Layer layer) { return layer == Layer::base ? base_ : surface_; }
    QPointF to_pixels(Point point) const;
    void draw_line(std::span<const Point> points, bool closed, const Pen& pen);
    void fill_along_axes(double width, const QColor& colour);
    double mean_step() const;
    void draw_in_pieces();
    void draw_in_strokes();
    void release_painter();
    void touch() { surface_is_base_ = false; }

    std::function<void()> on_present_;
    QSize size_;
    double ratio_ = 1.0;
    QImage base_;
    QImage surface_;
    QImage lower_;                  ///< null = nothing is kept
    bool surface_is_base_ = false;  ///< nothing was drawn on either since the last copy
    QPainter active_;
    std::vector<QPointF> line_;
    std::vector<QLineF> pieces_;
    int border_style_ = 0;
};

}  // namespace anomalis::chart

#pragma once

#include <vector>

#include <QFont>
#include <QFontMetricsF>

#include "chart/drawing_device.h"

class QPainter;

namespace anomalis::chart {

/// Draws on a QPainter that somebody else opened: SVG, PDF, a printer, the top layer of a widget. The
/// painter's own coordinates are the device coordinates of the mapping.
class PainterDevice : public DrawingDevice {
  public:
    /// `width`, `height` in surface units. A null painter draws nothing until `set_painter`.
    PainterDevice(double width, double height, QPainter* painter = nullptr);

    void set_painter(QPainter* painter);

    double width() const override { return width_; }
    double height() const override { return height_; }
    Colour system_colour(int entry) const override;
    void set_mapping(const SurfaceMapping& mapping) override { mapping_ = mapping; }
    void polyline(std::span<const Point> points, const Pen& pen) override;
    void polygon_outline(std::span<const Point> points, const Pen& pen) override;
    void polygon_fill(std::span<const Point> points, Colour colour) override;
    void text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) override;
    TextExtent measure(std::string_view text, const Font& font) const override;

  protected:
    QPainter* painter() const { return painter_; }
    const SurfaceMapping& mapping() const { return mapping_; }
    void set_size(double width, double height);
    QPen painter_pen(const Pen& pen) const;
    QColor painter_colour(Colour colour) const;

  private:
    /// A font made once: looking one up costs more than drawing a number with it.
    struct Typeface {
        Font font;
        double dots_per_inch;
        QFont made;
        QFontMetricsF metrics;
    };
    const Typeface& typeface(const Font& font, double dots_per_inch) const;

    double width_;
    double height_;
    QPainter* painter_;
    SurfaceMapping mapping_;
    mutable std::vector<Typeface> typefaces_;
};

}  // namespace anomalis::chart

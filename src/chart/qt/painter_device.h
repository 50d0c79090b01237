#pragma once

#include <QFont>

#include "chart/drawing_device.h"

class QPainter;

namespace anomalis {

/// The chart font as a Qt font for a target of so many dots an inch: the same shape and the same advance
/// at every scale, since hinting is off.
QFont painter_font(const Font& font, double dots_per_inch = screen_dots_per_inch);

/// The box of a text in surface units.
TextExtent painter_measure(std::string_view text, const Font& font);

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
    TextExtent measure(std::string_view text, const Font& font) const override {
        return painter_measure(text, font);
    }

  protected:
    QPainter* painter() const { return painter_; }
    const SurfaceMapping& mapping() const { return mapping_; }
    void set_size(double width, double height);
    QPen painter_pen(const Pen& pen) const;
    QColor painter_colour(Colour colour) const;

  private:
    double width_;
    double height_;
    QPainter* painter_;
    SurfaceMapping mapping_;
};

}  // namespace anomalis

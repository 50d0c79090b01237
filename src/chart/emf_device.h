#pragma once

#include <memory>
#include <string>

#include "chart/drawing_device.h"

namespace anomalis::chart {

/// An enhanced metafile of a surface of the given size. Text is measured by another device, which must
/// outlive this one, because the metafile library measures none. Coordinates are finer than the
/// usual 1/300 inch by a whole factor, so that curves stay smooth; frame and picture are the same.
class EmfDevice : public DrawingDevice {
  public:
    EmfDevice(double width, double height, const DrawingDevice& measure);
    ~EmfDevice() override;
    EmfDevice(const EmfDevice&) = delete;
    EmfDevice& operator=(const EmfDevice&) = delete;

    double width() const override;
    double height() const override;
    Colour system_colour(int entry) const override;
    void set_mapping(const SurfaceMapping& mapping) override;
    void polyline(std::span<const Point> points, const Pen& pen) override;
    void polygon_outline(std::span<const Point> points, const Pen& pen) override;
    void polygon_fill(std::span<const Point> points, Colour colour) override;
    void text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) override;
    TextExtent measure(std::string_view text, const Font& font) const override;
    void begin_page() override;
    void end_page() override;

    /// The mapping of a chart that fills the whole metafile.
    const SurfaceMapping& whole() const;
    /// The metafile, after `end_page`: checked to be whole.
    const std::string& bytes() const;

  private:
    struct Context;
    std::unique_ptr<Context> context_;
};

}  // namespace anomalis::chart

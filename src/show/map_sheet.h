#pragma once

#include <functional>
#include <memory>
#include <string>

#include "chart/ax_grapher.h"

namespace anomalis::show {

/// A map on paper, a chart that explains it at the right, and a caption below; at any size and on any device.
class MapSheet {
  public:
    /// Makes a surface that measures text as the final device will; what is drawn on it is not looked at.
    using MakeSurface = std::function<std::unique_ptr<chart::DrawingDevice>(chart::SurfaceSize)>;

    /// `beside`: the width at the right, surface units; 0 for none. Raises Fault when there is no room.
    MapSheet(std::string caption, chart::SurfaceSize size, double beside, const MakeSurface& make_surface);

    chart::AX_Grapher& map() { return map_; }
    chart::AX_Grapher& side() { return side_; }  ///< without a surface where there is none
    void add_caption(const std::string& more) { caption_ += more; }
    /// Raises Fault when it cannot be drawn.
    void draw(chart::DrawingDevice& device, chart::OutputTarget kind, const chart::SurfaceMapping& whole);

  private:
    struct Place {
        double left = 0, bottom = 0;
        chart::SurfaceSize size;
    };
    static void draw_chart(chart::AX_Grapher& chart, const Place& place, chart::DrawingDevice& device,
                           chart::OutputTarget kind, const chart::SurfaceMapping& whole);
    void draw_caption(chart::DrawingDevice& device, const chart::SurfaceMapping& whole) const;

    chart::AX_Grapher map_, side_;
    std::unique_ptr<chart::DrawingDevice> map_surface_, side_surface_;
    Place map_place_, side_place_;
    std::string caption_;
    double width_ = 0;
};

}  // namespace anomalis::show

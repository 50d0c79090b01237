#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "chart/ax_grapher.h"
#include "show/survey_map.h"

namespace anomalis::show {

/// The map of a survey on paper, with its ramp at the right and a caption below, at any size and on any
/// device.
class SurveyMapPage {
  public:
    /// Makes a surface that measures text as the final device will; what is drawn on it is not looked at.
    using MakeSurface = std::function<std::unique_ptr<chart::DrawingDevice>(chart::SurfaceSize)>;

    /// The index must live as long as the page.
    SurveyMapPage(const intake::SurveyIndex& index, std::optional<std::size_t> chosen,
                  chart::SurfaceSize size, const MakeSurface& make_surface);

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

    chart::AX_Grapher map_, bar_;
    std::unique_ptr<chart::DrawingDevice> map_surface_, bar_surface_;
    Place map_place_, bar_place_;
    SurveyMap survey_{map_, bar_};
    std::string caption_;
    double width_ = 0;
};

/// "osborne.csv: 12 lines, 10,932 stations, EPSG:32754; line 5690"
std::string map_caption(const intake::SurveyIndex& index, std::optional<std::size_t> chosen);

}  // namespace anomalis::show

#pragma once

#include <optional>
#include <string>

#include "show/map_sheet.h"
#include "show/survey_map.h"

namespace anomalis::show {

/// The map of a survey on paper, with its ramp at the right.
class SurveyMapPage {
  public:
    /// The index must live as long as the page.
    SurveyMapPage(const intake::SurveyIndex& index, std::optional<std::size_t> chosen,
                  chart::SurfaceSize size, const MapSheet::MakeSurface& make_surface);

    /// Raises Fault when it cannot be drawn.
    void draw(chart::DrawingDevice& device, chart::OutputTarget kind, const chart::SurfaceMapping& whole) {
        sheet_.draw(device, kind, whole);
    }

  private:
    MapSheet sheet_;
    SurveyMap survey_{sheet_.map(), sheet_.side()};
};

/// "osborne.csv: 12 lines, 10,932 stations, EPSG:32754; line 5690"
std::string map_caption(const intake::SurveyIndex& index, std::optional<std::size_t> chosen);

}  // namespace anomalis::show

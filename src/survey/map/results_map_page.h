#pragma once

#include <optional>
#include <string>

#include "show/map_sheet.h"
#include "survey/map/results_map.h"

namespace anomalis::survey {

/// The map of a survey's results on paper, with its key at the right where the sheet is wide enough.
class ResultsMapPage {
  public:
    /// The results must live as long as the page. `chosen` is drawn on top.
    ResultsMapPage(const SurveyResults& results, ResultsMapMarks marks, std::optional<std::size_t> chosen,
                   chart::SurfaceSize size, const show::MapSheet::MakeSurface& make_surface);

    /// Raises Fault when it cannot be drawn.
    void draw(chart::DrawingDevice& device, chart::OutputTarget kind, const chart::SurfaceMapping& whole) {
        sheet_.draw(device, kind, whole);
    }

  private:
    show::MapSheet sheet_;
    ResultsMap map_{sheet_.map(), sheet_.side()};
};

/// "osborne: 12 lines, 1 failed, 35 bodies, EPSG:32754; line 5690". What the map cannot show is said too.
std::string results_map_caption(const SurveyResults& results, std::optional<std::size_t> chosen);

}  // namespace anomalis::survey

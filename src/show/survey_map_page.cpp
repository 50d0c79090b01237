#include "show/survey_map_page.h"

#include "core/paths.h"
#include "intake/survey/survey_index.h"

namespace anomalis::show {

namespace {

constexpr double bar_width = 92 * chart::units_per_screen_pixel;

}  // namespace

std::string map_caption(const intake::SurveyIndex& index, std::optional<std::size_t> chosen) {
    long stations = 0;
    for (const intake::SurveyLineInfo& line : index.lines) stations += line.stations;
    std::string text = file_name(index.layout.path) + ": " + std::to_string(index.lines.size()) +
                       (index.lines.size() == 1 ? " line, " : " lines, ") + std::to_string(stations) +
                       (stations == 1 ? " station" : " stations");
    if (!index.coordinate_system.empty()) text += ", " + index.coordinate_system;
    if (chosen && *chosen < index.lines.size()) text += "; line " + index.lines[*chosen].name;
    return text;
}

SurveyMapPage::SurveyMapPage(const intake::SurveyIndex& index, std::optional<std::size_t> chosen,
                             chart::SurfaceSize size, const MapSheet::MakeSurface& make_surface)
    : sheet_(map_caption(index, chosen), size, map_colours(index).unit.empty() ? 0 : bar_width,
             make_surface) {
    set_up_survey_map(sheet_.map(), sheet_.side());
    survey_.show(&index, chosen);
}

}  // namespace anomalis::show

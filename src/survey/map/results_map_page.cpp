#include "survey/map/results_map_page.h"

#include <algorithm>
#include <utility>

#include "survey/map/results_map_key.h"
#include "survey/map/results_map_looks.h"

namespace anomalis::survey {

namespace {

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// A sheet that is narrower leaves all of it to the map.
double key_room(chart::SurfaceSize size) {
    constexpr double least_widths = 2.5;
    const double key = results_key_width * map_pixel;
    return size.width >= least_widths * key ? key : 0;
}

}  // namespace

std::string results_map_caption(const SurveyResults& results, std::optional<std::size_t> chosen) {
    const MapTops tops = map_tops(results);
    const auto failed = static_cast<std::size_t>(std::ranges::count_if(
        results.lines, [](const LineResult& line) { return line.status == LineStatus::failed; }));
    std::string text = results.identity.name + ": " +
                       counted(results.lines.size() + results.missing.size(), "line", "lines");
    if (failed > 0) text += ", " + std::to_string(failed) + " failed";
    if (!results.missing.empty()) text += ", " + std::to_string(results.missing.size()) + " not done yet";
    text += ", " + counted(tops.tops.size(), "body", "bodies");
    if (!tops.system.empty()) text += ", " + tops.system;
    if (tops.without_track > 0)
        text += "; not shown: " + counted(tops.without_track, "line", "lines") + " without places";
    if (tops.in_other_systems > 0)
        text += "; not shown: " + counted(tops.in_other_systems, "line", "lines") +
                " in another coordinate system";
    if (tops.without_place > 0)
        text += "; not shown: " + counted(tops.without_place, "body", "bodies") + " without a place";
    if (chosen && *chosen < results.lines.size()) text += "; line " + results.lines[*chosen].line;
    return text;
}

ResultsMapPage::ResultsMapPage(const SurveyResults& results, ResultsMapMarks marks,
                               std::optional<std::size_t> chosen, chart::SurfaceSize size,
                               const show::MapSheet::MakeSurface& make_surface)
    : sheet_(results_map_caption(results, chosen), size, key_room(size), make_surface) {
    set_up_results_map(sheet_.map(), sheet_.side());
    map_.show(&results, std::move(marks));
    map_.choose(chosen);
    const DepthScale& depths = map_.depths();
    if (sheet_.side().Surface() || map_.tops().tops.empty()) return;
    std::string title = depth_title(map_.tops());
    title = title.substr(0, title.rfind(' '));
    sheet_.add_caption("; " + title + " " + scale_number(depths.low) + " m (bright) to " +
                       scale_number(depths.high) + " m (dark)");
}

}  // namespace anomalis::survey

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "chart/drawing_types.h"
#include "show/map_colours.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis::intake {
struct SurveyIndex;
}  // namespace anomalis::intake

namespace anomalis::show {

class MapNames;

/// All lines of a survey on a map, coloured by the field, and the ramp beside it. A metre is as long to the
/// east as to the north. The tracks are drawn once for a view: choosing a line paints the kept picture and
/// what lies on it.
class SurveyMap {
  public:
    /// Both charts have their surfaces; neither is owned.
    SurveyMap(chart::AX_Grapher& map, chart::AX_Grapher& bar);

    /// Draws a survey from the beginning, with a line chosen or none. The index must live as long as it is on
    /// show; null clears the map.
    void show(const intake::SurveyIndex* index, std::optional<std::size_t> chosen = {});
    /// Draws another line, or a piece of it, on top.
    void choose(std::optional<std::size_t> line, std::optional<std::size_t> piece = {});
    std::optional<std::size_t> chosen() const { return chosen_; }
    /// After the view or the size has changed: names stand anew where there is room.
    void view_changed();
    /// The line whose track is nearest to a place (surface units from the lower left corner), within some 12
    /// pixels.
    std::optional<std::size_t> line_at(chart::Point surface) const;

    const MapColours& colours() const { return colours_; }
    /// Lines whose names have found room.
    const std::vector<std::size_t>& named() const { return named_; }

  private:
    int line_width() const;
    void register_tracks();
    void draw_bar();
    void record_overlay();
    void record_chosen();
    void record_names();
    void record_name(std::size_t line, MapNames& names);
    chart::Point user(std::size_t line, std::size_t point) const;

    chart::AX_Grapher& map_;
    chart::AX_Grapher& bar_;
    const intake::SurveyIndex* index_ = nullptr;
    MapColours colours_;
    std::optional<std::size_t> chosen_, piece_;
    std::vector<std::size_t> named_;
};

/// Looks of both charts; called once, after their surfaces are set.
void set_up_survey_map(chart::AX_Grapher& map, chart::AX_Grapher& bar);

}  // namespace anomalis::show

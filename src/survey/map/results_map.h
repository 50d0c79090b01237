#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "chart/chart_table.h"
#include "chart/drawing_types.h"
#include "survey/joined/joined_bodies.h"
#include "survey/map/results_map_scales.h"
#include "survey/map/results_map_tops.h"
#include "survey/results/line_flags.h"
#include "survey/results/survey_results.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis::show {
class MapNames;
}  // namespace anomalis::show

namespace anomalis::survey {

/// Where a body that neighbouring lines share begins and ends, m.
struct StrikeTrace {
    TrackPoint from, to;
    std::string coordinate_system;
};
std::vector<StrikeTrace> strike_traces(const std::vector<JoinedBody>& joined);

/// What stands on the map beside the results themselves.
struct ResultsMapMarks {
    std::vector<StrikeTrace> strikes = {};  ///< those of another system than the map's are left out
    std::optional<chart::Rect> area = {};   ///< m, of what is to be seen at least; none: all
    std::vector<LineFlag> flags = {};       ///< one a line of the results; those that are not there have none
};

/// The results of a survey on a map, and a key beside it. Lines are thin and grey, those that failed are
/// named; the top of a body is a dot: its colour is the depth, its size the susceptibility (the density
/// contrast where gravity alone was measured), the white in its middle what is not known of the depth, and a
/// dark piece of its line the 90 % interval of its place. Flags stand at the ends of lines; bodies of a
/// rejected one are crosses. Lines, intervals and dots are drawn once for a
/// view: choosing a line paints the kept picture and what lies on it.
class ResultsMap {
  public:
    /// Both charts have their surfaces; neither is owned.
    ResultsMap(chart::AX_Grapher& map, chart::AX_Grapher& key);

    /// Draws results from the beginning; `keep_view` leaves the zoom as it is. They must live as long as they
    /// are on show; null clears the map. What is chosen stays when the line is still there.
    void show(const SurveyResults* results, ResultsMapMarks marks = {}, bool keep_view = false);
    /// Draws a line, or one of its bodies, on top; numbers in the results.
    void choose(std::optional<std::size_t> line, std::optional<std::size_t> body = {});
    std::optional<std::size_t> chosen_line() const { return line_; }
    std::optional<std::size_t> chosen_body() const { return body_; }
    /// After the view or the size has changed: names stand anew where there is room.
    void view_changed();

    struct Hit {
        std::size_t line = 0;
        std::optional<std::size_t> body;  ///< none: the line itself
        bool operator==(const Hit&) const = default;
    };
    /// What a press at a place means (surface units from the lower left corner): the nearest of the dots that
    /// it touches, else the nearest line within some 12 pixels.
    std::optional<Hit> hit(chart::Point surface) const;

    const MapTops& tops() const { return tops_; }
    const DepthScale& depths() const { return depths_; }
    const SizeScale& sizes() const { return sizes_; }
    /// Lines whose names have found room.
    const std::vector<std::size_t>& named() const { return named_; }

  private:
    void frame();
    void take_room();
    void register_tracks();
    void register_dots();
    void draw_key();
    void record_overlay();
    void record_chosen();
    void record_flags();
    void record_names();
    std::string name_of(std::size_t line) const;
    void record_name(std::size_t line, show::MapNames& names);
    double radius_of(const MapTop& top) const;
    chart::ChartDot dot_of(const MapTop& top) const;
    LineFlag flag_of(std::size_t line) const {
        return line < marks_.flags.size() ? marks_.flags[line] : LineFlag::none;
    }
    bool flagged(LineFlag flag) const;

    chart::AX_Grapher& map_;
    chart::AX_Grapher& key_;
    const SurveyResults* results_ = nullptr;
    ResultsMapMarks marks_;
    MapTops tops_;
    DepthScale depths_;
    SizeScale sizes_;
    double greatest_ = 0;  ///< radius of a dot, surface units
    std::optional<std::size_t> line_, body_;
    std::vector<std::size_t> named_;
};

/// Looks of both charts; called once, after their surfaces are set.
void set_up_results_map(chart::AX_Grapher& map, chart::AX_Grapher& key);

}  // namespace anomalis::survey

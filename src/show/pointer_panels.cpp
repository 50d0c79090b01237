#include "show/pointer_panels.h"

#include <cmath>

#include "chart/ax_grapher.h"
#include "core/failure.h"
#include "core/gaps.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "filter/gradient_unit.h"
#include "show/crosshair_lines.h"
#include "show/graph_ranges.h"

namespace anomalis::show {

namespace {

std::string chart_name(int chart, const chart::AX_Grapher& grapher) {
    switch (chart) {
        case edit::chart_mag:
            return "Residual Mag Data";
        case edit::chart_mag_gradient:
            return "Vertical Mag Gradient";
        case edit::chart_grav:
            return "Residual Grav Data";
        case edit::chart_grav_gradient:
            return "Vertical Grav Gradient";
        default:
            return "Model (Vertical stretch " + format_number(vertical_stretch(grapher), "0.00") + ")";
    }
}

std::string value_unit(const Workspace& workspace, int chart) {
    if (chart >= edit::profile_chart_count) return "m";
    const std::string_view unit = channel_of_chart(chart) == channel_mag ? "nT" : "mGal";
    const bool gradient = chart == edit::chart_mag_gradient || chart == edit::chart_grav_gradient;
    return gradient ? filter::gradient_unit(unit, workspace.processing.vg_filter_step) : std::string(unit);
}

bool lacks_reading(const Workspace& workspace, int channel, int station) {
    const ChannelTable& data = workspace.channel(channel).data;
    const bool column = channel == channel_mag ? workspace.has_mag() : workspace.has_grav();
    return column && station <= data.stations() &&
           !is_reading(static_cast<double>(data(station, workspace.raw_row, stage_observed)));
}

}  // namespace

std::string GeographicPlaces::text(const std::string& coordinate_system, double east, double north) {
    if (coordinate_system.empty()) return {};
    if (system_ != coordinate_system) {
        system_ = coordinate_system;
        ++ways_found_;
        change_.reset();
        try {
            change_.emplace(coordinate_system, intake::wgs84);
        } catch (const Fault&) {
            // A system that means something to its owner alone: there is nothing to show.
        }
    }
    if (!change_) return {};
    change_->forward({&east, 1}, {&north, 1});
    if (std::isnan(east)) return {};
    constexpr const char* digits = "0.00000";  // a metre
    return format_number(std::abs(east), digits) + (east < 0 ? " W, " : " E, ") +
           format_number(std::abs(north), digits) + (north < 0 ? " S" : " N");
}

std::optional<chart::Point> place_under(const chart::AX_Grapher& grapher, float x, float y) {
    const chart::DrawingDevice* surface = grapher.Surface();
    if (!surface || !grapher.HasPlotDefined()) return {};
    const chart::Point at{x, surface->height() - y};
    const chart::Rect plot = grapher.PlotRect();
    if (at.x < plot.x_low || at.x > plot.x_high || at.y < plot.y_low || at.y > plot.y_high) return {};
    return grapher.SurfaceToUser(at);
}

double vertical_stretch(const chart::AX_Grapher& section) {
    return section.XAxisScale() > 0 ? section.YAxisScale() / section.XAxisScale() : 1.0;
}

PointerPanels profile_pointer(const Workspace& workspace, int chart, const chart::AX_Grapher& grapher,
                              const chart::Point* user, GeographicPlaces& places) {
    PointerPanels panels;
    panels.chart = chart_name(chart, grapher);
    if (!user || workspace.station_count <= 0) return panels;
    panels.x = format_number(user->x, "0.00");
    panels.y = format_number(user->y, "0.00");
    const int nearest = nearest_station(workspace, user->x);
    panels.y_unit = value_unit(workspace, chart);
    panels.east = format_number(workspace.stations(nearest, column_east), "0.00");
    panels.north = format_number(workspace.stations(nearest, column_north), "0.00");
    if (chart < edit::profile_chart_count && lacks_reading(workspace, channel_of_chart(chart), nearest))
        panels.chart += " (no reading)";
    panels.geographic =
        places.text(workspace.source.coordinate_system, workspace.stations(nearest, column_east),
                    workspace.stations(nearest, column_north));
    return panels;
}

PointerPanels plan_pointer(const Workspace& workspace, const chart::Point* user, GeographicPlaces& places) {
    PointerPanels panels;
    panels.chart = "Plan View";
    if (!user) return panels;
    panels.x = format_number(user->x, "0.0");
    panels.y = format_number(user->y, "0.0");
    panels.y_unit = "m";
    panels.east = format_number(user->x, "0.00");
    panels.north = format_number(user->y, "0.00");
    panels.geographic = places.text(workspace.source.coordinate_system, user->x, user->y);
    return panels;
}

}  // namespace anomalis::show

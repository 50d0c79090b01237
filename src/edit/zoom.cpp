#include "edit/zoom.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/failure.h"
#include "core/session.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

constexpr int most_zoom_index = 8;
constexpr double pan_steps_a_factor = 20;

double full_span(const ViewState& view) {
    return static_cast<double>(view.profile_window_max) - view.profile_window_min;
}

void place_window(ViewState& view) {
    const double middle = (static_cast<double>(view.profile_window_min) + view.profile_window_max) / 2;
    const double play = full_span(view) - view.window_span;
    view.window_pan = std::clamp(view.window_pan, -view.pan_limit, view.pan_limit);
    view.window_centre = static_cast<float>(
        view.pan_limit > 0 ? middle + play * view.window_pan / view.pan_limit / 2 : middle);
}

}  // namespace

void calculate_zoom_settings(const Workspace& workspace, ViewState& view, Prompts& prompts) {
    report_failure(prompts, "An error occurred while calculating the zoom settings: ", [&] {
        if (!line_loaded(workspace) || !(view.profile_window_max > view.profile_window_min))
            view.zoom_factor = 1;
        if (view.zoom_factor == 1.0F) {
            view.profile_window_min = 0;
            view.profile_window_max =
                line_loaded(workspace) ? static_cast<float>(workspace.distances.last()) : 0.0F;
            view.window_span = view.profile_window_max;
            view.window_pan = 0;
            view.pan_limit = 0;
        } else {
            view.window_span = static_cast<float>(full_span(view) / view.zoom_factor);
            view.pan_limit = static_cast<int>(std::lround(pan_steps_a_factor * view.zoom_factor));
        }
        place_window(view);
    });
}

void choose_zoom(const Workspace& workspace, ViewState& view, float factor, Prompts& prompts) {
    const double centre = view.window_centre;
    view.zoom_factor = factor;
    view.window_pan = 0;
    calculate_zoom_settings(workspace, view, prompts);
    const double play = full_span(view) - view.window_span;
    if (view.pan_limit == 0 || !(play > 0)) return;
    const double middle = (static_cast<double>(view.profile_window_min) + view.profile_window_max) / 2;
    pan_window(view, static_cast<int>(
                         std::lround(std::clamp((centre - middle) * 2 / play, -1.0, 1.0) * view.pan_limit)));
}

void pan_window(ViewState& view, int pan) {
    view.window_pan = pan;
    place_window(view);
}

namespace {

/// Half of what the middle of a window of this span can move either way is a pan limit.
struct PanScale {
    double middle;
    double play;
    int limit;

    PanScale(const ViewState& view, double span, double factor)
        : middle((static_cast<double>(view.profile_window_min) + view.profile_window_max) / 2),
          play(full_span(view) - span),
          limit(static_cast<int>(std::lround(pan_steps_a_factor * factor))) {}
    double centre(int pan) const { return middle + play * std::clamp(pan, -limit, limit) / limit / 2; }
    double pan(double centre) const {
        return play > 0 ? std::clamp((centre - middle) * 2 / play, -1.0, 1.0) * limit : 0;
    }
};

}  // namespace

ShownWindow shown_window(const ViewState& view, const HandZoom& hand) {
    if (!(hand.factor > 1)) return {view.zoom_factor, false, view.pan_limit, view.window_pan};
    const double factor = view.zoom_factor * hand.factor;
    const PanScale scale(view, view.window_span / hand.factor, factor);
    const double centre = view.window_centre + (hand.centre - 0.5) * view.window_span;
    return {factor, true, scale.limit, static_cast<int>(std::lround(scale.pan(centre)))};
}

HandZoom pan_hand_zoom(ViewState& view, const HandZoom& hand, int pan) {
    const double span = view.window_span / hand.factor;
    const double centre = PanScale(view, span, view.zoom_factor * hand.factor).centre(pan);
    const double reach = (view.window_span - span) / 2;
    if (view.pan_limit > 0 && std::abs(centre - view.window_centre) > reach) {
        // Whole steps, so far that nothing of what is shown lies outside.
        const bool right = centre > view.window_centre;
        const double steps =
            PanScale(view, view.window_span, view.zoom_factor).pan(right ? centre - reach : centre + reach);
        pan_window(view, static_cast<int>(right ? std::ceil(steps) : std::floor(steps)));
    }
    return {hand.factor, (centre - view.window_centre) / view.window_span + 0.5};
}

void reset_view(const Workspace& workspace, ViewState& view, Prompts& prompts) {
    view.zoom_factor = 1;
    for (ChartWindow& window : view.charts) {
        window.chart_zoom_index = 1;
        window.panned = false;
    }
    calculate_zoom_settings(workspace, view, prompts);
}

void step_vertical_zoom(ViewState& view, int chart, int direction) {
    ChartWindow& window = view.charts.at(static_cast<std::size_t>(chart));
    const bool keeps_top = chart == chart_section;
    if (keeps_top) window.chart_centre += window.chart_span / 2;
    window.chart_zoom_index =
        std::clamp(window.chart_zoom_index + (direction > 0 ? 1 : -1), 1, most_zoom_index);
    window.chart_span = (window.chart_max - window.chart_min) /
                        zoom_factors[static_cast<std::size_t>(window.chart_zoom_index - 1)];
    if (keeps_top) window.chart_centre -= window.chart_span / 2;
}

void step_vertical_pan(ViewState& view, int chart, int direction) {
    ChartWindow& window = view.charts.at(static_cast<std::size_t>(chart));
    window.chart_centre += (direction > 0 ? -0.25F : 0.25F) * window.chart_span;
    window.panned = true;
}

bool scales_itself(const ChartWindow& window) {
    return window.chart_zoom_index == 1 && !window.panned;
}

}  // namespace anomalis::edit

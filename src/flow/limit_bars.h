#pragma once

#include <array>

#include "core/prompts.h"
#include "core/workspace.h"

// The two bars that the person drags to say which stations the fit uses, as arithmetic.
namespace anomalis::flow {

/// A stretch of the window, in twips.
struct LimitStrip {
    double left = 0;
    double width = 0;
};

/// What part of the line the charts show.
struct VisibleSpan {
    double zoom_factor = 1;  ///< 1 shows the whole line
    double span = 0;         ///< m
    double centre = 0;       ///< m
};

/// Bar 0 selects the first station of the fit, bar 1 the last one.
class LimitBars {
  public:
    struct Bar {
        bool in_use = true;  ///< out of use it keeps its place and cannot be dragged
        double left = 0;
        double width = 120;
    };

    LimitBars(Workspace& workspace, Prompts& prompts) : workspace_(workspace), prompts_(prompts) {}

    const Bar& bar(int index) const { return bars_.at(static_cast<std::size_t>(index)); }
    const LimitStrip& strip() const { return strip_; }
    void set_bar_width(double width) { bars_[0].width = bars_[1].width = width; }
    bool dragging() const { return limit_bar_dragging_; }
    /// The drag that goes on, or the last one, chose another station.
    bool moved() const { return moved_; }

    /// Puts both bars where the station window stands; a window that the line cannot hold becomes the whole
    /// line.
    void update_inversion_limit_display(const LimitStrip& strip, const VisibleSpan& span);

    /// Mouse events of a bar; `x` from the bar's own left.
    void mouse_down(int index, double x);
    /// Returns true when the fit has another first or last station now, where the bar stands.
    bool mouse_move(int index, double x);
    /// Returns true when this ended a drag.
    bool mouse_up(int index);

  private:
    void place_first();
    void place_last();
    bool keeps_apart(int index, double centre) const;
    int station_at(double distance) const;
    bool take_station(int index, int station);

    Workspace& workspace_;
    Prompts& prompts_;
    std::array<Bar, 2> bars_;
    LimitStrip strip_;
    VisibleSpan span_;
    bool limit_bar_dragging_ = false;
    bool moved_ = false;
    double limit_bar_start_x_ = 0;
};

}  // namespace anomalis::flow

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "chart/drawing_types.h"
#include "edit/body_drag.h"
#include "show/handles/handle.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis::show {
class ModelCharts;
}  // namespace anomalis::show

namespace anomalis::flow {

class ModelViewHost;

/// The hand on the current body: its handles in section and plan, what a drag of one and what the keys do.
/// One drag is one step of the history. It keeps no handle of its own: they follow from model and view.
class BodyHand {
  public:
    /// Everything outlives the hand.
    BodyHand(edit::Workbench& workbench, show::ModelCharts& charts, ModelViewHost& host);

    /// Shows the handles as model and view stand, or none: during a run, without a body.
    void show();
    /// Takes them off for a picture or a preview of another model, and brings them back.
    void hide(bool hidden);

    // What the section or the plan tells; X and Y are surface units from the left and top edge.

    /// True when the press is on a handle, which is held from here on.
    bool press(int chart, int button, int marks, float x, float y);
    void drag(int marks, float x, float y);
    /// Keeps what the drag has set, or puts everything back.
    void end(bool given_up);
    /// The pointer is over a chart, no button held.
    void hover(int chart, float x, float y);
    void leave(int chart);
    /// True when the key was the hand's: arrows move the body, Delete takes it away.
    bool key(int chart, int code, int marks);

    bool holding() const { return held_.has_value(); }
    /// Ends a drag with what it has set: something else is about to read or change the model.
    void finish();
    /// The line is gone, and what was held with it.
    void forget();

  private:
    struct Held {
        int chart;
        show::Handle handle;
        edit::BodyDrag drag;
        chart::Point press;    ///< surface units, y up
        chart::Point pointer;  ///< where it was told last
        chart::Point grip;     ///< from the pointer to the handle
        double slack;          ///< a pointer that stays so near to the press drags nothing
    };
    chart::AX_Grapher& chart_of(int chart) const;
    bool is_ours(int chart) const;
    chart::Point surface(int chart, float x, float y) const;
    show::HandleView view_of(int chart) const;
    std::vector<show::Handle> handles_of(int chart) const;
    std::optional<show::Handle> under(int chart, chart::Point at, bool finger) const;
    show::HandleValues wanted(chart::Point target) const;
    std::vector<std::string> told() const;
    void let_go(bool given_up);
    void nudge(int code, bool fine);

    edit::Workbench& workbench_;
    show::ModelCharts& charts_;
    ModelViewHost& host_;
    std::optional<Held> held_;
    std::optional<show::HandleKind> hot_;
    bool hidden_ = false;
};

}  // namespace anomalis::flow

#pragma once

#include <string>

#include "flow/limit_bars.h"
#include "flow/run_control.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// The window around the inversion.
class InversionDeskHost {
  public:
    virtual ~InversionDeskHost() = default;
    virtual void show_panel(const InversionPanel& panel) = 0;
    virtual void show_bars() = 0;
    /// While a run goes on nothing but its stop and a request to close may be served.
    virtual void show_run(bool running) = 0;
    virtual void display_body_parameters() = 0;
    virtual void display_model() = 0;
    virtual void display_chart(int index) = 0;
    virtual void display_plan_view() = 0;
    virtual void show_caption() = 0;
    /// A run is about to change the model: it must be kept where a crash does not reach it.
    virtual void keep_model() = 0;
    virtual void close_window() = 0;
};

/// The inversion as the window offers it: runs, undo paths and limit bars change the model, so each of them
/// is a step that can be taken back. Needs no window.
class InversionDesk : private InversionView {
  public:
    /// Both outlive the desk.
    InversionDesk(edit::Workbench& workbench, InversionDeskHost& host);

    RunControl& control() { return control_; }
    const LimitBars& bars() const { return bars_; }
    const InversionPanel& panel() const { return control_.panel(); }
    bool busy() const { return control_.busy(); }

    /// 0 inverts the current body, 1 the whole model. A run shows the inversion's controls first.
    void invert(int index);
    void restore_best();
    void reject_changes();
    /// Shows the inversion's controls, or the bars that move the body.
    void show_view(bool invert);

    /// A load, an opened file or a dropped line: the bars that move the body show, nothing is remembered.
    void line_changed();
    /// The channel that was chosen stays while the line has it.
    void check_channel();
    /// After any change of the model: what belonged to another list of bodies is forgotten.
    void follow_model();

    /// The bars over the plot of the section: its place, and the part of the line that it shows.
    void place_bars(const LimitStrip& strip, const VisibleSpan& span);
    /// Mouse events of a bar; `x` in twips from the bar's own left.
    void press_bar(int index, double x);
    void move_bar(int index, double x);
    void release_bar(int index);

    /// What the last fit says about the parameters that it could not determine; "" when there is nothing.
    std::string fit_remark() const;

  private:
    int current_body() const override;
    void display_body_parameters() override { host_.display_body_parameters(); }
    void display_model() override;
    void display_charts() override;
    void display_iteration() override;
    void panel_changed() override { host_.show_panel(control_.panel()); }
    void run_state(bool running) override { host_.show_run(running); }
    void save_recovery_model(const std::string& path) override;

    void keep_fit_errors();
    bool has_current_body() const;

    edit::Workbench& workbench_;
    InversionDeskHost& host_;
    RunControl control_;
    LimitBars bars_;
    int seen_revision_ = 0;
    int pressed_first_ = 0, pressed_last_ = 0;  ///< station window when a bar was pressed
};

}  // namespace anomalis::flow

#pragma once

#include <array>
#include <string>

#include "inversion/perform.h"

// The inversion panel without a window: what its buttons do and what state its controls are in.
namespace anomalis::flow {

/// What the panel's controls show. The window copies it after each `panel_changed`, and writes the texts
/// that the person types into `max_iterations_text`.
struct InversionPanel {
    bool invert_frame = false;  ///< Frame_invert; Frame_move_body shows when it does not
    bool stop_frame = false;    ///< Frame_stop_inversion
    std::string toggle_caption = "Perform Inversion";
    std::array<std::string, 4> misfit;  ///< Text_MAGINV_misfit
    std::string num_iterations_text;
    std::string max_iterations_text;
    bool status_visible = false;  ///< Label_status
    std::string status_text;
    bool restore_best_enabled = false;
    bool reject_changes_enabled = false;
    int channel_index = 0;  ///< Combo_invert: 0 magnetics, 1 gravity, 2 both at once by least squares
    bool hourglass = false;
    inversion::InversionMethod method = inversion::InversionMethod::sweep;
};

/// What the run control needs from the window around it.
class InversionView {
  public:
    virtual ~InversionView() = default;
    /// The selected body, 0 when there is none.
    virtual int current_body() const = 0;
    virtual void display_body_parameters() {}
    virtual void display_model() {}
    /// The charts 0 to 4 as the rows stand, without calculating.
    virtual void display_charts() {}
    /// Between two iterations: the plan view when it is on, else the charts.
    virtual void display_iteration() { display_charts(); }
    virtual void panel_changed() {}
    /// A run begins, or has ended: while it goes on only the stop and a request to close are served.
    virtual void run_state(bool) {}
    virtual void progress(const inversion::InversionProgress&) {}
    /// Writes the model parameters to `path` before a restore replaces them. Shows its own failures.
    virtual void save_recovery_model(const std::string& path) = 0;
};

inline constexpr const char* recovery_file = "latest.axm";

/// Runs, stop, undo paths and the two views of the panel. One command runs at a time: while `busy` all of
/// them but the stop return at once.
class RunControl : private inversion::RunObserver {
  public:
    RunControl(Session& session, InversionView& view) : session_(session), view_(view) {}

    const InversionPanel& panel() const { return panel_; }
    bool busy() const { return busy_; }
    void set_busy(bool busy) { busy_ = busy; }
    void set_max_iterations_text(const std::string& text) { panel_.max_iterations_text = text; }
    void set_method(inversion::InversionMethod method);
    /// The most iterations of a run by the text that was typed.
    int iteration_limit() const;
    /// Of the last run.
    const inversion::RunResult& result() const { return result_; }

    /// 0 "Invert Current Body", 1 "Invert Entire Model".
    void command_invert(int index);
    /// The run ends with its iteration.
    void command_stop_inversion();
    void command_restore_best();
    void command_reject_changes();
    /// Changes between moving the body and inverting.
    void command_toggle_invert_body();
    /// A channel that the line lacks gives way to the other; both at once need both and least squares.
    void combo_invert(int index);
    /// Check_inversion_mode: 1 fits the gradient row.
    void check_inversion_mode(int target);

    /// The view of moving a body: after a load, an open, a form reset. The label is hidden.
    void show_move_view();
    /// Empties the boxes, forgets the best misfit, disables both undo paths.
    void reset_inversion_display();
    /// For every read and every change of number, order or type of bodies.
    void bodies_changed();
    /// Boxes 1 and 3 after each display of the model.
    void show_current_misfit(const MisfitPair& misfit) override;

    /// True when the window may close now; during a run it is stopped first and `close_requested` tells.
    bool may_close();
    bool close_requested() const { return close_requested_; }

  private:
    void show_initial_misfit(const MisfitPair& misfit) override;
    void show_iteration(int iteration) override;
    void display_iteration() override;
    void progress(const inversion::InversionProgress& state) override;
    void best_model(bool available) override;

    int corrected_channel(int index) const;
    void begin_run(int index);
    void run(int index, int limit);
    void end_run(int limit);
    void apply_values(const Array1<float>& values);
    void disable_undo();
    void set_view(bool invert);
    void changed() { view_.panel_changed(); }

    Session& session_;
    InversionView& view_;
    InversionPanel panel_;
    bool busy_ = false;
    bool close_requested_ = false;
    inversion::RunResult result_;
};

}  // namespace anomalis::flow

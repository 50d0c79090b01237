#pragma once

#include <array>
#include <optional>
#include <string>

#include "flow/inversion_panel.h"
#include "flow/limit_bars.h"
#include "show/fit_quality.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

inline constexpr const char* recovery_file = "latest.axm";

/// The window around the inversion. What there is to show it asks the desk.
class InversionDeskObserver {
  public:
    virtual ~InversionDeskObserver() = default;
    /// Texts or states of the panel changed.
    virtual void panel_changed() = 0;
    /// The fit has other stations: the bars stand elsewhere.
    virtual void bars_changed() = 0;
    /// A run begins, and the model must be kept where a crash does not reach it; or it has ended. The panel
    /// changed too.
    virtual void run_changed() = 0;
    /// A run is at something else (`InversionPanel::stage`).
    virtual void stage_changed() {}
    /// The model was changed and noted: its numbers, its charts and the caption follow.
    virtual void model_changed() = 0;
    /// The curves of chart 0 to 4, or the plan (`edit::model_chart_count`), as the rows stand, without
    /// calculating.
    virtual void draw_chart(int index) = 0;
    /// The window was asked to close during the run that has ended.
    virtual void close_wanted() = 0;
};

/// The inversion as the window offers it: its panel, runs, their stop, the undo paths and the limit bars.
/// What changes the model is a step that can be taken back. Needs no window. One run goes on at a time;
/// meanwhile everything but its stop returns at once.
class InversionDesk : private inversion::RunObserver {
  public:
    /// Both outlive the desk.
    InversionDesk(edit::Workbench& workbench, InversionDeskObserver& observer);

    const InversionPanel& panel() const { return panel_; }
    bool running() const;
    LimitBars& bars() { return bars_; }
    const LimitBars& bars() const { return bars_; }

    /// 0 "Invert Current Body", 1 "Invert Entire Model". A run shows the inversion's controls first.
    void command_invert(int index);
    /// The run ends with its iteration; asked for once more, in the middle of it.
    void command_stop_inversion();
    /// The best model of the runs so far; the present one is written to `recovery_file` first.
    void command_restore_best();
    /// The values that the last run started with.
    void command_reject_changes();
    /// Changes between the bars that move the body and the inversion's controls.
    void command_toggle_invert_body();
    /// A channel that the line lacks gives way to the other; both at once need both and least squares.
    void combo_invert(int index);
    void choose_method(inversion::InversionMethod method);
    /// Check_inversion_mode: 1 fits the gradient row.
    void check_inversion_mode(int target);
    void type_starts(const std::string& text) { panel_.starts_text = text; }
    void type_max_iterations(const std::string& text) { panel_.max_iterations_text = text; }

    /// A load, an opened file or a dropped line: the bars that move the body show, nothing is remembered.
    void line_changed();
    /// After any change of the model: what belonged to another list of bodies is forgotten.
    void follow_model();
    /// Boxes 1 and 3 after each display of the model.
    void show_current_misfit(const MisfitPair& misfit) override;
    /// The noise of a channel that has a line; kept until `forget_noise` or another fit.
    const show::ChannelNoise& noise_of(int channel);
    /// What stands in for a noise that is not keyed, without its unit; "" where the readings tell none.
    std::string noise_estimate(int channel);
    void forget_noise() { noise_ = {}; }
    /// Empties the boxes, forgets the best misfit, disables both undo paths.
    void reset_inversion_display();

    /// Mouse events of a limit bar; `x` in twips from the bar's own left.
    void press_bar(int index, double x);
    void move_bar(int index, double x);
    void release_bar(int index);

    /// True when the window may close now; a run is stopped first, and `close_wanted` follows it.
    bool may_close();
    /// What the fit in force says beside its values; "" when there is nothing.
    std::string fit_remark() const;

  private:
    void evaluated() override;
    bool working(double units) override;
    void show_initial_misfit(const MisfitPair& misfit) override;
    void stage(inversion::RunStage stage) override;
    void progress(const inversion::InversionProgress& state) override;
    void display_iteration() override;
    void best_model(bool available) override;

    void begin_run(int index);
    void run(int index, int body, int limit);
    void end_run(int index, int body, int limit);
    void show_fit();
    bool as_the_run_left_it() const;
    void show_quality();
    int current_body() const;
    void show_move_view();
    void draw_charts();
    void apply_values(const Array1<float>& values);
    void change_model(const std::string& what);

    edit::Workbench& workbench_;
    InversionDeskObserver& observer_;
    InversionPanel panel_;
    LimitBars bars_;
    inversion::RunResult result_;
    std::string ended_mark_;  ///< the state that the last run left (core/model_mark.h)
    struct KnownNoise {
        std::optional<show::ChannelNoise> noise;
        bool fitted = false;  ///< a fit was in force then
    };
    std::array<KnownNoise, 2> noise_;
    bool close_requested_ = false;
    int seen_revision_ = 0;
    int pressed_first_ = 0, pressed_last_ = 0;  ///< station window when a bar was pressed
};

}  // namespace anomalis::flow

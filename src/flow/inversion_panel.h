#pragma once

#include <array>
#include <string>

#include "inversion/perform.h"
#include "show/fit_quality.h"

namespace anomalis::flow {

/// How near the curves of a channel are to each other, in its own unit; "" without the channel.
struct QualityLines {
    std::string line;  ///< "Mag rms 13.1 nT, 804 stations, noise 1.8 nT"
    std::string full;  ///< the same as a sentence
};
QualityLines quality_lines(const show::FitQuality& quality, int channel);

/// What the controls of the inversion show, and what a person chose and typed there. Whether a run goes on is
/// not held here: `InversionState::running` says so.
struct InversionPanel {
    bool invert_frame = false;          ///< Frame_invert; Frame_move_body shows when it does not
    bool stop_frame = false;            ///< Frame_stop_inversion
    std::array<std::string, 4> misfit;  ///< Text_MAGINV_misfit
    inversion::RunStage stage = inversion::RunStage::fit;  ///< of the run that goes on
    std::string num_iterations_text;
    std::string max_iterations_text;  ///< as it was typed
    bool end_told = false;            ///< how the last run ended is of interest
    bool status_visible = false;      ///< Label_status: the model is as that run left it
    std::string status_text;
    std::string remark_text;              ///< Label_fit_remark: what the fit in force says beside its values
    std::array<QualityLines, 2> quality;  ///< Label_rms, of magnetics and gravity
    std::string starts_text;              ///< as it was typed
    bool restore_best_enabled = false;
    bool reject_changes_enabled = false;
    int channel_index = 0;  ///< Combo_invert: 0 magnetics, 1 gravity, 2 both at once by least squares
    inversion::InversionMethod method = inversion::InversionMethod::least_squares;

    /// Of Command_toggle_invert_body.
    const char* toggle_caption() const;
    /// The most iterations of a run by the text that was typed.
    int iteration_limit() const;
    /// From how many places a least-squares run starts by the text that was typed, 1 to `most_starts`.
    int starts() const;
    static constexpr int most_starts = 1000;
    /// The channel in the place of `index`: one that the line lacks gives way to the other, both at once need
    /// both and least squares.
    int corrected_channel(int index, const Workspace& workspace) const;

    /// Boxes 0 and 2, and 1 and 3.
    void show_initial_misfit(const MisfitPair& pair);
    void show_current_misfit(const MisfitPair& pair);
    void disable_undo();
    /// Shows the inversion, or the bars that move the body; the end of a run is told no longer.
    void show_view(bool invert);
    void begin_run();
    void end_run(const inversion::RunResult& result, int limit);
};

}  // namespace anomalis::flow

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/recording_prompts.h"
#include "core/session.h"
#include "flow/open_unattended.h"
#include "survey/run/line_run.h"

// The commands of one line. Private to this room.
namespace anomalis::survey {

/// A workspace that was read for one command, with all that was told meanwhile.
struct OpenLine {
    OpenLine(const std::string& path, const std::optional<Formulas>& formulas);
    OpenLine(const OpenLine&) = delete;
    OpenLine& operator=(const OpenLine&) = delete;

    RecordingPrompts prompts;
    Session session;
    flow::OpenedWorkspace opened;
    bool wrong_usage = false;
};

/// Where a line stands between its commands.
class LineSteps {
  public:
    LineSteps(const LineJob& job, const LineFolder& folder, LineServices& services, LineResult& result);

    /// All of it. Raises Fault with what a person is told, MachineFailure, Stopped.
    void run();
    /// The result tells of a failure, with what was told before.
    void fail(const std::string& message);

  private:
    void import_line();
    flow::ImportedLine read_line(const flow::ImportChoices& choices, const std::string& workspace) const;
    void find(const FindStep& step);
    void invert(const InvertStep& step);
    void find_ensemble(const UncertaintyStep& step);
    void write_exports(const LineOptions& options);
    void draw(const RenderStep& step);

    void open();
    void check_stop() const;
    /// Raises Fault where something failed: what came of the command is then no answer.
    void refuse_failures() const;
    /// The workspace as it stands, in the folder of the line.
    void write_workspace();
    void write_report(const char* name, std::string json) const;
    /// What there is to know goes into the result.
    void take_notes();
    std::string without_folder(std::string text) const;

    const LineJob& job_;
    const LineOptions& options_;
    const LineFolder& folder_;
    LineServices& services_;
    LineResult& result_;
    std::string name_;   ///< of its files
    std::string model_;  ///< the workspace that the next command reads
    std::unique_ptr<OpenLine> line_;
    std::int32_t channel_ = channel_mag;
};

}  // namespace anomalis::survey

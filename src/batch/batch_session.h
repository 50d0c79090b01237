#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "batch/batch_prompts.h"
#include "core/file_stamp.h"
#include "core/session.h"
#include "core/text_pieces.h"
#include "flow/open_unattended.h"
#include "intake/load_report.h"

namespace anomalis::batch {

using flow::OpenState;

/// A session without a window and without a settings store, so that the same input gives the same output on
/// any machine.
class BatchSession {
  public:
    BatchSession(std::ostream& out, std::ostream& err);

    /// An empty workspace, as at the start; what was told and which files were read is kept.
    void start_anew();

    /// Reads a workspace file, loads its data and calculates its model, as far as it can.
    OpenState open(const std::string& path);
    /// The same; true only when it is ready.
    bool open_ready(const std::string& path) { return open(path) == OpenState::ready; }

    /// Writes a result to a file, or to the output stream when `path` is empty: to a terminal without control
    /// characters, which come from texts of files. Where "-" names an output, that has the stream for itself,
    /// and a result without a file goes where messages go. Returns 0, or -1 after a failure, which was shown.
    int write_result(const std::string& path, const std::string& text);
    /// The same of a text that comes in pieces; what an output stream got before a failure stays there.
    int write_result(const std::string& path, const TextSource& source);

    /// What was noted as a failure so far, for the headers of tables.
    const std::vector<std::string>& failures() const { return prompts.failures(); }

    /// Writes the session's workspace. A workspace file has no place for a word about how its numbers came to
    /// be, so after a failure it is written only with `keep_going`; and one that was read and that another
    /// program has changed since is replaced only with `force`. Returns 0, or -1 with the reason told.
    int write_workspace(const std::string& path);

    std::optional<Formulas> formulas;  ///< in place of what the file says
    bool keep_going = false;           ///< outputs are written and good for all that failed on the way
    bool force = false;                ///< files that were changed meanwhile are replaced
    std::string standard_input;        ///< the file that holds what came in by a pipe
    std::string standard_output;       ///< the file that is given out in the end: results go elsewhere
    bool to_terminal = false;          ///< the output stream is one
    bool show_progress = false;        ///< so is that of the messages
    bool wrong_usage = false;          ///< what was asked for cannot be had of this model
    bool try_again = false;            ///< nothing is wrong but the machine: the same command may do it later
    intake::LoadReport report;         ///< of the last load
    BatchPrompts prompts;
    Session session;
    std::ostream& out;
    std::ostream& err;

  private:
    KnownFiles read_;
};

}  // namespace anomalis::batch

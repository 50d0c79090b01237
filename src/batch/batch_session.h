#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "batch/batch_prompts.h"
#include "core/session.h"

namespace anomalis::batch {

/// How far a workspace came.
enum class OpenState {
    unread,     ///< the workspace file could not be read whole; what could be is there to be shown
    no_data,    ///< it was, but there are no stations
    no_length,  ///< there are stations, but nothing can be modelled along them
    ready       ///< stations, responses, filtered rows and misfits are up to date
};

/// A session without a window and without a settings store, so that the same input gives the same output on
/// any machine.
class BatchSession {
  public:
    BatchSession(std::ostream& out, std::ostream& err);

    /// Reads a workspace file, loads its data and calculates its model, as far as it can.
    OpenState open(const std::string& path);
    /// The same; true only when it is ready.
    bool open_ready(const std::string& path) { return open(path) == OpenState::ready; }

    /// After a failed command: a load is silent about a file without records, which at a command line would
    /// leave a person puzzled.
    void explain_silence();

    /// Writes a result to a file, or to the output stream when `path` is empty. Returns 0, or -1 after a
    /// failure, which was shown.
    int write_result(const std::string& path, const std::string& text);

    std::optional<Formulas> formulas;  ///< in place of what the file says
    BatchPrompts prompts;
    Session session;
    std::ostream& out;
    std::ostream& err;
};

}  // namespace anomalis::batch

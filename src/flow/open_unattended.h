#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/formulas.h"
#include "intake/load_report.h"

namespace anomalis {
class Session;
}  // namespace anomalis

namespace anomalis::intake {
struct LineColumns;
}  // namespace anomalis::intake

namespace anomalis::flow {

/// How far a workspace came.
enum class OpenState : std::uint8_t {
    unread,     ///< the workspace file could not be read whole; what could be is there to be shown
    no_data,    ///< it was, but there are no stations
    no_length,  ///< there are stations, but nothing can be modelled along them
    ready       ///< stations, responses, filtered rows and misfits are up to date
};

struct OpenedWorkspace {
    OpenState state = OpenState::unread;
    intake::LoadReport report;  ///< of the load
};

/// Reads a workspace file into a session that nobody sits before, loads its data and calculates its model, as
/// far as it can. `formulas` stand in place of what the file says. What is wrong, and what can hardly be
/// meant, is told; the load of a window is silent about rows that it cannot use.
OpenedWorkspace open_unattended(Session& session, const std::string& path,
                                const std::optional<Formulas>& formulas);

/// Its second half: loads the data of a workspace that is in the session.
OpenedWorkspace load_unattended(Session& session);
/// The same for a line in memory, which the workspace has by no file.
OpenedWorkspace load_unattended(Session& session, const intake::LineColumns& line);

}  // namespace anomalis::flow

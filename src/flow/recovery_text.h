#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/file_stamp.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// The file of an unsaved model: a workspace file that tells, behind what a reader of the model looks at,
// where it belongs and what it holds.
namespace anomalis::flow {

struct RecoveryOrigin {
    std::string file;                ///< the workspace file; "" for a model without a name
    std::optional<FileStamp> stamp;  ///< of what was last read from it, or written to it
    std::string name;           ///< for people where there is no file: "line 5690 of survey.xyz", "data.dat"
    std::optional<int> bodies;  ///< none in files of earlier versions
};

/// The workspace as it stands; nothing of it changes.
std::string recovery_text(const edit::Workbench& workbench);
/// What the text says of itself; empty for a text of another kind.
RecoveryOrigin recovery_origin(std::string_view text);

}  // namespace anomalis::flow

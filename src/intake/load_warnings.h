#pragma once

#include <string>
#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

struct RowNotes;

/// What in a load can hardly be meant, and what to do: decimal commas, marks for no value that were taken as
/// readings, gravity in another unit, base levels that are none, rows that kept values of those before.
std::vector<std::string> load_warnings(const Workspace& workspace, const RowNotes& notes);

}  // namespace anomalis::intake

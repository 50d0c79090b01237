#pragma once

#include <cstdint>

namespace anomalis {
class Prompts;
class Settings;
struct Workspace;
}  // namespace anomalis

// The lines of one body. Private to this room.
namespace anomalis::workspace_file {

class AxmLines;

/// Reads the lines of body `number`, whose slot must exist; it starts from the defaults of a new body, so an
/// item that an old format does not have keeps its default. A `version` of 0 becomes 1 for the rest of the
/// file when text follows the type. Raises Fault.
void read_body(AxmLines& lines, std::int32_t& version, Workspace& workspace, int number,
               const Settings& settings, Prompts& prompts);

}  // namespace anomalis::workspace_file

#pragma once

#include "batch/command.h"

namespace anomalis::batch {

/// The batch tool with all its commands, as man pages, completions and the guide tell of it: read from what
/// the commands declare.
manual::Sheet program_sheet(const Commands& commands);

}  // namespace anomalis::batch

#pragma once

#include <vector>

#include "manual/sheet.h"

namespace anomalis::batch {

enum ExitStatus : int { exit_done = 0, exit_failed = 1, exit_usage = 2, exit_try_again = 75 };

/// What they mean; the last one is of `survey` alone.
std::vector<manual::NamedText> exit_status_words(bool of_survey);

}  // namespace anomalis::batch

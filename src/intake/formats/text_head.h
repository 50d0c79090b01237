#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "intake/formats/survey_format.h"

namespace anomalis::intake {

/// The first lines of a file, its encoding and whether it is packed. Raises FileFault, and Fault for what is
/// no text.
SurveySample read_head(const std::string& path, std::size_t most_lines);

}  // namespace anomalis::intake

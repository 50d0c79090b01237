#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "intake/formats/survey_format.h"

namespace anomalis::intake {

/// The first lines of a file, its encoding (found unless it is given) and whether it is packed. Raises
/// FileFault, and Fault for what is no text.
SurveySample read_head(const std::string& path, std::size_t most_lines,
                       std::optional<Encoding> encoding = {});

}  // namespace anomalis::intake

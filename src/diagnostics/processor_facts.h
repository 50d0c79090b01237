#pragma once

#include <string>
#include <vector>

namespace anomalis::diagnostics {

/// What the processor is and can do, and which of its vectors the response of bodies is calculated with.
std::vector<std::string> processor_lines();

/// How this program was built: compiler, language, checks, C library.
std::vector<std::string> build_lines();

}  // namespace anomalis::diagnostics

#pragma once

#include <string>

namespace anomalis::chart {

/// What to do where the system has no font at all, so that every letter would be an empty box; "" where there
/// is one. A family that is missing needs no word: another one is drawn, and measured, in its place.
std::string missing_fonts();

}  // namespace anomalis::chart

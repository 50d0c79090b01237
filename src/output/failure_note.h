#pragma once

#include <string>
#include <vector>

namespace anomalis::output {

/// What a comment line of a table says behind its own words when numbers of the table are not sound; "" when
/// all is well. One line without commas: readers of these tables split at them.
std::string failure_note(const std::vector<std::string>& failures);

}  // namespace anomalis::output

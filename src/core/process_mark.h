#pragma once

#include <string>
#include <string_view>

namespace anomalis {

/// Names this process so that no later one of the same number is taken for it: machine, number and start, in
/// letters, digits and "-". A container counts as a machine of its own.
std::string own_process_mark();

/// True when the process of that mark ran on this machine and has ended. Whatever cannot be known, and a text
/// that is no mark, is false.
bool process_has_ended(std::string_view mark);

}  // namespace anomalis

#pragma once

#include <string>

namespace anomalis {

/// A number with two digits of what it is uncertain by, seven digits at most: 257.4 of 12 is "257", of 0.31
/// "257.40".
std::string text_of_worth(double value, double worth);

}  // namespace anomalis

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace anomalis {

/// A number in the room there is, never cut: the text as it stands if that fits; else without decimals of no
/// weight ("56000.00", "56000"), else rounded to four digits or more, else in powers of ten ("5.6e4"). None
/// fitting, the shortest of these. A text that is no number comes back as it is.
std::string fitting_number(std::string_view text, const std::function<bool(const std::string&)>& fits);

}  // namespace anomalis

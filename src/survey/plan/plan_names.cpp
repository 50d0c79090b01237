#include "survey/plan/plan_names.h"

#include "core/near_names.h"
#include "core/numbers.h"
#include "core/safe_name.h"
#include "core/text.h"

namespace anomalis::survey {

std::string meant_name(const std::string& name) {
    double number = 0;
    if (parse_number(name, number)) return round_trip_text(number + 0.0);  // not "-0"
    return lower_case(trim_blanks(name));
}

std::string folder_name_of_line(const std::string& name) {
    const std::string safe = safe_name(name);
    return safe.empty() ? "_" : safe;
}

}  // namespace anomalis::survey

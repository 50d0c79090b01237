#include "flow/fit_remark.h"

#include "core/body_parameters.h"
#include "core/numbers.h"

namespace anomalis::flow {

namespace {

/// "words distance of body 1, top of body 2", or "" for an empty list.
std::string named(const std::string& words, const std::vector<int>& numbers,
                  const Array1<InversionParamPlace>& map) {
    std::string text;
    for (const int number : numbers) {
        if (number < 1 || number > map.count()) continue;
        text += (text.empty() ? "" : ", ") + std::string(param_name(map[number].param_code)) + " of body " +
                format_number(map[number].body, "0");
    }
    return text.empty() ? text : words + text;
}

}  // namespace

std::vector<edit::ParameterError> fit_errors(const inversion::RunResult& result,
                                             const InversionState& inversion) {
    std::vector<edit::ParameterError> list;
    const auto places = inversion.inversion_param_map.span();
    if (!result.statistics || result.statistics->errors.size() != places.size()) return list;
    for (std::size_t i = 0; i < places.size(); ++i)
        list.push_back({places[i].body, places[i].param_code, result.statistics->errors[i]});
    return list;
}

std::string fit_remark(const inversion::RunResult& result, const InversionState& inversion) {
    if (!result.statistics) return {};
    const auto& map = inversion.inversion_param_map;
    const std::string open = named("The data leave open: ", result.statistics->undetermined, map);
    const std::string held = named("Held by a limit: ", result.statistics->at_limit, map);
    return open + (open.empty() || held.empty() ? "" : ". ") + held;
}

}  // namespace anomalis::flow

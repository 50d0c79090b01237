#include "flow/fit_remark.h"

#include <algorithm>

#include "core/body_parameters.h"
#include "core/numbers.h"

namespace anomalis::flow {

namespace {

/// "distance of body 1, top of body 2", or "".
std::string named(const FitRecord& fit, bool FittedParameter::*mark) {
    std::string text;
    for (const FittedParameter& parameter : fit.parameters) {
        if (!(parameter.*mark)) continue;
        text += (text.empty() ? "" : ", ") + std::string(param_name(parameter.param_code)) + " of body " +
                format_number(parameter.body, "0");
    }
    return text;
}

std::string sentence(std::string text) {
    if (!text.empty() && text.back() != '.') text += '.';
    return text;
}

}  // namespace

std::string fit_label(const FitRecord& fit) {
    const std::string held = named(fit, &FittedParameter::at_limit);
    return held.empty() ? fit.outcome : fit.outcome + ": " + held;
}

std::string fit_remark(const FitRecord& fit) {
    std::string text;
    const auto add = [&](const std::string& words) { text += (text.empty() ? "" : " ") + sentence(words); };
    const std::string open = named(fit, &FittedParameter::undetermined);
    if (!open.empty()) add("The data leave open: " + open);
    for (const std::string& remark : fit.remarks) add(remark);
    return text;
}

std::string changed_since(const FitRecord& fit) {
    std::string date = fit.date;
    std::ranges::replace(date, 'T', ' ');
    return "The model has changed since the fit of " + date;
}

}  // namespace anomalis::flow

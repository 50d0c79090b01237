#include "core/fit_record.h"

namespace anomalis {

std::string_view method_name(InversionMethod method) {
    return method == InversionMethod::sweep ? "sweep" : "least-squares";
}

std::optional<InversionMethod> method_of_name(std::string_view name) {
    for (const InversionMethod method : {InversionMethod::sweep, InversionMethod::least_squares})
        if (name == method_name(method)) return method;
    return std::nullopt;
}

}  // namespace anomalis

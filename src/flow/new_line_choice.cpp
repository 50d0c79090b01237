#include "flow/new_line_choice.h"

#include <string_view>

#include "core/settings.h"
#include "core/workspace.h"

namespace anomalis::flow {

namespace {

constexpr std::string_view formulas_key = "NewLineFormulas";
constexpr std::string_view method_key = "InversionMethod";

}  // namespace

Formulas formulas_of_new_line(const Settings& settings) {
    return formulas_of_name(settings.get(settings_section, formulas_key)).value_or(Formulas::exact);
}

void choose_formulas_of_new_line(Formulas formulas, Settings& settings) {
    settings.set(settings_section, formulas_key, formulas_name(formulas));
}

void remember_formulas(const Workspace& workspace, Settings& settings) {
    if (workspace.model_file.empty()) choose_formulas_of_new_line(workspace.formulas, settings);
}

InversionMethod last_method(const Settings& settings) {
    return method_of_name(settings.get(settings_section, method_key))
        .value_or(InversionMethod::least_squares);
}

void remember_method(InversionMethod method, Settings& settings) {
    settings.set(settings_section, method_key, method_name(method));
}

}  // namespace anomalis::flow

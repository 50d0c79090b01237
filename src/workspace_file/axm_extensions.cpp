#include "workspace_file/axm_extensions.h"

#include <string>

#include "core/prompts.h"
#include "core/text.h"
#include "core/workspace.h"
#include "workspace_file/axm_text.h"

namespace anomalis::workspace_file {

namespace {

constexpr std::string_view marker = "[AXM Extensions]";
constexpr std::string_view formulas_entry = "formulas";

void read_formulas(std::string_view value, Workspace& workspace, Prompts& prompts) {
    if (const std::optional<Formulas> formulas = formulas_of_name(value)) {
        workspace.formulas = *formulas;
    } else {
        prompts.message("The workspace asks for formulas that are not known here: " + std::string(value) +
                        ". The classic ones are used");
    }
}

}  // namespace

void write_extensions(const Workspace& workspace, AxmWriter& out) {
    if (workspace.formulas == Formulas::classic) return;
    out << marker;
    out.end_line();
    out << formulas_entry << " " << formulas_name(workspace.formulas);
    out.end_line();
}

void read_extensions(AxmLines& lines, Workspace& workspace, Prompts& prompts) {
    do {
        if (lines.at_end()) return;
    } while (lines.next() != marker);
    while (!lines.at_end()) {
        std::string_view rest = lines.next();
        if (rest.starts_with('[')) return;
        const std::string_view name = next_token(rest);
        if (equal_ignoring_case(name, formulas_entry)) read_formulas(trim_blanks(rest), workspace, prompts);
    }
}

}  // namespace anomalis::workspace_file

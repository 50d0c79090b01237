#include <filesystem>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/option_names.h"
#include "batch/program_sheet.h"
#include "core/failure.h"
#include "core/safe_file.h"
#include "manual/workbench_sheet.h"
#include "manual/writers.h"

namespace anomalis::batch {

namespace {

namespace fs = std::filesystem;

std::string man_page_of(const manual::Sheet& program, const std::string& name) {
    for (const manual::Page& page : manual::man_pages(program))
        if (fs::path(page.path).stem() == name) return page.text;
    return {};
}

std::string written(const ManualOptions& options) {
    const bool workbench = options.page == "anomalis";
    const manual::Sheet sheet = workbench ? manual::workbench_sheet() : program_sheet(all_commands(nullptr));
    if (options.format == "man") return man_page_of(sheet, options.page);
    if (options.format == "bash") return manual::bash_completion(sheet);
    if (options.format == "zsh") return manual::zsh_completion(sheet);
    return options.format == "fish" ? manual::fish_completion(sheet) : manual::markdown_page(sheet);
}

void write_all(const std::string& folder) {
    for (const manual::Sheet& sheet : {program_sheet(all_commands(nullptr)), manual::workbench_sheet()})
        for (const manual::Page& page : manual::shared_pages(sheet)) {
            const fs::path path = fs::path(folder) / page.path;
            std::error_code error;
            fs::create_directories(path.parent_path(), error);
            if (error) throw FileFault(error.value(), path.parent_path().string());
            write_file_safely(path.string(), page.text);
        }
}

}  // namespace

std::vector<std::string> manual_page_names() {
    std::vector<std::string> names{program_name, "anomalis"};
    for (const std::unique_ptr<Command>& command : all_commands(nullptr))
        names.push_back(std::string(program_name) + "-" + command->name());
    return names;
}

bool run_manual(const ManualOptions& options, BatchSession& batch) {
    if (options.into.empty()) return batch.write_result(options.output, written(options)) == 0;
    return report_failure(batch.prompts, "", [&] { write_all(options.into); }) == 0;
}

}  // namespace anomalis::batch

#include "flow/kept_files.h"

#include <span>

#include "core/prompts.h"
#include "core/workspace.h"

namespace anomalis::flow {

namespace {

bool refused(const FileUse& output, std::span<const FileUse> kept, Prompts& prompts) {
    const std::string refusal = overwrite_refusal(output, kept);
    if (!refusal.empty()) prompts.message(refusal);
    return !refusal.empty();
}

}  // namespace

std::vector<FileUse> kept_files(const Workspace& workspace) {
    return {{"the data file", workspace.definition.data_file}, {"the open workspace", workspace.model_file}};
}

bool refused_over_open_file(const std::string& what, const std::string& path, const Workspace& workspace,
                            Prompts& prompts) {
    return refused({what, path}, kept_files(workspace), prompts);
}

bool refused_over_data_file(const std::string& what, const std::string& path, const Workspace& workspace,
                            Prompts& prompts) {
    const std::vector<FileUse> kept = kept_files(workspace);
    return refused({what, path}, std::span(kept).first(1), prompts);
}

}  // namespace anomalis::flow

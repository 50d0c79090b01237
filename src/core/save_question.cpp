#include "core/save_question.h"

#include "core/paths.h"
#include "core/prompts.h"

namespace anomalis {

std::string with_extension(const std::string& path, std::string_view extension) {
    if (extension.empty() || file_name(path).find('.') != std::string::npos) return path;
    return path + "." + std::string(extension);
}

std::optional<std::string> ask_save_path(Prompts& prompts, const FileRequest& request) {
    auto chosen = prompts.save_file(request);
    if (!chosen) return {};
    std::string path = with_extension(*chosen, request.default_extension);
    if (!file_exists(path).empty() && !prompts.ask_yes_no("That file already, exists, overwrite?")) return {};
    return path;
}

}  // namespace anomalis

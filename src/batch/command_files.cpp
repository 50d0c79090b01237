#include "batch/command_files.h"

#include <array>

#include "workspace_file/data_file_place.h"

namespace anomalis::batch {

std::string files_refusal(const CommandFiles& files) {
    const std::array model{FileUse{"the workspace", files.model}};
    std::vector<FileUse> kept{{"the data file", workspace_file::data_file_of(files.model)}};
    for (const std::string& other : files.others) {
        kept.push_back({"a workspace", other});
        kept.push_back({"a data file", workspace_file::data_file_of(other)});
    }
    for (const std::string& data : files.data) kept.push_back({"the data file", data});
    for (const FileUse& output : files.writes) {
        const bool first = &output == &files.writes.front();
        const std::string of_model = first && files.in_place ? "" : overwrite_refusal(output, model);
        if (!of_model.empty()) return of_model + (first ? files.way_out : "");
        if (std::string refusal = overwrite_refusal(output, kept); !refusal.empty()) return refusal;
        kept.push_back(output);
    }
    return {};
}

}  // namespace anomalis::batch

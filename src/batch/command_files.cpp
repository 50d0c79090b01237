#include "batch/command_files.h"

#include <array>

#include "batch/commands.h"
#include "workspace_file/data_file_place.h"

namespace anomalis::batch {

CommandFiles info_files(const std::string& model) {
    return {.model = model, .writes = {}};
}

CommandFiles files_of(const DumpOptions& options) {
    return {.model = options.model, .writes = {{"--output", options.output}}};
}

CommandFiles files_of(const ForwardOptions& options) {
    return {.model = options.model, .writes = {{"--output", options.output}}};
}

CommandFiles files_of(const InvertCommandOptions& options) {
    return {.model = options.model,
            .writes = {{"--output", options.output}, {"--report", options.report}},
            .in_place = options.in_place,
            .way_out = "; --in-place allows it"};
}

CommandFiles files_of(const ExportOptions& options) {
    return {.model = options.model,
            .writes = {{"--profile-table", options.profile_table},
                       {"--model-table", options.model_table},
                       {"--mesh", options.mesh},
                       {"--clean-profile", options.clean_profile},
                       {"--clean-model", options.clean_model},
                       {"--dxf-3d", options.body_dxf},
                       {"--dxf-plan", options.plan_dxf}}};
}

CommandFiles files_of(const RenderOptions& options) {
    return {.model = options.model, .writes = {{"--output", options.picture.path}}};
}

std::string files_refusal(const CommandFiles& files) {
    const std::array model{FileUse{"the workspace", files.model}};
    std::vector<FileUse> kept{{"the data file", workspace_file::data_file_of(files.model)}};
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

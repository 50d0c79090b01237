#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/settings.h"
#include "core/workspace.h"
#include "fuzz_support.h"
#include "support/scripted_prompts.h"
#include "workspace_file/axm.h"

namespace {

using namespace anomalis;

void require_consistent(const Workspace& workspace) {
    require(workspace.body_count >= 0);
    require(workspace.body_count <= workspace.body_capacity);
    require(workspace.bodies.size() == static_cast<std::size_t>(workspace.body_capacity) + 1);
    require(workspace.station_count == 0);
}

}  // namespace

/// Any text either reads or fails with one message, in every mode; what was read can be saved, and a save
/// that is read back and saved again gives the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Settings settings;
    for (const int mode : {-1, 1, 0}) {
        ScriptedPrompts prompts;
        Workspace workspace;
        initialise_workspace(workspace, prompts);
        const int status =
            workspace_file::read_model_parameters_text(mode, workspace, text, "fuzz.axm", settings, prompts);
        require(status == 0 || prompts.told("An error occurred while reading the location file : "));
        require_consistent(workspace);
        if (mode != 0) continue;

        const std::string saved = workspace_file::model_parameters_text(0, workspace);
        Workspace again;
        initialise_workspace(again, prompts);
        require(workspace_file::read_model_parameters_text(0, again, saved, "fuzz.axm", settings, prompts) ==
                0);
        require(again.body_count == workspace.body_count);
        const std::string second = workspace_file::model_parameters_text(0, again);
        require(workspace_file::read_model_parameters_text(0, again, second, "fuzz.axm", settings, prompts) ==
                0);
        require(workspace_file::model_parameters_text(0, again) == second);
    }
    return 0;
}

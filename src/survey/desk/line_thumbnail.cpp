#include "survey/desk/line_thumbnail.h"

#include "core/recording_prompts.h"
#include "core/session.h"
#include "intake/load.h"
#include "workspace_file/axm.h"

namespace anomalis::survey {

std::optional<show::SectionThumbnail> line_thumbnail(const std::string& workspace, double aspect) {
    RecordingPrompts prompts;
    Session session(prompts, Settings());
    if (workspace_file::read_model_parameters(0, session.workspace, workspace, session.settings, prompts) !=
            0 ||
        intake::load_locations(session.workspace, prompts) != 0 || session.workspace.station_count == 0)
        return {};
    return show::section_thumbnail(session.workspace, aspect);
}

}  // namespace anomalis::survey

#include "batch/command.h"

namespace anomalis::batch {

Commands all_commands(PictureWriter* pictures) {
    Commands commands;
    commands.push_back(info_command());
    commands.push_back(dump_command());
    commands.push_back(forward_command());
    commands.push_back(invert_command());
    commands.push_back(find_command());
    commands.push_back(follow_command());
    commands.push_back(uncertainty_command());
    commands.push_back(field_command());
    commands.push_back(export_command());
    commands.push_back(joined_command());
    commands.push_back(lines_command());
    commands.push_back(import_command());
    commands.push_back(new_command());
    commands.push_back(render_command(pictures));
    commands.push_back(map_command(pictures));
    commands.push_back(survey_command(pictures));
    commands.push_back(manual_command());
    return commands;
}

}  // namespace anomalis::batch

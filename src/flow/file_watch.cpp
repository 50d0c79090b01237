#include "flow/file_watch.h"

#include <algorithm>

#include "core/paths.h"
#include "edit/workbench.h"
#include "flow/program_folder.h"

namespace anomalis::flow {

namespace {

std::string workspace_text(const std::string& name, FileFate fate) {
    return fate == FileFate::gone
               ? name + " is no longer where it was; a save writes it anew"
               : name + " was written by another program; a save will ask before it replaces that";
}

std::string data_text(const std::string& name, FileFate fate) {
    return fate == FileFate::gone ? name + " is no longer where it was; the loaded line stays"
                                  : name + " changed since it was loaded; load the data again to see that";
}

void add_sentence(std::string& text, const std::string& sentence) {
    text += (text.empty() ? "" : ". ") + sentence;
}

}  // namespace

std::string FileWatch::news(const edit::Workbench& workbench, const ProgramFolder* folder) {
    const Workspace& workspace = workbench.session.workspace;
    const std::string& model = workspace.model_file;
    std::string text;
    if (const auto fate = new_fate(workbench, model, workspace_))
        add_sentence(text, workspace_text(file_name(model), *fate));
    const std::string data = workspace.station_count > 0 ? workspace.definition.data_file : "";
    if (const auto fate = new_fate(workbench, data, data_))
        add_sentence(text, data_text(file_name(data), *fate));
    const int others = folder && !model.empty() ? folder->others_with(model) : 0;
    if (others > others_told_)
        add_sentence(text, file_name(model) + " is open in another window of Anomalis too");
    others_told_ = others;
    return text;
}

/// What became of a file that this program knows; no value when that was told.
std::optional<FileFate> FileWatch::new_fate(const edit::Workbench& workbench, const std::string& path,
                                            Told& told) {
    const FileStamp* const known = path.empty() ? nullptr : workbench.known_files.find(path);
    if (!known) return {};
    const FileFate fate = fate_of(*known, path);
    const bool new_to_person = told.path != path || fate_of(told.stamp, path) != FileFate::same;
    told = {path, stamp_file(path, known->digest ? StampDepth::contents : StampDepth::times)};
    if (fate == FileFate::same || !new_to_person) return {};
    return fate;
}

}  // namespace anomalis::flow

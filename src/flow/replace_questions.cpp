#include "flow/replace_questions.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include "core/failure.h"
#include "core/paths.h"
#include "core/private_folder.h"
#include "core/safe_file.h"
#include "core/told_write.h"
#include "edit/workbench.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

ReplaceAnswer ask(Prompts& prompts, const std::string& question, const std::string& go_on) {
    constexpr ReplaceAnswer answers[]{ReplaceAnswer::elsewhere, ReplaceAnswer::go_on, ReplaceAnswer::cancel};
    return answers[prompts.choose(question, {"Save as...", go_on, "Cancel"})];
}

/// Not below the folder for temporary files, which a power cut empties, if there is another.
std::string folder_for_old_contents() {
    const std::string state = user_state_folder();
    std::error_code error;
    if (state.empty()) return fs::temp_directory_path(error).string();
    try {
        const std::string folder = state + "anomalis/before-writing";
        make_private_folder(folder);
        return folder;
    } catch (const FileFault&) {
        return fs::temp_directory_path(error).string();
    }
}

/// The name may be as long as names can be: its end tells enough.
std::string place_of_old_contents(const std::string& path) {
    constexpr std::size_t longest = 200;
    const std::string name = file_name(path);
    return folder_for_old_contents() + "/" + std::to_string(::getpid()) + "-" +
           name.substr(name.size() - std::min(name.size(), longest));
}

void write_in_place(const std::string& path, std::string_view contents) {
    const std::string kept = place_of_old_contents(path);
    write_file_safely(kept, read_whole_file(path), FileRights::owner_only);
    try {
        write_file_in_place(path, contents);
    } catch (const FileFault& failure) {
        throw Fault(std::string(failure.what()) + "; what the file held before is in " + kept);
    }
    std::error_code error;
    fs::remove(kept, error);
}

}  // namespace

ReplaceAnswer ask_about_changes(edit::Workbench& workbench, const std::string& path, bool overwrite_agreed) {
    const FileStamp* const known = workbench.known_files.find(path);
    if (!known && overwrite_agreed) return ReplaceAnswer::go_on;
    if (fate_of(known ? *known : FileStamp{}, path) != FileFate::changed) return ReplaceAnswer::go_on;
    return ask(workbench.session.prompts,
               file_name(path) +
                   " is not what was last read or saved here: another program or another window has written "
                   "it since.\n\nOverwriting replaces what it holds now.",
               "Overwrite");
}

bool may_replace_side_file(edit::Workbench& workbench, const std::string& path) {
    const FileStamp* const known = workbench.known_files.find(path);
    if (!known || fate_of(*known, path) != FileFate::changed) return true;
    constexpr std::size_t overwrite = 0;
    return workbench.session.prompts.choose(
               file_name(path) +
                   " is not what was last saved here: another program has written it "
                   "since.\n\nOverwriting replaces what it holds now.",
               {"Overwrite", "Leave it"}) == overwrite;
}

ReplaceAnswer ask_to_write_in_place(Prompts& prompts, const std::string& path) {
    return ask(prompts,
               file_name(path) +
                   " may be written, but its folder lets no other file take its place. So it cannot be saved "
                   "safely: a power cut at the wrong moment would leave a part of it.\n\nWhat it holds now "
                   "would be kept until then in " +
                   place_of_old_contents(path) + ".",
               "Write in place");
}

void SaveWriter::operator()(const std::string& path, std::string_view contents) const {
    try {
        write_file_telling(prompts_, path, contents);
    } catch (const NoSafeReplacement&) {
        if (!in_place) throw;
        write_in_place(path, contents);
    }
}

}  // namespace anomalis::flow

#include "flow/kept_models.h"

#include <cstddef>
#include <exception>
#include <utility>

#include "core/failure.h"
#include "core/local_time.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "edit/workbench.h"
#include "flow/open_flow.h"
#include "flow/recovery.h"
#include "flow/recovery_text.h"

namespace anomalis::flow {

namespace {

constexpr std::time_t longest_kept = std::time_t{366} * 24 * 3600;  // s

/// What cannot be read is still listed: the reason is told when it is wanted.
KeptModel describe(const LeftFolder& left) {
    RecoveryOrigin origin;
    try {
        origin = recovery_origin(read_whole_file(left.model_file()));
    } catch (const std::exception&) {
        origin = {};
    }
    std::string name = origin.file.empty() ? origin.name : file_name(origin.file);
    if (name.empty()) name = "a model without a name";
    return {std::move(name), left.kept(), origin.bodies};
}

}  // namespace

std::string kept_model_words(const KeptModel& kept) {
    std::string words = kept.name + ", " + local_time_text(kept.time, "%Y-%m-%d %H:%M");
    if (kept.bodies)
        words +=
            ", " + format_number(std::int32_t{*kept.bodies}, "0") + (*kept.bodies == 1 ? " body" : " bodies");
    return words;
}

KeptModels::KeptModels(const std::string& root, std::time_t now) {
    if (root.empty()) return;
    for (LeftFolder& left : find_left_folders(root)) {
        const bool stays = list_.size() < most_kept_models && now - left.kept() <= longest_kept;
        if (!stays && left.remove()) continue;
        if (list_.size() >= most_kept_models) continue;
        list_.push_back(describe(left));
        folders_.push_back(std::move(left));
    }
}

void KeptModels::forget(std::size_t index) {
    const auto at = static_cast<std::ptrdiff_t>(index);
    list_.erase(list_.begin() + at);
    folders_.erase(folders_.begin() + at);
}

bool KeptModels::take(std::size_t index, edit::Workbench& workbench, RecoveryKeeper& keeper) {
    const LeftFolder& left = folders_.at(index);
    std::string text;
    if (report_failure(workbench.session.prompts, "An error occurred while reading a recovery file: ", [&] {
            text = read_whole_file(left.model_file());
        }) != 0)
        return false;
    const RecoveryOrigin origin = recovery_origin(text);
    if (bring_back_model(workbench, text, origin.file) != OpenOutcome::opened) return false;
    // The workspace file may have been written again since by somebody else: a save then asks.
    if (origin.stamp && !origin.file.empty()) workbench.known_files.note(origin.file, *origin.stamp);
    // Where it cannot be kept anew, what was left stays.
    if (keeper.keep(workbench) && left.remove()) forget(index);
    return true;
}

bool KeptModels::discard(std::size_t index, Prompts& prompts) {
    const LeftFolder& left = folders_.at(index);
    if (!left.remove()) {
        prompts.message("The folder holds other files too, so nothing was removed: " + left.model_file());
        return false;
    }
    forget(index);
    return true;
}

}  // namespace anomalis::flow

#include "flow/recovery.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "core/failure.h"
#include "core/local_time.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "edit/workbench.h"
#include "flow/open_flow.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view line_end = "\r\n";
constexpr std::string_view origin_marker = "[Recovered from]\r\n";

/// The workspace file that a kept model belongs to.
struct Origin {
    std::string file;                ///< "" for a model without a name
    std::optional<FileStamp> stamp;  ///< of what was last read from it, or written to it
};

/// The next start may stand in another folder.
std::string from_root(const std::string& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    return path.empty() || error ? path : whole.string();
}

/// The file tells by itself where it belongs, behind what a reader of the model looks at.
std::string recovery_text(const edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    Workspace copy = edit::copy_of_model(workspace);
    if (!file_exists(copy.definition.data_file).empty())
        copy.definition.data_file = from_root(copy.definition.data_file);
    const std::string& origin = workspace.model_file;
    const FileStamp* const stamp = origin.empty() ? nullptr : workbench.known_files.find(origin);
    return workspace_file::model_parameters_text(0, copy) + std::string(origin_marker) + from_root(origin) +
           "\r\n" + (stamp && stamp->digest ? stamp_text(*stamp) : "") + "\r\n";
}

/// Takes the next line off a text.
std::string_view take_line(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find(line_end));
    text.remove_prefix(std::min(line.size() + line_end.size(), text.size()));
    return line;
}

Origin origin_of(std::string_view text) {
    const auto at = text.rfind(origin_marker);
    if (at == std::string_view::npos) return {};
    text.remove_prefix(at + origin_marker.size());
    const std::string_view file = take_line(text);
    return {std::string(file), stamp_of_text(take_line(text))};
}

/// What a program that is gone has kept.
struct KeptModel {
    std::string text;  ///< of a workspace file, with its origin
    Origin origin;
    std::time_t time = 0;
};

std::optional<KeptModel> read_kept_model(Prompts& prompts, const LeftFolder& left) {
    std::string text;
    if (report_failure(prompts, "An error occurred while reading a recovery file: ", [&] {
            text = read_whole_file(left.model_file());
        }) != 0)
        return {};
    Origin origin = origin_of(text);
    return KeptModel{std::move(text), std::move(origin), left.kept()};
}

enum class Answer : std::size_t { bring_back, discard, not_now };

/// Closing the question decides nothing.
Answer ask_about(Prompts& prompts, const KeptModel& kept) {
    const std::string& file = kept.origin.file;
    const std::string question =
        "Anomalis was not closed properly. It kept the model " +
        (file.empty() ? std::string("without a name") : "of " + file_name(file)) + " on " +
        local_time_text(kept.time, "%Y-%m-%d %H:%M") +
        ".\n\nBring it back? \"Not now\" asks again at the next start, \"Discard\" removes it.";
    return static_cast<Answer>(prompts.choose(question, {"Bring back", "Discard", "Not now"}));
}

/// The workspace file may have been written again since by somebody else: a save then asks.
OpenOutcome bring_back(edit::Workbench& workbench, const KeptModel& kept) {
    const OpenOutcome outcome = bring_back_model(workbench, kept.text, kept.origin.file);
    if (outcome == OpenOutcome::opened && kept.origin.stamp && !kept.origin.file.empty())
        workbench.known_files.note(kept.origin.file, *kept.origin.stamp);
    return outcome;
}

void discard(Prompts& prompts, const LeftFolder& left) {
    if (!left.remove())
        prompts.message("The folder holds other files too, so nothing was removed: " + left.model_file());
}

}  // namespace

RecoveryKeeper::RecoveryKeeper(std::string root) : root_(std::move(root)) {
    if (root_.empty()) return;
    try {
        folder_ = std::make_unique<ProgramFolder>(root_);
    } catch (const std::exception& failure) {
        problem_ = failure.what();
        told_ = true;
    }
}

RecoveryKeeper::~RecoveryKeeper() = default;

bool RecoveryKeeper::keep(const edit::Workbench& workbench) {
    if (!folder_) return false;
    try {
        write_file_safely(file(), recovery_text(workbench), FileRights::owner_only);
        kept_ = edit::capture_state(workbench.session.workspace, kept_);
        file_stands_ = true;
        told_ = false;
        return true;
    } catch (const std::exception& failure) {
        if (!told_) problem_ = failure.what();
        told_ = true;
        return false;
    }
}

void RecoveryKeeper::tick(const edit::Workbench& workbench) {
    if (!workbench.unsaved) return drop_file();
    if (file_stands_ && edit::capture_state(workbench.session.workspace, kept_) == kept_) return;
    keep(workbench);
}

void RecoveryKeeper::drop_file() {
    if (!file_stands_) return;
    std::error_code error;
    fs::remove(file(), error);
    file_stands_ = false;
}

void RecoveryKeeper::finish() {
    if (!folder_) return;
    folder_->remove();
    folder_.reset();
}

bool offer_recovery(edit::Workbench& workbench, RecoveryKeeper& keeper) {
    if (keeper.root().empty()) return false;
    for (const LeftFolder& left : find_left_folders(keeper.root())) {
        const auto kept = read_kept_model(workbench.session.prompts, left);
        if (!kept) continue;
        switch (ask_about(workbench.session.prompts, *kept)) {
            case Answer::bring_back:
                if (bring_back(workbench, *kept) != OpenOutcome::opened) break;
                // Where it cannot be kept anew, what was left stays.
                if (keeper.keep(workbench)) left.remove();
                return true;
            case Answer::discard:
                discard(workbench.session.prompts, left);
                break;
            case Answer::not_now:
                break;
        }
    }
    return false;
}

}  // namespace anomalis::flow

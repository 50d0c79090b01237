#include "flow/recovery.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "edit/workbench.h"
#include "flow/open_flow.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view origin_marker = "[Recovered from]\r\n";
constexpr const char* kept_name = "model.axm";

/// The file tells by itself which workspace file it belongs to, behind what a reader of the model looks at.
std::string recovery_text(const Workspace& workspace) {
    Workspace copy = edit::copy_of_model(workspace);
    std::error_code error;
    // The next start may stand in another folder.
    if (const fs::path data = fs::absolute(copy.definition.data_file, error);
        !error && fs::exists(data, error))
        copy.definition.data_file = data.string();
    std::string origin = workspace.model_file;
    if (!origin.empty())
        if (const fs::path whole = fs::absolute(origin, error); !error) origin = whole.string();
    return workspace_file::model_parameters_text(0, copy) + std::string(origin_marker) + origin + "\r\n";
}

std::string origin_of(const std::string& text) {
    const auto at = text.rfind(origin_marker);
    if (at == std::string::npos) return {};
    const auto begin = at + origin_marker.size();
    return text.substr(begin, text.find("\r\n", begin) - begin);
}

/// What a program that is gone has left, claimed for us.
struct Remains {
    std::string folder;
    std::unique_ptr<FolderLock> lock;
    std::time_t kept = 0;

    std::string file() const { return folder + "/" + kept_name; }
    void remove() const {
        std::error_code error;
        fs::remove_all(folder, error);
    }
};

std::time_t time_of(const std::string& file) {
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    if (error) return 0;
    return std::chrono::system_clock::to_time_t(std::chrono::file_clock::to_sys(time));
}

/// A folder is claimed by the program that lives in it, so what can be claimed is left over.
std::vector<Remains> find_remains(const std::string& root) {
    std::vector<Remains> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root, error)) {
        if (!entry.is_directory(error)) continue;
        Remains remains{entry.path().string(), nullptr, 0};
        try {
            remains.lock = std::make_unique<FolderLock>(remains.folder, std::chrono::milliseconds(0));
        } catch (const FileFault&) {
            continue;
        }
        if (file_exists(remains.file()).empty()) {
            remains.remove();
            continue;
        }
        remains.kept = time_of(remains.file());
        found.push_back(std::move(remains));
    }
    std::sort(found.begin(), found.end(), [](const Remains& a, const Remains& b) { return a.kept > b.kept; });
    return found;
}

std::string question_about(const Remains& remains, const std::string& origin) {
    std::tm local{};
    std::array<char, 32> time{};
    if (::localtime_r(&remains.kept, &local))
        std::strftime(time.data(), time.size(), "%Y-%m-%d %H:%M", &local);
    return "Anomalis was not closed properly. Bring back the model " +
           (origin.empty() ? "without a name" : "of " + file_name(origin)) + " as it was kept on " +
           time.data() + "?\n\nNo removes it.";
}

}  // namespace

std::string recovery_root() {
    const std::string folder = user_state_folder();
    return folder.empty() ? "" : folder + "anomalis/recovery";
}

RecoveryKeeper::RecoveryKeeper(std::string root) : root_(std::move(root)) {
    if (root_.empty()) return;
    try {
        claim_folder();
    } catch (const std::exception& failure) {
        folder_.clear();
        problem_ = failure.what();
        told_ = true;
    }
}

RecoveryKeeper::~RecoveryKeeper() = default;

/// Another program that looks for remains may take the folder for one before it is claimed, so it is looked
/// at again afterwards.
void RecoveryKeeper::claim_folder() {
    fs::create_directories(root_);
    for (int number = 1;; ++number) {
        const std::string folder = root_ + "/" + std::to_string(::getpid()) + "-" + std::to_string(number);
        if (!fs::create_directory(folder)) continue;
        try {
            lock_ = std::make_unique<FolderLock>(folder, std::chrono::milliseconds(0));
        } catch (const FileFault&) {
            continue;
        }
        if (!folder_exists(folder)) continue;
        folder_ = folder;
        return;
    }
}

void RecoveryKeeper::keep(const edit::Workbench& workbench) {
    if (folder_.empty()) return;
    try {
        write_file_safely(file(), recovery_text(workbench.session.workspace));
        kept_ = edit::capture_state(workbench.session.workspace, kept_);
        file_stands_ = true;
        told_ = false;
    } catch (const std::exception& failure) {
        if (!told_) problem_ = failure.what();
        told_ = true;
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
    if (folder_.empty()) return;
    std::error_code error;
    fs::remove_all(folder_, error);
    folder_.clear();
    lock_.reset();
}

bool offer_recovery(edit::Workbench& workbench, RecoveryKeeper& keeper) {
    if (keeper.root().empty()) return false;
    Prompts& prompts = workbench.session.prompts;
    for (Remains& remains : find_remains(keeper.root())) {
        std::string text;
        if (report_failure(prompts, "An error occurred while reading a recovery file: ", [&] {
                text = read_whole_file(remains.file());
            }) != 0)
            continue;
        const std::string origin = origin_of(text);
        if (!prompts.ask_yes_no(question_about(remains, origin))) {
            remains.remove();
            continue;
        }
        if (bring_back_model(workbench, text, origin) != OpenOutcome::opened) continue;
        keeper.keep(workbench);
        remains.remove();
        return true;
    }
    return false;
}

}  // namespace anomalis::flow

#include "flow/recovery.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "core/safe_file.h"
#include "edit/workbench.h"
#include "flow/recovery_text.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

/// Settings alone, without a line and a body, are no work of anybody.
bool worth_keeping(const edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    return workbench.unsaved && (workspace.body_count > 0 || !workspace.definition.data_file.empty());
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
    if (!worth_keeping(workbench)) return drop_file();
    if (file_stands_ && edit::capture_state(workbench.session.workspace, kept_) == kept_) return;
    keep(workbench);
}

void RecoveryKeeper::drop_file() {
    if (!file_stands_) return;
    std::error_code error;
    fs::remove(file(), error);
    file_stands_ = false;
}

bool RecoveryKeeper::leave(const edit::Workbench& workbench) {
    told_ = false;
    if (worth_keeping(workbench) && !keep(workbench)) {
        if (!folder_) problem_ = "there is no folder for it";
        return false;
    }
    finish(workbench);
    return true;
}

void RecoveryKeeper::finish(const edit::Workbench& workbench) {
    if (!folder_) return;
    if (!worth_keeping(workbench) || !file_stands_) folder_->remove();
    folder_.reset();
}

}  // namespace anomalis::flow

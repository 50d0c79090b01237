#pragma once

#include <memory>
#include <string>
#include <utility>

#include "edit/model_state.h"
#include "flow/program_folder.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// Neither a crash nor leaving loses anything: an unsaved model is kept in a file of its own
// (flow/kept_models.h).
namespace anomalis::flow {

/// Keeps the model of one running program in the folder of that program below a root that all of them share.
class RecoveryKeeper {
  public:
    /// Makes the folders that are missing. Where that fails nothing is kept, and `problem` tells why.
    explicit RecoveryKeeper(std::string root);
    /// Leaves the file where it is, as a crash would; `leave` is the proper end.
    ~RecoveryKeeper();
    RecoveryKeeper(const RecoveryKeeper&) = delete;
    RecoveryKeeper& operator=(const RecoveryKeeper&) = delete;

    /// Writes the model as it stands now. Neither workspace nor session change. False when it could not.
    bool keep(const edit::Workbench& workbench);
    /// Once a minute: writes an unsaved model that changed since the last time, removes what a save made
    /// needless.
    void tick(const edit::Workbench& workbench);
    /// The program is left: an unsaved model with a line or bodies stays for the next start, otherwise
    /// nothing does. False when it could not be kept (`take_problem`); the program can then still go on, or
    /// be left by `finish`.
    bool leave(const edit::Workbench& workbench);
    /// Nothing more is kept; what was kept last stays where it is unless all is saved.
    void finish(const edit::Workbench& workbench);

    const std::string& root() const { return root_; }
    std::string file() const { return folder_ ? folder_->model_file() : ""; }
    /// Null when nothing can be kept.
    const ProgramFolder* folder() const { return folder_.get(); }
    /// Why the last write failed; "" after a success. Each failure is told once.
    std::string take_problem() { return std::exchange(problem_, {}); }

  private:
    void drop_file();

    std::string root_;
    std::unique_ptr<ProgramFolder> folder_;
    edit::ModelState kept_;  ///< what the file holds
    bool file_stands_ = false;
    bool told_ = false;
    std::string problem_;
};

}  // namespace anomalis::flow

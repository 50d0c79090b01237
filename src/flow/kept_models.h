#pragma once

#include <cstddef>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "flow/program_folder.h"

namespace anomalis {
class Prompts;
}  // namespace anomalis
namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// What programs that are gone have kept of unsaved models, after a crash or when they were left.
namespace anomalis::flow {

class RecoveryKeeper;

/// At most so many are kept, none longer than a year.
inline constexpr int most_kept_models = 10;

struct KeptModel {
    std::string name;           ///< "line.axm", "line 5690 of survey.xyz", "a model without a name"
    std::time_t time = 0;       ///< when it was kept
    std::optional<int> bodies;  ///< as far as the file says
};
/// "line.axm, 2026-11-22 15:04, 3 bodies"; the time is the place's own.
std::string kept_model_words(const KeptModel& kept);

/// The kept models of a folder that all running programs share, the newest first. They are claimed as long as
/// the list lives, so no other program offers them meanwhile; each stays until it is taken or discarded.
class KeptModels {
  public:
    KeptModels() = default;
    /// Removes those that are too many or too old at the time `now`.
    KeptModels(const std::string& root, std::time_t now);

    const std::vector<KeptModel>& list() const { return list_; }

    /// The model becomes the session's, unsaved, under the name of its own file, as one step that undo takes
    /// back. What was kept of it goes once `keeper` has it. False, with a message, where it cannot be read.
    bool take(std::size_t index, edit::Workbench& workbench, RecoveryKeeper& keeper);
    /// Removes one for good. False, with a message, where strange files stand beside it.
    bool discard(std::size_t index, Prompts& prompts);

  private:
    void forget(std::size_t index);

    std::vector<LeftFolder> folders_;
    std::vector<KeptModel> list_;  ///< one a folder
};

}  // namespace anomalis::flow

#pragma once

#include <string>
#include <string_view>

namespace anomalis {
class Prompts;
}  // namespace anomalis
namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// What is asked before a workspace file is replaced that holds somebody else's work, or that cannot be
// replaced safely.
namespace anomalis::flow {

enum class ReplaceAnswer { go_on, elsewhere, cancel };

/// Asks when the file is not what this program last read from it or wrote to it; otherwise, and for a file
/// that is gone, it goes on. A file that was never read here is asked about too, unless `overwrite_agreed`.
ReplaceAnswer ask_about_changes(edit::Workbench& workbench, const std::string& path, bool overwrite_agreed);

/// The same for a file that a save writes beside the workspace file. False when it is to stay as it is.
bool may_replace_side_file(edit::Workbench& workbench, const std::string& path);

/// Asks whether a file that cannot be replaced may be written in place.
ReplaceAnswer ask_to_write_in_place(Prompts& prompts, const std::string& path);

/// Writes safely, as others do; once `in_place` is set, in place where that is not possible: what the file
/// holds is kept in the user's own folder until the new contents are on the disk.
class SaveWriter {
  public:
    explicit SaveWriter(Prompts& prompts) : prompts_(prompts) {}
    /// Raises FileFault; NoSafeReplacement while `in_place` is not set.
    void operator()(const std::string& path, std::string_view contents) const;

    bool in_place = false;

  private:
    Prompts& prompts_;
};

}  // namespace anomalis::flow

#pragma once

#include <optional>
#include <string>

#include "core/file_stamp.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// What others do to the files that are open here.
namespace anomalis::flow {

class ProgramFolder;

/// Looks whether the workspace file or the loaded data file changed on the disk, and whether another running
/// program has the workspace file open. Each finding is told once.
class FileWatch {
  public:
    /// To be told after an open and after a save: that another program has the file open is then told again.
    void begin() { others_told_ = 0; }

    /// Sentences for the status bar; "" when there is nothing new. `folder` is null while no other program
    /// can be seen.
    std::string news(const edit::Workbench& workbench, const ProgramFolder* folder);

  private:
    /// One file, and what was told of it.
    struct Told {
        std::string path;
        FileStamp stamp;
    };
    std::optional<FileFate> new_fate(const edit::Workbench& workbench, const std::string& path, Told& told);

    Told workspace_, data_;
    int others_told_ = 0;
};

}  // namespace anomalis::flow

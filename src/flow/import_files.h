#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "flow/import_survey.h"

// Files that come into a folder all together or not at all. Private to this room.
namespace anomalis::flow {

/// They are written into a hidden folder beside their places first. At the end of the scope what was not
/// delivered is gone.
class StagedFiles {
  public:
    /// Raises FileFault where the folder is missing or cannot be written to.
    explicit StagedFiles(const std::string& folder);
    ~StagedFiles();
    StagedFiles(const StagedFiles&) = delete;
    StagedFiles& operator=(const StagedFiles&) = delete;

    /// A file that holds just this already stays as it is. Raises FileFault.
    void add(const std::string& path, std::string_view contents);
    /// Files with other contents that stand where staged ones are to go.
    std::vector<std::string> in_the_way() const;
    /// Puts all in place. Raises FileFault; what was there before is then there again.
    void deliver();

  private:
    struct File {
        std::string staged, target, old;
        bool replaces = false;
    };
    void take_back(std::size_t delivered);

    std::string folder_;
    std::vector<File> files_;
};

/// Whether staged files may replace what is there; why not was told.
bool may_replace(const StagedFiles& files, ReplaceExisting replace, Prompts& prompts);

}  // namespace anomalis::flow

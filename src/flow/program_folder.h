#pragma once

#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace anomalis {
class FolderLock;
}  // namespace anomalis

// Where the running programs of a user keep what a crash must not take, and where they see each other.
// Folders are for the user alone (0700), files too (0600), whatever the mask says.
namespace anomalis::flow {

/// The folder of all of them; "" when the user has no home.
std::string recovery_root();

/// The folder of one running program below a root that all share. It is named after the process, bears a
/// mark, and is claimed as long as the program lives: what nobody claims is what a crash left.
class ProgramFolder {
  public:
    /// Makes the folders that are missing. Raises what the system says.
    explicit ProgramFolder(const std::string& root);
    /// Leaves the folder where it is, as a crash would.
    ~ProgramFolder();
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    /// The clean end: nothing of ours is left behind.
    void remove();

    /// The unsaved model.
    std::string model_file() const;

    /// Tells the other programs which workspace file is open here; "" for none. Where that fails they see
    /// nothing.
    void show_open_file(const std::string& path) const;
    /// How many other running programs have that file open, by whatever links.
    int others_with(const std::string& path) const;

  private:
    bool claim(const std::string& folder);

    std::string root_, folder_;
    std::unique_ptr<FolderLock> lock_;
};

/// What a program that is gone has left, claimed for us.
class LeftFolder {
  public:
    LeftFolder(std::string folder, std::unique_ptr<FolderLock> lock);
    ~LeftFolder();
    LeftFolder(LeftFolder&&) noexcept;
    LeftFolder& operator=(LeftFolder&&) noexcept;

    /// The unsaved model; the file is missing when there was none.
    std::string model_file() const;
    /// When that was kept.
    std::time_t kept() const;

    /// Removes the files of ours, by their names, and the folder when nothing else is in it. A folder without
    /// our mark, as earlier versions made them, is left alone when it holds anything else; false then.
    bool remove() const;

  private:
    std::string folder_;
    std::unique_ptr<FolderLock> lock_;
};

/// All of them that hold a model, the newest first. Folders of ours that hold none are removed.
std::vector<LeftFolder> find_left_folders(const std::string& root);

}  // namespace anomalis::flow

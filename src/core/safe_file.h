#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace anomalis {

/// Who may read and write a file that is made or replaced.
enum class FileRights {
    usual,      ///< as the old file says; a new one as the person's mask says
    owner_only  ///< nobody but its owner, whatever the old file and the mask say
};

/// A file that is written beside `path` under a temporary name; `commit` flushes it to the disk and renames
/// it over `path`: a full disk, a kill or a power cut leaves the old file or the new one, never half of one.
/// Without a commit the old file stays. A link is followed and stays, the permissions of the old file stay,
/// and a pipe or a character device is written to directly. Temporary files whose writer was killed are
/// removed from the folder. Where the file system knows no permissions or cannot flush, as on some network
/// folders, that is done without.
/// Every member raises FileFault; the old file is then intact and the temporary one removed at the end of the
/// scope, but for a folder that fails to reach the disk after the new file took its place. NoSafeReplacement
/// tells that the file itself could be written, but nothing beside it.
class SafeFile {
  public:
    explicit SafeFile(const std::string& path, FileRights rights = FileRights::usual);
    ~SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    void write(std::string_view contents);
    /// Once, after the last write. Returns how many other names (hard links) the replaced file has: they keep
    /// what it held.
    int commit();

  private:
    class Target;
    std::unique_ptr<Target> target_;
};

/// The same in one step.
int write_file_safely(const std::string& path, std::string_view contents,
                      FileRights rights = FileRights::usual);

/// What a person should know of a file that was replaced while it had so many other names; "" for 0.
std::string hard_link_remark(const std::string& path, int other_names);

/// Writes over the old contents where they stand, for a file that cannot be replaced: a failure puts the old
/// contents back, but a kill or a power cut may leave neither. Raises FileFault.
void write_file_in_place(const std::string& path, std::string_view contents);

/// Appends `text` in one piece, making the file when it is missing. Raises FileFault.
void append_to_file(const std::string& path, std::string_view text);

/// The whole file. Raises FileFault (missing, unreadable, a folder, a device).
std::string read_whole_file(const std::string& path);
/// Its first `most` bytes, or all there are.
std::string read_file_start(const std::string& path, std::size_t most);

/// An exclusive claim on a folder, respected by every process of this program and dropped at the end of the
/// scope, or of the process however it ends: for reading a file, changing it and writing it back as one step.
/// Waits for another holder so long. Raises FileFault.
class FolderLock {
  public:
    explicit FolderLock(const std::string& folder,
                        std::chrono::milliseconds patience = std::chrono::seconds(2));
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// False where the file system has no locks: nobody else is kept out then.
    bool excludes_others() const { return excludes_; }

  private:
    int descriptor_ = -1;
    bool excludes_ = true;
};

}  // namespace anomalis

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace anomalis {

/// A file that is written beside `path` under a temporary name; `commit` flushes it to the disk and renames
/// it over `path`: a full disk, a kill or a power cut leaves the old file or the new one, never half of one.
/// Without a commit the old file stays. A link is followed and stays, the permissions of the old file stay,
/// and a pipe or a character device is written to directly. Every member raises FileFault; the old file is
/// then intact and the temporary one removed at the end of the scope.
class SafeFile {
  public:
    explicit SafeFile(const std::string& path);
    ~SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    void write(std::string_view contents);
    /// Once, after the last write.
    void commit();

  private:
    class Target;
    std::unique_ptr<Target> target_;
};

/// The same in one step.
void write_file_safely(const std::string& path, std::string_view contents);

/// Appends `text` in one piece, making the file when it is missing. Raises FileFault.
void append_to_file(const std::string& path, std::string_view text);

/// The whole file. Raises FileFault (missing, unreadable, a folder, a device).
std::string read_whole_file(const std::string& path);

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

  private:
    int descriptor_ = -1;
};

}  // namespace anomalis

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

// Whether a file is still what it was when this program last read or wrote it.
namespace anomalis {

/// A stamp by contents holds through a touch, a copy back and a coarse clock, but reads the file; one by
/// times costs a look at the folder. A file above 64 MB is stamped by its times in either case.
enum class StampDepth { times, contents };

/// A file as it was at one moment, links followed.
struct FileStamp {
    bool exists = false;
    std::uint64_t device = 0, inode = 0;
    std::int64_t size = 0;                ///< bytes
    std::int64_t modified = 0;            ///< nanoseconds since 1970
    std::optional<std::uint64_t> digest;  ///< of the contents
};

/// To be taken before a file is read: what another program writes meanwhile is then seen later. What is no
/// plain file, or cannot be looked at, counts as not there.
FileStamp stamp_file(const std::string& path, StampDepth depth = StampDepth::contents);
/// The stamp of a file that this program has just written, by what it wrote.
FileStamp stamp_written(const std::string& path, std::string_view contents);

/// A stamp by contents as one line, to be kept beside a copy of what the file held; read back, it has no
/// times. A text that is none gives no value.
std::string stamp_text(const FileStamp& stamp);
std::optional<FileStamp> stamp_of_text(std::string_view text);

enum class FileFate {
    same,
    changed,  ///< other contents, or there is one now where none was
    gone
};

/// What became of the file at `path` since the stamp was taken.
FileFate fate_of(const FileStamp& stamp, const std::string& path);

/// What this program knows of the files that it read and wrote. A file is known by its place, whatever links
/// lead there.
class KnownFiles {
  public:
    void note(const std::string& path, const FileStamp& stamp);
    /// Null for a file that was never noted.
    const FileStamp* find(const std::string& path) const;

  private:
    std::map<std::string, FileStamp> stamps_;
};

}  // namespace anomalis

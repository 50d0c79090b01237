#include "core/file_stamp.h"

#include <array>
#include <sys/stat.h>

#include "core/digest.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "core/text.h"

namespace anomalis {

namespace {

constexpr std::int64_t most_bytes_read = 64 << 20;
constexpr std::int64_t nanoseconds = 1'000'000'000;

// A digest goes into text as two numbers that a double holds whole.
constexpr unsigned half = 32;
constexpr std::uint64_t lower_half = 0xFFFFFFFF;
constexpr double most_in_text = 9e15;

std::optional<std::uint64_t> digest_of_file(const std::string& path) {
    try {
        return digest_of(read_whole_file(path));
    } catch (const FileFault&) {
        return {};
    }
}

bool same_times(const FileStamp& a, const FileStamp& b) {
    return a.device == b.device && a.inode == b.inode && a.modified == b.modified;
}

}  // namespace

FileStamp stamp_file(const std::string& path, StampDepth depth) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    FileStamp stamp{true,
                    status.st_dev,
                    status.st_ino,
                    status.st_size,
                    status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec,
                    {}};
    if (depth == StampDepth::contents && stamp.size <= most_bytes_read) stamp.digest = digest_of_file(path);
    return stamp;
}

FileStamp stamp_written(const std::string& path, std::string_view contents) {
    FileStamp stamp = stamp_file(path, StampDepth::times);
    stamp.size = static_cast<std::int64_t>(contents.size());
    if (stamp.exists && stamp.size <= most_bytes_read) stamp.digest = digest_of(contents);
    return stamp;
}

std::string stamp_text(const FileStamp& stamp) {
    const std::uint64_t digest = stamp.digest.value_or(0);
    return std::to_string(stamp.size) + " " + std::to_string(digest >> half) + " " +
           std::to_string(digest & lower_half);
}

std::optional<FileStamp> stamp_of_text(std::string_view text) {
    std::array<double, 3> numbers{};
    for (double& number : numbers)
        if (!parse_number(next_token(text), number) || number < 0 || number > most_in_text) return {};
    FileStamp stamp;
    stamp.exists = true;
    stamp.size = static_cast<std::int64_t>(numbers[0]);
    stamp.digest = (static_cast<std::uint64_t>(numbers[1]) << half) |
                   (static_cast<std::uint64_t>(numbers[2]) & lower_half);
    return stamp;
}

FileFate fate_of(const FileStamp& stamp, const std::string& path) {
    const FileStamp now = stamp_file(path, stamp.digest ? StampDepth::contents : StampDepth::times);
    if (!now.exists) return stamp.exists ? FileFate::gone : FileFate::same;
    const bool same = stamp.exists && stamp.size == now.size &&
                      (stamp.digest && now.digest ? stamp.digest == now.digest : same_times(stamp, now));
    return same ? FileFate::same : FileFate::changed;
}

void KnownFiles::note(const std::string& path, const FileStamp& stamp) {
    stamps_[whole_path(path)] = stamp;
}

const FileStamp* KnownFiles::find(const std::string& path) const {
    const auto found = stamps_.find(whole_path(path));
    return found == stamps_.end() ? nullptr : &found->second;
}

}  // namespace anomalis

#pragma once

#include <string>
#include <string_view>

namespace anomalis {

/// Writes `contents` beside `path` under a temporary name, flushes it to the disk and renames it over `path`:
/// a full disk, a kill or a power cut leaves the old file or the new one, never half of one.
/// Raises FileFault; the old file is then intact and the temporary one removed.
void write_file_safely(const std::string& path, std::string_view contents);

/// The whole file. Raises FileFault (missing, unreadable, a folder, a device).
std::string read_whole_file(const std::string& path);

}  // namespace anomalis

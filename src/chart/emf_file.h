#pragma once

#include <string>

namespace anomalis::chart {

/// True for a metafile that is whole: mark, length and count of records as its header tells, an end record.
bool emf_is_whole(const std::string& bytes);
/// Writes a metafile safely and reads it back to check it. Throws; an old file then stays as it was.
void write_emf(const std::string& bytes, const std::string& path);

}  // namespace anomalis::chart

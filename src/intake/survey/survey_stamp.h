#pragma once

#include <string>

#include "core/file_stamp.h"

namespace anomalis::intake {

/// Raises Fault when the file is not what it was when the stamp was taken: rows that were counted before may
/// stand elsewhere, and the last one may be half of itself.
void refuse_changed_survey(const std::string& path, const FileStamp& stamp);

}  // namespace anomalis::intake

#pragma once

#include <string>

namespace anomalis::chart {

/// True for a metafile that is whole: mark, length and count of records as its header tells, an end record.
bool emf_is_whole(const std::string& bytes);

}  // namespace anomalis::chart

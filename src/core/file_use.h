#pragma once

#include <span>
#include <string>

namespace anomalis {

/// A file and what it is to the work at hand: "the data file", "--output".
struct FileUse {
    std::string what;
    std::string path;
};

/// Why `output` must not be written: it is one of the files `kept`, by whatever name. "" when it is none.
std::string overwrite_refusal(const FileUse& output, std::span<const FileUse> kept);

}  // namespace anomalis

#pragma once

#include <string>
#include <vector>

#include "core/file_use.h"

// Which files a command reads and writes: each states it, and it is looked at before it does anything.
namespace anomalis::batch {

struct CommandFiles {
    std::string model;                     ///< read, and with it the data file that it names
    std::vector<FileUse> writes;           ///< an empty path is none
    bool in_place = false;                 ///< the first of them may be the model itself
    std::string way_out = {};              ///< said to whoever names the model there without that
    std::vector<std::string> others = {};  ///< further workspaces that are read, with their data files
    std::vector<std::string> data = {};    ///< files that are read and are no workspaces
};

/// Why a command must not start: an output is an input or another output. "" when it may.
std::string files_refusal(const CommandFiles& files);

}  // namespace anomalis::batch

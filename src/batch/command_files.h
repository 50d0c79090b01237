#pragma once

#include <string>
#include <vector>

#include "core/file_use.h"

// Which files a command reads and writes: stated here for each, and looked at before it does anything.
namespace anomalis::batch {

struct DumpOptions;
struct ForwardOptions;
struct InvertCommandOptions;
struct ExportOptions;
struct RenderOptions;

struct CommandFiles {
    std::string model;            ///< read, and with it the data file that it names
    std::vector<FileUse> writes;  ///< an empty path is none
    bool in_place = false;        ///< the first of them may be the model itself
    std::string way_out = {};     ///< said to whoever names the model there without that
};

CommandFiles info_files(const std::string& model);
CommandFiles files_of(const DumpOptions& options);
CommandFiles files_of(const ForwardOptions& options);
CommandFiles files_of(const InvertCommandOptions& options);
CommandFiles files_of(const ExportOptions& options);
CommandFiles files_of(const RenderOptions& options);

/// Why a command must not start: an output is an input or another output. "" when it may.
std::string files_refusal(const CommandFiles& files);

}  // namespace anomalis::batch

#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "batch/command.h"
#include "batch/option_values.h"

namespace anomalis::batch {

/// Options of a command that a "-" can stand for.
struct StreamChoice {
    struct Output {
        std::string* path = nullptr;
        std::string ending;
    };
    std::vector<std::string*> inputs;
    std::vector<Output> outputs;
};

/// What a command line asks for.
struct CommandLine {
    const Command* command = nullptr;  ///< one of those offered; null when there is nothing to do
    bool wrong = false;                ///< it was refused, and why was written; else help was asked for
    CommonOptions common;
    StreamChoice streams;  ///< those that are "-"
};

/// Reads a command line into the options of the command that it names. Help and version go to `out`, a
/// refusal to `err`.
CommandLine read_command_line(int argc, char** argv, const Commands& commands, std::ostream& out,
                              std::ostream& err);

}  // namespace anomalis::batch

#pragma once

#include <iosfwd>

namespace anomalis::batch {

class PictureWriter;

/// The batch tool: `anomalis-batch COMMAND MODEL.axm [options]`. Results go to `out` or to the files named,
/// messages to `err`. "-" in place of a file that goes in or out is `in` or `out`. `pictures` may be null:
/// `render` then fails with a message; without `in` it is the standard input. Returns the exit status: 0
/// done, and nothing was noted as a failure; 1 the command failed, or something did on the way, which
/// `--keep-going` forgives; 2 wrong usage, which includes an output that is an input; 75 a survey
/// that was stopped, or that the machine had no room or no files for: the same command goes on with it.
int run_batch(int argc, char** argv, std::ostream& out, std::ostream& err, PictureWriter* pictures,
              std::istream* in = nullptr);

}  // namespace anomalis::batch

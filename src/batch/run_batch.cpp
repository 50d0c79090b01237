#include "batch/run_batch.h"

#include <iostream>
#include <unistd.h>

#include "batch/batch_session.h"
#include "batch/command_line.h"
#include "batch/exit_status.h"
#include "batch/standard_streams.h"
#include "core/failure.h"
#include "core/shown_text.h"

namespace anomalis::batch {

namespace {

/// Why what the "-" stand for cannot be had together; "" when it can.
std::string streams_refusal(const StreamChoice& streams, bool to_terminal) {
    if (streams.inputs.size() > 1) return "Only one file can be the standard input (-)";
    if (streams.outputs.size() > 1) return "Only one output can be the standard output (-)";
    if (!streams.outputs.empty() && !streams.outputs.front().ending.empty() && to_terminal)
        return "A picture is nothing for a terminal: name a file, or send the standard output (-) to one";
    return {};
}

/// The commands see files alone.
void put_files_for_streams(const StreamChoice& choice, std::istream& in, StandardStreams& streams) {
    for (std::string* path : choice.inputs) *path = streams.take_input(in);
    for (const StreamChoice::Output& output : choice.outputs)
        *output.path = streams.output_file(output.ending);
}

/// Files that a stream stands for are read and written like others.
bool run_command(const CommandLine& line, BatchSession& batch, StandardStreams& streams) {
    batch.standard_input = streams.input();
    batch.standard_output = streams.output();
    const bool done = line.command->run(batch);
    return report_failure(batch.prompts, "", [&] { streams.give_output(batch.out); }) == 0 && done;
}

}  // namespace

int run_batch(int argc, char** argv, std::ostream& out, std::ostream& err, PictureWriter* pictures,
              std::istream* in) {
    const Commands commands = all_commands(pictures);
    const CommandLine line = read_command_line(argc, argv, commands, out, err);
    if (!line.command) return line.wrong ? exit_usage : exit_done;
    const bool to_terminal = &out == &std::cout && ::isatty(STDOUT_FILENO) != 0;
    const auto refused = [&err](const std::string& refusal) {
        if (!refusal.empty()) err << shown_lines(refusal) << '\n';
        return !refusal.empty();
    };
    if (refused(streams_refusal(line.streams, to_terminal))) return exit_usage;
    BatchSession batch(out, err);
    StandardStreams streams;
    if (report_failure(batch.prompts, "",
                       [&] { put_files_for_streams(line.streams, in ? *in : std::cin, streams); }) != 0)
        return exit_failed;
    if (refused(files_refusal(line.command->files()))) return exit_usage;
    batch.formulas = line.common.formulas;
    batch.keep_going = line.common.keep_going;
    batch.to_terminal = to_terminal;
    batch.show_progress = &err == &std::cerr && ::isatty(STDERR_FILENO) != 0;
    const bool done = run_command(line, batch, streams);
    if (batch.wrong_usage) return exit_usage;
    if (batch.try_again) return exit_try_again;
    return done && (batch.failures().empty() || line.common.keep_going) ? exit_done : exit_failed;
}

}  // namespace anomalis::batch

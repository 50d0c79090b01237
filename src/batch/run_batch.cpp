#include "batch/run_batch.h"

#include <iostream>
#include <unistd.h>

#include "batch/batch_session.h"
#include "batch/command_line.h"
#include "core/shown_text.h"

namespace anomalis::batch {

namespace {

enum ExitStatus : int { exit_done = 0, exit_failed = 1, exit_usage = 2 };

Commands all_commands(PictureWriter* pictures) {
    Commands commands;
    commands.push_back(info_command());
    commands.push_back(dump_command());
    commands.push_back(forward_command());
    commands.push_back(invert_command());
    commands.push_back(find_command());
    commands.push_back(follow_command());
    commands.push_back(uncertainty_command());
    commands.push_back(export_command());
    commands.push_back(lines_command());
    commands.push_back(import_command());
    commands.push_back(new_command());
    commands.push_back(render_command(pictures));
    return commands;
}

}  // namespace

int run_batch(int argc, char** argv, std::ostream& out, std::ostream& err, PictureWriter* pictures) {
    const Commands commands = all_commands(pictures);
    const CommandLine line = read_command_line(argc, argv, commands, out, err);
    if (!line.command) return line.wrong ? exit_usage : exit_done;
    if (const std::string refusal = files_refusal(line.command->files()); !refusal.empty()) {
        err << shown_lines(refusal) << '\n';
        return exit_usage;
    }
    BatchSession batch(out, err);
    batch.formulas = line.formulas;
    batch.keep_going = line.keep_going;
    batch.to_terminal = &out == &std::cout && ::isatty(STDOUT_FILENO) != 0;
    batch.show_progress = &err == &std::cerr && ::isatty(STDERR_FILENO) != 0;
    const bool done = line.command->run(batch);
    if (batch.wrong_usage) return exit_usage;
    return done && (batch.failures().empty() || line.keep_going) ? exit_done : exit_failed;
}

}  // namespace anomalis::batch

#include "batch/run_batch.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <sstream>
#include <unistd.h>

#include "batch/batch_session.h"
#include "batch/command_files.h"
#include "batch/commands.h"
#include "core/numbers.h"
#include "core/regional.h"
#include "core/same_file.h"
#include "core/shown_text.h"
#include "core/version.h"
#include "show/page_view.h"

namespace anomalis::batch {

namespace {

constexpr int most_iterations = 2147483647, most_starts = 10000;

enum ExitStatus : int { exit_done = 0, exit_failed = 1, exit_usage = 2 };

/// All that a command line can say.
struct CommandLine {
    std::optional<Formulas> formulas;
    bool keep_going = false;
    bool force = false;
    std::string info_model;
    DumpOptions dump;
    ForwardOptions forward;
    InvertCommandOptions invert;
    ExportOptions exported;
    RenderOptions render;
};

/// What all commands have in common.
class CommandAdder {
  public:
    CommandAdder(CLI::App& app, CommandLine& line) : app_(app), line_(line) {}

    CLI::App* operator()(const std::string& name, const std::string& purpose, std::string& model) {
        CLI::App* command = app_.add_subcommand(name, purpose);
        command->add_option("MODEL", model, "Workspace file (.axm)")->required();
        command
            ->add_option_function<std::string>(
                "--formulas",
                [&line = line_](const std::string& choice) { line.formulas = formulas_of_name(choice); },
                "classic or exact, in place of what the workspace file says")
            ->check(CLI::IsMember({"classic", "exact"}));
        command->add_flag("--keep-going", line_.keep_going,
                          "Count as done what was written although something failed on the way; tables and "
                          "reports say what");
        return command;
    }

  private:
    CLI::App& app_;
    CommandLine& line_;
};

/// A whole number such as 25 or 1e3 that is not below `least`.
int count_of(const std::string& option, const std::string& text, int least, int most) {
    double value = 0;
    if (!parse_number(text, value)) throw CLI::ValidationError(option, "is not a number: " + text);
    if (value != std::floor(value) || value < least)
        throw CLI::ValidationError(option,
                                   "must be a whole number, at least " + std::to_string(least) + ": " + text);
    return static_cast<int>(std::min<double>(value, most));
}

/// "none" or a degree.
int regional_degree(const std::string& text) {
    if (text == "none") return no_regional;
    double value = 0;
    const bool degree = parse_number(text, value) && value >= 0 && value <= most_regional_degree &&
                        value == std::floor(value);
    if (!degree)
        throw CLI::ValidationError("--regional",
                                   "must be none, 0 (level), 1 (slope), 2 (bend) or 3 (cubic): " + text);
    return static_cast<int>(value);
}

float noise_of(const std::string& option, const std::string& unit, const std::string& text) {
    const std::optional<float> value = parse_single(text);
    if (!value || !(*value > 0))
        throw CLI::ValidationError(option, "must be a number of " + unit + " above 0: " + text);
    return *value;
}

void add_fit_options(CLI::App& command, InvertCommandOptions& options) {
    command.add_option_function<std::string>(
        "--regional", [&options](const std::string& text) { options.regional = regional_degree(text); },
        "Polynomial that is fitted with the bodies: none, 0 (level), 1 (slope), 2 (bend) or 3 (cubic); "
        "otherwise that of the workspace");
    command.add_option_function<std::string>(
        "--noise-mag",
        [&options](const std::string& text) { options.mag_noise = noise_of("--noise-mag", "nT", text); },
        "Standard deviation of a magnetic reading, nT; otherwise that of the workspace, or estimated");
    command.add_option_function<std::string>(
        "--noise-grav",
        [&options](const std::string& text) { options.grav_noise = noise_of("--noise-grav", "mGal", text); },
        "The same of a gravity reading, mGal");
    command.add_option_function<std::string>(
        "--starts",
        [&options](const std::string& text) { options.starts = count_of("--starts", text, 0, most_starts); },
        "Fits from other starts that may find a better answer (least-squares) [4]");
}

void add_invert(CommandAdder& add_command, InvertCommandOptions& options, bool& force) {
    CLI::App* command =
        add_command("invert", "Fit the free parameters of the model to the data", options.model);
    command->add_option("--channel", options.channel, "mag, grav, or joint for both (least-squares only)")
        ->check(CLI::IsMember({"mag", "grav", "joint"}));
    command->add_option("--target", options.target, "data or gradient")
        ->check(CLI::IsMember({"data", "gradient"}))
        ->capture_default_str();
    command->add_option("--method", options.method, "least-squares or sweep")
        ->check(CLI::IsMember({"sweep", "least-squares"}))
        ->capture_default_str();
    command->add_option_function<std::string>(
        "--iterations",
        [&options](const std::string& text) {
            options.iterations = count_of("--iterations", text, 1, most_iterations);
        },
        "Most iterations, at least 1 [25]");
    add_fit_options(*command, options);
    command->add_option("--body", options.body, "Invert this body alone; otherwise the whole model")
        ->check(CLI::PositiveNumber);
    command->add_option("-o,--output", options.output,
                        "Write the fitted workspace here; not after a failure, unless --keep-going");
    command->add_flag("--force", force, "Replace MODEL even if another program has changed it meanwhile");
    command->add_flag("--in-place", options.in_place, "Write the fitted workspace over MODEL itself");
    command->add_option("--report", options.report, "Write a JSON report here");
    command->parse_complete_callback([&options] {
        if (options.in_place && options.output.empty()) options.output = options.model;
        if (options.in_place && !same_file(options.output, options.model))
            throw CLI::ValidationError("--in-place", "writes over MODEL: leave --output out");
        if (options.channel == "joint" && options.method != "least-squares")
            throw CLI::ValidationError("--channel", "joint needs --method least-squares");
    });
}

void add_export(CommandAdder& add_command, ExportOptions& options) {
    CLI::App* command = add_command("export", "Write tables and drawings for other programs", options.model);
    CLI::Option_group* outputs = command->add_option_group("outputs", "At least one is needed");
    outputs->add_option("--profile-table", options.profile_table, "One line a station");
    outputs->add_option("--model-table", options.model_table, "One line a body");
    outputs->add_option("--mesh", options.mesh, "Header of a rectilinear mesh around the line");
    outputs->add_option("--clean-profile", options.clean_profile,
                        "One row a station for data-frame libraries: one header row, units in the names");
    outputs->add_option("--clean-model", options.clean_model, "The same, one row a body");
    outputs->add_option("--dxf-3d", options.body_dxf, "The bodies as 3D faces, for CAD");
    outputs->add_option("--dxf-plan", options.plan_dxf, "Profile line and outlines of the bodies, for CAD");
    outputs->require_option(1, 0);
}

std::vector<std::string> view_names() {
    std::vector<std::string> names;
    for (const show::PageView& view : show::page_views) names.emplace_back(view.name);
    return names;
}

void add_render(CommandAdder& add_command, RenderOptions& options) {
    CLI::App* command = add_command("render", "Draw what the window shows", options.model);
    command->add_option("-o,--output", options.picture.path, "Picture: .png, .svg, .pdf or .emf")
        ->required()
        ->check([](const std::string& path) -> std::string {
            for (const char* ending : {".png", ".svg", ".pdf", ".emf"}) {
                if (path.size() > 4 && path.ends_with(ending)) return {};
            }
            return "the ending must be .png, .svg, .pdf or .emf";
        });
    command
        ->add_option("--view", options.picture.view,
                     "section: the curves over the section; plan: the curves over the plan; curves: without "
                     "either; or one chart alone")
        ->check(CLI::IsMember(view_names()))
        ->capture_default_str();
    command->add_option_function<std::string>(
        "--size",
        [&options](const std::string& text) {
            if (!parse_picture_size(text, options.picture))
                throw CLI::ValidationError("--size", "must be WIDTHxHEIGHT in pixels, 16 to 16384: " + text);
        },
        "Pixels, such as 1600x1000 [1600x1000]");
}

constexpr const char* written_here = "Write it here; - is the standard output";

/// A single "-" is how pipelines name the standard output.
void settle_streams(CommandLine& line) {
    for (std::string* output : {&line.dump.output, &line.forward.output})
        if (*output == "-") output->clear();
}

void add_commands(CLI::App& app, CommandLine& line) {
    CommandAdder add_command(app, line);
    add_command("info", "Tell what the workspace holds", line.info_model);
    CLI::App* dump = add_command("dump", "Print everything as one JSON object", line.dump.model);
    dump->add_option("-o,--output", line.dump.output, written_here);
    CLI::App* forward =
        add_command("forward", "Calculate and write the profile data table", line.forward.model);
    forward->add_option("-o,--output", line.forward.output, written_here);
    add_invert(add_command, line.invert, line.force);
    add_export(add_command, line.exported);
    add_render(add_command, line.render);
}

CommandFiles files_of_command(const std::string& name, const CommandLine& line) {
    if (name == "info") return info_files(line.info_model);
    if (name == "dump") return files_of(line.dump);
    if (name == "forward") return files_of(line.forward);
    if (name == "invert") return files_of(line.invert);
    if (name == "export") return files_of(line.exported);
    return files_of(line.render);
}

bool run_command(const std::string& name, const CommandLine& line, BatchSession& batch,
                 PictureWriter* pictures) {
    if (name == "info") return run_info(line.info_model, batch);
    if (name == "dump") return run_dump(line.dump, batch);
    if (name == "forward") return run_forward(line.forward, batch);
    if (name == "invert") return run_invert(line.invert, batch);
    if (name == "export") return run_export(line.exported, batch);
    return run_render(line.render, batch, pictures);
}

}  // namespace

int run_batch(int argc, char** argv, std::ostream& out, std::ostream& err, PictureWriter* pictures) {
    CLI::App app("Magnetic and gravity anomalies along a survey profile, without a window", "anomalis-batch");
    app.set_version_flag("--version", "anomalis-batch " + std::string(application_version()));
    app.require_subcommand(1);
    CommandLine line;
    add_commands(app, line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream words;  // a refused argument may be the name of a file
        const bool help = app.exit(error, out, words) == 0;
        err << shown_lines(words.str());
        return help ? exit_done : exit_usage;
    }
    settle_streams(line);
    const std::string command = app.get_subcommands().front()->get_name();
    if (const std::string refusal = files_refusal(files_of_command(command, line)); !refusal.empty()) {
        err << shown_lines(refusal) << '\n';
        return exit_usage;
    }
    line.invert.show_progress = &err == &std::cerr && ::isatty(STDERR_FILENO) != 0;
    BatchSession batch(out, err);
    batch.formulas = line.formulas;
    batch.keep_going = line.keep_going;
    batch.force = line.force;
    batch.to_terminal = &out == &std::cout && ::isatty(STDOUT_FILENO) != 0;
    const bool done = run_command(command, line, batch, pictures);
    if (batch.wrong_usage) return exit_usage;
    return done && (batch.failures().empty() || line.keep_going) ? exit_done : exit_failed;
}

}  // namespace anomalis::batch

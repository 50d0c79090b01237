#include "batch/command.h"
#include "batch/commands.h"
#include "core/same_file.h"

namespace anomalis::batch {

namespace {

constexpr int most_iterations = 2147483647, most_starts = 10000, most_body = 2147483647;

class InvertCommand : public Command {
  public:
    std::string name() const override { return "invert"; }
    std::string purpose() const override { return "Fit the free parameters of the model to the data"; }
    std::vector<std::string> details() const override {
        return {
            "Parameters that the workspace marks as free are fitted within their limits. Ctrl+C ends it "
            "after the iteration that it is in, and what was found is written; a second one ends the program "
            "at once."};
    }
    std::vector<manual::Example> examples() const override {
        return {
            {"anomalis-batch invert line_1030.axm --channel mag --regional 1 -o fitted.axm --report fit.json",
             "Fit a model to magnetics over a sloping regional"},
            {"anomalis-batch invert line_1030.axm --channel joint --in-place",
             "Fit magnetics and gravity together, in place"}};
    }
    void declare(OptionList& options) override;
    CommandFiles files() const override {
        return {.model = options_.model,
                .writes = {{"--output", options_.output}, {"--report", options_.report}},
                .in_place = options_.in_place,
                .way_out = "; --in-place allows it"};
    }
    bool run(BatchSession& batch) const override { return run_invert(options_, batch); }

  private:
    void declare_outputs(OptionList& options);

    InvertCommandOptions options_;
};

void InvertCommand::declare(OptionList& options) {
    options.file(workspace_form("MODEL"), options_.model, model_file_purpose);
    options.choice("--channel", options_.channel, {"mag", "grav", "joint"},
                   "mag, grav, or joint for both (least-squares only)");
    options.choice("--target", options_.target, {"data", "gradient"}, "data or gradient");
    options.choice("--method", options_.method, {"sweep", "least-squares"}, "least-squares or sweep");
    options.taken("--iterations", take_count(options_.iterations, 1, most_iterations),
                  "Most iterations, at least 1 [25]");
    add_fit_choice(options, options_.fit);
    options.taken("--starts", take_count(options_.starts, 0, most_starts),
                  "Fits from other starts that may find a better answer (least-squares) [4]");
    options.taken("--body", take_count(options_.body, 1, most_body),
                  "Invert this body alone; otherwise the whole model");
    declare_outputs(options);
    options.at_end("--channel", [this]() -> std::string {
        const bool swept = options_.channel == "joint" && options_.method != "least-squares";
        return swept ? "joint needs --method least-squares" : "";
    });
}

void InvertCommand::declare_outputs(OptionList& options) {
    options.output("-o,--output", options_.output, workspace_form("FILE"),
                   "Write the fitted workspace here; not after a failure, unless --keep-going");
    options.flag("--force", options_.force, "Replace MODEL even if another program has changed it meanwhile");
    options.flag("--in-place", options_.in_place, "Write the fitted workspace over MODEL itself");
    options.output("--report", options_.report, manual::file("FILE", {".json"}), "Write a JSON report here");
    options.at_end("--in-place", [this]() -> std::string {
        if (options_.in_place && options_.output.empty()) options_.output = options_.model;
        const bool elsewhere = options_.in_place && !same_file(options_.output, options_.model);
        return elsewhere ? "writes over MODEL: leave --output out" : "";
    });
}

}  // namespace

std::unique_ptr<Command> invert_command() {
    return std::make_unique<InvertCommand>();
}

}  // namespace anomalis::batch

#include "survey/run/line_steps.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <unistd.h>
#include <utility>

#include "core/failure.h"
#include "core/file_stamp.h"
#include "core/pacer.h"
#include "core/paths.h"
#include "flow/channel_choice.h"
#include "flow/unattended_steps.h"
#include "inversion/perform.h"
#include "report/find_json.h"
#include "report/inversion_json.h"
#include "report/uncertainty_json.h"
#include "survey/run/line_exports.h"
#include "survey/run/line_store.h"
#include "survey/run/machine_failure.h"
#include "workspace_file/axm.h"
#include "workspace_file/data_file_place.h"

namespace anomalis::survey {

namespace {

class StopObserver : public inversion::EnsembleObserver {
  public:
    explicit StopObserver(const std::function<bool()>& stop) : stop_(stop) {}
    bool working(double /*units*/) override { return stop_(); }

  private:
    const std::function<bool()>& stop_;
};

std::string joined(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& one : texts) text += (text.empty() ? "" : "; ") + one;
    return text;
}

std::int32_t target_of(const std::string& name) {
    return name == "gradient" ? target_gradient : target_data;
}

void take_out(std::string& text, const std::string& part) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.erase(at, part.size());
}

/// A file that is missing, or is none, is a matter of the line; one that is there and cannot be had is not.
void check_access(const std::string& path, const std::string& what) {
    if (path.empty() || ::access(path.c_str(), R_OK) == 0) return;
    const int error = errno;
    if (error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG || error == ELOOP)
        throw Fault(what + " " + path + " is not there");
    throw MachineFailure(FileFault(error, path).what());
}

flow::FindOptions find_options(const FindStep& step, const FitSettings& fit) {
    flow::FindOptions options;
    options.request = {.most = std::max(step.most.value_or(flow::usual_most_bodies), step.bodies.value_or(1)),
                       .bodies = step.bodies,
                       .thin = step.thin,
                       .thick = step.thick,
                       .free_present = step.free_present,
                       .alternatives = step.alternatives};
    options.regional_degree = fit.regional_degree;
    options.mag_noise = fit.mag_noise;
    options.grav_noise = fit.grav_noise;
    options.window = step.window;
    return options;
}

flow::InvertOptions invert_options(const InvertStep& step, const FitSettings& fit) {
    flow::InvertOptions options;
    options.target = target_of(step.target);
    options.method = method_of_name(step.method).value_or(options.method);
    options.iterations = step.iterations;
    options.starts = step.starts;
    options.regional_degree = fit.regional_degree;
    options.mag_noise = fit.mag_noise;
    options.grav_noise = fit.grav_noise;
    return options;
}

flow::UncertaintyOptions uncertainty_options(const UncertaintyStep& step, const FitSettings& fit) {
    flow::UncertaintyOptions options{.request = {},
                                     .regional_degree = fit.regional_degree,
                                     .mag_noise = fit.mag_noise,
                                     .grav_noise = fit.grav_noise,
                                     .window = step.window};
    options.request.target = target_of(step.target);
    options.request.samples = step.samples;
    options.request.seed = static_cast<std::uint32_t>(step.seed);
    options.request.vary_regional = !step.same_regional;
    options.request.vary_bodies = step.vary_bodies;
    options.request.strike_within = step.strike_within;
    return options;
}

}  // namespace

OpenLine::OpenLine(const std::string& path, const std::optional<Formulas>& formulas)
    : session(prompts, Settings{}) {
    initialise_workspace(session.workspace, prompts);
    opened = flow::open_unattended(session, path, formulas);
}

LineSteps::LineSteps(const LineJob& job, const LineFolder& folder, LineServices& services, LineResult& result)
    : job_(job),
      options_(*job.planned.options),
      folder_(folder),
      services_(services),
      result_(result),
      name_(job.planned.name),
      model_(job.planned.workspace) {}

void LineSteps::run() {
    if (job_.index) import_line();
    if (options_.find) find(*options_.find);
    // A line that shows nothing has nothing to be fitted: that is its answer.
    const bool empty = options_.find && line_->session.workspace.body_count == 0;
    if (options_.invert && !empty) invert(*options_.invert);
    if (options_.uncertainty && !empty) find_ensemble(*options_.uncertainty);
    if (!line_) {
        open();
        refuse_failures();
        if (line_->opened.state != flow::OpenState::ready) throw Fault("There is no line to model");
        if (!job_.index) write_workspace();
        channel_ = flow::chosen_channel(options_.channel, line_->session);
    }
    if (const auto& fit = line_->session.workspace.fit)
        for (const std::string& remark : fit->remarks) line_->prompts.remark(remark);
    take_notes();
    add_answer(line_->session.workspace, channel_, line_->opened.report, services_.places, result_);
    write_exports(options_);
    if (options_.render) draw(*options_.render);
}

void LineSteps::import_line() {
    flow::ImportChoices choices = *job_.choices;
    choices.formulas = options_.formulas.value_or(choices.formulas);
    const std::string workspace = folder_.path() + name_ + ".axm";
    const flow::ImportedLine imported = read_line(choices, workspace);
    for (const Faults::Entry& note : imported.notes.entries())
        result_.notes.push_back(without_folder(note.text));
    folder_.write(file_name(imported.table_path), imported.table);
    folder_.write(file_name(workspace), flow::workspace_text(imported));
    model_ = workspace;
}

flow::ImportedLine LineSteps::read_line(const flow::ImportChoices& choices,
                                        const std::string& workspace) const {
    try {
        return flow::import_line_as(*job_.index, job_.line, choices, workspace, services_.pacer);
    } catch (const FileFault& failure) {
        throw MachineFailure(failure.what());
    } catch (const Fault& failure) {
        // What was counted before no longer holds for any line.
        if (fate_of(job_.index->stamp, job_.index->layout.path) == FileFate::same) throw;
        throw MachineFailure(failure.what());
    }
}

void LineSteps::find(const FindStep& step) {
    open();
    const flow::FindReport report =
        flow::find_on_line(line_->session, line_->opened.state, options_.channel,
                           find_options(step, options_.fit), line_->wrong_usage, {}, services_.stop);
    check_stop();
    write_report("find.json", report::find_json_text(report, line_->session.workspace, line_->prompts));
    refuse_failures();
    channel_ = report.channel;
    if (!report.result.models.empty()) result_.criterion = report.result.models.front().criterion;
    write_workspace();
}

void LineSteps::invert(const InvertStep& step) {
    open();
    Session& session = line_->session;
    line_->prompts.on_yield = [&] {
        if (services_.stop()) session.inversion.stop_inversion = session.inversion.leave_inversion = true;
    };
    const flow::InversionReport report = flow::invert_on_line(
        session, options_.channel, invert_options(step, options_.fit), line_->wrong_usage);
    line_->prompts.on_yield = nullptr;
    check_stop();
    write_report("invert.json", report::inversion_json_text(report, line_->prompts));
    refuse_failures();
    if (report.result.status < 0) throw Fault(report.label);
    channel_ = session.inversion.inversion_channel;
    if (report.result.record) channel_ = report.result.record->channel;
    write_workspace();
}

void LineSteps::find_ensemble(const UncertaintyStep& step) {
    open();
    StopObserver observer(services_.stop);
    const flow::UncertaintyReport report =
        flow::uncertainty_on_line(line_->session, line_->opened.state, options_.channel,
                                  uncertainty_options(step, options_.fit), line_->wrong_usage, observer);
    check_stop();
    const Workspace& workspace = line_->session.workspace;
    write_report("uncertainty.json", report::uncertainty_json_text(workspace, report.request, report.result,
                                                                   workspace.ensemble.get(), line_->prompts));
    refuse_failures();
    if (!workspace.ensemble) throw Fault("No models that explain the line as well were found");
    channel_ = report.request.channel;
    write_workspace();
}

void LineSteps::write_exports(const LineOptions& options) {
    if (options.exports.empty()) return;
    open();
    refuse_failures();
    const std::vector<std::string> failures = line_->prompts.failures();
    for (const std::string& name : options.exports) {
        const LineExport* one = find_line_export(name);
        if (!one) throw Fault("There is no export " + name);
        one->write(folder_.path() + name_ + one->ending, line_->session.workspace, line_->prompts, failures);
    }
    // Its own folder is nobody's fault but the machine's.
    for (const std::string& message : line_->prompts.messages())
        if (message.find(folder_.path()) != std::string::npos) throw MachineFailure(message);
    refuse_failures();
}

void LineSteps::draw(const RenderStep& step) {
    if (!services_.draw) throw Fault("Pictures cannot be drawn here");
    if (options_.exports.empty()) {
        open();
        refuse_failures();
    }
    const std::string path = folder_.path() + name_ + "." + step.format;
    try {
        services_.draw(line_->session, step, path);
    } catch (const FileFault& fault) {
        throw MachineFailure(fault.what());
    }
    refuse_failures();
}

void LineSteps::open() {
    take_notes();
    if (!job_.index) {
        check_access(model_, "The workspace");
        check_access(workspace_file::data_file_of(model_), "The data file");
    }
    line_ = std::make_unique<OpenLine>(model_, options_.formulas);
    check_stop();
}

void LineSteps::check_stop() const {
    if (services_.stop()) throw Stopped();
}

void LineSteps::refuse_failures() const {
    if (!line_->prompts.failures().empty()) throw Fault(joined(line_->prompts.failures()));
}

void LineSteps::write_workspace() {
    const std::string path = folder_.path() + name_ + ".axm";
    std::string why;
    const int status =
        workspace_file::write_model_parameters(0, path, line_->session.workspace, line_->prompts,
                                               [&](const std::string& file, std::string_view text) {
                                                   try {
                                                       folder_.write(file_name(file), text);
                                                   } catch (const MachineFailure& failure) {
                                                       why = failure.what();
                                                       throw;
                                                   }
                                               });
    if (!why.empty()) throw MachineFailure(why);
    if (status != 0) refuse_failures();
    model_ = path;
}

void LineSteps::write_report(const char* name, std::string json) const {
    folder_.write(name, without_folder(std::move(json)));
}

void LineSteps::take_notes() {
    if (!line_) return;
    for (const std::string& remark : line_->prompts.remarks()) {
        const std::string note = without_folder(remark);
        if (std::ranges::find(result_.notes, note) == result_.notes.end()) result_.notes.push_back(note);
    }
}

std::string LineSteps::without_folder(std::string text) const {
    take_out(text, folder_.path());
    return text;
}

std::string source_of(const LineJob& job) {
    if (!job.index) return job.planned.workspace;
    return "line " + job.index->lines[job.line].name + " of " + file_name(job.index->layout.path);
}

void LineSteps::fail(const std::string& message) {
    take_notes();
    result_.status = LineStatus::failed;
    result_.message = without_folder(message);
    result_.bodies.clear();
}

LineResult run_line(const LineJob& job, const LineFolder& folder, LineServices& services) {
    const inversion::RunClock clock;
    LineResult result;
    result.line = job.planned.name;
    result.source = source_of(job);
    LineSteps steps(job, folder, services, result);
    try {
        steps.run();
    } catch (const MachineFailure&) {
        throw;
    } catch (const std::bad_alloc& failure) {
        throw MachineFailure(fault_text(failure) + " (" + result.source + ")");
    } catch (const std::exception& failure) {
        steps.fail(fault_text(failure));
    }
    result.seconds = clock.seconds();
    return result;
}

}  // namespace anomalis::survey

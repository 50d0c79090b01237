#include "batch/survey.h"

#include <algorithm>
#include <new>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/picture_writer.h"
#include "batch/survey_progress.h"
#include "core/executable_folder.h"
#include "core/failure.h"
#include "core/paths.h"
#include "core/shown_text.h"
#include "survey/cluster/merge.h"
#include "survey/cluster/slurm.h"
#include "survey/plan/dry_run.h"
#include "survey/plan/read_plan.h"
#include "survey/run/folder_claim.h"
#include "survey/run/machine_failure.h"

namespace anomalis::batch {

namespace {

using survey::RunOutcome;
using survey::RunResult;
using survey::SurveyPlan;

std::string counted(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

bool draws(const SurveyPlan& plan) {
    const auto rendered = [](const auto& options) { return options && options->render.has_value(); };
    return rendered(plan.options) ||
           std::ranges::any_of(plan.lines, [&](const auto& line) { return rendered(line.options); });
}

/// What is wrong before anything runs is told once and ends in the status that says whose matter it is.
template <class Work>
bool told(BatchSession& batch, Work&& work) {
    try {
        return work();
    } catch (const survey::MachineFailure& failure) {
        batch.try_again = true;
        batch.prompts.message(failure.what());
    } catch (const FileFault& failure) {
        batch.try_again = true;
        batch.prompts.message(failure.what());
    } catch (const std::bad_alloc& failure) {
        batch.try_again = true;
        batch.prompts.message(fault_text(failure));
    } catch (const std::exception& failure) {
        batch.wrong_usage = true;
        batch.prompts.message(fault_text(failure));
    }
    return false;
}

SurveyPlan read_plan(const SurveyCommandOptions& options, const BatchSession& batch) {
    if (batch.formulas)
        throw Fault("--formulas is no option of a survey: its plan says formulas = \"classic\" or \"exact\"");
    if (file_exists(options.plan).empty()) throw Fault("There is no plan " + options.plan);
    return survey::read_survey_plan(options.plan);
}

survey::DrawPicture drawing(const SurveyPlan& plan, PictureWriter* pictures) {
    if (!draws(plan)) return {};
    if (!pictures)
        throw Fault("This build of the batch tool draws no pictures: leave render out of the plan");
    pictures->prepare();
    return [pictures](Session& session, const survey::RenderStep& step, const std::string& path) {
        PictureRequest request;
        request.path = path;
        request.view = step.view;
        request.width = step.width;
        request.height = step.height;
        if (pictures->write(session, request) != 0) throw Fault("The picture could not be drawn: " + path);
    };
}

std::string tables_text(const std::string& folder) {
    return folder + ": bodies.csv, lines.csv, survey.gpkg, seconds.csv\n";
}

std::string summary(const SurveyCommandOptions& options, const RunResult& result) {
    const survey::SurveyProgress& progress = result.progress;
    std::string text = counted(progress.done, "line") + " done in " + duration_text(progress.seconds);
    if (progress.kept > 0) text += ", " + std::to_string(progress.kept) + " done before";
    if (progress.failed > 0) text += ", " + std::to_string(progress.failed) + " failed (lines.csv says why)";
    text += "\n";
    const bool tables = options.shard.count == 1 &&
                        (result.outcome == RunOutcome::all_done || result.outcome == RunOutcome::some_failed);
    return tables ? text + tables_text(options.folder) : text;
}

/// "Stopped: ..." and how to go on.
std::string stopped_text(const survey::SurveyProgress& progress) {
    return "Stopped: " + std::to_string(progress.done + progress.kept) + " of " +
           counted(progress.lines, "line") + (progress.lines == 1 ? " is" : " are") +
           " done. Run the same command again to go on";
}

int status_of(RunOutcome outcome, bool keep_going) {
    if (outcome == RunOutcome::all_done) return 0;
    if (outcome == RunOutcome::some_failed) return keep_going ? 0 : 1;
    constexpr int try_again = 75;
    return try_again;
}

/// The map that was asked for, of whatever the lines gave; false when it could not be drawn.
bool draw_map(const SurveyCommandOptions& options, BatchSession& batch, PictureWriter* pictures) {
    if (options.map.empty()) return true;
    MapOptions map;
    map.survey.file = options.folder;
    map.picture.path = options.map;
    return run_map(map, batch, pictures);
}

bool run(const SurveyCommandOptions& options, const SurveyPlan& plan, BatchSession& batch,
         PictureWriter* pictures) {
    const SurveyLog log = options.log == "json" ? SurveyLog::json : SurveyLog::text;
    const survey::DrawPicture draw = drawing(plan, pictures);
    const survey::RunOptions run_options{.folder = options.folder,
                                         .jobs = options.jobs,
                                         .shard = options.shard,
                                         .again_failed = options.again_failed};
    RunResult result;
    {
        SurveyTeller teller(batch, log);
        teller.start(plan, run_options);
        result = survey::run_survey(plan, run_options, teller, draw);
        teller.end(result, status_of(result.outcome, batch.keep_going));
    }
    batch.try_again = result.outcome == RunOutcome::stopped || result.outcome == RunOutcome::try_again;
    if (result.outcome == RunOutcome::stopped) batch.prompts.message(stopped_text(result.progress));
    if (result.outcome == RunOutcome::try_again) batch.prompts.message(result.why);
    const bool drawn = batch.try_again || draw_map(options, batch, pictures);
    const bool written = log == SurveyLog::json || batch.write_result("", summary(options, result)) == 0;
    return drawn && written && status_of(result.outcome, batch.keep_going) == 0;
}

bool merge(const SurveyCommandOptions& options, const SurveyPlan& plan, BatchSession& batch,
           PictureWriter* pictures) {
    const survey::MergeResult result = survey::merge_survey(plan, options.folder, options.from);
    if (result.outcome == survey::MergeOutcome::lines_missing) {
        batch.try_again = true;
        batch.prompts.message(result.why);
        return false;
    }
    std::string text =
        counted(result.counts.lines, "line") + ", " +
        (result.counts.bodies == 1 ? "1 body" : std::to_string(result.counts.bodies) + " bodies");
    if (result.counts.failed > 0) text += ", " + std::to_string(result.counts.failed) + " failed";
    if (result.taken > 0) text += ", " + std::to_string(result.taken) + " taken from other folders";
    const bool written = batch.write_result("", text + "\n" + tables_text(options.folder)) == 0;
    return draw_map(options, batch, pictures) && written &&
           (result.outcome == survey::MergeOutcome::all_done || batch.keep_going);
}

const char* state_text(const survey::PlannedWork& work) {
    switch (work.state) {
        case survey::LineState::missing:
            return "to do";
        case survey::LineState::changed:
            return "to do again, it changed";
        case survey::LineState::failed:
            return work.to_do ? "to do again, it failed" : "failed before";
        case survey::LineState::kept:
            break;
    }
    return "done before";
}

bool dry_run(const SurveyCommandOptions& options, const SurveyPlan& plan, BatchSession& batch) {
    std::string text;
    std::size_t lines = 0, to_do = 0;
    survey::list_planned_work(
        plan,
        {.folder = options.folder, .jobs = 1, .shard = options.shard, .again_failed = options.again_failed},
        [&](const survey::PlannedWork& work) {
            const survey::PlannedLine& planned = work.line->planned;
            ++lines;
            to_do += work.to_do ? 1 : 0;
            text += shown_text(planned.name) + ": " + state_text(work) + ": " +
                    (planned.workspace.empty() ? "line " + shown_text(planned.line)
                                               : shown_text(planned.workspace)) +
                    ", " + survey::steps_text(*planned.options, planned.workspace.empty()) + "\n";
        });
    text += std::to_string(to_do) + " of " + counted(lines, "line") + " to do -> " +
            shown_text(options.folder) + "\n";
    return batch.write_result("", text) == 0;
}

bool submit(const SurveyCommandOptions& options, const SurveyPlan& plan, BatchSession& batch) {
    const survey::SurveyInput input = survey::open_input(plan);
    const survey::SurveyIdentity identity = survey::identity_of(plan, input);
    survey::refuse_other_survey(options.folder, identity);
    survey::prepare_folder(options.folder, identity);
    const survey::SlurmSurvey slurm{.program = executable_folder() + "anomalis-batch",
                                    .plan = whole_path(options.plan),
                                    .folder = whole_path(options.folder),
                                    .name = plan.name,
                                    .lines = input.lines.size(),
                                    .cores = options.jobs > 0 ? options.jobs : 1,
                                    .lines_a_shard = static_cast<std::size_t>(options.lines_a_shard)};
    std::string text;
    const int failed = report_failure(batch.prompts, "", [&] {
        survey::submit_to_slurm(slurm, [&](const std::string& line) { text += line + "\n"; });
    });
    return batch.write_result("", text) == 0 && failed == 0;
}

}  // namespace

bool run_survey_command(const SurveyCommandOptions& options, BatchSession& batch, PictureWriter* pictures) {
    return told(batch, [&] {
        const SurveyPlan plan = read_plan(options, batch);
        if (options.merge) return merge(options, plan, batch, pictures);
        if (options.slurm) return submit(options, plan, batch);
        if (options.dry_run) return dry_run(options, plan, batch);
        return run(options, plan, batch, pictures);
    });
}

}  // namespace anomalis::batch

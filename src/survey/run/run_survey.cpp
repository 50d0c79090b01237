#include "survey/run/run_survey.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "core/core_shares.h"
#include "core/failure.h"
#include "core/pacer.h"
#include "core/version.h"
#include "inversion/perform.h"
#include "survey/cluster/shards.h"
#include "survey/results/results_folder.h"
#include "survey/results/tables.h"
#include "survey/run/folder_claim.h"
#include "survey/run/line_run.h"
#include "survey/run/line_store.h"
#include "survey/run/machine_failure.h"
#include "survey/run/survey_input.h"

namespace anomalis::survey {

namespace {

void check_shard(const Shard& shard) {
    if (shard.count < 1 || shard.number < 1 || shard.number > shard.count)
        throw Fault("There is no shard " + std::to_string(shard.number) + " of " +
                    std::to_string(shard.count) + ": they are numbered from 1 to their count");
}

/// Places of the lines of a shard in the plan, those with most work first: the last to end is then a short
/// one.
std::vector<std::size_t> order_of(const SurveyInput& input, const Shard& shard) {
    std::vector<std::size_t> order;
    std::vector<double> work(input.lines.size());
    for (std::size_t i = 0; i < input.lines.size(); ++i) {
        if (!in_shard(i, shard)) continue;
        order.push_back(i);
        work[i] = line_work(input, input.lines[i]);
    }
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) { return work[a] > work[b]; });
    return order;
}

/// A line that was looked at on some core.
struct Ended {
    LineResult result;
    bool kept = false;
};

/// What the cores and the one who waits for them both know.
class Shared {
  public:
    void add(Ended ended) {
        const std::lock_guard lock(mutex_);
        ended_.push_back(std::move(ended));
    }
    std::vector<Ended> take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(ended_, {});
    }
    /// The first one stays; the others only follow from it.
    void fail(const std::string& why) {
        const std::lock_guard lock(mutex_);
        if (!failed_) why_ = why;
        failed_ = true;
    }
    bool failed() const { return failed_; }
    std::string why() const {
        const std::lock_guard lock(mutex_);
        return why_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<Ended> ended_;
    std::string why_;
    std::atomic<bool> failed_ = false;
};

/// Hands on what has ended, on the thread of the caller.
class Telling : public Pacer {
  public:
    Telling(Shared& shared, SurveyObserver& observer, SurveyProgress& progress)
        : shared_(shared), observer_(observer), progress_(progress) {}
    void done(double /*units*/) override { tell(); }
    void waiting() override { tell(); }

    void tell() {
        for (const Ended& ended : shared_.take()) {
            ++(ended.kept ? progress_.kept : progress_.done);
            if (ended.result.status == LineStatus::failed) ++progress_.failed;
            progress_.last = ended.result.line;
            if (!ended.kept) observer_.line_done(ended.result);
        }
        progress_.seconds = clock_.seconds();
        observer_.progress(progress_);
    }

  private:
    inversion::RunClock clock_;
    Shared& shared_;
    SurveyObserver& observer_;
    SurveyProgress& progress_;
};

class LineWorker {
  public:
    LineWorker(const SurveyPlan& plan, const RunOptions& options, const SurveyInput& input, Shared& shared,
               DrawPicture draw)
        : plan_(plan), options_(options), input_(input), shared_(shared) {
        if (draw)
            draw_ = [this, draw = std::move(draw)](Session& session, const RenderStep& step,
                                                   const std::string& path) {
                const std::lock_guard lock(drawing_);
                draw(session, step, path);
            };
    }

    /// One core.
    void work(CoreShare& share, const std::vector<std::size_t>& order) {
        GeographicPlaces places;
        const auto stop = [&share] {
            try {
                share.pacer().waiting();
            } catch (const Stopped&) {
                return true;
            }
            return false;
        };
        LineServices services{places, stop, draw_, share.pacer()};
        while (const std::optional<int> number = share.next()) {
            if (stop()) return;
            try {
                look_at(input_.lines[order[static_cast<std::size_t>(*number)]], services);
            } catch (const MachineFailure& failure) {
                shared_.fail(failure.what());
                return;
            }
        }
    }

  private:
    void look_at(const LineToDo& line, LineServices& services) {
        const std::string digest = line_digest(plan_, input_, line);
        std::optional<LineResult> kept = kept_line(options_.folder, line.planned.name);
        const bool again = kept && kept->status == LineStatus::failed && options_.again_failed;
        if (kept && kept->digest == digest && !again) {
            shared_.add({std::move(*kept), true});
            return;
        }
        LineJob job{.planned = line.planned};
        if (input_.index) {
            job.index = &*input_.index;
            job.line = line.line;
            job.choices = &plan_.source->choices;
        }
        const LineFolder folder(options_.folder, line.planned.name);
        LineResult result = run_line(job, folder, services);
        result.digest = digest;
        result.version = application_version();
        folder.deliver(result);
        shared_.add({std::move(result), false});
    }

    const SurveyPlan& plan_;
    const RunOptions& options_;
    const SurveyInput& input_;
    Shared& shared_;
    std::mutex drawing_;
    DrawPicture draw_;
};

/// Does the lines; true when all of them were looked at.
bool do_lines(const SurveyPlan& plan, const RunOptions& options, const SurveyInput& input, Shared& shared,
              SurveyObserver& observer, const DrawPicture& draw, SurveyProgress& progress) {
    const std::vector<std::size_t> order = order_of(input, options.shard);
    progress.lines = order.size();
    Telling telling(shared, observer, progress);
    LineWorker worker(plan, options, input, shared, draw);
    const SharedWork work{.first = 0,
                          .last = static_cast<int>(order.size()),
                          .cores = options.jobs,
                          .core = [&](CoreShare& share) { worker.work(share, order); },
                          .leave = [&] { return shared.failed() || observer.stop(); }};
    const bool all = share_among_cores(work, telling);
    telling.tell();
    return all && progress.done + progress.kept == progress.lines;
}

/// The end of a run that has all of its lines: what others wait for.
void write_end(const RunOptions& options, const SurveyIdentity& identity, const SurveyProgress& progress) {
    if (options.shard.count == 1) {
        write_survey_tables(options.folder);
    } else {
        write_shard_record(options.folder,
                           {options.shard, identity.plan_digest, progress.lines, progress.failed});
    }
}

std::string try_again_text(const std::string& why) {
    return why +
           ". What is done stays done: start the same command again when that is put right, and it goes "
           "on where it stopped";
}

}  // namespace

RunResult run_survey(const SurveyPlan& plan, const RunOptions& options, SurveyObserver& observer,
                     const DrawPicture& draw) {
    check_shard(options.shard);
    RunResult result;
    Shared shared;
    bool all = false;
    try {
        const SurveyInput input = open_input(plan);
        if (input.index)
            for (const std::string& remark : survey_remarks(*input.index)) observer.remark(remark);
        const SurveyIdentity identity = identity_of(plan, input);
        refuse_other_survey(options.folder, identity);
        prepare_folder(options.folder, identity);
        on_machine([&] { remove_shard_record(options.folder, options.shard); });
        all = do_lines(plan, options, input, shared, observer, draw, result.progress);
        if (all) on_machine([&] { write_end(options, identity, result.progress); });
    } catch (const MachineFailure& failure) {
        shared.fail(failure.what());
    }
    if (shared.failed()) {
        result.outcome = RunOutcome::try_again;
        result.why = try_again_text(shared.why());
    } else if (!all) {
        result.outcome = RunOutcome::stopped;
    } else if (result.progress.failed > 0) {
        result.outcome = RunOutcome::some_failed;
    }
    return result;
}

}  // namespace anomalis::survey

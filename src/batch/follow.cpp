#include <chrono>
#include <ostream>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/follow_json.h"
#include "batch/found_text.h"
#include "batch/stop_request.h"
#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/shown_text.h"
#include "flow/channel_choice.h"
#include "flow/follow_report.h"

namespace anomalis::batch {

namespace {

using Clock = std::chrono::steady_clock;

bool any_body_takes_part(const Workspace& workspace) {
    for (int number = 1; number <= workspace.body_count; ++number)
        if (!workspace.body(number).turned_off) return true;
    return false;
}

/// One `follow` from its first line to its report.
class Following {
  public:
    Following(const FollowCommandOptions& options, BatchSession& batch)
        : options_(options), batch_(batch), workspace_(batch.session.workspace) {}

    /// False when there is no model to follow; why was told.
    bool open_first();
    void follow_all();
    void take_strikes();
    bool write();

  private:
    void follow(const std::string& next, const std::string& output);
    std::string summary() const;
    std::string line_text(const FollowedFile& file) const;

    const FollowCommandOptions& options_;
    BatchSession& batch_;
    Workspace& workspace_;
    const Clock::time_point begin_ = Clock::now();
    Workspace first_workspace_;
    std::optional<flow::FirstLine> first_;
    flow::FollowOptions follow_;
    std::vector<FollowedFile> files_;
    std::vector<flow::FollowedStrike> strikes_;
};

bool Following::open_first() {
    if (!batch_.open_ready(options_.first)) return false;
    std::string why = flow::channel_refusal(options_.channel, batch_.session);
    if (why.empty() && !any_body_takes_part(workspace_))
        why = options_.first + " has no body that could be followed";
    if (!why.empty()) {
        batch_.prompts.message(why);
        return false;
    }
    const bool in_force = options_.channel.empty() && as_fitted(workspace_);
    follow_ = {.channel = in_force ? workspace_.fit->channel
                                   : flow::chosen_channel(options_.channel, batch_.session),
               .iterations = options_.iterations,
               .starts = options_.starts,
               .regional_degree = options_.fit.regional,
               .mag_noise = options_.fit.mag_noise,
               .grav_noise = options_.fit.grav_noise};
    first_workspace_ = workspace_;
    std::vector<std::string> remarks;
    first_.emplace(flow::first_line(first_workspace_, remarks));
    for (const std::string& remark : remarks) batch_.prompts.remark(remark);
    // The model was found with them.
    if (!batch_.formulas) batch_.formulas = first_workspace_.formulas;
    return true;
}

void Following::follow(const std::string& next, const std::string& output) {
    FollowedFile& file = files_.emplace_back();
    file.model = next;
    file.output = output;
    batch_.start_anew();
    if (!batch_.open_ready(next)) {
        file.line.refusal = next + " gives no line to fit on";
        return;
    }
    file.line.refusal = flow::channel_refusal(flow::channel_name(follow_.channel), batch_.session);
    if (file.line.refusal.empty()) file.line = flow::follow_to(*first_, batch_.session, follow_);
    if (!file.line.refusal.empty()) batch_.prompts.message(file.line.refusal);
    file.workspace = workspace_;
}

void Following::follow_all() {
    const std::vector<std::string> outputs = follow_outputs(options_);
    for (std::size_t i = 0; i < options_.next.size(); ++i)
        follow(options_.next[i], outputs.empty() ? "" : outputs[i]);
}

void Following::take_strikes() {
    std::vector<flow::FollowedLine> lines;
    for (const FollowedFile& file : files_)
        if (file.line.refusal.empty()) lines.push_back(file.line);
    strikes_ = flow::strikes_of(*first_, lines);
    for (FollowedFile& file : files_) {
        if (!file.line.refusal.empty()) continue;
        std::swap(workspace_, file.workspace);
        flow::take_strikes(strikes_, batch_.session, file.line, follow_);
        std::swap(workspace_, file.workspace);
    }
}

std::string Following::line_text(const FollowedFile& file) const {
    std::string text = shown_text(file.model) + ": ";
    if (!file.line.refusal.empty()) return text + file.line.refusal + "\n";
    text += file.line.inversion.label + "\n";
    for (const flow::ReportedChannel& channel : file.line.inversion.channels)
        if (channel.quality) text += "   " + show::fit_quality_text(*channel.quality, channel.channel) + "\n";
    const FitRecord record = file.line.inversion.result.record.value_or(FitRecord{});
    for (std::size_t i = 0; i < file.line.carried.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        text +=
            "   " +
            found_body_text(file.workspace.body(number), number, record, follow_.channel, file.workspace) +
            "; carried " + format_number(file.line.carried[i].along_strike, "0") + " m along strike\n";
    }
    return text;
}

std::string Following::summary() const {
    std::string text;
    for (const FollowedFile& file : files_) text += line_text(file);
    for (const flow::FollowedStrike& strike : strikes_) {
        text += "Strike of body " + std::to_string(strike.first_number) + ": ";
        if (!strike.fit) {
            text += "not told by these lines, " + format_number(strike.before, "0.0") + " degrees kept\n";
            continue;
        }
        text += format_number(strike.fit->strike, "0.0") + " degrees, standard error " +
                format_number(strike.fit->error, "0.0") + ", from " + std::to_string(strike.fit->lines) +
                " lines; " + format_number(strike.before, "0.0") + " before" +
                (strike.taken() ? "" : ", which is kept") + "\n";
    }
    return text;
}

bool Following::write() {
    bool done = true;
    for (const FollowedFile& file : files_) done = done && file.line.refusal.empty();
    const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
    const std::string json =
        follow_json_text(options_.first, follow_.channel, files_, strikes_, seconds, batch_.prompts);
    if (!options_.report.empty()) done = batch_.write_result(options_.report, json) == 0 && done;
    for (FollowedFile& file : files_) {
        if (file.output.empty() || !file.line.refusal.empty()) continue;
        std::swap(workspace_, file.workspace);
        done = batch_.write_workspace(file.output) == 0 && done;
        std::swap(workspace_, file.workspace);
    }
    return batch_.write_result("", summary()) == 0 && done;
}

}  // namespace

bool run_follow(const FollowCommandOptions& options, BatchSession& batch) {
    const StopRequest stop;
    batch.prompts.on_yield = [&] {
        if (stop.made()) batch.session.inversion.stop_inversion = true;
    };
    Following following(options, batch);
    bool begun = false;
    {
        const MessageScope scope(batch.prompts);
        begun = following.open_first();
        if (begun) {
            following.follow_all();
            following.take_strikes();
        }
    }
    const bool done = following.write() && begun;
    batch.prompts.on_yield = nullptr;
    return done;
}

}  // namespace anomalis::batch

#include "batch/survey_progress.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>

#include "core/numbers.h"
#include "core/shown_text.h"
#include "core/version.h"
#include "report/json_text.h"
#include "survey/cluster/shards.h"

namespace anomalis::batch {

namespace {

using LogJson = nlohmann::ordered_json;

/// s between two states of the line that is written over.
constexpr double between_states = 0.2;
constexpr std::size_t most_failures_told = 20;

void log_event(std::ostream& out, const LogJson& event) {
    // Whoever reads along sees each event when it happens.
    out << report::indented_json(event, -1) << '\n' << std::flush;
}

LogJson known(double value) {
    return std::isfinite(value) ? LogJson(value) : LogJson(nullptr);
}

LogJson counts_json(const char* event, const survey::SurveyProgress& progress) {
    LogJson json = {{"event", event},        {"lines", progress.lines},   {"done", progress.done},
                    {"kept", progress.kept}, {"failed", progress.failed}, {"seconds", progress.seconds}};
    return json;
}

const char* outcome_name(survey::RunOutcome outcome) {
    switch (outcome) {
        case survey::RunOutcome::all_done:
            return "all done";
        case survey::RunOutcome::some_failed:
            return "some failed";
        case survey::RunOutcome::stopped:
            return "stopped";
        case survey::RunOutcome::try_again:
            break;
    }
    return "try again";
}

}  // namespace

std::optional<SurveyRate> rate_of(const survey::SurveyProgress& progress) {
    if (progress.done == 0 || !(progress.seconds > 0)) return std::nullopt;
    const double rate = static_cast<double>(progress.done) / progress.seconds;
    const std::size_t ended = std::min(progress.lines, progress.done + progress.kept);
    return SurveyRate{rate, static_cast<double>(progress.lines - ended) / rate};
}

std::string duration_text(double seconds) {
    constexpr double minute = 60, hour = 3600;
    if (seconds < 2 * minute) return format_number(std::ceil(seconds), "0") + " s";
    if (seconds < 2 * hour) return format_number(seconds / minute, "0") + " min";
    return format_number(seconds / hour, "0.0") + " h";
}

std::string progress_text(const survey::SurveyProgress& progress) {
    std::string text = std::to_string(progress.done + progress.kept) + " of " +
                       std::to_string(progress.lines) + (progress.lines == 1 ? " line" : " lines");
    if (progress.kept > 0) text += " (" + std::to_string(progress.kept) + " done before)";
    if (progress.failed > 0) text += ", " + std::to_string(progress.failed) + " failed";
    if (const auto rate = rate_of(progress)) {
        const bool slow = rate->lines_a_second < 1;
        text += ", " + (slow ? format_number(60 * rate->lines_a_second, "0.0") + " lines/min"
                             : format_number(rate->lines_a_second, "0.0") + " lines/s");
        if (rate->seconds_left > 0) text += ", " + duration_text(rate->seconds_left) + " left";
    }
    return text;
}

bool ProgressPace::due(double seconds) {
    if (seconds < next_) return false;
    constexpr double least = 10, share = 0.1;
    next_ = seconds + std::max(least, share * seconds);
    return true;
}

void SurveyTeller::start(const survey::SurveyPlan& plan, const survey::RunOptions& options) {
    if (log_ != SurveyLog::json) return;
    LogJson event = {{"event", "start"},
                     {"survey", plan.name},
                     {"plan", plan.path},
                     {"folder", options.folder},
                     {"version", application_version()}};
    if (options.shard.count > 1) event["shard"] = survey::shard_text(options.shard);
    log_event(batch_.out, event);
}

void SurveyTeller::clear_line() {
    if (on_line_ > 0) batch_.err << '\r' << std::string(on_line_, ' ') << '\r' << std::flush;
    on_line_ = 0;
}

void SurveyTeller::tell_line(const std::string& text) {
    clear_line();
    batch_.err << shown_lines(text) << '\n' << std::flush;
}

void SurveyTeller::progress(const survey::SurveyProgress& progress) {
    const bool written_over = log_ == SurveyLog::text && batch_.show_progress;
    if (written_over) {
        if (progress.seconds < shown_at_ + between_states) return;
        shown_at_ = progress.seconds;
        const std::string text = shown_text(progress_text(progress));
        const std::size_t before = on_line_;
        on_line_ = text.size();
        batch_.err << '\r' << text << std::string(before > on_line_ ? before - on_line_ : 0, ' ')
                   << std::flush;
        return;
    }
    if (!pace_.due(progress.seconds)) return;
    if (log_ == SurveyLog::text) return tell_line(progress_text(progress));
    LogJson event = counts_json("progress", progress);
    if (const auto rate = rate_of(progress)) {
        event["lines_per_second"] = rate->lines_a_second;
        event["seconds_left"] = rate->seconds_left;
    }
    log_event(batch_.out, event);
}

void SurveyTeller::remark(const std::string& text) {
    if (log_ == SurveyLog::json)
        log_event(batch_.out, {{"event", "remark"}, {"text", text}});
    else
        tell_line("Note: " + text);
}

void SurveyTeller::line_done(const survey::LineResult& result) {
    const bool failed = result.status == survey::LineStatus::failed;
    if (log_ == SurveyLog::json) {
        LogJson event = {{"event", "line"},
                         {"line", result.line},
                         {"status", failed ? "failed" : "done"},
                         {"bodies", result.bodies.size()},
                         {"rms_nT", known(result.rms_nT)},
                         {"rms_mGal", known(result.rms_mGal)},
                         {"seconds", result.seconds}};
        if (failed) event["message"] = result.message;
        return log_event(batch_.out, event);
    }
    if (!failed || failures_told_ > most_failures_told) return;
    ++failures_told_;
    tell_line(failures_told_ > most_failures_told ? "More lines failed; the table of lines says why"
                                                  : result.line + " failed: " + result.message);
}

void SurveyTeller::end(const survey::RunResult& result, int status) {
    clear_line();
    if (log_ != SurveyLog::json) return;
    LogJson event = counts_json("end", result.progress);
    event["outcome"] = outcome_name(result.outcome);
    event["exit_status"] = status;
    if (!result.why.empty()) event["why"] = result.why;
    log_event(batch_.out, event);
}

}  // namespace anomalis::batch

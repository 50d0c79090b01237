#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "batch/batch_session.h"
#include "batch/stop_request.h"
#include "survey/run/run_survey.h"

// What a run of a survey tells while it goes on.
namespace anomalis::batch {

/// Lines a second, as far as anything was done; s until the end at that rate.
struct SurveyRate {
    double lines_a_second = 0, seconds_left = 0;
};
std::optional<SurveyRate> rate_of(const survey::SurveyProgress& progress);

/// "120 of 1000 lines, 3 failed, 85.3 lines/s, 10 s left"
std::string progress_text(const survey::SurveyProgress& progress);
/// "45 s", "12 min", "3.5 h"
std::string duration_text(double seconds);

/// When a line of progress is due where it cannot be written over: seldom at first, more seldom later.
class ProgressPace {
  public:
    bool due(double seconds);

  private:
    double next_ = 10;
};

enum class SurveyLog { text, json };

/// On a terminal one line that is written over; else plain lines now and then; or a JSON object a line.
class SurveyTeller : public survey::SurveyObserver {
  public:
    SurveyTeller(BatchSession& batch, SurveyLog log) : batch_(batch), log_(log) {}
    ~SurveyTeller() override { clear_line(); }
    SurveyTeller(const SurveyTeller&) = delete;
    SurveyTeller& operator=(const SurveyTeller&) = delete;

    void start(const survey::SurveyPlan& plan, const survey::RunOptions& options);
    void progress(const survey::SurveyProgress& progress) override;
    void remark(const std::string& text) override;
    void line_done(const survey::LineResult& result) override;
    bool stop() override { return stop_.made(); }
    /// `status`: what the program ends with.
    void end(const survey::RunResult& result, int status);

  private:
    void clear_line();
    void tell_line(const std::string& text);

    BatchSession& batch_;
    SurveyLog log_;
    StopRequest stop_{StopSignals::terminate_too};
    ProgressPace pace_;
    double shown_at_ = -1;
    std::size_t on_line_ = 0;  ///< characters of the line that is written over
    std::size_t failures_told_ = 0;
};

}  // namespace anomalis::batch

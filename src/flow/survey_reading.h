#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "intake/survey/survey_index.h"

namespace anomalis::flow {

/// What reading a survey file gave.
struct SurveyOutcome {
    std::shared_ptr<const intake::SurveyIndex> index;  ///< null: it could not be read, or was stopped
    std::string trouble;                               ///< why not; "" after a stop
};

/// Reads the lines of a survey file in a thread of its own, so that a window stays alive; one at a time.
class SurveyReading {
  public:
    SurveyReading() = default;
    ~SurveyReading();
    SurveyReading(const SurveyReading&) = delete;
    SurveyReading& operator=(const SurveyReading&) = delete;

    /// Begins anew; one that goes on is stopped first.
    void start(const intake::SurveyLayout& layout, const intake::CoordinateChoice& coordinates);
    /// Stops it, and returns when it has stopped.
    void stop();
    /// From the start until its outcome is taken.
    bool going_on() const { return thread_.joinable(); }
    /// Bytes of the file that were read.
    double bytes() const { return state_ ? state_->bytes.load() : 0; }
    /// The outcome once it is there; nothing while it goes on.
    std::optional<SurveyOutcome> take();
    /// Waits for it.
    std::optional<SurveyOutcome> wait();

  private:
    struct State {
        std::atomic<bool> stop{false}, done{false};
        std::atomic<double> bytes{0};
        SurveyOutcome outcome;
    };
    class ReadingPacer;
    static void read(State& state, const intake::SurveyLayout& layout,
                     const intake::CoordinateChoice& coordinates);

    std::unique_ptr<State> state_;
    std::thread thread_;
};

}  // namespace anomalis::flow

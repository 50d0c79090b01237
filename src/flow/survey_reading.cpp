#include "flow/survey_reading.h"

#include "core/failure.h"

namespace anomalis::flow {

/// Units of an index are bytes.
class SurveyReading::ReadingPacer : public Pacer {
  public:
    explicit ReadingPacer(State& state) : state_(state) {}
    void done(double units) override {
        state_.bytes = state_.bytes + units;
        if (state_.stop) throw Stopped();
    }

  private:
    State& state_;
};

SurveyReading::~SurveyReading() {
    stop();
}

void SurveyReading::read(State& state, const intake::SurveyLayout& layout,
                         const intake::CoordinateChoice& coordinates) {
    try {
        ReadingPacer pacer(state);
        state.outcome.index =
            std::make_shared<const intake::SurveyIndex>(intake::index_survey(layout, coordinates, pacer));
    } catch (const std::exception& failure) {
        state.outcome.trouble = fault_text(failure);
    } catch (const Stopped&) {
        state.outcome = {};
    }
    state.done = true;
}

void SurveyReading::start(const intake::SurveyLayout& layout, const intake::CoordinateChoice& coordinates) {
    stop();
    state_ = std::make_unique<State>();
    thread_ = std::thread([state = state_.get(), layout, coordinates] { read(*state, layout, coordinates); });
}

void SurveyReading::stop() {
    if (!thread_.joinable()) return;
    state_->stop = true;
    thread_.join();
}

std::optional<SurveyOutcome> SurveyReading::take() {
    if (!thread_.joinable() || !state_->done) return std::nullopt;
    return wait();
}

std::optional<SurveyOutcome> SurveyReading::wait() {
    if (!thread_.joinable()) return std::nullopt;
    thread_.join();
    return std::move(state_->outcome);
}

}  // namespace anomalis::flow

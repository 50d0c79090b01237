#include "window/shell/calculation_watch.h"

#include <utility>

#include "core/workspace.h"
#include "window/panels/status_panels.h"

namespace anomalis::window {

namespace {

constexpr double blink = 0.2;  // seconds
constexpr double nanosecond = 1e-9;

}  // namespace

double CalculationWatch::work_ahead() const {
    int responses = 0;
    for (int number = 1; number <= workspace_.body_count; ++number) {
        const ModelBody& body = workspace_.body(number);
        responses += workspace_.has_mag() && !body.mag_response_valid ? 1 : 0;
        responses += workspace_.has_grav() && !body.grav_response_valid ? 1 : 0;
    }
    return static_cast<double>(responses) * workspace_.station_count;
}

void CalculationWatch::follow(bool begins) {
    if (begins) {
        work_ = work_ahead();
        shown_ = work_ * seconds_a_unit_ > blink;
        if (shown_) status_.show_progress(0);
        clock_.start();
        return;
    }
    if (work_ > 0) seconds_a_unit_ = static_cast<double>(clock_.nsecsElapsed()) * nanosecond / work_;
    if (std::exchange(shown_, false)) status_.show_progress(-1);
}

}  // namespace anomalis::window

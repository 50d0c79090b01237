#include <algorithm>
#include <cmath>
#include <limits>
#include <mutex>
#include <proj.h>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "intake/coordinates/coordinate_system.h"
#include "intake/coordinates/proj_library.h"
#include "intake/coordinates/proj_objects.h"

namespace anomalis::intake {

namespace {

/// What PROJ takes and gives for a point that is none.
constexpr double no_point = HUGE_VAL;

/// PROJ would turn degrees beyond the globe round it.
void leave_out(bool degrees, std::span<double> first, std::span<double> second) {
    for (std::size_t i = 0; i < first.size(); ++i) {
        const bool number = std::isfinite(first[i]) && std::isfinite(second[i]);
        const bool on_globe = !degrees || (first[i] >= -180 && first[i] <= 360 && std::abs(second[i]) <= 90);
        if (!number || !on_globe) first[i] = second[i] = no_point;
    }
}

void mark_lost(std::span<double> first, std::span<double> second) {
    for (std::size_t i = 0; i < first.size(); ++i)
        if (!std::isfinite(first[i]) || !std::isfinite(second[i]))
            first[i] = second[i] = std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

struct CoordinateChange::State {
    std::string from, to;
    ProjContext context = proj_context();
    ProjObject change;
    bool from_degrees = false, to_degrees = false;

    void apply(PJ_DIRECTION direction, std::span<double> first, std::span<double> second) {
        if (first.size() != second.size()) throw Fault(FaultKind::invalid_call);
        leave_out(direction == PJ_FWD ? from_degrees : to_degrees, first, second);
        constexpr std::size_t step = sizeof(double);
        ANOMALIS_PROJ(proj_trans_generic)
        (change.get(), direction, first.data(), step, first.size(), second.data(), step, second.size(),
         nullptr, 0, 0, nullptr, 0, 0);
        mark_lost(first, second);
    }
};

/// Ways that nobody uses at the moment. To find one takes milliseconds and the dataset of systems, and each
/// line of a survey asks for the same.
class CoordinateChange::Spare {
  public:
    /// Null where there is none.
    static std::unique_ptr<State> take(const std::string& from, const std::string& to) {
        const std::lock_guard lock(mutex());
        const auto found = std::ranges::find_if(
            states(), [&](const auto& state) { return state->from == from && state->to == to; });
        if (found == states().end()) return nullptr;
        std::unique_ptr<State> state = std::move(*found);
        states().erase(found);
        return state;
    }
    static void give(std::unique_ptr<State> state) {
        const std::lock_guard lock(mutex());
        states().push_back(std::move(state));
        // The oldest one goes.
        if (states().size() > most) states().erase(states().begin());
    }

  private:
    static constexpr std::size_t most = 64;
    static std::mutex& mutex() {
        static std::mutex one;
        return one;
    }
    /// Never ended: PROJ may be gone before it at the end of the program.
    static std::vector<std::unique_ptr<State>>& states() {
        static auto& all = *new std::vector<std::unique_ptr<State>>;
        return all;
    }
};

CoordinateChange::CoordinateChange(const std::string& from, const std::string& to)
    : state_(Spare::take(from, to)) {
    if (state_) return;
    state_ = std::make_unique<State>();
    state_->from = from;
    state_->to = to;
    pj_ctx* context = state_->context.get();
    const ProjObject source = proj_system(context, from);
    const ProjObject target = proj_system(context, to);
    state_->from_degrees = is_geographic(source.get());
    state_->to_degrees = is_geographic(target.get());
    const ProjObject plain(
        ANOMALIS_PROJ(proj_create_crs_to_crs_from_pj)(context, source.get(), target.get(), nullptr, nullptr));
    if (plain) state_->change.reset(ANOMALIS_PROJ(proj_normalize_for_visualization)(context, plain.get()));
    if (!state_->change)
        throw Fault("There is no way from " + system_name(source.get()) + " to " + system_name(target.get()) +
                    ". Choose another coordinate system");
}

CoordinateChange::~CoordinateChange() {
    if (state_ && state_->change) Spare::give(std::move(state_));
}
CoordinateChange::CoordinateChange(CoordinateChange&&) noexcept = default;
CoordinateChange& CoordinateChange::operator=(CoordinateChange&& other) noexcept {
    std::swap(state_, other.state_);
    return *this;
}

void CoordinateChange::forward(std::span<double> first, std::span<double> second) {
    state_->apply(PJ_FWD, first, second);
}

void CoordinateChange::inverse(std::span<double> first, std::span<double> second) {
    state_->apply(PJ_INV, first, second);
}

}  // namespace anomalis::intake

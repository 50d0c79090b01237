#include "flow/limit_bars.h"

#include "core/failure.h"
#include "core/search.h"

namespace anomalis::flow {

namespace {

// Twips, in the layout of the strip over the charts.
constexpr double edge_offset = 30;
constexpr double least_gap = 20;
/// A limit this far (m) outside the visible span still shows.
constexpr double span_margin = 1.0;

double left_end(const VisibleSpan& span) {
    return span.centre - span.span / 2;
}
double right_end(const VisibleSpan& span) {
    return span.centre + span.span / 2;
}

}  // namespace

void LimitBars::update_inversion_limit_display(const LimitStrip& strip, const VisibleSpan& span) {
    report_failure(prompts_, "An error occurred while updating the inversion limits display: ", [&] {
        strip_ = strip;
        span_ = span;
        if (workspace_.station_count <= 0) return;
        place_first();
        place_last();
    });
}

void LimitBars::place_first() {
    const double distance = workspace_.distances[workspace_.first_station];
    Bar& bar = bars_[0];
    bar.in_use = !(span_.zoom_factor > 1.0 && distance < left_end(span_) - span_margin);
    if (!bar.in_use) return;
    if (workspace_.first_station == 1) {
        bar.left = -edge_offset;
        return;
    }
    if (span_.span == 0) throw Fault(FaultKind::division_by_zero);
    bar.left = (distance - left_end(span_)) / span_.span * strip_.width - bar.width / 2;
}

void LimitBars::place_last() {
    Bar& bar = bars_[1];
    bar.in_use = !(span_.zoom_factor > 1.0 && workspace_.last_distance > right_end(span_) + span_margin);
    if (!bar.in_use) return;
    if (workspace_.last_station >= workspace_.station_count) {
        bar.left = strip_.width - bar.width - edge_offset;
        return;
    }
    if (span_.span == 0) throw Fault(FaultKind::division_by_zero);
    bar.left =
        (workspace_.last_distance - left_end(span_)) / span_.span * strip_.width - bar.width - edge_offset;
}

void LimitBars::mouse_down(int index, double x) {
    if (!bar(index).in_use) return;
    limit_bar_dragging_ = true;
    moved_ = false;
    limit_bar_start_x_ = x;
}

bool LimitBars::keeps_apart(int index, double centre) const {
    const double half = bar(index).width / 2;
    if (index == 0) return centre + half <= bars_[1].left - least_gap;
    return centre - half >= bars_[0].left + bars_[0].width + least_gap;
}

int LimitBars::station_at(double distance) const {
    const auto all = workspace_.distances.span().first(static_cast<std::size_t>(workspace_.station_count));
    if (distance <= all.front()) return 1;
    if (distance >= all.back()) return workspace_.station_count;
    return search_sorted(all, distance);
}

bool LimitBars::take_station(int index, int station) {
    if (index == 0 ? station >= workspace_.last_station : station <= workspace_.first_station) return false;
    (index == 0 ? workspace_.first_station : workspace_.last_station) = station;
    (index == 0 ? workspace_.first_distance : workspace_.last_distance) = workspace_.distances[station];
    return true;
}

bool LimitBars::mouse_move(int index, double x) {
    const Bar& moving = bar(index);
    if (!moving.in_use || !limit_bar_dragging_ || x == limit_bar_start_x_) return false;
    if (workspace_.station_count <= 0 || strip_.width <= 0) return false;
    const double centre = moving.left + moving.width / 2 + (x - limit_bar_start_x_);
    const double distance = left_end(span_) + centre / strip_.width * span_.span;
    if (!keeps_apart(index, centre) || !take_station(index, station_at(distance))) return false;
    moved_ = true;
    update_inversion_limit_display(strip_, span_);
    return true;
}

bool LimitBars::mouse_up(int index) {
    if (!bar(index).in_use || !limit_bar_dragging_) return false;
    limit_bar_dragging_ = false;
    return true;
}

}  // namespace anomalis::flow

#include "chart/detail/axis_marks.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "chart/detail/tick_text.h"
#include "chart/detail/ticks.h"
#include "chart/surface_mapping.h"
#include "chart/tick_rule.h"

namespace anomalis::chart {

namespace {

constexpr double closest_log_ticks = 2.0 * units_per_screen_pixel;
constexpr double narrowest_step = 0.0457574905606751;  // from 9 to 10, decades
constexpr double most_decades = 1000.0;
constexpr std::size_t few_numbers = 3;
constexpr std::size_t enough_numbers = 4;

/// A place that may bear a number; its text is made only when it is looked at.
struct Place {
    double count = 0.0;  ///< of intervals from 0
    double position = 0.0;
    double value = 0.0;
};

using TextOf = std::function<std::string(const Place&)>;

class Numbers {
  public:
    explicit Numbers(const NumberRoom& room) : room_(room) {}

    /// Those of all places, none when two of them would touch or read the same.
    std::optional<std::vector<AxisNumber>> all(const std::vector<Place>& places, double every,
                                               const TextOf& text_of) const {
        std::vector<AxisNumber> numbers;
        for (const Place& place : places) {
            if (std::fmod(place.count, every) != 0.0) continue;
            AxisNumber number = number_at(place, text_of);
            if (!fits(number)) continue;
            if (!numbers.empty() && touch(numbers.back(), number)) return std::nullopt;
            numbers.push_back(std::move(number));
        }
        return numbers;
    }

    /// Those of every place, or of every 2nd, 5th, 10th...; `every` is set to which.
    std::vector<AxisNumber> thinned(const std::vector<Place>& places, const TextOf& text_of,
                                    double& every) const {
        every = 1.0;
        if (places.empty()) return {};
        const double farthest = std::max(std::abs(places.front().count), std::abs(places.back().count));
        for (; every <= 3.0 * farthest || every == 1.0; every = next_multiple(every)) {
            auto numbers = all(places, every, text_of);
            if (numbers && !numbers->empty()) return *std::move(numbers);
        }
        return one(places, text_of);
    }

  private:
    AxisNumber number_at(const Place& place, const TextOf& text_of) const {
        std::string text = text_of(place);
        const double width = room_.width_of(text);
        return {place.position, width, std::move(text), place.count == 0.0};
    }
    double half(const AxisNumber& number) const {
        return (room_.sideways ? number.width : room_.height) / 2.0;
    }
    bool fits(const AxisNumber& number) const {
        // What is reckoned to stand at the very edge does so but for rounding.
        constexpr double rounding = 1e-6;
        return number.position - half(number) >= room_.along.low - rounding &&
               number.position + half(number) <= room_.along.high + rounding;
    }
    bool touch(const AxisNumber& before, const AxisNumber& after) const {
        return before.position + half(before) + room_.height > after.position - half(after) ||
               before.text == after.text;
    }
    /// The number nearest the middle.
    std::vector<AxisNumber> one(const std::vector<Place>& places, const TextOf& text_of) const {
        const double middle = (room_.along.low + room_.along.high) / 2.0;
        const auto nearest =
            std::min_element(places.begin(), places.end(), [&](const Place& a, const Place& b) {
                return std::abs(a.position - middle) < std::abs(b.position - middle);
            });
        AxisNumber number = number_at(*nearest, text_of);
        if (!fits(number)) return {};
        return {std::move(number)};
    }

    const NumberRoom& room_;
};

std::vector<Place> places_of(const std::vector<Tick>& ticks) {
    std::vector<Place> places;
    places.reserve(ticks.size());
    for (const Tick& tick : ticks) places.push_back({tick.count, tick.position, tick.value});
    return places;
}

std::vector<double> positions_of(const std::vector<Place>& places) {
    std::vector<double> positions;
    positions.reserve(places.size());
    for (const Place& place : places) positions.push_back(place.position);
    return positions;
}

AxisMarks linear_marks(Interval view, double interval, const AxisTransform& transform, double scale,
                       double plot_low, const NumberRoom& room) {
    const std::vector<Place> places = places_of(make_ticks(view, interval, scale, plot_low));
    const double drawn = drawn_interval(interval, scale);
    const std::string format = tick_format(interval);
    double every = 1.0;
    AxisMarks marks;
    marks.numbers = Numbers(room).thinned(
        places,
        [&](const Place& place) {
            return transform.logarithmic() ? tick_text(place.value, transform, format)
                                           : interval_text(place.value, drawn);
        },
        every);
    marks.ticks = positions_of(places);
    if (!transform.logarithmic()) marks.minor_ticks = make_minor_ticks(view, interval, scale, plot_low);
    return marks;
}

/// The marks of a logarithmic axis whose ticks are powers of the base.
class LogMarks {
  public:
    LogMarks(Interval view, double interval, const AxisTransform& transform, double scale, double plot_low,
             const NumberRoom& room)
        : view_(view),
          interval_(interval),
          transform_(transform),
          scale_(scale),
          plot_low_(plot_low),
          numbers_(room) {}

    AxisMarks make(bool zoomed) {
        const std::vector<Place> powers = places_of(make_ticks(view_, interval_, scale_, plot_low_));
        double every = 1.0;
        marks_.numbers = numbers_.thinned(
            powers, [&](const Place& place) { return power_text(place); }, every);
        marks_.ticks = positions_of(powers);
        if (interval_ != 1.0) {
            marks_.minor_ticks = between(places_of(make_ticks(view_, 1.0, scale_, plot_low_)));
            return marks_;
        }
        const bool decimal = transform_.base() == 10.0;
        const std::vector<Place> whole = steps({2, 3, 4, 5, 6, 7, 8, 9});
        if (decimal && every == 1.0 && (zoomed || marks_.numbers.size() < enough_numbers)) {
            take_steps(steps({2, 5}));
            if (marks_.numbers.size() < few_numbers) take_steps(whole);
        }
        if (marks_.numbers.size() < few_numbers && take_round_values()) return marks_;
        if (decimal && scale_ * narrowest_step >= closest_log_ticks) marks_.minor_ticks = between(whole);
        return marks_;
    }

  private:
    double position(double transformed) const { return (transformed - view_.low) * scale_ + plot_low_; }
    bool in_view(double transformed) const {
        const double tolerance = view_.span() * 1e-9;
        return transformed >= view_.low - tolerance && transformed <= view_.high + tolerance;
    }
    /// Powers of 10 and these multiples of each that are in view, from low to high. In the linear band, which
    /// stands for a decade about 0, they are tenths of it.
    std::vector<Place> steps(std::initializer_list<int> multiples) const {
        std::vector<Place> found;
        const auto add = [&](double transformed) {
            if (in_view(transformed))
                found.push_back({transformed == 0.0 ? 0.0 : 1.0, position(transformed), transformed});
        };
        // A view from before the axis became logarithmic may reach anywhere.
        if (!(view_.span() <= most_decades) || std::abs(view_.low) > most_decades) return found;
        for (double power = std::floor(view_.low) - 1.0; power <= view_.high + 1.0; power += 1.0) {
            add(power);
            for (const int m : multiples) {
                if (power >= 1.0) add(power + std::log10(m));
                if (power <= -1.0) add(power - std::log10(m));
                if (power == 0.0) add(m / 10.0);
                if (power == 0.0) add(-m / 10.0);
            }
        }
        std::sort(found.begin(), found.end(),
                  [](const Place& a, const Place& b) { return a.position < b.position; });
        return found;
    }
    void take_steps(const std::vector<Place>& places) {
        auto taken = numbers_.all(places, 1.0, [&](const Place& place) { return power_text(place); });
        if (!taken || taken->size() <= marks_.numbers.size()) return;
        marks_.numbers = *std::move(taken);
        marks_.ticks = positions_of(places);
    }
    std::string power_text(const Place& place) const { return tick_text(place.value, transform_, "0"); }
    /// Within a part of a decade: round values, as on a linear axis, at their logarithms.
    bool take_round_values() {
        const Interval values{transform_.inverse(view_.low), transform_.inverse(view_.high)};
        if (!(values.span() > 0.0) || !std::isfinite(values.span())) return false;
        const double per_value = view_.span() * scale_ / values.span();
        const double interval = tick_interval(values.low, values.high);
        std::vector<Place> places = places_of(make_ticks(values, interval, per_value, plot_low_));
        for (Place& place : places) place.position = position(transform_.forward(place.value));
        double every = 1.0;
        auto taken = numbers_.thinned(
            places, [&](const Place& place) { return resolved_text(place.value, interval); }, every);
        if (taken.size() <= marks_.numbers.size()) return false;
        marks_.numbers = std::move(taken);
        marks_.ticks = positions_of(places);
        for (const double at : make_minor_ticks(values, interval, per_value, plot_low_))
            marks_.minor_ticks.push_back(
                position(transform_.forward(values.low + (at - plot_low_) / per_value)));
        return true;
    }
    /// Positions that are not among the ticks.
    std::vector<double> between(const std::vector<Place>& places) const {
        constexpr double same = 1e-6;
        std::vector<double> found;
        for (const Place& place : places)
            if (std::none_of(marks_.ticks.begin(), marks_.ticks.end(),
                             [&](double tick) { return std::abs(tick - place.position) < same; }))
                found.push_back(place.position);
        return found;
    }

    Interval view_;
    double interval_;
    const AxisTransform& transform_;
    double scale_;
    double plot_low_;
    Numbers numbers_;
    AxisMarks marks_;
};

}  // namespace

AxisMarks make_marks(const AxisRange& range, const AxisTransform& transform, double scale, double plot_low,
                     const NumberRoom& room) {
    const bool zoomed = range.view.span() < range.full.span();
    double interval = range.view_tick_interval();
    if (transform.logarithmic()) {
        // A finer interval than a power is no round number there.
        if (zoomed) interval = std::max(1.0, std::round(interval));
        if (interval >= 1.0 && interval == std::round(interval))
            return LogMarks(range.view, interval, transform, scale, plot_low, room).make(zoomed);
    }
    return linear_marks(range.view, interval, transform, scale, plot_low, room);
}

}  // namespace anomalis::chart

#include "intake/survey/line_pieces.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace anomalis::intake {

namespace {

constexpr double most_bend = 20 * std::numbers::pi / 180;
/// Fewer points show no shape.
constexpr std::size_t least_points = 5;
/// So many points tell the shape of a stretch.
constexpr std::size_t shape_points = 512;

/// Parts of the way so far, or of a stretch.
constexpr double fold_part = 0.05, tiny_part = 0.03, bend_part = 0.03;
/// A jump is so many typical steps: when it leaves the line, when no direction is known yet. One along the
/// line is a gap, however wide.
constexpr double leaving_steps = 10, first_steps = 50;
/// Standard deviations of the scatter that a reversal, a jump, a bend must exceed.
constexpr double fold_scatter = 5, jump_scatter = 6, bend_scatter = 3;

struct Offset {
    double east = 0, north = 0;
};

Offset offset(const MapPoint& from, const MapPoint& to) {
    return {static_cast<double>(to.east) - static_cast<double>(from.east),
            static_cast<double>(to.north) - static_cast<double>(from.north)};
}

double distance(const MapPoint& from, const MapPoint& to) {
    const Offset d = offset(from, to);
    return std::sqrt(d.east * d.east + d.north * d.north);
}

/// Between two directions, 0 to pi; 0 where one has none.
double angle(const Offset& a, const Offset& b) {
    const double cross = a.east * b.north - a.north * b.east, dot = a.east * b.east + a.north * b.north;
    return cross == 0 && dot == 0 ? 0 : std::abs(std::atan2(cross, dot));
}

double median(std::vector<float>& values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return static_cast<double>(*middle);
}

/// A median needs no more of them.
constexpr std::size_t sampled_points = 20000;

std::size_t sampling_of(std::size_t points) {
    return points / sampled_points + 1;
}

/// Standard deviation of a place across the line through its neighbours, m: from the median, which bends and
/// jumps leave alone. The distance from the middle of two others is the square root of 3/2 times as wide.
/// Places that scatter along the line as well have less.
double scatter(std::span<const MapPoint> track) {
    std::vector<float> off;
    for (std::size_t i = 1; i + 1 < track.size(); i += sampling_of(track.size())) {
        const MapPoint &a = track[i - 1], &b = track[i + 1];
        const MapPoint middle{(a.east + b.east) / 2, (a.north + b.north) / 2, 0};
        off.push_back(static_cast<float>(distance(middle, track[i])));
    }
    constexpr double of_median = 1 / 0.6745;  // of the normal distribution
    return median(off) * of_median / std::sqrt(1.5);
}

/// Cuts a track at jumps and reversals.
class Unfolding {
  public:
    explicit Unfolding(std::span<const MapPoint> track)
        : track_(track), step_(typical_step(track)), scatter_(scatter(track)) {}

    std::vector<LinePiece> stretches();

  private:
    struct Stretch {
        std::size_t first = 0, last = 0;
        bool after_jump = false;
        double reach = 0;
    };

    void begin(std::size_t first, bool after_jump);
    void end(std::size_t last);
    bool jumps_to(std::size_t i) const;
    std::size_t end_before_turn() const;
    std::vector<LinePiece> without_tiny_ones() const;

    std::span<const MapPoint> track_;
    double step_, scatter_;
    std::vector<Stretch> done_;
    Stretch now_;
    std::size_t farthest_ = 0;
};

void Unfolding::begin(std::size_t first, bool after_jump) {
    now_ = {.first = first, .last = first, .after_jump = after_jump};
    farthest_ = first;
}

void Unfolding::end(std::size_t last) {
    now_.last = last;
    done_.push_back(now_);
}

bool Unfolding::jumps_to(std::size_t i) const {
    const double step = distance(track_[i - 1], track_[i]);
    if (step <= leaving_steps * step_ || step <= jump_scatter * scatter_) return false;
    const bool directed = now_.reach > std::max(4 * step_, fold_scatter * scatter_);
    if (!directed) return step > first_steps * step_;
    return angle(offset(track_[now_.first], track_[i - 1]), offset(track_[i - 1], track_[i])) > most_bend;
}

/// A line often ends with one wide step to the next one, which the farthest point may lie on either side of.
std::size_t Unfolding::end_before_turn() const {
    constexpr std::size_t about = 3;
    constexpr double wide = 2.5;
    std::size_t best = farthest_;
    double widest = wide * step_;
    const std::size_t from = std::max(now_.first, farthest_ - std::min(farthest_, about));
    for (std::size_t i = from; i < std::min(farthest_ + about, track_.size() - 1); ++i) {
        const double step = distance(track_[i], track_[i + 1]);
        if (step <= widest) continue;
        widest = step;
        best = i;
    }
    return best;
}

std::vector<LinePiece> Unfolding::stretches() {
    begin(0, false);
    for (std::size_t i = 1; i < track_.size(); ++i) {
        if (jumps_to(i)) {
            end(i - 1);
            begin(i, true);
            continue;
        }
        const double way = distance(track_[now_.first], track_[i]);
        if (way >= now_.reach) {
            now_.reach = way;
            farthest_ = i;
            continue;
        }
        const double back = std::max({fold_part * now_.reach, fold_scatter * scatter_, 2.5 * step_});
        if (now_.reach - way <= back) continue;
        const std::size_t last = end_before_turn();
        end(last);
        begin(last + 1, false);
        i = last + 1;
    }
    end(track_.size() - 1);
    return without_tiny_ones();
}

/// What a parked or turning instrument leaves at the end of a line is no line.
std::vector<LinePiece> Unfolding::without_tiny_ones() const {
    double longest = 0;
    for (const Stretch& stretch : done_) longest = std::max(longest, stretch.reach);
    std::vector<LinePiece> pieces;
    bool tiny_before = false;  // and nothing but tiny ones since the last jump
    for (const Stretch& stretch : done_) {
        const bool tiny = stretch.reach < tiny_part * longest;
        const bool joins = !pieces.empty() && !stretch.after_jump && (tiny || tiny_before);
        if (joins) {
            pieces.back().last = static_cast<long>(stretch.last);
        } else {
            pieces.push_back({static_cast<long>(stretch.first), static_cast<long>(stretch.last)});
        }
        tiny_before = tiny && (!joins || tiny_before);
    }
    return pieces;
}

/// Marks the points that a polyline keeps within a tolerance of all others.
void keep_corners(std::span<const MapPoint> track, double tolerance, std::vector<bool>& kept) {
    std::vector<std::pair<std::size_t, std::size_t>> open{{0, track.size() - 1}};
    kept.assign(track.size(), false);
    kept.front() = kept.back() = true;
    while (!open.empty()) {
        const auto [first, last] = open.back();
        open.pop_back();
        const Offset chord = offset(track[first], track[last]);
        const double length2 = chord.east * chord.east + chord.north * chord.north;
        double most = tolerance * tolerance;
        std::size_t corner = first;
        for (std::size_t i = first + 1; i < last; ++i) {
            const Offset d = offset(track[first], track[i]);
            const double along = d.east * chord.east + d.north * chord.north;
            const double part = length2 > 0 ? std::clamp(along / length2, 0.0, 1.0) : 0;
            const double east = d.east - part * chord.east, north = d.north - part * chord.north;
            const double off = east * east + north * north;
            if (off <= most) continue;
            most = off;
            corner = i;
        }
        if (corner == first) continue;
        kept[corner] = true;
        open.emplace_back(first, corner);
        open.emplace_back(corner, last);
    }
}

double diagonal(std::span<const MapPoint> track) {
    const auto [west, east] = std::ranges::minmax_element(track, {}, &MapPoint::east);
    const auto [south, north] = std::ranges::minmax_element(track, {}, &MapPoint::north);
    return std::hypot(static_cast<double>(east->east) - static_cast<double>(west->east),
                      static_cast<double>(north->north) - static_cast<double>(south->north));
}

/// The points of `track` where it bends, as their numbers in it.
std::vector<std::size_t> bends_of(std::span<const MapPoint> track) {
    const double tolerance = std::max(bend_part * diagonal(track), bend_scatter * scatter(track));
    std::vector<bool> kept;
    keep_corners(track, tolerance, kept);
    std::vector<std::size_t> corners, bends;
    for (std::size_t i = 0; i < kept.size(); ++i)
        if (kept[i]) corners.push_back(i);
    std::size_t begin = 0;
    for (std::size_t c = 1; c + 1 < corners.size(); ++c) {
        const Offset so_far = offset(track[begin], track[corners[c]]);
        if (angle(so_far, offset(track[corners[c]], track[corners[c + 1]])) <= most_bend) continue;
        begin = corners[c];
        bends.push_back(begin);
    }
    return bends;
}

/// Every so-manieth point.
std::vector<MapPoint> thinned(std::span<const MapPoint> track, std::size_t every) {
    std::vector<MapPoint> points;
    for (std::size_t i = 0; i < track.size(); i += every) points.push_back(track[i]);
    return points;
}

void cut_at_bends(std::span<const MapPoint> track, LinePiece stretch, std::vector<LinePiece>& pieces) {
    const auto first = static_cast<std::size_t>(stretch.first);
    const auto points = static_cast<std::size_t>(stretch.last) - first + 1;
    if (points >= least_points) {
        const auto part = track.subspan(first, points);
        const std::size_t every = (points - 1) / shape_points + 1;
        const auto bends = every == 1 ? bends_of(part) : bends_of(thinned(part, every));
        for (const std::size_t bend : bends) {
            const long last = stretch.first + static_cast<long>(bend * every);
            pieces.push_back({pieces.empty() || pieces.back().last < stretch.first ? stretch.first
                                                                                   : pieces.back().last + 1,
                              last});
        }
        if (!bends.empty()) stretch.first = pieces.back().last + 1;
    }
    pieces.push_back(stretch);
}

}  // namespace

double typical_step(std::size_t points, const PointAt& point_at) {
    std::vector<float> steps;
    for (std::size_t i = 1; i < points; i += sampling_of(points))
        if (const double step = distance(point_at(i - 1), point_at(i)); step > 0)
            steps.push_back(static_cast<float>(step));
    return median(steps);
}

double typical_step(std::span<const MapPoint> track) {
    return typical_step(track.size(), [track](std::size_t i) { return track[i]; });
}

std::vector<LinePiece> unfolded_stretches(std::span<const MapPoint> track) {
    if (track.empty()) return {};
    if (track.size() < least_points) return {{0, static_cast<long>(track.size()) - 1}};
    return Unfolding(track).stretches();
}

std::vector<LinePiece> straight_pieces(std::span<const MapPoint> track) {
    std::vector<LinePiece> pieces;
    for (const LinePiece& stretch : unfolded_stretches(track)) cut_at_bends(track, stretch, pieces);
    return pieces;
}

double length_of_pieces(std::span<const MapPoint> track, std::span<const LinePiece> pieces) {
    double length = 0;
    for (const LinePiece& piece : pieces)
        length += distance(track[static_cast<std::size_t>(piece.first)],
                           track[static_cast<std::size_t>(piece.last)]);
    return length;
}

}  // namespace anomalis::intake

#include "survey/joined/joined_bodies.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <ranges>
#include <span>
#include <tuple>
#include <utility>

#include "flow/strike_fit.h"
#include "survey/joined/body_links.h"
#include "survey/joined/joined_values.h"
#include "survey/joined/line_families.h"

namespace anomalis::survey {

namespace {

/// Degrees; tops whose strike is known worse hardly are one body, or none that a strike helps.
constexpr double most_strike_error = 30;
constexpr double half_turn = 180, quarter_turn = 90;

/// Bodies of a family from line to line, with the links between.
struct Chain {
    std::vector<std::size_t> bodies;
    std::vector<BodyLink> links;  ///< one less
};

std::vector<Chain> chains_of(const std::vector<BodyLink>& chosen, std::size_t body_count) {
    std::vector<const BodyLink*> above(body_count);
    std::vector<bool> has_below(body_count);
    for (const BodyLink& link : chosen) {
        above[link.lower] = &link;
        has_below[link.upper] = true;
    }
    std::vector<Chain> chains;
    for (std::size_t first = 0; first < body_count; ++first) {
        if (has_below[first] || !above[first]) continue;
        Chain chain{.bodies = {first}, .links = {}};
        for (std::size_t at = first; above[at]; at = above[at]->upper) {
            chain.links.push_back(*above[at]);
            chain.bodies.push_back(above[at]->upper);
        }
        chains.push_back(std::move(chain));
    }
    return chains;
}

/// What is known of a joined body on its way.
class Joining {
  public:
    Joining(const SurveyResults& results, const LineFamily& family) : results_(results), family_(family) {}

    std::vector<JoinedBody> all() {
        std::vector<Chain> waiting = chains_of(chosen_links(family_), family_.bodies.size());
        missed_ = missed_part(waiting);
        std::vector<JoinedBody> joined;
        while (!waiting.empty()) {
            Chain chain = std::move(waiting.back());
            waiting.pop_back();
            if (const std::optional<std::size_t> cut = sharpest_bend(chain)) {
                for (Chain& part : parts_of(chain, *cut))
                    if (!part.links.empty()) waiting.push_back(std::move(part));
            } else if (std::optional<JoinedBody> body = body_of(chain)) {
                joined.push_back(std::move(*body));
            }
        }
        return joined;
    }

  private:
    const BodyResult& result(const LaidBody& body) const {
        return results_.lines[body.line].bodies[body.body];
    }

    flow::StrikePoint strike_point(const LaidBody& body) const {
        const BodyResult& found = result(body);
        const LaidLine& line = family_.lines[body.laid_line];
        flow::StrikePoint point{.east = found.east, .north = found.north, .error = body.place_error};
        if (std::isfinite(found.profile_azimuth)) {
            point.line_east = std::sin(found.profile_azimuth * degree_in_radians);
            point.line_north = std::cos(found.profile_azimuth * degree_in_radians);
        } else {
            const TrackPoint from = family_.on_map(0, 0), to = family_.on_map(line.axis_x, line.axis_y);
            point.line_east = to.east - from.east;
            point.line_north = to.north - from.north;
        }
        return point;
    }

    std::vector<flow::StrikePoint> strike_points(std::span<const std::size_t> bodies) const {
        std::vector<flow::StrikePoint> points;
        for (const std::size_t body : bodies) points.push_back(strike_point(family_.bodies[body]));
        return points;
    }

    std::optional<flow::StrikeFit> strike_of(std::span<const std::size_t> bodies) const {
        return flow::fit_strike(strike_points(bodies), quarter_turn);
    }

    /// The body of a chain at which strikes before and behind it differ by most of those that differ by
    /// more than a bend may; at least three bodies tell a strike, at most `seen`.
    std::optional<std::size_t> sharpest_bend(const Chain& chain) const {
        constexpr std::size_t least = 2, seen = 6;
        constexpr double most_bend = 20, sure_errors = 3;
        const std::span<const std::size_t> bodies = chain.bodies;
        std::optional<std::size_t> at;
        double sharpest = most_bend;
        for (std::size_t i = least; i + least < bodies.size(); ++i) {
            const std::size_t first = i > seen ? i - seen : 0, last = std::min(bodies.size() - 1, i + seen);
            const auto before = strike_of(bodies.subspan(first, i - first + 1));
            const auto behind = strike_of(bodies.subspan(i, last - i + 1));
            if (!before || !behind) continue;
            const double turn = std::abs(std::remainder(before->strike - behind->strike, half_turn));
            if (turn > sure_errors * std::hypot(before->error, behind->error) && turn > sharpest)
                sharpest = turn, at = i;
        }
        return at;
    }

    /// The body in the bend stays with the side that it belongs to more.
    static std::vector<Chain> parts_of(const Chain& chain, std::size_t bend) {
        const std::size_t cut = chain.links[bend - 1].gain < chain.links[bend].gain ? bend - 1 : bend;
        const auto links = chain.links.begin() + static_cast<std::ptrdiff_t>(cut);
        const auto bodies = chain.bodies.begin() + static_cast<std::ptrdiff_t>(cut) + 1;
        return {{{chain.bodies.begin(), bodies}, {chain.links.begin(), links}},
                {{bodies, chain.bodies.end()}, {links + 1, chain.links.end()}}};
    }

    static Chain without_weaker_end(Chain chain) {
        if (chain.links.front().gain < chain.links.back().gain) {
            chain.links.erase(chain.links.begin());
            chain.bodies.erase(chain.bodies.begin());
        } else {
            chain.links.pop_back();
            chain.bodies.pop_back();
        }
        return chain;
    }

    std::optional<JoinedBody> body_of(const Chain& chain) const {
        // Two tops without a third that confirms them stand so by chance more often than others.
        constexpr double least_alone = 1.5;
        if (chain.links.size() == 1 && chain.links[0].gain < least_alone) return std::nullopt;
        const auto fit = strike_of(chain.bodies);
        if (!fit || fit->error > most_strike_error) {
            if (chain.links.size() < 2) return std::nullopt;
            return body_of(without_weaker_end(chain));
        }
        JoinedBody body;
        body.coordinate_system = family_.coordinate_system;
        body.strike = fit->strike - half_turn * std::floor(fit->strike / half_turn);
        if (body.strike >= half_turn) body.strike = 0;  // a hair below 0 was rounded up
        body.strike_error = fit->error;
        body.birge_ratio = fit->birge_ratio;
        add_members(chain, body);
        add_lines_without(chain, body);
        add_values(body);
        return body;
    }

    /// Places the members, and with them length and ends, along the straight line of the strike.
    void add_members(const Chain& chain, JoinedBody& body) const {
        const double sine = std::sin(body.strike * degree_in_radians),
                     cosine = std::cos(body.strike * degree_in_radians);
        const TrackPoint origin = strike_point_of(chain.bodies.front());
        struct Placed {
            const LaidBody* laid;
            flow::StrikePoint point;
            double along, off, scale;
        };
        std::vector<Placed> placed;
        double weights = 0, across = 0;
        for (const std::size_t i : chain.bodies) {
            const flow::StrikePoint point = strike_point(family_.bodies[i]);
            const double east = point.east - origin.east, north = point.north - origin.north;
            const double crossing = cosine * point.line_east - sine * point.line_north;
            const double off = cosine * east - sine * north, scale = std::abs(crossing) * point.error;
            placed.push_back({&family_.bodies[i], point, sine * east + cosine * north, off, scale});
            weights += 1 / (scale * scale);
            across += off / (scale * scale);
        }
        across /= weights;
        std::ranges::sort(placed, {}, &Placed::along);
        const auto place = [&](double along) {
            return TrackPoint{origin.east + sine * along + cosine * across,
                              origin.north + cosine * along - sine * across};
        };
        const double first = placed.front().along, last = placed.back().along;
        const std::optional<EndGap> before = gap(*placed.front().laid, place(first), -sine, -cosine);
        const std::optional<EndGap> behind = gap(*placed.back().laid, place(last), sine, cosine);
        body.open_start = !before, body.open_end = !behind;
        set_length(last - first, before.value_or(EndGap()), behind.value_or(EndGap()), body);
        const double start = first - before.value_or(EndGap()).mean();
        const double end = last + behind.value_or(EndGap()).mean();
        body.start = place(start), body.end = place(end), body.centre = place((start + end) / 2);
        for (const Placed& p : placed)
            body.members.push_back({.line = p.laid->line,
                                    .body = p.laid->body,
                                    .place = {p.point.east, p.point.north},
                                    .along = p.along - (start + end) / 2,
                                    .off = (p.off - across) / p.scale});
    }

    TrackPoint strike_point_of(std::size_t body) const {
        const BodyResult& found = result(family_.bodies[body]);
        return {found.east, found.north};
    }

    /// Beyond the last line that shows a body, along its strike; none where no line follows.
    std::optional<EndGap> gap(const LaidBody& last, const TrackPoint& from, double east, double north) const {
        const double dx = east * family_.axis_east + north * family_.axis_north;
        const double dy = north * family_.axis_east - east * family_.axis_north;
        const std::vector<double> ways = family_.ways_to_next_lines(
            family_.laid(from), dx, dy, last.laid_line, most_spacings * family_.usual_spacing);
        if (ways.empty()) return std::nullopt;
        return EndGap{ways[0], ways[ways.size() > 1 ? 1 : 0], missed_};
    }

    static void set_length(double seen, const EndGap& before, const EndGap& behind, JoinedBody& body) {
        constexpr double lower = 0.05, upper = 0.95;
        body.length.value = seen + before.mean() + behind.mean();
        body.length.lower = seen + gaps_quantile(before, behind, lower);
        if (!body.open_start && !body.open_end)
            body.length.upper = seen + gaps_quantile(before, behind, upper);
        body.length_error = std::sqrt(before.variance() + behind.variance());
    }

    /// From the lines between members, as if five had been seen before and half of one had missed it.
    double missed_part(const std::vector<Chain>& chains) const {
        constexpr double seen_before = 5, missed_before = 0.5;
        double missed = missed_before, seen = seen_before;
        for (const Chain& chain : chains) {
            seen += static_cast<double>(chain.bodies.size());
            for (const BodyLink& link : chain.links)
                missed += static_cast<double>(
                    family_.lines_crossed(family_.bodies[link.lower], family_.bodies[link.upper]).size());
        }
        return missed / (missed + seen);
    }

    void add_lines_without(const Chain& chain, JoinedBody& body) const {
        for (const BodyLink& link : chain.links)
            for (const std::size_t line :
                 family_.lines_crossed(family_.bodies[link.lower], family_.bodies[link.upper]))
                body.lines_without.push_back(family_.lines[line].line);
    }

    void add_values(JoinedBody& body) const {
        const auto join = [&](auto value_of, MeanOf mean = MeanOf::values) {
            std::vector<Measured> values;
            for (const JoinedMember& member : body.members)
                values.push_back(value_of(results_.lines[member.line].bodies[member.body]));
            return joined_value(values, mean);
        };
        body.depth_below_ground = join([](const BodyResult& b) { return measured(b.depth_below_ground); });
        body.depth_below_sensor = join([](const BodyResult& b) { return measured(b.depth_below_sensor); });
        body.depth_below_sensor.lower = std::max(body.depth_below_sensor.lower, 0.0);
        body.top_elevation = join([](const BodyResult& b) {
            const Measured depth = measured(b.depth_below_sensor), ground = measured(b.depth_below_ground);
            return Measured{b.top_elevation, std::isfinite(depth.error) ? depth.error : ground.error};
        });
        body.dip = join([&](const BodyResult& b) { return dip_from(b, body.strike); });
        body.dip.lower = std::max(body.dip.lower, 0.0);
        body.dip.upper = std::min(body.dip.upper, half_turn);
        body.width = join([](const BodyResult& b) { return measured(b.width); }, MeanOf::logarithms);
        body.susceptibility =
            join([](const BodyResult& b) { return measured(b.susceptibility); }, MeanOf::logarithms);
        body.density_contrast = join([](const BodyResult& b) { return measured(b.density_contrast); });
    }

    /// The dip of a body as seen along another strike, of the two senses that are nearer to its own.
    static Measured dip_from(const BodyResult& body, double strike) {
        Measured dip = measured(body.dip);
        dip.value -= half_turn * std::floor(dip.value / half_turn);
        const double own =
            std::isfinite(body.strike.value) ? body.strike.value : body.profile_azimuth - quarter_turn;
        if (std::cos((own - strike) * degree_in_radians) < 0) dip.value = half_turn - dip.value;
        return dip;
    }

    const SurveyResults& results_;
    const LineFamily& family_;
    double missed_ = 0;  ///< part of the lines over a body that do not show it
};

}  // namespace

std::vector<JoinedBody> join_bodies(const SurveyResults& results) {
    std::vector<JoinedBody> joined;
    for (const LineFamily& family : line_families(results))
        for (JoinedBody& body : Joining(results, family).all()) joined.push_back(std::move(body));
    std::ranges::sort(joined, {}, [](const JoinedBody& body) {
        return std::tuple(-static_cast<std::ptrdiff_t>(body.members.size()), body.start.east,
                          body.start.north, body.strike);
    });
    for (std::size_t i = 0; i < joined.size(); ++i) joined[i].number = static_cast<int>(i) + 1;
    return joined;
}

}  // namespace anomalis::survey

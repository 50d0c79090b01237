#include "survey/joined/body_links.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace anomalis::survey {

namespace {

/// Intervals are of the readings' noise; a model that is too simple is off by more.
constexpr double model_error_factor = 1.5;
/// What a dyke itself changes between neighbouring lines: its depth by a part, its dip, its strength (the
/// logarithm), its direction.
constexpr double depth_change = 0.15, dip_change = 8, strength_change = 0.3, bend = 6 * degree_in_radians;
/// Beyond so many standard errors two bodies are not compared any further.
constexpr double most_errors = 3.5;
/// A strike further from the square to a line is not looked for: a line hardly sees such a dyke.
constexpr double most_oblique = 75 * degree_in_radians;
/// A dyke that one line shows is shown by the next one; by the one behind alone.
constexpr double shown_next = 0.85, shown_behind = 0.1;
constexpr std::size_t most_skipped = 1;

double square(double v) {
    return v * v;
}

/// How values of the bodies of a survey spread, about as if ten bodies had been seen before.
class Spread {
  public:
    explicit Spread(double before) : before_(before) {}
    void add(double v) {
        if (!std::isfinite(v)) return;
        ++count_, sum_ += v, squares_ += v * v;
    }
    double variance() const {
        constexpr double seen_before = 10;
        const double about_mean = count_ > 0 ? std::max(0.0, squares_ - sum_ * sum_ / count_) : 0;
        return (about_mean + seen_before * square(before_)) / (count_ + seen_before);
    }

  private:
    double before_, count_ = 0, sum_ = 0, squares_ = 0;
};

/// Logarithm of the likelihood that two values differ so by their errors over that by chance. -infinity where
/// they cannot be one.
double worth(double difference, double variance, double chance_variance) {
    if (std::isnan(difference)) return 0;
    const double errors = square(difference) / variance;
    if (errors > square(most_errors)) return -std::numeric_limits<double>::infinity();
    const double chance = std::max(2 * chance_variance, variance);
    return -errors / 2 + square(difference) / (2 * chance) + std::log(chance / variance) / 2;
}

class LinkSearch {
  public:
    explicit LinkSearch(const LineFamily& family) : family_(family) {
        for (const LaidBody& body : family.bodies) {
            depth_.add(log_depth(body));
            dip_.add(body.dip.value);
            strength_.add(body.log_strength.value);
        }
        double length = 0;
        for (const LaidLine& line : family.lines)
            if (line.done) length += line.x_high - line.x_low;
        density_ = static_cast<double>(family.bodies.size()) / std::max(length, 1.0);
    }

    std::vector<BodyLink> all() const {
        std::vector<BodyLink> links;
        const double reach = most_spacings * family_.usual_spacing;
        for (std::size_t a = 0; a < family_.bodies.size(); ++a) {
            const LaidBody& from = family_.bodies[a];
            for (const std::size_t line : family_.lines_between(from.y, from.y + reach)) {
                if (line == from.laid_line) continue;
                add_links(a, family_.lines[line], reach, links);
            }
        }
        return links;
    }

  private:
    static double log_depth(const LaidBody& body) {
        return body.depth.value > 0 ? std::log(body.depth.value) : unknown;
    }

    void add_links(std::size_t a, const LaidLine& line, double reach, std::vector<BodyLink>& links) const {
        const LaidBody& from = family_.bodies[a];
        const double most_off = reach * std::tan(most_oblique) + from.place_error * most_errors;
        const auto left = [&](std::size_t i, double x) { return family_.bodies[i].x < x; };
        auto at = std::lower_bound(line.bodies.begin(), line.bodies.end(), from.x - most_off, left);
        for (; at != line.bodies.end() && family_.bodies[*at].x <= from.x + most_off; ++at) {
            BodyLink link{.lower = a, .upper = *at};
            if (std::isfinite(link.own = worth_of_place(link)) &&
                std::isfinite(link.own += worth_of_values(from, family_.bodies[*at])) &&
                std::isfinite(link.own += worth_of_way(link)))
                links.push_back(link);
        }
    }

    /// Before anything is known of a strike, lines are rather crossed steeply (the density of the angle from
    /// the square is half its cosine); by chance a body stands anywhere.
    double worth_of_place(BodyLink& link) const {
        const LaidBody &a = family_.bodies[link.lower], &b = family_.bodies[link.upper];
        const LaidLine &on = family_.lines[a.laid_line], &next = family_.lines[b.laid_line];
        double ux = on.axis_x + next.axis_x, uy = on.axis_y + next.axis_y;
        const double norm = std::hypot(ux, uy);
        ux /= norm, uy /= norm;
        const double along = (b.x - a.x) * ux + (b.y - a.y) * uy;
        const double across = (b.y - a.y) * ux - (b.x - a.x) * uy;
        if (!(across > 0)) return -std::numeric_limits<double>::infinity();
        const double error_a = model_error_factor * a.place_error,
                     error_b = model_error_factor * b.place_error;
        const double error = std::hypot(error_a, error_b);
        if (std::abs(along) - 2 * error > across * std::tan(most_oblique))
            return -std::numeric_limits<double>::infinity();
        // Lines that are nearer to each other than the places are known tell no direction.
        const double way = std::hypot(across, error);
        const double off_square = std::atan2(along, way);
        link.angle = off_square + std::atan2(-uy, ux);
        const double turn = square(std::cos(off_square)) / way;
        link.turn_of_lower = turn * error_a, link.turn_of_upper = turn * error_b;
        link.crossing_density = std::cos(off_square) / 2;
        return std::log(link.crossing_density * turn / local_density(a, b, way));
    }

    /// Bodies a metre of line: of the family, or about both where they stand closer.
    double local_density(const LaidBody& a, const LaidBody& b, double way) const {
        constexpr double ways = 3;
        const double half = ways * way;
        const auto count = [&](const LaidBody& body) {
            const std::vector<std::size_t>& on = family_.lines[body.laid_line].bodies;
            const auto left = [&](std::size_t i, double x) { return family_.bodies[i].x < x; };
            return std::lower_bound(on.begin(), on.end(), body.x + half, left) -
                   std::lower_bound(on.begin(), on.end(), body.x - half, left);
        };
        return std::max(density_, static_cast<double>(count(a) + count(b)) / (4 * half));
    }

    double worth_of_values(const LaidBody& a, const LaidBody& b) const {
        constexpr double impossible = -std::numeric_limits<double>::infinity();
        if (a.kind != b.kind || a.sign * b.sign < 0) return impossible;
        const auto variance = [](const Measured& m, const Measured& n, double scale, double change) {
            return square(model_error_factor / scale) * (square(m.error) + square(n.error)) + square(change);
        };
        const double depth = (a.depth.value + b.depth.value) / 2;
        return worth(log_depth(a) - log_depth(b), variance(a.depth, b.depth, depth, depth_change),
                     depth_.variance()) +
               worth(a.dip.value - b.dip.value, variance(a.dip, b.dip, 1, dip_change), dip_.variance()) +
               worth(a.log_strength.value - b.log_strength.value,
                     variance(a.log_strength, b.log_strength, 1, strength_change), strength_.variance());
    }

    /// A line between that does not show it speaks against it.
    double worth_of_way(const BodyLink& link) const {
        const std::size_t skipped =
            family_.lines_crossed(family_.bodies[link.lower], family_.bodies[link.upper]).size();
        if (skipped > most_skipped) return -std::numeric_limits<double>::infinity();
        const double shown = skipped == 0 ? shown_next : shown_behind;
        return std::log(shown / (1 - shown));
    }

    const LineFamily& family_;
    Spread depth_{0.5}, dip_{25}, strength_{1};
    double density_ = 0;
};

/// The links of each body to one side.
std::vector<std::vector<std::size_t>> by_body(const std::vector<BodyLink>& links, std::size_t body_count,
                                              std::size_t BodyLink::*side) {
    std::vector<std::vector<std::size_t>> of(body_count);
    for (std::size_t i = 0; i < links.size(); ++i) of[links[i].*side].push_back(i);
    return of;
}

}  // namespace

std::vector<BodyLink> possible_links(const LineFamily& family) {
    return LinkSearch(family).all();
}

double joint_worth(const BodyLink& below, const BodyLink& above) {
    const double turn = above.angle - below.angle;
    const double variance = square(bend) + square(below.turn_of_lower) + square(above.turn_of_upper) +
                            square(below.turn_of_upper + above.turn_of_lower);
    const double before = std::log(below.crossing_density * above.crossing_density) / 2;
    return -square(turn) / (2 * variance) - std::log(2 * std::numbers::pi * variance) / 2 - before;
}

void add_gains(std::vector<BodyLink>& links, std::size_t body_count) {
    constexpr int lines_ahead = 6;
    const auto to_upper = by_body(links, body_count, &BodyLink::lower);
    const auto to_lower = by_body(links, body_count, &BodyLink::upper);
    // What a link with all below it, and with all above it, is worth, up to so many lines.
    std::vector<double> below(links.size()), above(links.size());
    for (std::size_t i = 0; i < links.size(); ++i) below[i] = above[i] = links[i].own;
    const auto best_below = [&](std::size_t i, auto&& worth_of) {
        double best = 0;
        for (const std::size_t k : to_lower[links[i].lower]) best = std::max(best, worth_of(k));
        return best;
    };
    const auto best_above = [&](std::size_t i, auto&& worth_of) {
        double best = 0;
        for (const std::size_t k : to_upper[links[i].upper]) best = std::max(best, worth_of(k));
        return best;
    };
    const auto with_below = [&](std::size_t i) {
        return best_below(i, [&](std::size_t k) { return below[k] + joint_worth(links[k], links[i]); });
    };
    const auto with_above = [&](std::size_t i) {
        return best_above(i, [&](std::size_t k) { return above[k] + joint_worth(links[i], links[k]); });
    };
    for (int turn = 0; turn < lines_ahead; ++turn) {
        std::vector<double> next_below(links.size()), next_above(links.size());
        for (std::size_t i = 0; i < links.size(); ++i) {
            next_below[i] = links[i].own + with_below(i);
            next_above[i] = links[i].own + with_above(i);
        }
        below = std::move(next_below), above = std::move(next_above);
    }
    // Against leaving what is below and what is above apart.
    for (std::size_t i = 0; i < links.size(); ++i)
        links[i].gain = links[i].own + with_below(i) -
                        best_below(i, [&](std::size_t k) { return below[k]; }) + with_above(i) -
                        best_above(i, [&](std::size_t k) { return above[k]; });
}

namespace {

/// The chosen links by their bodies.
class ChosenLinks {
  public:
    explicit ChosenLinks(std::size_t body_count) : up_(body_count, none), down_(body_count, none) {}

    void add(const std::vector<BodyLink>& links) {
        for (const BodyLink& link : links) {
            up_[link.lower] = down_[link.upper] = all.size();
            all.push_back(link);
        }
    }
    bool leave_free(const BodyLink& link) const {
        return up_[link.lower] == none && down_[link.upper] == none;
    }
    double worth_with(const BodyLink& link) const {
        double worth = link.own;
        if (const std::size_t below = down_[link.lower]; below != none)
            worth += joint_worth(all[below], link);
        if (const std::size_t above = up_[link.upper]; above != none) worth += joint_worth(link, all[above]);
        return worth;
    }

    std::vector<BodyLink> all;

  private:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    std::vector<std::size_t> up_, down_;  ///< indices into `all`
};

}  // namespace

std::vector<BodyLink> chosen_links(const LineFamily& family) {
    std::vector<BodyLink> links = possible_links(family);
    add_gains(links, family.bodies.size());
    ChosenLinks chosen(family.bodies.size());
    // At a bend each link spoils the other, and neither is chosen at first.
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
        chosen.add(assigned_links(links, family.bodies.size()));
        std::erase_if(links, [&](const BodyLink& link) { return !chosen.leave_free(link); });
        for (BodyLink& link : links) link.gain = chosen.worth_with(link);
    }
    return std::move(chosen.all);
}

}  // namespace anomalis::survey

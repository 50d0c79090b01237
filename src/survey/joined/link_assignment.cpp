#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

#include <queue>

#include "survey/joined/body_links.h"

namespace anomalis::survey {

namespace {

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// Assignment of upper bodies to lower ones by shortest augmenting paths (Kuhn 1955; Jonker and Volgenant
/// 1987) over the links alone. A lower body may stay without: that costs nothing, as a path that ends there.
class Assignment {
  public:
    Assignment(const std::vector<BodyLink>& links, std::size_t body_count)
        : links_(links),
          of_lower_(body_count),
          link_of_lower_(body_count, none),
          link_of_upper_(body_count, none),
          price_(body_count, 0.0),
          distance_(body_count),
          reached_by_(body_count),
          seen_(body_count, none),
          scanned_(body_count, none) {
        for (std::size_t i = 0; i < links.size(); ++i)
            if (links[i].gain > 0) of_lower_[links[i].lower].push_back(i);
    }

    std::vector<BodyLink> solve() {
        for (std::size_t lower = 0; lower < of_lower_.size(); ++lower)
            if (!of_lower_[lower].empty()) assign(lower);
        std::vector<BodyLink> chosen;
        for (const std::size_t link : link_of_lower_)
            if (link != none) chosen.push_back(links_[link]);
        return chosen;
    }

  private:
    struct End {
        double distance = std::numeric_limits<double>::infinity();
        std::size_t upper = none;  ///< a free one
        std::size_t lower = none;  ///< or one that goes without from now on
    };

    double cost(std::size_t link) const { return -links_[link].gain - price_[links_[link].upper]; }

    /// From a lower body at a distance: its other links, or to go without.
    void spread(std::size_t lower, double base, std::size_t root) {
        if (base < end_.distance) end_ = {base, none, lower};
        for (const std::size_t link : of_lower_[lower]) {
            const std::size_t upper = links_[link].upper;
            if (scanned_[upper] == root) continue;  // rounding must not bring it nearer again
            const double distance = base + cost(link);
            if (seen_[upper] == root && !(distance < distance_[upper])) continue;
            seen_[upper] = root;
            distance_[upper] = distance;
            reached_by_[upper] = link;
            queue_.emplace(distance, upper);
        }
    }

    void assign(std::size_t root) {
        end_ = {};
        queue_ = {};
        std::vector<std::size_t> scanned;
        spread(root, 0, root);
        while (!queue_.empty() && queue_.top().first < end_.distance) {
            const auto [distance, upper] = queue_.top();
            queue_.pop();
            if (scanned_[upper] == root || distance > distance_[upper]) continue;
            if (link_of_upper_[upper] == none) {
                end_ = {distance, upper, none};
                break;
            }
            scanned.push_back(upper);
            scanned_[upper] = root;
            const std::size_t held = link_of_upper_[upper];
            spread(links_[held].lower, distance - cost(held), root);
        }
        for (const std::size_t upper : scanned) price_[upper] += distance_[upper] - end_.distance;
        augment(root);
    }

    void augment(std::size_t root) {
        std::size_t upper = end_.upper;
        if (upper == none) {
            // The last lower body of the path gives its upper one away.
            if (end_.lower == root) return;
            const std::size_t held = link_of_lower_[end_.lower];
            link_of_lower_[end_.lower] = none;
            upper = links_[held].upper;
        }
        while (true) {
            const std::size_t link = reached_by_[upper];
            const std::size_t lower = links_[link].lower;
            const std::size_t given_up = link_of_lower_[lower];
            link_of_lower_[lower] = link;
            link_of_upper_[upper] = link;
            if (lower == root) return;
            upper = links_[given_up].upper;
        }
    }

    const std::vector<BodyLink>& links_;
    std::vector<std::vector<std::size_t>> of_lower_;
    std::vector<std::size_t> link_of_lower_, link_of_upper_;
    std::vector<double> price_, distance_;
    std::vector<std::size_t> reached_by_, seen_, scanned_;
    std::priority_queue<std::pair<double, std::size_t>, std::vector<std::pair<double, std::size_t>>,
                        std::greater<>>
        queue_;
    End end_;
};

}  // namespace

std::vector<BodyLink> assigned_links(const std::vector<BodyLink>& links, std::size_t body_count) {
    return Assignment(links, body_count).solve();
}

}  // namespace anomalis::survey

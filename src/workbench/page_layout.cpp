#include "workbench/page_layout.h"

namespace anomalis {

namespace {

constexpr double section_share = 2000;
constexpr double channel_share = 2500;
constexpr double data_share = 0.6;  // of a channel's height, when its gradient is shown too
constexpr double least_place = 0.02;

bool is_place(double fraction) {
    return fraction >= least_place && fraction <= 1 - least_place;
}

struct Channel {
    std::size_t data;
    PaneSplitter splitter;
};
constexpr std::array channels{Channel{chart_mag, splitter_mag}, Channel{chart_grav, splitter_grav}};

using Shares = std::array<double, model_chart_count>;

Shares documented_shares(const std::array<bool, model_chart_count>& shown, const PaneFractions& moved) {
    Shares shares{};
    for (const auto& [data, splitter] : channels) {
        if (shown[data] && shown[data + 1]) {
            const double place = moved[splitter];
            shares[data] = channel_share * (is_place(place) ? place : data_share);
            shares[data + 1] = channel_share - shares[data];
        } else {
            shares[data] = shown[data] ? channel_share : 0;
            shares[data + 1] = shown[data + 1] ? channel_share : 0;
        }
    }
    shares[chart_section] = shown[chart_section] ? section_share : 0;
    return shares;
}

/// The section's share for a splitter that was moved, beside curves that keep theirs.
void move_section(Shares& shares, double place) {
    double curves = 0;
    for (std::size_t i = 0; i < profile_chart_count; ++i) curves += shares[i];
    if (curves > 0 && shares[chart_section] > 0 && is_place(place))
        shares[chart_section] = curves * (1 - place) / place;
}

}  // namespace

ChartHeights share_height(int height, const std::array<bool, model_chart_count>& shown,
                          const PaneFractions& moved) {
    Shares shares = documented_shares(shown, moved);
    move_section(shares, moved[splitter_section]);
    double sum = 0;
    for (const double share : shares) sum += share;

    // Whole pixels by running sums, so that the heights add up to the height.
    ChartHeights heights{};
    double upto = 0;
    int used = 0;
    for (std::size_t i = 0; sum > 0 && i < shares.size(); ++i) {
        upto += shares[i];
        heights[i] = static_cast<int>(height * upto / sum) - used;
        used += heights[i];
    }
    return heights;
}

PaneFractions splitter_places(const ChartHeights& heights, const PaneFractions& before) {
    PaneFractions places = before;
    double curves = 0;
    for (std::size_t i = 0; i < profile_chart_count; ++i) curves += heights[i];
    const auto keep = [&](PaneSplitter splitter, double above, double below) {
        const double place = above + below > 0 ? above / (above + below) : 0;
        if (is_place(place)) places[splitter] = static_cast<float>(place);
    };
    keep(splitter_section, curves, heights[chart_section]);
    for (const auto& [data, splitter] : channels) keep(splitter, heights[data], heights[data + 1]);
    return places;
}

PaneFractions places_to_keep(const ViewState& view) {
    PaneFractions places = view.pane_places;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (!is_place(places[i])) places[i] = view.pane_fractions[i];
    return places;
}

PaneFractions usable_places(const std::array<float, 4>& fractions) {
    PaneFractions places{};
    for (std::size_t i = 0; i < places.size(); ++i)
        if (is_place(fractions[i])) places[i] = fractions[i];
    return places;
}

}  // namespace anomalis

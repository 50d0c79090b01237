#include "show/page_layout.h"

#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::show {

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
    edit::PaneSplitter splitter;
};
constexpr std::array channels{Channel{edit::chart_mag, edit::splitter_mag},
                              Channel{edit::chart_grav, edit::splitter_grav}};

using Shares = std::array<double, edit::model_chart_count>;

Shares usual_shares(const std::array<bool, edit::model_chart_count>& shown,
                    const edit::PaneFractions& moved) {
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
    shares[edit::chart_section] = shown[edit::chart_section] ? section_share : 0;
    return shares;
}

/// The section's share for a splitter that was moved, beside curves that keep theirs.
void move_section(Shares& shares, double place) {
    double curves = 0;
    for (std::size_t i = 0; i < edit::profile_chart_count; ++i) curves += shares[i];
    if (curves > 0 && shares[edit::chart_section] > 0 && is_place(place))
        shares[edit::chart_section] = curves * (1 - place) / place;
}

}  // namespace

ChartHeights share_height(int height, const std::array<bool, edit::model_chart_count>& shown,
                          const edit::PaneFractions& moved) {
    Shares shares = usual_shares(shown, moved);
    move_section(shares, moved[edit::splitter_section]);
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

edit::PaneFractions splitter_places(const ChartHeights& heights, const edit::PaneFractions& before) {
    edit::PaneFractions places = before;
    double curves = 0;
    for (std::size_t i = 0; i < edit::profile_chart_count; ++i) curves += heights[i];
    const auto keep = [&](edit::PaneSplitter splitter, double above, double below) {
        const double place = above + below > 0 ? above / (above + below) : 0;
        if (is_place(place)) places[splitter] = static_cast<float>(place);
    };
    keep(edit::splitter_section, curves, heights[edit::chart_section]);
    for (const auto& [data, splitter] : channels) keep(splitter, heights[data], heights[data + 1]);
    return places;
}

edit::PaneFractions places_to_keep(const edit::ViewState& view) {
    edit::PaneFractions places = view.pane_places;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (!is_place(places[i])) places[i] = view.pane_fractions[i];
    return places;
}

std::string places_text(const edit::PaneFractions& places) {
    std::string text;
    for (const float place : places) text += (text.empty() ? "" : ";") + format_number(place, "0.####");
    return text;
}

edit::PaneFractions places_of_text(std::string_view text) {
    std::array<float, 4> fractions{};
    for (std::size_t i = 0; i < edit::PaneFractions().size(); ++i) {
        const std::string_view token = next_token(text);
        if (is_numeric(token)) fractions[i] = static_cast<float>(prefix_number(token));
    }
    return usable_places(fractions);
}

edit::PaneFractions usable_places(const std::array<float, 4>& fractions) {
    edit::PaneFractions places{};
    for (std::size_t i = 0; i < places.size(); ++i)
        if (is_place(fractions[i])) places[i] = fractions[i];
    return places;
}

}  // namespace anomalis::show

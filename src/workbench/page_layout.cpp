#include "workbench/page_layout.h"

namespace anomalis {

namespace {

constexpr double section_share = 2000;
constexpr double channel_share = 2500;
constexpr double data_share = 0.6;  // of a channel's height, when its gradient is shown too

}  // namespace

ChartHeights share_height(int height, const std::array<bool, model_chart_count>& shown) {
    std::array<double, model_chart_count> shares{};
    for (const int data : {static_cast<int>(chart_mag), static_cast<int>(chart_grav)}) {
        const auto i = static_cast<std::size_t>(data);
        if (shown[i] && shown[i + 1]) {
            shares[i] = channel_share * data_share;
            shares[i + 1] = channel_share - shares[i];
        } else {
            shares[i] = shown[i] ? channel_share : 0;
            shares[i + 1] = shown[i + 1] ? channel_share : 0;
        }
    }
    shares[chart_section] = shown[chart_section] ? section_share : 0;
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

}  // namespace anomalis

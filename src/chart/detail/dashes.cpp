#include "chart/detail/dashes.h"

#include <algorithm>
#include <array>

namespace anomalis::chart {

namespace {

constexpr std::array dash{4.0, 2.0};
constexpr std::array dot{1.0, 2.0};
constexpr std::array dash_dot{4.0, 2.0, 1.0, 2.0};
constexpr std::array dash_dot_dot{4.0, 2.0, 1.0, 2.0, 1.0, 2.0};

}  // namespace

std::span<const double> dash_pattern(LineStyle style) {
    switch (style) {
        case LineStyle::dash:
            return dash;
        case LineStyle::dot:
            return dot;
        case LineStyle::dash_dot:
            return dash_dot;
        case LineStyle::dash_dot_dot:
            return dash_dot_dot;
        case LineStyle::solid:
            break;
    }
    return {};
}

DashCutter::DashCutter(LineStyle style, double unit, double end)
    : pattern_(dash_pattern(style)), unit_(unit), end_(std::min(end, unit / 2.0)) {}

void DashCutter::begin() {
    number_ = pattern_.size() - 1;
    drawing_ = false;
    left_ = end_;
    dash_.clear();
}

void DashCutter::next() {
    number_ = (number_ + 1) % pattern_.size();
    drawing_ = !drawing_;
    left_ = pattern_[number_] * unit_ + (drawing_ ? -2.0 : 2.0) * end_;
}

}  // namespace anomalis::chart

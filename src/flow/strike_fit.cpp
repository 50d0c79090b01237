#include "flow/strike_fit.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace anomalis::flow {

namespace {

constexpr double radians = std::numbers::pi / 180;  // a degree
constexpr int most_turns = 50;
constexpr double least_turn = 1e-12;     // radians
constexpr double least_crossing = 0.01;  // sine of the angle between strike and profile

/// Misfits along the profiles of a line through (0, c) of direction `angle`, over their errors, and how they
/// move with both.
class LineRows {
  public:
    LineRows(std::span<const StrikePoint> points, double angle, double across) {
        const double sine = std::sin(angle), cosine = std::cos(angle);
        for (const StrikePoint& p : points) {
            const double off = cosine * p.east - sine * p.north - across;
            const double along = sine * p.east + cosine * p.north;
            const double crossing = cosine * p.line_east - sine * p.line_north;
            crosses_ = crosses_ && std::abs(crossing) > least_crossing;
            const double turning = sine * p.line_east + cosine * p.line_north;
            const double scale = crossing * p.error;
            const double row = off / scale;
            // d(off)/d(angle) = -along and d(crossing)/d(angle) = -turning.
            add(row, (-along + off * turning / crossing) / scale, -1 / scale);
        }
    }

    bool crosses() const { return crosses_; }
    double chi_square() const { return chi_square_; }
    double determinant() const { return aa_ * cc_ - ac_ * ac_; }
    double angle_step() const { return -(cc_ * ar_ - ac_ * cr_) / determinant(); }
    double across_step() const { return -(aa_ * cr_ - ac_ * ar_) / determinant(); }
    double angle_variance() const { return cc_ / determinant(); }

  private:
    void add(double row, double by_angle, double by_across) {
        chi_square_ += row * row;
        aa_ += by_angle * by_angle;
        ac_ += by_angle * by_across;
        cc_ += by_across * by_across;
        ar_ += by_angle * row;
        cr_ += by_across * row;
    }

    bool crosses_ = true;
    double chi_square_ = 0, aa_ = 0, ac_ = 0, cc_ = 0, ar_ = 0, cr_ = 0;
};

/// About their middle, for map coordinates are long numbers.
std::vector<StrikePoint> centred(std::span<const StrikePoint> points) {
    double east = 0, north = 0;
    for (const StrikePoint& p : points) {
        east += p.east / static_cast<double>(points.size());
        north += p.north / static_cast<double>(points.size());
    }
    std::vector<StrikePoint> moved(points.begin(), points.end());
    for (StrikePoint& p : moved) {
        p.east -= east;
        p.north -= north;
    }
    return moved;
}

/// Direction from the middle to the point farthest from it, the way that is nearer to `near`, radians.
double first_angle(std::span<const StrikePoint> points, double near) {
    const auto farthest = std::ranges::max_element(
        points, {}, [](const StrikePoint& p) { return std::hypot(p.east, p.north); });
    const double angle = std::atan2(farthest->east, farthest->north);
    return std::cos(angle - near) < 0 ? angle + std::numbers::pi : angle;
}

double near_turn(double degrees, double near) {
    constexpr double turn = 360;
    return degrees - turn * std::round((degrees - near) / turn);
}

}  // namespace

std::optional<StrikeFit> fit_strike(std::span<const StrikePoint> points, double near_strike) {
    if (points.size() < 2) return std::nullopt;
    const std::vector<StrikePoint> moved = centred(points);
    const bool one_place = std::ranges::all_of(
        moved, [](const StrikePoint& p) { return std::hypot(p.east, p.north) <= p.error; });
    if (one_place) return std::nullopt;
    double angle = first_angle(moved, near_strike * radians), across = 0;
    for (int turn = 0; turn < most_turns; ++turn) {
        const LineRows rows(moved, angle, across);
        if (!rows.crosses() || !(rows.determinant() > 0)) return std::nullopt;
        angle += rows.angle_step();
        across += rows.across_step();
        if (std::abs(rows.angle_step()) < least_turn) break;
    }
    const LineRows rows(moved, angle, across);
    if (!rows.crosses() || !(rows.determinant() > 0)) return std::nullopt;
    const auto left = static_cast<double>(points.size()) - 2;
    StrikeFit fit;
    fit.lines = static_cast<int>(points.size());
    fit.birge_ratio = left > 0 ? std::max(1.0, std::sqrt(rows.chi_square() / left)) : 1.0;
    fit.strike = near_turn(angle / radians, near_strike);
    fit.error = std::sqrt(rows.angle_variance()) * fit.birge_ratio / radians;
    return fit;
}

}  // namespace anomalis::flow

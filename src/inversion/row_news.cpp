#include "inversion/row_news.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>

namespace anomalis::inversion {

namespace {

using Eigen::Index;

/// A covariance that changes by less stays.
constexpr double settled = 1e-8;

}  // namespace

RowNews::RowNews(const Matern& process, double ratio, double rate, std::size_t width)
    : process_(process),
      ratio_(ratio),
      rate_(rate),
      width_(width),
      states_(static_cast<std::size_t>(process.states())),
      covariance_(ratio * process.stationary()),
      values_(states_ * width, 0.0),
      moved_(values_.size()) {
    find_gain();
}

void RowNews::go_on(double step) {
    // Equal spacing differs in the last digits.
    const bool same_step = std::abs(step - last_step_) <= 1e-9 * step;
    if (!same_step) {
        last_step_ = step;
        transition_ = process_.transition(rate_ * step);
        added_ =
            ratio_ * (process_.stationary() - transition_ * process_.stationary() * transition_.transpose());
    }
    settled_ = settled_ && same_step;
    if (!settled_) {
        const Matern::Square left = covariance_ - covariance_.col(0) * gain_.transpose();
        const Matern::Square next = transition_ * left * transition_.transpose() + added_;
        settled_ = same_step && (next - covariance_).norm() <= settled * next.norm();
        covariance_ = next;
        find_gain();
    }
    std::ranges::fill(moved_, 0.0);
    for (std::size_t a = 0; a < states_; ++a)
        for (std::size_t b = 0; b < states_; ++b) {
            const double factor = transition_(static_cast<Index>(a), static_cast<Index>(b));
            const double* from = values_.data() + b * width_;
            double* to = moved_.data() + a * width_;
            for (std::size_t k = 0; k < width_; ++k) to[k] += factor * from[k];
        }
    values_.swap(moved_);
}

void RowNews::find_gain() {
    variance_ = covariance_(0, 0) + 1;
    gain_ = covariance_.col(0) / variance_;
}

double RowNews::take(const double* row, double* news) {
    for (std::size_t k = 0; k < width_; ++k) news[k] = row[k] - values_[k];
    for (std::size_t a = 0; a < states_; ++a) {
        const double gain = gain_[static_cast<Index>(a)];
        double* to = values_.data() + a * width_;
        for (std::size_t k = 0; k < width_; ++k) to[k] += gain * news[k];
    }
    const double weight = 1 / std::sqrt(variance_);
    for (std::size_t k = 0; k < width_; ++k) news[k] *= weight;
    return std::log(variance_);
}

}  // namespace anomalis::inversion

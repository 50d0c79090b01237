#pragma once

#include <cstdint>

namespace anomalis {

class Session;

/// Where a fit by the book ends: the method of Levenberg and Marquardt with a Jacobian of differences, limits
/// kept by cutting steps. Every model that it calculates counts.
struct TextbookFit {
    double sum_of_squares = 0;
    long evaluations = 0;
};
TextbookFit textbook_fit(const Session& session, std::int32_t channel);

/// Of the present model with its best regional, each channel weighed as in the textbook fit.
double sum_of_squares(const Session& session, std::int32_t channel);

}  // namespace anomalis

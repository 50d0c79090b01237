#include "inversion/student.h"

#include <algorithm>
#include <cmath>

namespace anomalis::inversion {

namespace {

constexpr double both_tails = 0.1;
constexpr double normal_quantile = 1.6448536269514722;
constexpr double half_pi = 1.5707963267948966;

}  // namespace

double student_quantile(double freedom) {
    const double n = std::max(freedom, 1.0);
    if (n > 1e6) return normal_quantile;
    // Of the Cauchy distribution, and of two degrees of freedom.
    if (n == 1) return 1 / std::tan(both_tails * half_pi);
    if (n == 2) return std::sqrt(2 / (both_tails * (2 - both_tails)) - 2);
    const double a = 1 / (n - 0.5);
    const double b = 48 / (a * a);
    double c = ((20700 * a / b - 98) * a - 16) * a + 96.36;
    const double d = ((94.5 / (b + c) - 3) / b + 1) * std::sqrt(a * half_pi) * n;
    double x = d * both_tails;
    double y = std::pow(x, 2 / n);
    if (y > 0.05 + a) {
        x = -normal_quantile;
        y = x * x;
        if (n < 5) c += 0.3 * (n - 4.5) * (x + 0.6);
        c = (((0.05 * d * x - 5) * x - 7) * x - 2) * x + b + c;
        y = (((((0.4 * y + 6.3) * y + 36) * y + 94.5) / c - y - 3) / b + 1) * x;
        y = std::expm1(a * y * y);
    } else {
        y = ((1 / (((n + 6) / (n * y) - 0.089 * d - 0.822) * (n + 2) * 3) + 0.5 / (n + 4)) * y - 1) *
                (n + 1) / (n + 2) +
            1 / y;
    }
    return std::sqrt(n * y);
}

}  // namespace anomalis::inversion

#include "forward/exact/crowded_nodes.h"

#include <cmath>
#include <cstddef>

namespace anomalis::forward {

namespace {

/// Legendre polynomial of degree 20 and its derivative.
struct Legendre {
    double value, slope;

    explicit Legendre(double x) {
        constexpr int degree = 20;
        double before = 1;
        value = x;
        for (int k = 2; k <= degree; ++k) {
            const double next = ((2 * k - 1) * x * value - (k - 1) * before) / k;
            before = value;
            value = next;
        }
        slope = degree * (x * value - before) / (x * x - 1);
    }
};

CrowdedNodes make_nodes() {
    CrowdedNodes nodes{};
    for (std::size_t i = 0; i < nodes.place.size(); ++i) {
        double x = std::cos(3.14159265358979323846 * (static_cast<double>(i) + 0.75) / 20.5);
        for (int turn = 0; turn < 8; ++turn) {
            const Legendre at(x);
            x -= at.value / at.slope;
        }
        const double slope = Legendre(x).slope;
        const double t = (1 + x) / 2;
        nodes.place[i] = t * t * (3 - 2 * t);
        nodes.weight[i] = 6 * t * (1 - t) / ((1 - x * x) * slope * slope);
    }
    return nodes;
}

}  // namespace

const CrowdedNodes& crowded_nodes() {
    static const CrowdedNodes nodes = make_nodes();
    return nodes;
}

}  // namespace anomalis::forward

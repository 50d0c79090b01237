#include <cmath>
#include <complex>

#include "forward/exact/exact_axes.h"
#include "forward/exact/shape_demagnetisation.h"

namespace anomalis::forward {

namespace {

using Complex = std::complex<double>;

struct Edge {
    Complex from, to;
    Complex direction() const { return (to - from) / std::abs(to - from); }
    Complex outward() const { return direction() * Complex(0, -1); }
};

/// Real part of the double integral of ln(z - z') over two edges. The logarithm is cut behind the pair.
double pair_integral(const Edge& a, const Edge& b) {
    const Complex ahead = (a.from + a.to) - (b.from + b.to);
    const Complex front = ahead / std::abs(ahead);
    const auto f = [&](Complex w) -> Complex {
        if (w == 0.0) return 0;
        return w * w * (std::log(w / front) + std::log(front) - 1.5) / 2.0;
    };
    const Complex sum = f(a.to - b.to) - f(a.to - b.from) - f(a.from - b.to) + f(a.from - b.from);
    return std::real(-sum / (a.direction() * b.direction()));
}

double own_integral(double size) {
    return size * size * (std::log(size) - 1.5);
}

}  // namespace

std::array<double, 3> plane_demagnetisation(std::array<double, 2> side1, std::array<double, 2> side2) {
    Complex e(side1[0], side1[1]), g(side2[0], side2[1]);
    const double area = std::imag(std::conj(e) * g);
    if (area < 0) std::swap(e, g);
    // In units of the body's size, so that the logarithms stay small.
    const double size = std::sqrt(std::abs(area));
    e /= size;
    g /= size;
    const std::array<Edge, 4> edges{Edge{0.0, e}, Edge{e, e + g}, Edge{e + g, g}, Edge{g, 0.0}};
    std::array<double, 3> tensor{};
    for (const Edge& a : edges)
        for (const Edge& b : edges) {
            const double integral = &a == &b ? own_integral(std::abs(a.to - a.from)) : pair_integral(a, b);
            const double factor = -integral / (2 * exact_pi);
            const Complex n = a.outward(), m = b.outward();
            tensor[0] += factor * n.real() * m.real();
            tensor[1] += factor * n.real() * m.imag();
            tensor[2] += factor * n.imag() * m.imag();
        }
    return tensor;
}

}  // namespace anomalis::forward

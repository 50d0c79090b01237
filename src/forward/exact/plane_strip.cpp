#include "forward/exact/plane_strip.h"

#include <cmath>

namespace anomalis::forward {

Complex edge_factor(const ExactField& field, Complex direction) {
    const Complex tau = direction / std::abs(direction);
    const Complex j(field.magnetisation.x, field.magnetisation.z);
    const Complex f(field.direction.x, field.direction.z);
    const double sigma = -std::imag(j * std::conj(tau));
    return 2 * sigma * f / tau;
}

Strip strip_of(const SheetShape& sheet) {
    Strip strip{0.0, Complex(sheet.width, sheet.rise), Complex(sheet.foot(), -sheet.depth), false};
    if (sheet.depth == 0) {
        strip.endless = true;
        const Complex down(sheet.cotangent, -1);
        strip.g = down / std::abs(down);
    }
    return strip;
}

Strip strip_of(const StepShape& step) {
    return {0.0, Complex(step.run, -step.depth), 1.0, true};
}

PlaneStrip plane_strip(const Strip& strip, const ExactField& field) {
    const Complex side = edge_factor(field, strip.g);
    const Complex difference = edge_factor(field, strip.r - strip.p) - side;
    return {
        strip.p.real(), strip.p.imag(), strip.r.real(),        strip.r.imag(),    strip.g.real(),
        strip.g.imag(), strip.endless,  difference.real() / 2, difference.imag(), 2 * exact_pi * side.imag()};
}

StripMass::StripMass(const Strip& strip) {
    const std::array<Complex, 5> corners{strip.p, strip.r, strip.r + strip.g, strip.p + strip.g, strip.p};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        x[i] = corners[i].real();
        z[i] = corners[i].imag();
    }
    mass.x = x.data();
    mass.z = z.data();
    mass.edges = strip.endless ? 1 : 4;
    if (!strip.endless) return;
    mass.walls = true;
    mass.dx = strip.g.real();
    mass.dz = strip.g.imag();
    // The far end of walls that go down adds a constant; with walls that run level it adds nothing.
    const double fall = std::abs(mass.dz);
    if (fall > 0)
        mass.level = cross(strip.r - strip.p, strip.g) * fall * (1 + std::log(deepest) - std::log(fall));
}

}  // namespace anomalis::forward

#pragma once

#include <array>
#include <complex>

#include "forward/exact/exact_axes.h"
#include "forward/exact/plane_kernel.h"
#include "forward/shape/exact_shape.h"

// Sheets, edges and steps without end along strike as the kernels of the plane take them; private to the
// exact formulas. Places are complex numbers: x across strike, z up.
namespace anomalis::forward {

using Complex = std::complex<double>;

inline double cross(Complex a, Complex b) {
    return std::imag(std::conj(a) * b);
}

/// c of an edge along `direction` (of any length): twice its pole density, turned by field and edge.
Complex edge_factor(const ExactField& field, Complex direction);

/// Three numbers say it all: the edge from `p` to `r` and the side or the walls along `g`.
struct Strip {
    Complex p, r, g;
    bool endless = false;

    /// The body must lie to the left of the edge.
    bool turned() const { return cross(r - p, g) < 0; }
    void turn() {
        if (turned()) std::swap(p, r);
    }
};
Strip strip_of(const SheetShape& sheet);
Strip strip_of(const StepShape& step);

/// The anomaly of a strip that was turned.
PlaneStrip plane_strip(const Strip& strip, const ExactField& field);

/// The attraction of a strip that was turned, before the factor: with the corners that it points at.
struct StripMass {
    std::array<double, 5> x{}, z{};
    PlaneMass mass{};

    explicit StripMass(const Strip& strip);
    StripMass(const StripMass&) = delete;
    StripMass& operator=(const StripMass&) = delete;
};

}  // namespace anomalis::forward

#include "forward/exact/exact_plane.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "forward/exact/plane_kernel.h"
#include "forward/gravity_constant.h"

namespace anomalis::forward {

namespace {

using Complex = std::complex<double>;

/// c of an edge along `direction` (of any length): twice its pole density, turned by field and edge.
Complex edge_factor(const ExactField& field, Complex direction) {
    const Complex tau = direction / std::abs(direction);
    const Complex j(field.magnetisation.x, field.magnetisation.z);
    const Complex f(field.direction.x, field.direction.z);
    const double sigma = -std::imag(j * std::conj(tau));
    return 2 * sigma * f / tau;
}

double cross(Complex a, Complex b) {
    return std::imag(std::conj(a) * b);
}

/// Three numbers say it all: the edge from `p` to `r` and the side or the walls along `g`.
struct Strip {
    Complex p, r, g;
    bool endless = false;

    /// The body must lie to the left of the edge.
    void turn() {
        if (cross(r - p, g) < 0) std::swap(p, r);
    }
};

void fill_strip(const ExactPlace& place, Strip strip, const ExactField& field, std::span<double> values) {
    strip.turn();
    const Complex side = edge_factor(field, strip.g);
    const Complex difference = edge_factor(field, strip.r - strip.p) - side;
    const PlaneStrip plane{
        strip.p.real(), strip.p.imag(), strip.r.real(),        strip.r.imag(),    strip.g.real(),
        strip.g.imag(), strip.endless,  difference.real() / 2, difference.imag(), 2 * exact_pi * side.imag()};
    strip_magnetics_at(vector::widest_vector_level())(place.stations, place.frame, plane, values.data());
}

void add_mass(const ExactPlace& place, PlaneMass mass, std::span<const Complex> corners, double density,
              std::span<double> values) {
    std::vector<double> x, z;
    for (const Complex& corner : corners) {
        x.push_back(corner.real());
        z.push_back(corner.imag());
    }
    mass.x = x.data();
    mass.z = z.data();
    mass.edges = static_cast<int>(corners.size()) - 1;
    mass.factor = 2 * gravity_constant * density;
    add_plane_gravity_at(vector::widest_vector_level())(place.stations, place.frame, mass, values.data());
}

void fill_strip_gravity(const ExactPlace& place, Strip strip, double density, std::span<double> values) {
    std::fill(values.begin(), values.end(), 0.0);
    strip.turn();
    PlaneMass mass{};
    if (!strip.endless) {
        const Complex corners[] = {strip.p, strip.r, strip.r + strip.g, strip.p + strip.g, strip.p};
        return add_mass(place, mass, corners, density, values);
    }
    mass.walls = true;
    mass.dx = strip.g.real();
    mass.dz = strip.g.imag();
    // The far end of walls that go down adds a constant; with walls that run level it adds nothing.
    const double fall = std::abs(mass.dz);
    if (fall > 0)
        mass.level = cross(strip.r - strip.p, strip.g) * fall * (1 + std::log(deepest) - std::log(fall));
    const Complex corners[] = {strip.p, strip.r};
    add_mass(place, mass, corners, density, values);
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

/// The corners of a ring, the first repeated at the end, anticlockwise.
std::vector<Complex> ring(std::int32_t sectors, double corner_distance) {
    std::vector<Complex> corners;
    for (std::int32_t k = 0; k < sectors; ++k)
        corners.push_back(std::polar(corner_distance, 2 * exact_pi * k / sectors));
    corners.push_back(corners.front());
    return corners;
}

/// A ring with all that both channels of it need; `sign` is -1 for a hole.
class Ring {
  public:
    Ring(const PipeShape& pipe, double corner_distance, double sign)
        : corners_(ring(pipe.sectors, corner_distance)), sign_(sign) {
        for (const Complex& corner : corners_) {
            x_.push_back(corner.real());
            z_.push_back(corner.imag());
        }
        plane_.polygon = {x_.data(), z_.data(), nullptr, nullptr, pipe.sectors};
        plane_.corner_distance = corner_distance;
        area_ = sign * ring_area(pipe.sectors, corner_distance);
    }

    void add_anomaly(const ExactPlace& place, const ExactField& field, std::span<double> values) {
        std::vector<double> log_factor, angle_factor;
        for (std::size_t k = 0; k + 1 < corners_.size(); ++k) {
            const Complex c = sign_ * edge_factor(field, corners_[k + 1] - corners_[k]);
            log_factor.push_back(c.real() / 2);
            angle_factor.push_back(c.imag());
        }
        plane_.polygon.log_factor = log_factor.data();
        plane_.polygon.angle_factor = angle_factor.data();
        const Complex moment = 2 * area_ * Complex(field.magnetisation.x, field.magnetisation.z) *
                               Complex(field.direction.x, field.direction.z);
        plane_.moment_re = moment.real();
        plane_.moment_im = moment.imag();
        add_ring_magnetics_at(vector::widest_vector_level())(place.stations, place.frame, plane_,
                                                             values.data());
    }

    void add_gravity(const ExactPlace& place, double density, std::span<double> values) {
        plane_.factor = 2 * gravity_constant * density * sign_;
        plane_.mass = 2 * gravity_constant * density * area_;
        add_ring_gravity_at(vector::widest_vector_level())(place.stations, place.frame, plane_,
                                                           values.data());
    }

  private:
    std::vector<Complex> corners_;
    double sign_;
    std::vector<double> x_, z_;
    PlaneRing plane_{};
    double area_ = 0;
};

}  // namespace

void fill_plane_sheet_anomaly(const ExactPlace& place, const SheetShape& sheet, const ExactField& field,
                              std::span<double> values) {
    fill_strip(place, strip_of(sheet), field, values);
}

void fill_step_anomaly(const ExactPlace& place, const StepShape& step, const ExactField& field,
                       std::span<double> values) {
    fill_strip(place, strip_of(step), field, values);
}

void fill_plane_pipe_anomaly(const ExactPlace& place, const PipeShape& pipe, const ExactField& field,
                             std::span<double> values) {
    std::fill(values.begin(), values.end(), 0.0);
    Ring(pipe, pipe.outer, 1).add_anomaly(place, field, values);
    if (pipe.inner > 0) Ring(pipe, pipe.inner, -1).add_anomaly(place, field, values);
}

void fill_plane_sheet_gravity(const ExactPlace& place, const SheetShape& sheet, double density,
                              std::span<double> values) {
    fill_strip_gravity(place, strip_of(sheet), density, values);
}

void fill_step_gravity(const ExactPlace& place, const StepShape& step, double density,
                       std::span<double> values) {
    fill_strip_gravity(place, strip_of(step), density, values);
}

void fill_plane_pipe_gravity(const ExactPlace& place, const PipeShape& pipe, double density,
                             std::span<double> values) {
    std::fill(values.begin(), values.end(), 0.0);
    Ring(pipe, pipe.outer, 1).add_gravity(place, density, values);
    if (pipe.inner > 0) Ring(pipe, pipe.inner, -1).add_gravity(place, density, values);
}

}  // namespace anomalis::forward

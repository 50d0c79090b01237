#include "forward/exact/exact_plane.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "forward/exact/plane_kernel.h"
#include "forward/exact/plane_strip.h"
#include "forward/gravity_constant.h"

namespace anomalis::forward {

namespace {

void fill_strip(const ExactPlace& place, Strip strip, const ExactField& field, std::span<double> values) {
    strip.turn();
    strip_magnetics_at(vector::widest_vector_level())(place.stations, place.frame, plane_strip(strip, field),
                                                      values.data());
}

void fill_strip_gravity(const ExactPlace& place, Strip strip, double density, std::span<double> values) {
    std::fill(values.begin(), values.end(), 0.0);
    strip.turn();
    StripMass mass(strip);
    mass.mass.factor = 2 * gravity_constant * density;
    add_plane_gravity_at(vector::widest_vector_level())(place.stations, place.frame, mass.mass,
                                                        values.data());
}

/// The corners of a ring, the first repeated at the end, anticlockwise.
std::vector<Complex> ring(std::int32_t sectors, double corner_distance) {
    std::vector<Complex> corners;
    // std::polar asserts that no distance is NaN, which a file may well hold.
    for (std::int32_t k = 0; k < sectors; ++k) {
        const double angle = 2 * exact_pi * k / sectors;
        corners.emplace_back(corner_distance * std::cos(angle), corner_distance * std::sin(angle));
    }
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

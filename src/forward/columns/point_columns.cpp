#include "forward/columns/point_columns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>

#include "core/body_parameters.h"
#include "forward/columns/field_slope.h"
#include "forward/exact/exact_point.h"
#include "forward/exact/exact_response.h"
#include "forward/exact/plane_kernel.h"
#include "forward/gravity_constant.h"
#include "forward/polyhedron/vector3.h"
#include "forward/shape/reference_point.h"

namespace anomalis::forward {

namespace {

using Complex = std::complex<double>;

constexpr double radian = exact_pi / 180;  ///< a degree

/// Where a station is from the reference point, and how that changes with a parameter of the body's place.
class Place {
  public:
    Place(const Workspace& workspace, const ModelBody& body, const StationView& stations)
        : stations_(stations), frame_(exact_frame(body)) {
        const PlanSlope along = reference_point_slope(workspace, body.distance.value);
        along_line_ = {-along.east * frame_.cos_strike + along.north * frame_.sin_strike,
                       -along.east * frame_.sin_strike - along.north * frame_.cos_strike, 0};
    }
    const BodyFrame& frame() const { return frame_; }
    Point3 station(std::size_t i) const {
        const double east = stations_.east[i] - frame_.east, north = stations_.north[i] - frame_.north;
        return {frame_.cos_strike * east - frame_.sin_strike * north,
                frame_.sin_strike * east + frame_.cos_strike * north, stations_.sensor[i] - frame_.top};
    }
    Point3 slope(int param_code, const Point3& station) const {
        if (param_code == param_distance) return along_line_;
        if (param_code == param_top) return {0, 0, -1};
        if (param_code == param_strike) return {-station.y * radian, station.x * radian, 0};
        return {};
    }

  private:
    StationView stations_;
    BodyFrame frame_;
    Point3 along_line_;  ///< a metre of distance
};

/// (3 (j.r)(f.r) / R^2 - j.f) / R^3 outside a sphere, and how it changes with r.
struct Dipole {
    Point3 j, f;

    double at(const Point3& r, double squared) const {
        return (3 * dot(j, r) * dot(f, r) / squared - dot(j, f)) / (squared * std::sqrt(squared));
    }
    double slope(const Point3& r, const Point3& move, double squared) const {
        const double fifth = 1 / (squared * squared * std::sqrt(squared));
        const double towards = dot(r, move);
        return 3 * fifth *
               (dot(j, move) * dot(f, r) + dot(j, r) * dot(f, move) + dot(j, f) * towards -
                5 * dot(j, r) * dot(f, r) * towards / squared);
    }
};

/// A sphere, whose poles leave a uniform field and whose mass a linear one inside.
class Sphere {
  public:
    Sphere(const Workspace& workspace, ModelBody& body, const Place& place)
        : radius_(std::abs(static_cast<double>(body.width.value)) / 2),
          widening_(body.width.value < 0 ? -0.5 : 0.5),
          density_(body.density.value),
          tensor_(body_demagnetisation(body)),
          field_(workspace, body, place.frame(), body.include_demagnetisation == 1 ? &tensor_ : nullptr) {}

    double anomaly_slope(int param_code, const Point3& r, const Point3& move) const {
        // The strike turns the axes alone.
        if (param_code == param_strike || radius_ == 0) return 0;
        const double volume = 4 * exact_pi / 3 * radius_ * radius_ * radius_;
        const Point3 f = field_.field().direction;
        const Point3 change = field_.slope(param_code).magnetisation;
        const double squared = dot(r, r);
        if (inside(squared)) return -4 * exact_pi / 3 * dot(change, f);
        const Dipole dipole{field_.field().magnetisation, f}, changed{change, f};
        double slope = volume * (dipole.slope(r, move, squared) + changed.at(r, squared));
        if (param_code == param_width) slope += volume * 3 / radius_ * widening_ * dipole.at(r, squared);
        return slope;
    }

    double gravity_slope(int param_code, const Point3& r, const Point3& move) const {
        if (param_code == param_strike || radius_ == 0) return 0;
        const double squared = dot(r, r);
        const double distance = inside(squared) ? radius_ : std::sqrt(squared);
        const double third = 1 / (distance * distance * distance);
        const double unit = gravity_constant * 4 * exact_pi / 3 * radius_ * radius_ * radius_;
        if (param_code == param_density) return unit * r.z * third;
        double slope = unit * density_ * move.z * third;
        if (inside(squared)) return slope;
        slope -= unit * density_ * 3 * r.z * dot(r, move) * third / squared;
        if (param_code == param_width) slope += unit * density_ * 3 / radius_ * widening_ * r.z * third;
        return slope;
    }

  private:
    bool inside(double squared) const {
        const double surface = radius_ - face_tolerance;
        return squared <= surface * surface;
    }

    double radius_, widening_, density_;
    Tensor3 tensor_;
    BodyField field_;
};

/// One wire or a pair: across strike and up as a complex number w, a current s gives -i s / conj(w).
class Wires {
  public:
    Wires(const Workspace& workspace, const ModelBody& body, const Place& place)
        : strength_(body.susc.value * field_of_unit_current),
          pair_(body.offset.value != 0),
          field_(exact_field(workspace, body, place.frame())) {
        const double rotation = exact_radians(body.dip.value), half = body.offset.value / 2.0;
        const Complex turned(std::sin(rotation), std::cos(rotation));
        place_ = half * turned;
        by_offset_ = 0.5 * turned;
        by_dip_ = half * radian * Complex(std::cos(rotation), -std::sin(rotation));
    }

    double slope(int param_code, const Point3& station, const Point3& move) const {
        Complex apart = 0;
        if (param_code == param_offset && pair_) apart = by_offset_;
        if (param_code == param_dip) apart = by_dip_;
        const double current = param_code == param_susc ? field_of_unit_current : 0.0;
        const Complex at(station.x, station.z), shift(move.x, move.z);
        Complex added = 0, change = 0;
        add(at - place_, shift - apart, strength_, current, added, change);
        if (pair_) add(at + place_, shift + apart, -strength_, -current, added, change);
        const Complex ambient = field_.intensity * Complex(field_.direction.x, field_.direction.z);
        const Complex turn =
            param_code == param_strike ? Complex(-field_.intensity * field_.direction.y * radian, 0) : 0.0;
        const auto product = [](Complex a, Complex b) { return std::real(a * std::conj(b)); };
        const double whole =
            field_.intensity * field_.intensity + 2 * product(ambient, added) + std::norm(added);
        if (!(whole > 0)) return 0;
        return (product(ambient + added, change) + product(turn, added)) / std::sqrt(whole);
    }

  private:
    static void add(Complex w, Complex move, double strength, double current, Complex& field,
                    Complex& change) {
        constexpr Complex i_unit(0, 1);
        // Held as the values are.
        const double least = least_corner_distance * least_corner_distance;
        const double squared = std::max(std::norm(w), least);
        field += -i_unit * strength * w / squared;
        change += -i_unit * current * w / squared;
        change += std::norm(w) < least ? -i_unit * strength * move / least
                                       : i_unit * strength * std::conj(move) * w * w / (squared * squared);
    }

    double strength_;
    bool pair_;
    ExactField field_;
    Complex place_, by_offset_, by_dip_;
};

template <class Slope>
void fill_columns(const Place& place, std::size_t stations, std::span<const int> param_codes,
                  std::span<double> columns, const Slope& slope) {
    for (std::size_t k = 0; k < param_codes.size(); ++k)
        for (std::size_t i = 0; i < stations; ++i) {
            const Point3 station = place.station(i);
            columns[k * stations + i] = slope(param_codes[k], station, place.slope(param_codes[k], station));
        }
}

}  // namespace

bool is_point_body(const ModelBody& body) {
    return body.type == sphere || body.type == wire;
}

void point_columns(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                   std::span<const int> param_codes, std::span<double> columns) {
    const Place place(workspace, body, stations);
    if (body.type == wire) {
        if (channel != channel_mag) return std::fill(columns.begin(), columns.end(), 0.0);
        const Wires wires(workspace, body, place);
        return fill_columns(place, stations.count, param_codes, columns,
                            [&](int code, const Point3& station, const Point3& move) {
                                return wires.slope(code, station, move);
                            });
    }
    const Sphere ball(workspace, body, place);
    fill_columns(place, stations.count, param_codes, columns,
                 [&](int code, const Point3& station, const Point3& move) {
                     return channel == channel_mag ? ball.anomaly_slope(code, station, move)
                                                   : ball.gravity_slope(code, station, move);
                 });
}

}  // namespace anomalis::forward

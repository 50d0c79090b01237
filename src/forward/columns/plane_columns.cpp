#include "forward/columns/plane_columns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "core/body_parameters.h"
#include "forward/columns/field_slope.h"
#include "forward/columns/plane_columns_kernel.h"
#include "forward/columns/sheet_slope.h"
#include "forward/columns/term_weights.h"
#include "forward/exact/exact_response.h"
#include "forward/exact/plane_strip.h"
#include "forward/gravity_constant.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr double radian = exact_pi / 180;  ///< a degree
constexpr Complex i_unit(0, 1);
constexpr std::size_t most_terms = mass_term::count;
static_assert(most_terms >= std::size_t{wall_term::count} && most_terms >= std::size_t{anomaly_term::count});

/// How a strip changes per unit of a parameter: its corner P, E = R - P and G; `turn` is how fast strike
/// turns the axes, which moves a station by its place along strike.
struct StripSlope {
    Complex p, e, g;
    double turn = 0;
};

/// A body as both channels see it.
class PlaneBody {
  public:
    PlaneBody(const Workspace& workspace, const ModelBody& body) : body_(body) {
        frame_ = exact_frame(body);
        const PlanSlope along = reference_point_slope(workspace, body.distance.value);
        across_ = along.east * frame_.cos_strike - along.north * frame_.sin_strike;
        if (is_step(body.type)) {
            step_ = step_shape(body);
            strip_ = strip_of(step_);
        } else {
            sheet_ = sheet_shape(body);
            strip_ = strip_of(sheet_);
        }
        turned_ = strip_.turned();
        strip_.turn();
    }

    const BodyFrame& frame() const { return frame_; }
    const Strip& strip() const { return strip_; }

    StripSlope slope(int param_code) const {
        StripSlope slope = shape_slope(param_code);
        if (turned_) {
            slope.p += slope.e;
            slope.e = -slope.e;
        }
        if (param_code == param_distance) slope.p += across_;
        if (param_code == param_top) slope.p += i_unit;
        if (param_code == param_strike) slope.turn = radian;
        return slope;
    }

    Tensor3 tensor_slope(int param_code) const {
        if (is_step(body_.type)) return {};
        return sheet_tensor_slope(sheet_, sheet_slope(body_, sheet_, param_code));
    }

  private:
    StripSlope shape_slope(int param_code) const {
        if (is_step(body_.type)) {
            const StepShape change = step_slope(body_, step_, param_code);
            return {0.0, Complex(change.run, -change.depth), 0.0};
        }
        const SheetShape change = sheet_slope(body_, sheet_, param_code);
        const Complex top(change.width, change.rise);
        if (!strip_.endless)
            return {
                0.0, top,
                Complex(change.cotangent * sheet_.depth + sheet_.cotangent * change.depth, -change.depth)};
        const double turn = change.cotangent / (1 + sheet_.cotangent * sheet_.cotangent);
        return {0.0, top, i_unit * turn * strip_.g};
    }

    const ModelBody& body_;
    BodyFrame frame_{};
    double across_ = 0;  ///< of the reference point, across strike, a metre of distance
    SheetShape sheet_;
    StepShape step_;
    Strip strip_;
    bool turned_ = false;
};

/// The weights of one column.
class Weights {
  public:
    explicit Weights(double* at) : at_(at) {}
    void add(int term, double weight) { at_[term] += weight; }
    /// Re[factor X] and Im[factor X] of the complex term X.
    void add_real_part(int term, Complex factor) {
        at_[term] += factor.real();
        at_[term + 1] -= factor.imag();
    }
    void add_imaginary_part(int term, Complex factor) {
        at_[term] += factor.imag();
        at_[term + 1] += factor.real();
    }

  private:
    double* at_;
};

/// conj(v) / v, which says all that an edge's direction does to its poles, and its change.
Complex squared_direction(Complex v) {
    return std::conj(v) / v;
}
Complex direction_slope(Complex v, Complex change) {
    return (std::conj(change) - squared_direction(v) * change) / v;
}

/// Anomaly = Re[d l] + inside: l is the logarithm of w1 w3 / (w2 w4), d = i f J (e' - g') with f the field, J
/// the magnetisation and e', g' the squared directions of E and G.
class AnomalyWeights {
  public:
    AnomalyWeights(const PlaneBody& plane, const BodyField& field)
        : plane_(plane),
          field_(field),
          e_(plane.strip().r - plane.strip().p),
          g_(plane.strip().g),
          f_(in_plane(field.field().direction)),
          j_(in_plane(field.field().magnetisation)),
          difference_(squared_direction(e_) - squared_direction(g_)) {}

    void fill(int param_code, Weights weights) const {
        const StripSlope slope = plane_.slope(param_code);
        FieldSlope field = field_.slope(param_code);
        if (field_.demagnetised()) {
            const Point3 own = field_.change_by(plane_.tensor_slope(param_code));
            field.magnetisation.x += own.x;
            field.magnetisation.z += own.z;
        }
        add_factor(slope, field, weights);
        add_shape(slope, weights);
    }

  private:
    static Complex in_plane(const Point3& v) { return {v.x, v.z}; }

    void add_factor(const StripSlope& slope, const FieldSlope& field, Weights weights) const {
        const Complex df = in_plane(field.direction), dj = in_plane(field.magnetisation);
        const Complex g_turn = direction_slope(g_, slope.g);
        const Complex d =
            i_unit * ((df * j_ + f_ * dj) * difference_ + f_ * j_ * (direction_slope(e_, slope.e) - g_turn));
        weights.add(anomaly_term::log, d.real() / 2);
        weights.add(anomaly_term::angle, -d.imag());
        const Complex g_direction = squared_direction(g_);
        const Complex side = i_unit * (df * (j_ * g_direction - std::conj(j_)) +
                                       f_ * (dj * g_direction - std::conj(dj) + j_ * g_turn));
        weights.add(anomaly_term::inside, 2 * exact_pi * side.imag());
    }

    void add_shape(const StripSlope& slope, Weights weights) const {
        const bool endless = plane_.strip().endless;
        const Complex d = i_unit * f_ * j_ * difference_;
        const Complex shift = endless ? d * e_ : d * e_ * g_;
        weights.add_real_part(anomaly_term::shift, shift * slope.p);
        weights.add_real_part(anomaly_term::shift_along, shift * slope.turn);
        weights.add_real_part(anomaly_term::far_top, endless ? -d * slope.e : -d * slope.e * g_);
        if (!endless) weights.add_real_part(anomaly_term::lower, -d * slope.g * e_);
    }

    const PlaneBody& plane_;
    const BodyField& field_;
    Complex e_, g_, f_, j_, difference_;
};

/// Attraction of a unit of `per_density` times the density; its derivatives are line integrals over the sides
/// that move.
class MassWeights {
  public:
    MassWeights(const PlaneBody& plane, double density)
        : plane_(plane),
          e_(plane.strip().r - plane.strip().p),
          g_(plane.strip().g),
          factor_(per_density * density) {}

    void fill(int param_code, Weights weights) const {
        const bool endless = plane_.strip().endless;
        if (param_code == param_density)
            return weights.add(endless ? +wall_term::sum : +mass_term::sum, per_density);
        const StripSlope slope = plane_.slope(param_code);
        if (endless) {
            add_endless(slope, weights);
        } else {
            add_closed(slope, weights);
        }
    }

    static constexpr double per_density = 2 * gravity_constant;

  private:
    void add_closed(const StripSlope& s, Weights weights) const {
        const Complex top = factor_ / e_, side = factor_ / g_;
        weights.add_imaginary_part(mass_term::level, cross(s.p, e_) * top);
        weights.add_imaginary_part(mass_term::steep, cross(s.p, g_) * side);
        weights.add_imaginary_part(mass_term::level_along, cross(s.turn, e_) * top);
        weights.add_imaginary_part(mass_term::steep_along, cross(s.turn, g_) * side);
        weights.add_imaginary_part(mass_term::far_side, cross(s.e, g_) * side);
        weights.add_imaginary_part(mass_term::top_turn, -cross(s.e, e_) * top / e_);
        weights.add_imaginary_part(mass_term::lower, cross(s.g, e_) * top);
        weights.add_imaginary_part(mass_term::side_turn, -cross(s.g, g_) * side / g_);
    }

    void add_endless(const StripSlope& s, Weights weights) const {
        const Complex top = factor_ / e_, wall = factor_ * std::conj(g_);
        weights.add_imaginary_part(wall_term::top, cross(s.p, e_) * top);
        weights.add_imaginary_part(wall_term::walls, -cross(s.p, g_) * wall);
        weights.add_imaginary_part(wall_term::top_along, cross(s.turn, e_) * top);
        weights.add_imaginary_part(wall_term::walls_along, -cross(s.turn, g_) * wall);
        const double e_turn = std::imag(s.e / e_);
        weights.add_imaginary_part(wall_term::top_turn, e_turn * std::conj(e_) * top);
        weights.add_imaginary_part(wall_term::far_wall, -cross(s.e, g_) * wall);
        const double turn = std::imag(s.g / g_);
        weights.add_imaginary_part(wall_term::wall_turn, -turn * std::conj(g_) * wall);
        weights.add(wall_term::one, factor_ * (constant_slope(s, turn) + level_slope(s)));
    }

    /// What the ends of the logarithms leave.
    double constant_slope(const StripSlope& s, double turn) const {
        return std::real(s.e * (squared_direction(e_) - squared_direction(g_))) / 2 +
               turn * cross(e_, g_) * g_.real();
    }

    /// Of the level of a sheet that ends `deepest` down, by what its walls fall.
    double level_slope(const StripSlope& s) const {
        const double fall = std::abs(g_.imag());
        if (fall == 0) return 0;
        const double fall_slope = g_.imag() < 0 ? -s.g.imag() : s.g.imag();
        const double deep = std::log(deepest) - std::log(fall);
        return (cross(s.e, g_) + cross(e_, s.g)) * fall * (1 + deep) + cross(e_, g_) * fall_slope * deep;
    }

    const PlaneBody& plane_;
    Complex e_, g_;
    double factor_;
};

/// What a station and one of its columns take.
constexpr double units_a_station = 200, units_a_column = 10;
constexpr std::size_t stretch = 4096;

/// Calls run(stations, values, columns) for one stretch of stations after the other.
template <class Run>
void in_stretches(const StationView& stations, std::size_t column_count, std::span<double> values,
                  std::span<double> columns, Pacer& pacer, const Run& run) {
    for (std::size_t at = 0; at < stations.count; at += stretch) {
        const std::size_t count = std::min(stretch, stations.count - at);
        run(part_of(stations, at, count), values.data() + at, columns.data() + at);
        pacer.done(static_cast<double>(count) *
                   (units_a_station + units_a_column * static_cast<double>(column_count)));
    }
}

template <class Maker>
TermWeights weights_of(const Maker& maker, std::span<const int> param_codes) {
    TermWeights weights;
    for (const int code : param_codes) {
        std::array<double, most_terms> column{};
        maker.fill(code, Weights(column.data()));
        weights.add_column(column);
    }
    return weights;
}

}  // namespace

bool lies_in_plane(const ModelBody& body) {
    if (is_step(body.type)) return true;
    if (!is_sheet(body.type)) return false;
    const SheetShape sheet = sheet_shape(body);
    return sheet.meets && !sheet.empty() && !sheet.limited;
}

void plane_columns(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                   std::span<const int> param_codes, std::span<double> values, std::span<double> columns,
                   Pacer& pacer) {
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    const PlaneBody plane(workspace, body);
    const auto level = vector::widest_vector_level();
    if (channel == channel_mag) {
        std::optional<Tensor3> tensor;
        if (body.include_demagnetisation == 1) tensor = body_demagnetisation(body);
        const BodyField field(workspace, body, plane.frame(), tensor ? &*tensor : nullptr);
        const TermWeights weights = weights_of(AnomalyWeights(plane, field), param_codes);
        const PlaneStrip strip = plane_strip(plane.strip(), field.field());
        return in_stretches(stations, param_codes.size(), values, columns, pacer,
                            [&](const StationView& part, double* value, double* column) {
                                strip_anomaly_columns_at(level)(part, plane.frame(), strip,
                                                                weights.columns(column, stations.count),
                                                                value);
                            });
    }
    const double density = body.density.value;
    const TermWeights weights = weights_of(MassWeights(plane, density), param_codes);
    StripMass mass(plane.strip());
    mass.mass.factor = 2 * gravity_constant * density;
    in_stretches(stations, param_codes.size(), values, columns, pacer,
                 [&](const StationView& part, double* value, double* column) {
                     strip_gravity_columns_at(level)(part, plane.frame(), mass.mass,
                                                     weights.columns(column, stations.count), value);
                 });
}

}  // namespace anomalis::forward

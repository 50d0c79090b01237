#include "forward/columns/field_slope.h"

#include <cmath>

#include "core/body_parameters.h"
#include "forward/exact/shape_demagnetisation.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

constexpr double radian = exact_pi / 180;  ///< a degree
constexpr double micro = 1e-6;

/// A vector of east, north, up in the axes of the body.
Point3 turned_in(const BodyFrame& frame, const Point3& v) {
    return {v.x * frame.cos_strike - v.y * frame.sin_strike, v.x * frame.sin_strike + v.y * frame.cos_strike,
            v.z};
}

/// What a degree of strike does to a vector that stays in space.
Point3 turned_by_strike(const Point3& v) {
    return {-v.y * radian, v.x * radian, 0};
}

Point3 product(const Tensor3& n, const Point3& v) {
    return {n.xx * v.x + n.xy * v.y + n.xz * v.z, n.xy * v.x + n.yy * v.y + n.yz * v.z,
            n.xz * v.x + n.yz * v.y + n.zz * v.z};
}

}  // namespace

BodyField::BodyField(const Workspace& workspace, const ModelBody& body, const BodyFrame& frame,
                     const Tensor3* tensor)
    : body_(body), field_(exact_field(workspace, body, frame)) {
    const double i = exact_radians(body.rem_i.value), d = exact_radians(body.rem_d.value);
    const double ci = std::cos(i), si = std::sin(i), cd = std::cos(d), sd = std::sin(d);
    remanent_ = turned_in(frame, {ci * sd, ci * cd, -si});
    remanent_i_ = turned_in(frame, {-si * sd * radian, -si * cd * radian, -ci * radian});
    remanent_d_ = turned_in(frame, {ci * cd * radian, -ci * sd * radian, 0});
    const double per_unit = micro * field_.intensity / (4 * exact_pi);
    induced_ = per_unit * body.susc.value;
    unit_ = (field_.direction + remanent_ * static_cast<double>(body.rem_q.value)) * per_unit;
    plain_ = field_.magnetisation;
    const double chi = body.susc.value * micro;
    if (tensor == nullptr || !(chi > -1)) return;
    demagnetised_ = true;
    tensor_ = *tensor;
    field_.magnetisation = anomalis::forward::demagnetised(tensor_, body.susc.value / 1e6, plain_);
}

Point3 BodyField::without_own_field(const Point3& plain) const {
    return demagnetised_ ? anomalis::forward::demagnetised(tensor_, body_.susc.value / 1e6, plain) : plain;
}

Point3 BodyField::plain_slope(int param_code) const {
    switch (param_code) {
        case param_strike:
            return turned_by_strike(plain_);
        case param_susc:
            return demagnetised_ ? unit_ - product(tensor_, field_.magnetisation) * micro : unit_;
        case param_rem_q:
            return remanent_ * induced_;
        case param_rem_i:
            return remanent_i_ * (induced_ * body_.rem_q.value);
        case param_rem_d:
            return remanent_d_ * (induced_ * body_.rem_q.value);
        default:
            return {};
    }
}

FieldSlope BodyField::slope(int param_code) const {
    FieldSlope slope;
    if (param_code == param_strike) slope.direction = turned_by_strike(field_.direction);
    slope.magnetisation = without_own_field(plain_slope(param_code));
    return slope;
}

Point3 BodyField::change_by(const Tensor3& tensor_change) const {
    if (!demagnetised_) return {};
    return without_own_field(product(tensor_change, field_.magnetisation) * (-micro * body_.susc.value));
}

}  // namespace anomalis::forward

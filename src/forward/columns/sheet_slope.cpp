#include "forward/columns/sheet_slope.h"

#include <algorithm>
#include <cmath>

#include "core/body_parameters.h"
#include "forward/exact/exact_axes.h"
#include "forward/exact/shape_demagnetisation.h"

namespace anomalis::forward {

namespace {

constexpr double radian = exact_pi / 180;  ///< a degree

/// Of the cotangent of the dip; 0 where it is held.
double cotangent_slope(const ModelBody& body) {
    const double held = dip_cotangent(body.dip.value);
    const double flattest = dip_cotangent(0);
    return std::abs(held) >= flattest ? 0.0 : -(1 + held * held) * radian;
}

/// What changes of the uncut top, of the walls and of the slope's tangent do to a sheet.
SheetShape cut_slope(double slope_tangent, const SheetShape& sheet, double width, double cotangent,
                     double tangent) {
    const double narrowing = tangent * sheet.cotangent + slope_tangent * cotangent;
    SheetShape change;
    change.cotangent = cotangent;
    change.width = (width - sheet.width * narrowing) / (1 + slope_tangent * sheet.cotangent);
    change.rise = change.width * slope_tangent + sheet.width * tangent;
    return change;
}

constexpr double tensor_step = 1e-3;  ///< of the shape's size

SheetShape changed(SheetShape sheet, const SheetShape& change, double by) {
    for (double SheetShape::*number :
         {&SheetShape::cotangent, &SheetShape::width, &SheetShape::rise, &SheetShape::depth,
          &SheetShape::near_end, &SheetShape::far_end, &SheetShape::plunge})
        sheet.*number += change.*number * by;
    return sheet;
}

Tensor3 tensor_difference(const SheetShape& sheet, const SheetShape& change, double step) {
    const Tensor3 a = sheet_demagnetisation(changed(sheet, change, step));
    const Tensor3 b = sheet_demagnetisation(changed(sheet, change, -step));
    return {a.xx - b.xx, a.xy - b.xy, a.xz - b.xz, a.yy - b.yy, a.yz - b.yz, a.zz - b.zz};
}

/// The largest change of a number of the shape as a part of its size.
double change_rate(const SheetShape& sheet, const SheetShape& change) {
    const double length = sheet.limited ? sheet.far_end - sheet.near_end : 0;
    return std::max(
        {std::abs(change.cotangent) / (1 + std::abs(sheet.cotangent)), std::abs(change.width / sheet.width),
         std::abs(change.rise / sheet.width), sheet.depth == 0 ? 0.0 : std::abs(change.depth / sheet.depth),
         length == 0 ? 0.0 : std::abs((change.far_end - change.near_end) / length), std::abs(change.plunge)});
}

}  // namespace

Tensor3 sheet_tensor_slope(const SheetShape& sheet, const SheetShape& change) {
    const double rate = change_rate(sheet, change);
    if (rate == 0) return {};
    const double step = tensor_step / rate;
    const Tensor3 far = tensor_difference(sheet, change, 2 * step);
    const Tensor3 near = tensor_difference(sheet, change, step);
    const auto slope = [&](double Tensor3::*part) { return (8 * near.*part - far.*part) / (12 * step); };
    return {slope(&Tensor3::xx), slope(&Tensor3::xy), slope(&Tensor3::xz),
            slope(&Tensor3::yy), slope(&Tensor3::yz), slope(&Tensor3::zz)};
}

SheetShape sheet_slope(const ModelBody& body, const SheetShape& sheet, int param_code) {
    const double slope_tangent = std::tan(exact_radians(body.slope.value));
    const double stretched = body.type == thin_sheet ? std::sqrt(1 + sheet.cotangent * sheet.cotangent) : 1.0;
    SheetShape change;
    switch (param_code) {
        case param_width:
            return cut_slope(slope_tangent, sheet, stretched, 0, 0);
        case param_dip: {
            const double cotangent = cotangent_slope(body);
            const double wider =
                body.type == thin_sheet ? body.width.value * sheet.cotangent / stretched * cotangent : 0.0;
            return cut_slope(slope_tangent, sheet, wider, cotangent, 0);
        }
        case param_slope:
            return cut_slope(slope_tangent, sheet, 0, 0, (1 + slope_tangent * slope_tangent) * radian);
        case param_depth_extent:
            change.depth = sheet.depth == 0 ? 0 : 1;
            return change;
        case param_plunge:
            if (sheet.limited) change.plunge = std::cos(exact_radians(body.plunge.value)) * radian;
            return change;
        case param_length:
            if (sheet.limited) change.near_end = -0.5, change.far_end = 0.5;
            return change;
        case param_offset:
            if (sheet.limited) change.near_end = change.far_end = 1;
            return change;
        default:
            return change;
    }
}

StepShape step_slope(const ModelBody& body, const StepShape& step, int param_code) {
    StepShape change;
    if (param_code == param_dip) change.run = cotangent_slope(body) * step.depth;
    if (param_code == param_depth_extent && body.depth_extent.value != 0)
        change = {dip_cotangent(body.dip.value), 1};
    return change;
}

}  // namespace anomalis::forward

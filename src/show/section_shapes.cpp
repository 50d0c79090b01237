#include "show/section_shapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/angles.h"
#include "core/workspace.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::show {

namespace {

constexpr chart::Colour blue = 0xFF0000;
constexpr chart::Colour green = 0x00FF00;
constexpr int chords = 32;
constexpr int beside_width = 4;       // pixels
constexpr double beside_shift = 2.0;  // m, of the left corners of a body beside the line
constexpr double vertical = 0.1;      // degrees about 90 that count as upright
constexpr double flat = 0.01;         // a tangent of the dip below this counts as flat
constexpr double least_slope = 0.1;   // degrees

/// The angle between a body and the line.
struct Crossing {
    double q;   ///< sine of strike less azimuth
    double cq;  ///< its cosine
};

bool upright(const ModelBody& body) {
    return std::abs(body.dip.value - 90.0) < vertical;
}

double dip_tangent(const ModelBody& body) {
    return std::tan(body.dip.value * radians_per_degree);
}

/// Width of the sloping top along the line. As the dip goes to 0 under a slope the width goes to 0 with it.
double sloping_width(const ModelBody& body, double a, double slope) {
    if (upright(body)) return a;
    const double t = dip_tangent(body);
    if (t == 0) return 0;
    const double divisor = 1 - std::tan(-slope) / t;
    return divisor == 0 ? a : a / divisor;
}

struct Corners {
    double left_top, right_top, right_bottom, left_bottom;
    double left_top_y, right_top_y, right_bottom_y, left_bottom_y;
};

Corners sheet_corners(const ModelBody& body, const Crossing& crossing, const SectionWindow& window) {
    const double d0 = body.distance.value;
    const double z0 = body.top.value;
    const double extent = body.depth_extent.value != 0 ? body.depth_extent.value : z0 - window.bottom;
    const double bottom = z0 - extent;
    double run = 0;
    if (!upright(body)) {
        const double t = dip_tangent(body);
        run = std::abs(t) < flat ? 100 * extent : extent / t;
    }
    const double a = body.width.value / crossing.q;
    const double s = run / crossing.q + d0;
    Corners c{d0, d0 + a, s + a, s, z0, z0, bottom, bottom};
    if (is_step(body.type)) {
        c.right_top = c.right_bottom = crossing.q > 0 ? window.profile_end : 0;
        return c;
    }
    if (std::abs(body.slope.value) > least_slope) {
        const double slope = body.slope.value * radians_per_degree;
        const double a2 = sloping_width(body, a, slope);
        const double rise = a2 * std::tan(slope);
        c.right_top = d0 + a2;
        c.right_bottom = s + a2;
        c.right_top_y += rise;
        c.right_bottom_y += rise;
    }
    return c;
}

/// The body as the exact formulas have it: the dip clamped on its own side, a thin sheet as wide as it is
/// over the sine of its dip, the top's rise at right angles to the strike.
Corners exact_corners(const ModelBody& body, const Crossing& crossing, const SectionWindow& window) {
    const double z0 = body.top.value;
    forward::SheetShape sheet = forward::sheet_shape(body);
    if (!sheet.meets) sheet.rise = 0;
    const double extent = body.depth_extent.value != 0 ? body.depth_extent.value : z0 - window.bottom;
    const double d0 = body.distance.value;
    const double s = d0 + sheet.cotangent * extent / crossing.q;
    Corners c{d0, d0, s, s, z0, z0, z0 - extent, z0 - extent};
    if (!is_sheet(body.type)) {
        c.right_top = c.right_bottom = crossing.q > 0 ? window.profile_end : 0;
        return c;
    }
    c.right_top += sheet.width / crossing.q;
    c.right_bottom += sheet.width / crossing.q;
    c.right_top_y += sheet.rise;
    c.right_bottom_y += sheet.rise;
    return c;
}

/// Moves a body that does not cross the line to the place of its near end.
void shift_beside_line(const ModelBody& body, const Crossing& crossing, Corners& c, SectionShape& shape) {
    const double length = body.length.value;
    const double offset = body.offset.value;
    if (!(length > 0) || !(length / 2 < std::abs(offset))) return;
    const double o = offset < 0 ? length / 2 + offset : offset - length / 2;
    const double along = -o * crossing.cq;
    const double up = -std::sin(body.plunge.value * radians_per_degree) * o;
    for (double* x : {&c.left_top, &c.right_top, &c.right_bottom, &c.left_bottom}) *x += along;
    for (double* y : {&c.left_top_y, &c.right_top_y, &c.right_bottom_y, &c.left_bottom_y}) *y += up;
    c.left_top -= beside_shift;
    c.left_bottom -= beside_shift;
    shape.outline = o > 0 ? blue : green;
    shape.width = beside_width;
}

void add_arc(SectionShape& shape, double radius, double stretch, double from, double to) {
    for (int i = 0; i <= chords; ++i) {
        const double angle = from + (to - from) * i / chords;
        shape.xs.push_back(shape.distance + radius * stretch * std::cos(angle));
        shape.ys.push_back(shape.top + radius * std::sin(angle));
    }
}

void add_circle(const ModelBody& body, const Crossing& crossing, SectionShape& shape) {
    const double radius = body.width.value / 2.0;
    const double stretch = 1 / std::abs(crossing.q);
    const double inner = radius - body.shell_thickness;
    constexpr double whole = 2 * std::numbers::pi;
    if (!(body.shell_thickness > 0) || !(inner > 0)) return add_arc(shape, radius, stretch, 0, whole);
    // The ring is one polygon: out along the outer circle, over a slit of a tenth of a chord, back along the
    // inner one.
    const double end = whole - whole / chords / 10;
    add_arc(shape, radius, stretch, 0, end);
    add_arc(shape, inner, stretch, end, 0);
    shape.xs.push_back(shape.xs.front());
    shape.ys.push_back(shape.ys.front());
}

void add_sheet(const Workspace& workspace, const ModelBody& body, const Crossing& crossing,
               const SectionWindow& window, SectionShape& shape) {
    const bool exact = workspace.formulas == Formulas::exact;
    Corners c = exact ? exact_corners(body, crossing, window) : sheet_corners(body, crossing, window);
    // Edges and steps have no length with the exact formulas.
    if (!exact || !is_step(body.type)) shift_beside_line(body, crossing, c, shape);
    shape.xs = {c.left_top, c.right_top, c.right_bottom, c.left_bottom, c.left_top};
    shape.ys = {c.left_top_y, c.right_top_y, c.right_bottom_y, c.left_bottom_y, c.left_top_y};
}

}  // namespace

double SectionShape::left() const {
    return xs.empty() ? distance : *std::min_element(xs.begin(), xs.end());
}

double SectionShape::right() const {
    return xs.empty() ? distance : *std::max_element(xs.begin(), xs.end());
}

double SectionShape::lowest() const {
    return ys.empty() ? top : *std::min_element(ys.begin(), ys.end());
}

double SectionShape::highest() const {
    return ys.empty() ? top : *std::max_element(ys.begin(), ys.end());
}

SectionShape section_shape(const Workspace& workspace, const ModelBody& body, const SectionWindow& window) {
    SectionShape shape;
    const double angle = body.strike.value * radians_per_degree - workspace.azimuth;
    Crossing crossing{std::sin(angle), std::cos(angle)};
    const bool exact = workspace.formulas == Formulas::exact;
    if (std::abs(crossing.q) < least_sine_with_section) {
        if (exact) {
            crossing.q = std::copysign(least_sine_with_section, crossing.q);
        } else if (body.type != sphere) {
            return shape;
        }
    }
    shape.visible = true;
    shape.distance = body.distance.value;
    shape.top = body.top.value;
    if (is_tabular(body.type)) add_sheet(workspace, body, crossing, window, shape);
    if (is_named(body.type) && is_round(body.type)) add_circle(body, crossing, shape);
    // A plane cuts a sphere in a circle at any angle.
    if (exact && body.type == sphere)
        add_arc(shape, std::abs(body.width.value) / 2.0, 1, 0, 2 * std::numbers::pi);
    return shape;
}

}  // namespace anomalis::show

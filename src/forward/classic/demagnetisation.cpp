#include "forward/classic/demagnetisation.h"

#include <array>
#include <cmath>

#include "core/angles.h"
#include "forward/shape/body_solid.h"
#include "forward/shape/pipe_mesh.h"

namespace anomalis::forward {

namespace {

/// The middle of the wall in the first sector of a segment, in the axes of the solid. The other sectors
/// follow from it by turning.
Point3 middle_of_wall(const BodySolid::Shape& shape, const MeshCounts& counts, std::int64_t segment) {
    const double step = 2 * pi / static_cast<double>(counts.sectors);
    const double length = shape.length;
    const double outer = static_cast<double>(shape.width) / 2;
    const double mean_diameter = outer - static_cast<double>(shape.shell_thickness) / 2;
    const double along = (static_cast<double>(segment) + 0.5) * length / static_cast<double>(counts.sections);
    const double cap = shape.end_thickness > 0 ? shape.end_thickness : 0.0;
    const double inner_along = cap + along * (length - 2 * cap) / length;
    // Half way between the corners at the start of the ring and one step on, on a circle of diameter 1.
    const double x = -(1 + std::cos(step)) / 4;
    const double z = std::sin(step) / 4;
    return {mean_diameter * x, (along + inner_along) / 2, mean_diameter * z};
}

/// Factors along and across the axis: what is left of the tensor after all turns about it.
void add_factors(const Tensor3& tensor, BodySolid::Demagnetisation& factors) {
    factors.along += tensor.yy;
    factors.across += (tensor.xx + tensor.zz) / 2;
}

BodySolid::Demagnetisation factors_of(const BodySolid& solid, Polyhedron& polyhedron) {
    BodySolid::Demagnetisation factors;
    factors.known = true;
    polyhedron.assign(solid.points, solid.facets);
    if (!(solid.shape.shell_thickness > 0)) {
        add_factors(polyhedron.demagnetising_tensor(polyhedron.centroid()), factors);
        return factors;
    }
    GraphicObject object;
    object.length = solid.shape.length;
    object.diameter_start = object.diameter_end = static_cast<double>(solid.shape.width) / 2;
    object.sectors = solid.shape.sectors;
    object.segments = solid.shape.segments;
    const MeshCounts counts = count_mesh(object);
    for (std::int64_t segment = 0; segment < counts.sections; ++segment)
        add_factors(polyhedron.demagnetising_tensor(middle_of_wall(solid.shape, counts, segment)), factors);
    factors.along /= static_cast<double>(counts.sections);
    factors.across /= static_cast<double>(counts.sections);
    return factors;
}

/// The direction of the axis in east, north, up.
Point3 axis_of(const BodySolid::Placement& placement) {
    std::array<Point3, 1> axis{Point3{0, 1, 0}};
    transform_solid({1, 1, 1}, {placement.plunge, placement.strike, placement.dip}, {}, axis);
    return axis[0];
}

}  // namespace

Magnetisation demagnetised_pipe(ModelBody& body, const Magnetisation& plain, Polyhedron& polyhedron) {
    BodySolid& solid = body.solid;
    if (solid.facets.empty()) return plain;
    if (!solid.demagnetisation.known) solid.demagnetisation = factors_of(solid, polyhedron);
    const double chi = body.susc.value / 1e6;
    const double along = 1 + chi * solid.demagnetisation.along;
    const double across = 1 + chi * solid.demagnetisation.across;
    if (along == 0 || across == 0) throw Fault(FaultKind::division_by_zero);
    const Point3 axis = axis_of(solid.placement);
    const double axial = plain.east * axis.x + plain.north * axis.y + plain.down * -axis.z;
    const double extra = axial / along - axial / across;
    return {plain.north / across + extra * axis.y, plain.east / across + extra * axis.x,
            plain.down / across - extra * axis.z};
}

}  // namespace anomalis::forward

#include "forward/classic/demagnetisation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "core/angles.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

namespace {

/// Points in the middle of the wall in the first sector of every segment, in the axes of the solid, and what
/// is found at each. The other sectors follow from it by turning.
class WallPoints {
  public:
    WallPoints(const BodySolid::Shape& shape, const SolidCounts& counts)
        : sections_(static_cast<std::size_t>(counts.segments)), numbers_(9 * sections_) {
        const double step = 2 * pi / static_cast<double>(counts.sectors);
        const double length = shape.length;
        const double outer = static_cast<double>(shape.width) / 2;
        const double mean_diameter = outer - static_cast<double>(shape.shell_thickness) / 2;
        const double cap = shape.end_thickness > 0 ? shape.end_thickness : 0.0;
        // Half way between the corners at the start of the ring and one step on, on a circle of diameter 1.
        std::fill_n(numbers_.begin(), sections_, mean_diameter * (-(1 + std::cos(step)) / 4));
        std::fill_n(numbers_.begin() + static_cast<std::ptrdiff_t>(2 * sections_), sections_,
                    mean_diameter * (std::sin(step) / 4));
        for (std::size_t section = 0; section < sections_; ++section) {
            const double along =
                (static_cast<double>(section) + 0.5) * length / static_cast<double>(sections_);
            const double inner_along = cap + along * (length - 2 * cap) / length;
            row(1)[section] = (along + inner_along) / 2;
        }
    }

    /// The mean of the factors along and across the axis: what is left of the tensors after all turns about
    /// it.
    BodySolid::Demagnetisation mean(Polyhedron& polyhedron, Pacer& pacer) {
        polyhedron.demagnetising_tensors({row(0), row(1), row(2)},
                                         {row(3), row(4), row(5), row(6), row(7), row(8)}, {.pacer = &pacer});
        BodySolid::Demagnetisation factors{true, 0, 0};
        for (std::size_t section = 0; section < sections_; ++section) {
            factors.along += row(6)[section];
            factors.across += (row(3)[section] + row(8)[section]) / 2;
        }
        factors.along /= static_cast<double>(sections_);
        factors.across /= static_cast<double>(sections_);
        return factors;
    }

  private:
    /// Places x, y, z and the tensor's xx, xy, xz, yy, yz, zz.
    std::span<double> row(std::size_t k) { return std::span(numbers_).subspan(k * sections_, sections_); }

    std::size_t sections_;
    std::vector<double> numbers_;
};

BodySolid::Demagnetisation factors_of(const BodySolid& solid, Polyhedron& polyhedron, Pacer& pacer) {
    PlainSolid memory;
    const PlainSurface surface = plain_surface(solid, memory);
    polyhedron.assign(surface.points, surface.facets, &pacer);
    if (!(solid.shape.shell_thickness > 0)) {
        const Tensor3 tensor = polyhedron.demagnetising_tensor(polyhedron.centroid());
        return {true, tensor.yy, (tensor.xx + tensor.zz) / 2};
    }
    return WallPoints(solid.shape, count_solid(solid.shape)).mean(polyhedron, pacer);
}

/// The direction of the axis in east, north, up.
Point3 axis_of(const BodySolid::Placement& placement) {
    std::array<Point3, 1> axis{Point3{0, 1, 0}};
    transform_solid({1, 1, 1}, {placement.plunge, placement.strike, placement.dip}, {}, axis);
    return axis[0];
}

}  // namespace

Magnetisation demagnetised_pipe(ModelBody& body, const Magnetisation& plain, Polyhedron& polyhedron,
                                Pacer& pacer) {
    BodySolid& solid = body.solid;
    if (solid.facets.empty()) return plain;
    if (!solid.demagnetisation.known) solid.demagnetisation = factors_of(solid, polyhedron, pacer);
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

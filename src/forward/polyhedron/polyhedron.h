#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "core/model_body.h"
#include "forward/gravity_constant.h"
#include "vector/vector_levels.h"

namespace anomalis {
class Pacer;
}  // namespace anomalis

namespace anomalis::forward {

/// Three indices into a list of points, from 0.
using Facet = std::array<std::int32_t, 3>;

/// Where the field is wanted: n stations, east, north and up in the survey's own metres.
struct StationSpans {
    std::span<const double> east;
    std::span<const double> north;
    std::span<const double> up;
};

/// A symmetric tensor in east (x), north (y), up (z).
struct Tensor3 {
    double xx = 0, xy = 0, xz = 0, yy = 0, yz = 0, zz = 0;
    double trace() const { return xx + yy + zz; }
};

/// The six columns of a tensor at n stations.
struct TensorSpans {
    std::span<double> xx, xy, xz, yy, yz, zz;
};

/// How a calculation is run. No choice changes a result by a bit.
struct Execution {
    vector::VectorLevel level = vector::widest_vector_level();
    int threads = 0;  ///< 0: one for a short job, else one a core
    Pacer* pacer =
        nullptr;  ///< told of the work; results of a calculation that it has left are worth nothing
};

/// The field of a uniform body that is bounded by triangles, at any number of stations.
///
/// Exact and in double precision: the edge and face form of Werner and Scheeres (1997, Celest. Mech. Dyn.
/// Astron. 65), the solid angle of van Oosterom and Strackee (1983, IEEE Trans. Biomed. Eng. 30). Each shared
/// edge costs one logarithm and each face one arc tangent; a parallelepiped takes the short way of its
/// parallel edges and opposite faces (see parallelepiped_kernel.h). From 16 radii away the exterior expansion
/// in solid harmonics takes over, which is accurate to 1e-11 there and has no cancellation at any distance.
///
/// On the surface the value just outside the body holds: on a face and down to 1e-9 m (and the rounding of
/// the coordinates) below it, and within 1e-8 of the body's radius of an edge or a corner. There the magnetic
/// field and the gradients grow with the logarithm of the distance and are cut off at that distance; gravity
/// is exact and continuous everywhere. Inside the body the magnetic field is that of its poles (H).
///
/// A prepared body may be asked any number of times; the calls use memory that it keeps, so one object is for
/// one thread at a time. Coordinates that are not numbers give results that are not numbers.
class Polyhedron {
  public:
    /// A body without facets; all its fields are 0.
    Polyhedron();
    /// As `assign`.
    Polyhedron(std::span<const Point3> points, std::span<const Facet> facets);
    ~Polyhedron();
    Polyhedron(Polyhedron&&) noexcept;
    Polyhedron& operator=(Polyhedron&&) noexcept;

    /// Takes a new shape, in east, north, up, m. The facets must all turn the same way; when the volume comes
    /// out negative they face inward and are taken the other way round. Points may be repeated, and points
    /// that no facet uses do nothing. Facets without area add nothing. A surface that is not closed bounds no
    /// body; what it gives is the plain sum of its facets' terms, in the sense in which they turn, without
    /// the expansion for distant stations. Raises Fault subscript for an index without a point. When `pacer`
    /// leaves the work the body has no facets.
    void assign(std::span<const Point3> points, std::span<const Facet> facets, Pacer* pacer = nullptr);

    double volume() const;            ///< m^3, never negative for a closed surface
    Point3 centroid() const;          ///< of the volume; the middle of the bounding box when there is none
    bool closed() const;              ///< whether the facets' area vectors sum to zero
    std::size_t facet_count() const;  ///< facets with an area
    std::size_t edge_count() const;   ///< edges that take part: not those between coplanar facets

    /// Anomaly of the total field, nT: the field of the poles projected on the ambient direction.
    /// `magnetisation` in nT with 4 pi divided out (susceptibility in SI times the field / 4 pi), `direction`
    /// the unit vector of the ambient field, both east, north, up. This and the following raise Fault
    /// subscript where the lengths of the spans differ.
    void total_field(const StationSpans& stations, const Point3& magnetisation, const Point3& direction,
                     std::span<double> anomaly, const Execution& how = {});

    /// Downward attraction, mGal, for a density in g/cc.
    void gravity(const StationSpans& stations, double density, std::span<double> attraction,
                 const Execution& how = {});

    /// Both of the above in one pass.
    void total_field_and_gravity(const StationSpans& stations, const Point3& magnetisation,
                                 const Point3& direction, double density, std::span<double> anomaly,
                                 std::span<double> attraction, const Execution& how = {});

    /// The three components of the magnetic field of the poles, nT.
    void magnetic_components(const StationSpans& stations, const Point3& magnetisation,
                             std::span<double> east, std::span<double> north, std::span<double> up,
                             const Execution& how = {});

    /// The gravity gradient tensor, mGal/m (1 mGal/m is 10,000 Eotvos), for a density in g/cc: second
    /// derivatives of the potential whose gradient is the attraction. Trace 0 outside, -4 pi G density
    /// inside.
    void gravity_gradient(const StationSpans& stations, double density, const TensorSpans& gradient,
                          const Execution& how = {});

    /// The demagnetising tensor at points or at one, SI: H = -N M for uniform magnetisation M. Trace 1
    /// inside, 0 outside.
    void demagnetising_tensors(const StationSpans& points, const TensorSpans& tensors,
                               const Execution& how = {});
    Tensor3 demagnetising_tensor(const Point3& where);

  private:
    struct Body;
    std::unique_ptr<Body> body_;
};

}  // namespace anomalis::forward

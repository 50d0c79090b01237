#include "forward/polyhedron/polyhedron.h"

#include "core/pacer.h"
#include "forward/polyhedron/polyhedron_evaluation.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

constexpr Point3 unit_vectors[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

}  // namespace

struct Polyhedron::Body : PolyhedronEvaluation {};

Polyhedron::Polyhedron() : body_(std::make_unique<Body>()) {}
Polyhedron::Polyhedron(std::span<const Point3> points, std::span<const Facet> facets) : Polyhedron() {
    assign(points, facets);
}
Polyhedron::~Polyhedron() = default;
Polyhedron::Polyhedron(Polyhedron&&) noexcept = default;
Polyhedron& Polyhedron::operator=(Polyhedron&&) noexcept = default;

void Polyhedron::assign(std::span<const Point3> points, std::span<const Facet> facets, Pacer* pacer) {
    body_->assign(points, facets, pacer ? *pacer : no_pace());
}

double Polyhedron::volume() const {
    const double s = body_->mesh().scale;
    return body_->mesh().faces.empty() ? 0 : body_->mesh().volume / s / s / s;
}
Point3 Polyhedron::centroid() const {
    const PolyhedronMesh& mesh = body_->mesh();
    return mesh.faces.empty() ? mesh.centre : mesh.centre + mesh.centroid * (1 / mesh.scale);
}
bool Polyhedron::closed() const {
    return body_->mesh().closed;
}
std::size_t Polyhedron::facet_count() const {
    return body_->mesh().faces.size();
}
std::size_t Polyhedron::edge_count() const {
    return body_->mesh().edges.size();
}

void Polyhedron::total_field(const StationSpans& stations, const Point3& magnetisation,
                             const Point3& direction, std::span<double> anomaly, const Execution& how) {
    Wanted wanted{FieldKind::total_field, {direction}, {magnetisation}, 0, {anomaly}};
    body_->evaluate(stations, wanted, how);
}

void Polyhedron::gravity(const StationSpans& stations, double density, std::span<double> attraction,
                         const Execution& how) {
    Wanted wanted{FieldKind::gravity, {}, {}, density * gravity_constant, {attraction}};
    body_->evaluate(stations, wanted, how);
}

void Polyhedron::total_field_and_gravity(const StationSpans& stations, const Point3& magnetisation,
                                         const Point3& direction, double density, std::span<double> anomaly,
                                         std::span<double> attraction, const Execution& how) {
    Wanted wanted{FieldKind::total_field_and_gravity,
                  {direction},
                  {magnetisation},
                  density * gravity_constant,
                  {anomaly, attraction}};
    body_->evaluate(stations, wanted, how);
}

void Polyhedron::magnetic_components(const StationSpans& stations, const Point3& magnetisation,
                                     std::span<double> east, std::span<double> north, std::span<double> up,
                                     const Execution& how) {
    Wanted wanted{FieldKind::magnetic_components, {}, {}, 0, {east, north, up}};
    for (std::size_t i = 0; i < 3; ++i) {
        wanted.first[i] = unit_vectors[i];
        wanted.second[i] = magnetisation;
    }
    body_->evaluate(stations, wanted, how);
}

void Polyhedron::gravity_gradient(const StationSpans& stations, double density, const TensorSpans& gradient,
                                  const Execution& how) {
    Wanted wanted{FieldKind::gradient,
                  {},
                  {},
                  0,
                  {gradient.xx, gradient.xy, gradient.xz, gradient.yy, gradient.yz, gradient.zz}};
    int k = 0;
    for (int i = 0; i < 3; ++i)
        for (int j = i; j < 3; ++j, ++k) {
            wanted.first[k] = unit_vectors[i];
            wanted.second[k] = unit_vectors[j] * (density * gravity_constant);
        }
    body_->evaluate(stations, wanted, how);
}

void Polyhedron::demagnetising_tensors(const StationSpans& points, const TensorSpans& tensors,
                                       const Execution& how) {
    constexpr double minus_one_over_4_pi = -0.07957747154594767;
    gravity_gradient(points, minus_one_over_4_pi / gravity_constant, tensors, how);
}

Tensor3 Polyhedron::demagnetising_tensor(const Point3& where) {
    Tensor3 n;
    const auto one = [](double& value) { return std::span<double>(&value, 1); };
    const auto place = [](const double& value) { return std::span<const double>(&value, 1); };
    demagnetising_tensors({place(where.x), place(where.y), place(where.z)},
                          {one(n.xx), one(n.xy), one(n.xz), one(n.yy), one(n.yz), one(n.zz)});
    return n;
}

}  // namespace anomalis::forward

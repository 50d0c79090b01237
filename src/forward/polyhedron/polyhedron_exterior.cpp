#include "forward/polyhedron/polyhedron_exterior.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/pacer.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

using Complex = std::complex<double>;

/// A facet smaller than this, in unit coordinates, varies so little that the coarse rule serves: it is exact
/// to degree 4, and what it misses above that reaches the stations divided by 16^5.
constexpr double small_facet = 0.06;

/// Nanoseconds that the moments of a point take.
constexpr double units_a_point = 15;

/// Gauss-Legendre points and weights on 0 to 1.
template <std::size_t N>
struct LineRule {
    std::array<double, N> at{}, weight{};

    LineRule() {
        for (std::size_t i = 0; i < N; ++i) {
            double x = std::cos(3.14159265358979323846 * (static_cast<double>(i) + 0.75) / (N + 0.5));
            double slope = 1;
            for (int pass = 0; pass < 8; ++pass) {
                double p = 1, below = 0;
                for (std::size_t k = 0; k < N; ++k) {
                    const auto n = static_cast<double>(k);
                    const double next = ((2 * n + 1) * x * p - n * below) / (n + 1);
                    below = p;
                    p = next;
                }
                slope = static_cast<double>(N) * (x * p - below) / (x * x - 1);
                x -= p / slope;
            }
            at[i] = (1 - x) / 2;
            weight[i] = 1 / ((1 - x * x) * slope * slope);
        }
    }
};

/// Points of a triangle from two line rules, one drawn together towards a corner. N = 6 is exact to
/// degree 10.
template <std::size_t N>
std::size_t spread_points(const Point3& a, const Point3& b, const Point3& c, double weight,
                          WeightedPoints& points) {
    static const LineRule<N> rule;
    std::size_t n = 0;
    const auto put = [&](const Point3& p, double w) {
        points.x[n] = p.x;
        points.y[n] = p.y;
        points.z[n] = p.z;
        points.weight[n++] = w;
    };
    for (std::size_t i = 0; i < N; ++i)
        for (std::size_t j = 0; j < N; ++j) {
            const double s = rule.at[i], t = rule.at[j] * (1 - s);
            put(a * (1 - s - t) + b * s + c * t, 2 * weight * rule.weight[i] * rule.weight[j] * (1 - s));
        }
    while (n % WeightedPoints::lanes != 0) put(a, 0);
    return n;
}

/// Coefficients of outer harmonics of all orders -l to l.
struct OuterSeries {
    static constexpr int degree = exterior_field_degree;
    Complex value[degree + 1][2 * degree + 1] = {};
    Complex& at(int l, int m) { return value[l][m + degree]; }
    const Complex& at(int l, int m) const { return value[l][m + degree]; }
};

/// The derivative along `a` of a series: with the harmonics of this form dS(l, m)/dz = -S(l + 1, m),
/// (d/dx + i d/dy) S(l, m) = -S(l + 1, m + 1) and (d/dx - i d/dy) S(l, m) = S(l + 1, m - 1).
OuterSeries derivative(const OuterSeries& series, const Point3& a) {
    OuterSeries result;
    const Complex plus(a.x / 2, a.y / 2), minus(a.x / 2, -a.y / 2);
    for (int l = 0; l < OuterSeries::degree; ++l)
        for (int m = -l; m <= l; ++m) {
            const Complex c = series.at(l, m);
            result.at(l + 1, m) -= a.z * c;
            result.at(l + 1, m + 1) -= minus * c;
            result.at(l + 1, m - 1) += plus * c;
        }
    return result;
}

}  // namespace

void PolyhedronExterior::take(const PolyhedronMesh& mesh, Pacer& pacer) {
    MomentSums sums;
    WeightedPoints points;
    const auto add = add_moments_at(vector::widest_vector_level());
    for (const PolyhedronMesh::Face& face : mesh.faces) {
        const auto corner = [&](std::size_t i) {
            return mesh.vertices[static_cast<std::size_t>(face.corner[i])];
        };
        const Point3 a = corner(0), b = corner(1), c = corner(2);
        const double longest =
            std::max({face.opposite_side[0], face.opposite_side[1], face.opposite_side[2]});
        const double weight = dot(face.area, a) / 2;  // area times distance of the plane
        const bool small = longest < small_facet * small_facet;
        const std::size_t count = small ? spread_points<3>(a, b, c, weight, points)
                                        : spread_points<exterior_degree / 2 + 1>(a, b, c, weight, points);
        add(points, count, sums);
        pacer.done(units_a_point * static_cast<double>(count));
    }
    for (int m = 0; m <= exterior_degree; ++m)
        for (int l = m; l <= exterior_degree; ++l) {
            const int place = exterior_place(exterior_degree, l, m);
            double total[2] = {0, 0};
            for (int part = 0; part < 2; ++part)
                for (double lane : sums.part[place][part]) total[part] += lane;
            moments_[place] = Complex(total[0], total[1]) / (l + 3.0);
        }
}

void PolyhedronExterior::fold(const Point3& first, const Point3* second, int sum,
                              ExteriorTerms& terms) const {
    OuterSeries series;
    for (int l = 0; l <= exterior_degree; ++l)
        for (int m = 0; m <= l; ++m) {
            const Complex moment = moments_[exterior_place(exterior_degree, l, m)];
            series.at(l, m) = std::conj(moment);
            if (m > 0) series.at(l, -m) = m % 2 == 0 ? moment : -moment;
        }
    series = derivative(series, first);
    if (second != nullptr) series = derivative(series, *second);
    for (int l = 0; l <= exterior_field_degree; ++l)
        for (int m = 0; m <= l; ++m) {
            double* factor = terms.factor[sum][exterior_place(exterior_field_degree, l, m)];
            const double both = m == 0 ? 1 : 2;  // orders m and -m are conjugate
            factor[0] += both * series.at(l, m).real();
            factor[1] -= both * series.at(l, m).imag();
        }
}

}  // namespace anomalis::forward

#include "forward/polyhedron/polyhedron_exterior_kernel.h"

#include "vector/vector_math.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

namespace {

template <int Sums>
void add_harmonics(const ExteriorTerms& terms, StationBlock& block) {
    constexpr int top = exterior_field_degree;
    for (std::size_t i = 0; i < block.count; i += lane_count) {
        const Lanes x = load_lanes(block.x + i), y = load_lanes(block.y + i), z = load_lanes(block.z + i);
        const Lanes inverse = 1.0 / vector_fma(x, x, vector_fma(y, y, z * z));
        const Lanes u = x * inverse, v = y * inverse, w = z * inverse;
        Lanes diagonal_re = vector_sqrt(inverse), diagonal_im = {};
        Lanes sum[Sums] = {};
        int place = 0;
        for (int m = 0; m <= top; ++m) {
            Lanes re = diagonal_re, im = diagonal_im, below_re = {}, below_im = {};
            for (int l = m; l <= top; ++l, ++place) {
                for (int k = 0; k < Sums; ++k)
                    sum[k] = vector_fma(terms.factor[k][place][0], re,
                                        vector_fma(terms.factor[k][place][1], im, sum[k]));
                const Lanes up = (2.0 * l + 1) * w, down = static_cast<double>(l * l - m * m) * inverse;
                const Lanes next_re = vector_fma(up, re, -(down * below_re));
                const Lanes next_im = vector_fma(up, im, -(down * below_im));
                below_re = re;
                below_im = im;
                re = next_re;
                im = next_im;
            }
            const double odd = 2.0 * m + 1;
            const Lanes turned = odd * vector_fma(u, diagonal_re, -(v * diagonal_im));
            diagonal_im = odd * vector_fma(u, diagonal_im, v * diagonal_re);
            diagonal_re = turned;
        }
        for (int k = 0; k < Sums; ++k) store_lanes(block.sum[k] + i, sum[k]);
    }
}

ANOMALIS_INLINE void add_lanes(double* to, Lanes value) {
    store_lanes(to, load_lanes(to) + value);
}

}  // namespace

void exterior_sums(const ExteriorTerms& terms, StationBlock& block) {
    switch (terms.sum_count) {
        case 1:
            return add_harmonics<1>(terms, block);
        case 2:
            return add_harmonics<2>(terms, block);
        case 3:
            return add_harmonics<3>(terms, block);
        default:
            return add_harmonics<most_sums>(terms, block);
    }
}

void add_moments(const WeightedPoints& points, std::size_t count, MomentSums& sums) {
    constexpr int top = exterior_degree;
    for (std::size_t i = 0; i < count; i += lane_count) {
        const std::size_t lane = i % WeightedPoints::lanes;
        const Lanes x = load_lanes(points.x + i), y = load_lanes(points.y + i), z = load_lanes(points.z + i);
        const Lanes square = vector_fma(x, x, vector_fma(y, y, z * z));
        Lanes diagonal_re = load_lanes(points.weight + i), diagonal_im = {};
        int place = 0;
        for (int m = 0; m <= top; ++m) {
            Lanes re = diagonal_re, im = diagonal_im, below_re = {}, below_im = {};
            for (int l = m; l <= top; ++l, ++place) {
                add_lanes(sums.part[place][0] + lane, re);
                add_lanes(sums.part[place][1] + lane, im);
                const double share = 1.0 / ((l + 1) * (l + 1) - m * m);
                const Lanes up = ((2.0 * l + 1) * share) * z, down = share * square;
                const Lanes next_re = vector_fma(up, re, -(down * below_re));
                const Lanes next_im = vector_fma(up, im, -(down * below_im));
                below_re = re;
                below_im = im;
                re = next_re;
                im = next_im;
            }
            const double share = 1.0 / (2 * m + 2);
            const Lanes turned = share * vector_fma(x, diagonal_re, -(y * diagonal_im));
            diagonal_im = share * vector_fma(x, diagonal_im, y * diagonal_re);
            diagonal_re = turned;
        }
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL

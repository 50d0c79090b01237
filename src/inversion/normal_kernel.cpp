#include "inversion/normal_kernel.h"

#include "vector/vector_math.h"

namespace anomalis::inversion::ANOMALIS_VECTOR_LEVEL {

namespace {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

/// Columns that are multiplied at one time: as many sums as the registers hold.
#if defined(__AVX512F__)
constexpr std::size_t tile_down = 4, tile_across = 4;
#else
constexpr std::size_t tile_down = 4, tile_across = 2;
#endif
/// Rows that stay in the near memory while the tiles of two panels go over them.
constexpr std::size_t row_block = 512;

/// The columns of one tile; beyond the panel its last one stands in.
template <std::size_t size>
struct Tile {
    const double* column[size];
    std::size_t used;
};

template <std::size_t size>
ANOMALIS_INLINE Tile<size> tile_at(const TallMatrix& matrix, const ColumnPanel& panel, std::size_t at,
                                   std::size_t row) {
    Tile<size> tile;
    tile.used = panel.last - at < size ? panel.last - at : size;
    for (std::size_t k = 0; k < size; ++k) {
        const std::size_t number = at + (k < tile.used ? k : tile.used - 1);
        tile.column[k] = matrix.values + number * matrix.stride + row;
    }
    return tile;
}

ANOMALIS_INLINE double sum_of(Lanes value) {
    double sum = 0;
    for (int lane = 0; lane < lane_count; ++lane) sum += value[lane];
    return sum;
}

/// Adds the products over `rows` rows to normal[k + l * stride].
ANOMALIS_INLINE void add_products(const Tile<tile_down>& down, const Tile<tile_across>& across,
                                  std::size_t rows, double* normal, std::size_t stride) {
    Lanes sums[tile_down][tile_across] = {};
    constexpr std::size_t lanes = lane_count;
    std::size_t row = 0;
    for (; row + lanes <= rows; row += lanes) {
        Lanes right[tile_across];
        for (std::size_t l = 0; l < tile_across; ++l) right[l] = load_lanes(across.column[l] + row);
        for (std::size_t k = 0; k < tile_down; ++k) {
            const Lanes left = load_lanes(down.column[k] + row);
            for (std::size_t l = 0; l < tile_across; ++l) sums[k][l] += left * right[l];
        }
    }
    for (std::size_t k = 0; k < down.used; ++k)
        for (std::size_t l = 0; l < across.used; ++l) {
            double sum = sum_of(sums[k][l]);
            for (std::size_t rest = row; rest < rows; ++rest)
                sum += down.column[k][rest] * across.column[l][rest];
            normal[k + l * stride] += sum;
        }
}

}  // namespace

void column_products(const TallMatrix& matrix, const ColumnPanel& down, const ColumnPanel& across,
                     double* normal, std::size_t normal_stride) {
    for (std::size_t j = across.first; j < across.last; ++j)
        for (std::size_t i = down.first; i < down.last; ++i) normal[i + j * normal_stride] = 0;
    for (std::size_t row = 0; row < matrix.rows; row += row_block) {
        const std::size_t left = matrix.rows - row, rows = left < row_block ? left : row_block;
        for (std::size_t j = across.first; j < across.last; j += tile_across) {
            const Tile<tile_across> right = tile_at<tile_across>(matrix, across, j, row);
            for (std::size_t i = down.first; i < down.last; i += tile_down)
                add_products(tile_at<tile_down>(matrix, down, i, row), right, rows,
                             normal + i + j * normal_stride, normal_stride);
        }
    }
}

}  // namespace anomalis::inversion::ANOMALIS_VECTOR_LEVEL

#include "chart/detail/stroke_mask.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "chart/detail/clip.h"

namespace anomalis::chart {

namespace {

/// Along a row of pixels: where the first stands in a piece's own direction, in pixels from its beginning.
struct RowOfPiece {
    float along;   ///< of the first pixel
    float aside;   ///< likewise
    float right;   ///< what one pixel to the right adds to `along`
    float down;    ///< what it takes from `aside`
    float length;  ///< of the piece

    void cover(std::uint8_t* pixels, int count, const CoverTable& table) const {
        float t = along, n = aside;
        for (int i = 0; i < count; ++i, t += right, n -= down) {
            const float beyond = std::max(std::max(-t, t - length), 0.0F);
            pixels[i] = std::max(pixels[i], table.cover(n * n + beyond * beyond));
        }
    }
};

/// The pixel that holds a place, between the first and `extent`.
int first_pixel(double at, int extent) {
    return static_cast<int>(std::clamp(at, 0.0, static_cast<double>(extent)));
}

/// The pixel after the one that holds a place.
int end_pixel(double at, int extent) {
    return std::min(first_pixel(at, extent) + 1, extent);
}

/// Places are near the raster here: nothing can overflow.
double distance(Point a, Point b) {
    return std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
}

Point between(Point a, Point b, double share) {
    return {a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
}

bool holds(const PixelRect& rect, Point p) {
    return p.x >= rect.left && p.x < rect.right && p.y >= rect.top && p.y < rect.bottom;
}

/// The shares of a piece between which it is inside a rectangle; first above second where it misses it.
std::pair<double, double> inside(const PixelRect& rect, Point a, Point b) {
    double first = 0.0, last = 1.0;
    const auto cut = [&](double from, double step, double low, double high) {
        if (step == 0.0) {
            if (from < low || from > high) last = -1.0;
            return;
        }
        const auto [enter, leave] = std::minmax({(low - from) / step, (high - from) / step});
        first = std::max(first, enter);
        last = std::min(last, leave);
    };
    cut(a.x, b.x - a.x, rect.left, rect.right);
    cut(a.y, b.y - a.y, rect.top, rect.bottom);
    return {first, last};
}

}  // namespace

CoverTable::CoverTable(double half) : half_(half) {
    const double reach = half + 0.5;
    per_square_ = static_cast<float>(static_cast<double>(steps) / (reach * reach));
    for (std::size_t i = 0; i < steps; ++i) {
        const double away = reach * std::sqrt(static_cast<double>(i) / static_cast<double>(steps));
        covers_.at(i) = static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(reach - away, 0.0, 1.0)));
    }
}

void StrokeMask::resize(int width, int height) {
    width_ = std::max(width, 0);
    height_ = std::max(height, 0);
    cover_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), 0);
    tiles_.resize(width_, height_);
    visited_ = 0;
}

void StrokeMask::add(std::span<const Point> line, double width) {
    if (line.empty() || cover_.empty()) return;
    if (line.size() > 1 && is_overfull(line)) return add_overfull(line, width);
    const CoverTable& table = table_of(std::max(width, 1.0) / 2.0);
    if (line.size() == 1) return add_piece(line.front(), line.front(), table);
    for (std::size_t i = 1; i < line.size(); ++i) add_piece(line[i - 1], line[i], table);
}

const CoverTable& StrokeMask::table_of(double half) {
    constexpr std::size_t most_tables = 8;
    for (const CoverTable& table : tables_)
        if (table.half() == half) return table;
    if (tables_.size() >= most_tables) tables_.clear();
    return tables_.emplace_back(half);
}

/// Cover of a piece with round ends, by the distance of the pixels' centres.
void StrokeMask::add_piece(Point a, Point b, const CoverTable& table) {
    const double reach = table.half() + 0.5;
    if (!clip_segment({-reach, width_ + reach, -reach, height_ + reach}, a, b)) return;
    const double length = distance(a, b);
    const Point unit = length > 0.0 ? Point{(b.x - a.x) / length, (b.y - a.y) / length} : Point{1.0, 0.0};
    const int left = first_pixel(std::min(a.x, b.x) - reach, width_);
    const int right = end_pixel(std::max(a.x, b.x) + reach, width_);
    const int top = first_pixel(std::min(a.y, b.y) - reach, height_);
    const int bottom = end_pixel(std::max(a.y, b.y) + reach, height_);
    if (left >= right || top >= bottom) return;
    // Of a row only what is near the endless line through the piece.
    constexpr double level = 1e-6;
    const double slant = std::abs(unit.y) < level ? 0.0 : 1.0 / unit.y;
    const double wide = slant == 0.0 ? right - left : reach * std::abs(slant);
    const double step = slant * unit.x;
    double middle = slant == 0.0 ? left : a.x + (top + 0.5 - a.y) * step;
    PixelRect band{right, top, left, top};
    for (int y = top; y < bottom; ++y, middle += step) {
        const int from = std::max(left, first_pixel(middle - wide, right));
        const int to = std::min(right, end_pixel(middle + wide, right));
        if (from < to) {
            const double below = y + 0.5 - a.y, beside = from + 0.5 - a.x;
            const RowOfPiece piece{static_cast<float>(beside * unit.x + below * unit.y),
                                   static_cast<float>(below * unit.x - beside * unit.y),
                                   static_cast<float>(unit.x), static_cast<float>(unit.y),
                                   static_cast<float>(length)};
            piece.cover(row(y) + from, to - from, table);
            visited_ += to - from;
            band.left = std::min(band.left, from);
            band.right = std::max(band.right, to);
        }
        band.bottom = y + 1;
        if (band.bottom % TileSet::side != 0 && band.bottom != bottom) continue;
        tiles_.add(band);
        band = {right, y + 1, left, y + 1};
    }
}

/// Nobody can follow a line that passes each pixel of the raster several times.
bool StrokeMask::is_overfull(std::span<const Point> line) const {
    constexpr double passes = 4.0;
    const double most = passes * static_cast<double>(cover_.size());
    // No piece is longer than the raster's two sides; most lines are told from that.
    if (static_cast<double>(line.size()) * (width_ + height_) < most) return false;
    double length = 0.0;
    for (std::size_t i = 1; i < line.size() && length < most; ++i)
        length += std::max(std::abs(line[i].x - line[i - 1].x), std::abs(line[i].y - line[i - 1].y));
    return length >= most;
}

/// Where whole tiles are full, nothing can be added. Two places of a full rectangle have a full line between
/// them, so most of a line that is drawn over and over costs two comparisons a piece.
void StrokeMask::add_overfull(std::span<const Point> line, double width) {
    const auto pixels = static_cast<std::int64_t>(cover_.size());
    const int wide = std::max(1, static_cast<int>(std::lround(width)));
    PixelRect full;
    std::int64_t next_look = visited_ + 4 * pixels;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const Point a = line[i - 1], b = line[i];
        if (holds(full, a) && holds(full, b)) continue;
        const auto [first, last] = inside(full, a, b);
        if (full.empty() || first >= last) {
            add_hairlines(a, b, wide);
        } else {
            if (first > 0.0) add_hairlines(a, between(a, b, first), wide);
            if (last < 1.0) add_hairlines(between(a, b, last), b, wide);
        }
        if (visited_ < next_look) continue;
        full = largest_full_rect();
        next_look = visited_ + 2 * pixels;
    }
}

/// So many unsmoothed lines of one pixel side by side.
void StrokeMask::add_hairlines(Point a, Point b, int wide) {
    const double room = 0.5 * wide + 1.0;
    if (!clip_segment({-room, width_ + room, -room, height_ + room}, a, b)) return;
    const bool along_x = std::abs(b.x - a.x) >= std::abs(b.y - a.y);
    if (along_x ? a.x > b.x : a.y > b.y) std::swap(a, b);
    const double from = along_x ? a.x : a.y, to = along_x ? b.x : b.y;
    const double start = along_x ? a.y : a.x;
    const double slope = to > from ? ((along_x ? b.y : b.x) - start) / (to - from) : 0.0;
    const int steps = along_x ? width_ : height_, lanes = along_x ? height_ : width_;
    const std::ptrdiff_t step = along_x ? 1 : width_, lane_step = along_x ? width_ : 1;
    const int begin = first_pixel(from, steps), end = std::min(end_pixel(to, steps), steps);
    const double shift = 0.5 * (1 - wide);
    for (int i = begin; i < end; ++i) {
        const double middle = start + slope * (std::clamp(i + 0.5, from, to) - from);
        const int lane = static_cast<int>(std::floor(middle + shift));
        const int low = std::max(lane, 0), high = std::min(lane + wide, lanes);
        std::uint8_t* at = cover_.data() + i * step + low * lane_step;
        for (int k = low; k < high; ++k, at += lane_step) *at = std::uint8_t{255};
    }
    visited_ += static_cast<std::int64_t>(end - begin) * wide;
    const auto [low, high] = std::minmax({start, along_x ? b.y : b.x});
    const int first_lane = first_pixel(low - room, lanes), end_lane = end_pixel(high + room, lanes);
    tiles_.add(along_x ? PixelRect{begin, first_lane, end, end_lane}
                       : PixelRect{first_lane, begin, end_lane, end});
}

/// The largest rectangle of tiles of which every pixel is covered whole.
PixelRect StrokeMask::largest_full_rect() {
    constexpr int side = TileSet::side;
    const int columns = tiles_.columns();
    const auto is_full = [&](int column, int tile_row) {
        const int left = column * side, right = std::min(left + side, width_);
        const auto length = static_cast<std::size_t>(right - left);
        for (int y = tile_row * side; y < std::min((tile_row + 1) * side, height_); ++y) {
            const std::uint8_t* first = row(y) + left;
            if (!std::all_of(first, first + length, [](std::uint8_t c) { return c == 255; })) return false;
        }
        return true;
    };
    PixelRect best;
    std::int64_t most = 0;
    std::vector<int> high(static_cast<std::size_t>(columns), 0);  // full tiles above and with the present row
    for (int r = 0; r < tiles_.rows(); ++r) {
        for (int c = 0; c < columns; ++c) {
            int& here = high[static_cast<std::size_t>(c)];
            here = is_full(c, r) ? here + 1 : 0;
        }
        for (int c = 0; c < columns; ++c) {
            int least = high[static_cast<std::size_t>(c)];
            for (int e = c; e < columns && least > 0; ++e) {
                least = std::min(least, high[static_cast<std::size_t>(e)]);
                const std::int64_t tiles = std::int64_t{least} * (e - c + 1);
                if (tiles <= most) continue;
                most = tiles;
                best = {c * side, (r - least + 1) * side, std::min((e + 1) * side, width_),
                        std::min((r + 1) * side, height_)};
            }
        }
    }
    return best;
}

}  // namespace anomalis::chart

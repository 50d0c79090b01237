#include "chart/detail/stroke_mask.h"

#include <cmath>
#include <utility>

#include "chart/detail/clip.h"
#include "chart/detail/piece_rows.h"

namespace anomalis::chart {

namespace {

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

/// Which tiles are covered whole.
class StrokeMask::FullTiles {
  public:
    FullTiles(int columns, int rows) : columns_(columns), rows_(rows) {
        for (int r = 0; r < rows; ++r) {
            for (int c = 0; c < columns; ++c) {
                end_of_full_.push_back(c);
                end_of_open_.push_back(columns);
            }
        }
    }
    bool any() const { return any_; }

    template <class IsFull>
    void look(IsFull&& is_full) {
        for (int r = 0; r < rows_; ++r) {
            for (int c = columns_ - 1; c >= 0; --c) {
                const bool full = end_of_full_[index(c, r)] > c || is_full(c, r);
                any_ = any_ || full;
                end_of_full_[index(c, r)] = full ? end_of_full(c + 1, r) : c;
                end_of_open_[index(c, r)] = full ? c : end_of_open(c + 1, r);
            }
        }
        find_rect();
    }
    /// The first column from `column` on that is not full, and the first that is.
    int end_of_full(int column, int row) const {
        return column < columns_ ? end_of_full_[index(column, row)] : columns_;
    }
    int end_of_open(int column, int row) const {
        return column < columns_ ? end_of_open_[index(column, row)] : columns_;
    }
    /// True when both places are in the largest full rectangle, and so all that lies between them.
    bool hold(Point a, Point b) const { return holds(rect_, a) && holds(rect_, b); }

  private:
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
               static_cast<std::size_t>(column);
    }
    void find_rect() {
        constexpr int side = TileSet::side;
        std::vector<int> high(static_cast<std::size_t>(columns_), 0);  // full tiles above one another
        int most = 0;
        for (int r = 0; r < rows_; ++r) {
            for (int c = 0; c < columns_; ++c) {
                int& here = high[static_cast<std::size_t>(c)];
                here = end_of_full(c, r) > c ? here + 1 : 0;
            }
            for (int c = 0; c < columns_; ++c) {
                int least = high[static_cast<std::size_t>(c)];
                for (int e = c; e < columns_ && least > 0; ++e) {
                    least = std::min(least, high[static_cast<std::size_t>(e)]);
                    if (least * (e - c + 1) <= most) continue;
                    most = least * (e - c + 1);
                    rect_ = {c * side, (r - least + 1) * side, (e + 1) * side, (r + 1) * side};
                }
            }
        }
    }

    int columns_;
    int rows_;
    bool any_ = false;
    std::vector<int> end_of_full_;
    std::vector<int> end_of_open_;
    PixelRect rect_;
};

void StrokeMask::resize(int width, int height) {
    width_ = std::max(width, 0);
    height_ = std::max(height, 0);
    pixels_ = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    // Four pixels are taken at once, also at the end of the last row.
    cover_.assign(pixels_ > 0 ? pixels_ + PieceRows::lanes : 0, 0);
    tiles_.resize(width_, height_);
    visited_ = 0;
}

void StrokeMask::add(std::span<const Point> line, double width) {
    if (line.empty() || cover_.empty()) return;
    if (line.size() > 1 && is_overfull(line)) return add_overfull(line, width);
    const PenCover& pen = pen_of(std::max(width, 1.0) / 2.0);
    if (line.size() == 1) return add_piece(line.front(), line.front(), pen);
    for (std::size_t i = 1; i < line.size(); ++i) add_piece(line[i - 1], line[i], pen);
}

const PenCover& StrokeMask::pen_of(double half) {
    constexpr std::size_t most_pens = 8;
    for (const PenCover& pen : pens_)
        if (pen.half() == half) return pen;
    if (pens_.size() >= most_pens) pens_.clear();
    return pens_.emplace_back(half);
}

/// Cover of a piece with round ends, by the distance of the pixels' centres.
void StrokeMask::add_piece(Point a, Point b, const PenCover& pen) {
    const double room = pen.half() + 1.0;
    if (!clip_segment({-room, width_ + room, -room, height_ + room}, a, b)) return;
    const double length = distance(a, b);
    const Point unit = length > 0.0 ? Point{(b.x - a.x) / length, (b.y - a.y) / length} : Point{1.0, 0.0};
    const CoverTable& table = pen.along(unit);
    const double reach = table.reach();
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
    const PieceRows piece(unit, length, table);
    std::uint8_t* pixels = row(top);
    const std::ptrdiff_t next_row = width_;
    std::int64_t visited = 0;
    for (int y = top; y < bottom; ++y, middle += step, pixels += next_row) {
        const int from = std::max(left, first_pixel(middle - wide, right));
        const int to = std::min(right, end_pixel(middle + wide, right));
        if (from < to) {
            const double below = y + 0.5 - a.y, beside = from + 0.5 - a.x;
            piece.cover(pixels + from, to - from, static_cast<float>(beside * unit.x + below * unit.y),
                        static_cast<float>(below * unit.x - beside * unit.y));
            visited += to - from;
            band.left = std::min(band.left, from);
            band.right = std::max(band.right, to);
        }
        band.bottom = y + 1;
        if (band.bottom % TileSet::side != 0 && band.bottom != bottom) continue;
        tiles_.add(band);
        band = {right, y + 1, left, y + 1};
    }
    visited_ += visited;
}

/// Nobody can follow a line that passes each pixel of the raster several times.
bool StrokeMask::is_overfull(std::span<const Point> line) const {
    constexpr double passes = 4.0;
    const double most = passes * static_cast<double>(pixels_);
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
    const std::int64_t between_looks = static_cast<std::int64_t>(pixels_) / 4;
    const int wide = std::max(1, static_cast<int>(std::lround(width)));
    FullTiles full(tiles_.columns(), tiles_.rows());
    std::int64_t next_look = visited_ + between_looks;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const Point a = line[i - 1], b = line[i];
        if (full.any())
            add_where_open(a, b, wide, full);
        else
            add_hairlines(a, b, wide);
        if (visited_ < next_look) continue;
        full.look([&](int column, int tile_row) { return is_full(column, tile_row); });
        next_look = visited_ + between_looks;
    }
}

/// A piece row of tiles by row of tiles, without the stretches in full ones.
void StrokeMask::add_where_open(Point a, Point b, int wide, const FullTiles& full) {
    constexpr int side = TileSet::side;
    if (full.hold(a, b)) return;
    const PixelRect whole{0, 0, width_, height_};
    if (!(holds(whole, a) && holds(whole, b)) &&
        !clip_segment({0.0, width_ - 1e-6, 0.0, height_ - 1e-6}, a, b))
        return;
    if (a.y > b.y) std::swap(a, b);
    const double slant = b.y > a.y ? (b.x - a.x) / (b.y - a.y) : 0.0;
    const int last_row = static_cast<int>(b.y) / side;
    // What is drawn again in a full tile beside an open one costs less than to cut it off.
    constexpr int near = 2;
    Point from = a;
    for (int r = static_cast<int>(a.y) / side; r <= last_row; ++r) {
        const double edge = static_cast<double>((r + 1) * side);
        const Point to = r == last_row ? b : Point{a.x + (edge - a.y) * slant, edge};
        const int first = static_cast<int>(std::min(from.x, to.x)) / side;
        const int last = static_cast<int>(std::max(from.x, to.x)) / side;
        for (int c = full.end_of_full(first, r); c <= last; c = full.end_of_full(c, r)) {
            if (last - first <= near) {
                add_hairlines(from, to, wide);
                break;
            }
            const int open = c;
            c = std::min(full.end_of_open(open, r), last + 1);
            const auto [begin, end] = inside({open * side, r * side, c * side, (r + 1) * side}, from, to);
            if (begin <= end) add_hairlines(between(from, to, begin), between(from, to, end), wide);
        }
        from = to;
    }
}

/// So many unsmoothed lines of one pixel side by side.
void StrokeMask::add_hairlines(Point a, Point b, int wide) {
    const double room = 0.5 * wide + 1.0;
    if (!clip_segment({-room, width_ + room, -room, height_ + room}, a, b)) return;
    const bool along_x = std::abs(b.x - a.x) >= std::abs(b.y - a.y);
    if (along_x ? a.x > b.x : a.y > b.y) std::swap(a, b);
    const double from = along_x ? a.x : a.y, to = along_x ? b.x : b.y;
    const double start = along_x ? a.y : a.x, stop = along_x ? b.y : b.x;
    const double slope = to > from ? (stop - start) / (to - from) : 0.0;
    const int steps = along_x ? width_ : height_, lanes = along_x ? height_ : width_;
    const std::ptrdiff_t step = along_x ? 1 : width_, lane_step = along_x ? width_ : 1;
    const int begin = first_pixel(from, steps), end = std::max(end_pixel(to, steps), begin);
    // In 2^-32 of a pixel; moved by the room, so that what is cut off is the floor.
    constexpr double fraction = 4294967296.0;
    const double shift = 0.5 * (1 - wide) + room;
    auto lane = static_cast<std::int64_t>((start + slope * (begin + 0.5 - from) + shift + room) * fraction);
    const auto slant = static_cast<std::int64_t>(slope * fraction);
    const int moved = static_cast<int>(2.0 * room);
    int lowest = static_cast<int>(std::min(start, stop) + shift + room) - moved;
    int highest = static_cast<int>(std::max(start, stop) + shift + room) - moved;
    if (wide == 1) {
        lowest = std::clamp(lowest, 0, lanes - 1);
        highest = std::clamp(highest, 0, lanes - 1);
    }
    std::uint8_t* at = cover_.data() + begin * step;
    for (int i = begin; i < end; ++i, at += step, lane += slant) {
        const int middle = std::clamp(static_cast<int>(lane >> 32) - moved, lowest, highest);
        if (wide == 1) {
            at[middle * lane_step] = 255;
            continue;
        }
        const int high = std::min(middle + wide, lanes);
        for (int k = std::max(middle, 0); k < high; ++k) at[k * lane_step] = 255;
    }
    visited_ += static_cast<std::int64_t>(end - begin) * wide;
    const int first_lane = std::max(lowest, 0), end_lane = std::min(highest + wide, lanes);
    tiles_.add(along_x ? PixelRect{begin, first_lane, end, end_lane}
                       : PixelRect{first_lane, begin, end_lane, end});
}

bool StrokeMask::is_full(int column, int tile_row) {
    constexpr int side = TileSet::side;
    const int left = column * side, right = std::min(left + side, width_);
    for (int y = tile_row * side; y < std::min((tile_row + 1) * side, height_); ++y) {
        const std::uint8_t* first = row(y);
        if (!std::all_of(first + left, first + right, [](std::uint8_t c) { return c == 255; })) return false;
    }
    return true;
}

}  // namespace anomalis::chart

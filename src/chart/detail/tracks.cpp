#include "chart/detail/tracks.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "chart/detail/clip.h"

namespace anomalis::chart {

namespace {

/// So many pieces are still smoothed on a raster.
constexpr std::size_t most_smooth_pieces = 20000;

}  // namespace

void TrackTable::register_tracks(std::span<const ChartTrack> tracks, const ChartProperties& properties) {
    std::vector<Track> given;
    std::vector<Pen> pens;
    std::map<std::pair<Colour, int>, std::uint32_t> numbers;
    given.reserve(tracks.size());
    for (const ChartTrack& track : tracks) {
        Track& kept = given.emplace_back();
        const std::size_t count = std::min({track.x.size(), track.y.size(), track.colours.size()});
        kept.x.reserve(count);
        kept.y.reserve(count);
        kept.pens.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const double x = forward_or_null(properties.x.scale, track.x[i], null_value);
            const double y = forward_or_null(properties.y.scale, track.y[i], null_value);
            const bool there = !is_null(x) && !is_null(y);
            kept.x.push_back(there ? x : null_value);
            kept.y.push_back(there ? y : null_value);
            const auto [pen, is_new] =
                numbers.try_emplace({track.colours[i], track.width}, static_cast<std::uint32_t>(pens.size()));
            if (is_new) pens.push_back({track.colours[i], static_cast<double>(track.width)});
            kept.pens.push_back(pen->second);
        }
    }
    tracks_ = std::move(given);
    pens_ = std::move(pens);
    ++revision_;
}

void TrackTable::clear() {
    if (tracks_.empty()) return;
    tracks_.clear();
    pens_.clear();
    ++revision_;
}

void TrackPainter::paint(const TrackTable& table, const PlotFrame& frame, Canvas& canvas) {
    pieces_.clear();
    const Projection project = projection_of(frame);
    const double pixel = canvas.thins() ? canvas.device().pixel_size() : 0.0;
    for (const TrackTable::Track& track : table.tracks()) gather(track, project, pixel, canvas.window());
    count_ = pieces_.size();
    if (canvas.thins() && pieces_.size() > most_smooth_pieces)
        paint_strokes(table, canvas);
    else
        paint_runs(table, canvas);
}

void TrackPainter::gather(const TrackTable::Track& track, const Projection& project, double pixel,
                          const Rect& window) {
    bool open = false, joined = false;
    Point from;
    std::uint32_t pen = 0;
    for (std::size_t i = 0; i < track.x.size(); ++i) {
        if (is_null(track.x[i])) {
            open = false;
            continue;
        }
        const Point to = project(track.x[i], track.y[i]);
        if (!open) {
            from = to;
            pen = track.pens[i];
            open = true;
            joined = false;
            continue;
        }
        const bool last = i + 1 == track.x.size() || is_null(track.x[i + 1]);
        if (!last && std::abs(to.x - from.x) < pixel && std::abs(to.y - from.y) < pixel) continue;
        Piece piece{from, to, pen, joined};
        if (clip_segment(window, piece.from, piece.to)) {
            piece.joined = joined && piece.from == from;
            joined = piece.to == to;
            pieces_.push_back(piece);
        } else {
            joined = false;
        }
        from = to;
        pen = track.pens[i];
    }
}

/// Pieces of one pen that hang together are one line.
void TrackPainter::paint_runs(const TrackTable& table, Canvas& canvas) {
    for (std::size_t i = 0; i < pieces_.size();) {
        const std::uint32_t pen = pieces_[i].pen;
        run_.assign({pieces_[i].from, pieces_[i].to});
        for (++i; i < pieces_.size() && pieces_[i].joined && pieces_[i].pen == pen; ++i)
            run_.push_back(pieces_[i].to);
        canvas.polyline(run_, table.pens()[pen]);
    }
}

void TrackPainter::paint_strokes(const TrackTable& table, Canvas& canvas) {
    ends_.assign(table.pens().size() + 1, 0);
    for (const Piece& piece : pieces_) ++ends_[piece.pen + 1];
    for (std::size_t i = 1; i < ends_.size(); ++i) ends_[i] += ends_[i - 1];
    sorted_.resize(pieces_.size());
    for (const Piece& piece : pieces_) sorted_[ends_[piece.pen]++] = {piece.from, piece.to};
    std::size_t first = 0;
    for (std::size_t i = 0; i < table.pens().size(); ++i) {
        canvas.strokes(std::span(sorted_).subspan(first, ends_[i] - first), table.pens()[i]);
        first = ends_[i];
    }
}

}  // namespace anomalis::chart

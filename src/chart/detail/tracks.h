#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "chart/chart_table.h"
#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/series_painter.h"

namespace anomalis::chart {

/// The tracks of a chart in transformed units. Colours and widths that occur are numbered as pens.
class TrackTable {
  public:
    struct Track {
        std::vector<double> x, y;         ///< null_value in both where one is missing
        std::vector<std::uint32_t> pens;  ///< number of the pen of the piece that begins at a point
    };

    void register_tracks(std::span<const ChartTrack> tracks, const ChartProperties& properties);
    void clear();

    bool empty() const { return tracks_.empty(); }
    std::span<const Track> tracks() const { return tracks_; }
    std::span<const Pen> pens() const { return pens_; }
    /// Another one after each registration.
    std::uint64_t revision() const { return revision_; }

  private:
    std::vector<Track> tracks_;
    std::vector<Pen> pens_;
    std::uint64_t revision_ = 0;
};

/// Draws tracks. On a raster points that share a pixel with the one before are left out, and what is then
/// still too much to be smoothed goes to the device a pen at a time. Keeps its working storage.
class TrackPainter {
  public:
    void paint(const TrackTable& table, const PlotFrame& frame, Canvas& canvas);
    /// Pieces that went to the device, or would have gone, at the last painting.
    std::size_t pieces() const { return count_; }

  private:
    struct Piece {
        Point from, to;
        std::uint32_t pen = 0;
        bool joined = false;  ///< to the one before
    };
    void gather(const TrackTable::Track& track, const Projection& project, double pixel, const Rect& window);
    void paint_runs(const TrackTable& table, Canvas& canvas);
    void paint_strokes(const TrackTable& table, Canvas& canvas);

    std::vector<Piece> pieces_;
    std::size_t count_ = 0;
    std::vector<Point> run_;
    std::vector<MarkerShape::Stroke> sorted_;
    std::vector<std::size_t> ends_;
};

}  // namespace anomalis::chart

#include "chart/detail/bands.h"

#include <algorithm>
#include <utility>

namespace anomalis::chart {

namespace {

BandTable::Band transformed(const ChartBand& band, const ChartProperties& properties) {
    const std::size_t count = std::min({band.x.size(), band.low.size(), band.high.size()});
    const auto place = [](const AxisTransform& scale, double value, double data_null) {
        return forward_or_null(scale, value, data_null);
    };
    BandTable::Band kept;
    kept.fill = band.fill;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = place(properties.x.scale, band.x[i], null_value);
        const double low = place(properties.y.scale, band.low[i], properties.data_null);
        const double high = place(properties.y.scale, band.high[i], properties.data_null);
        const bool there = !is_null(x) && !is_null(low) && !is_null(high);
        kept.x.push_back(there ? x : null_value);
        kept.low.push_back(there ? low : null_value);
        kept.high.push_back(there ? high : null_value);
    }
    return kept;
}

}  // namespace

void BandTable::register_bands(std::span<const ChartBand> bands, const ChartProperties& properties) {
    std::vector<Band> given;
    given.reserve(bands.size());
    for (const ChartBand& band : bands) given.push_back(transformed(band, properties));
    if (given == bands_) return;
    bands_ = std::move(given);
    ++revision_;
}

void BandTable::clear() {
    if (bands_.empty()) return;
    bands_.clear();
    ++revision_;
}

void BandPainter::paint(const BandTable& table, const PlotFrame& frame, Canvas& canvas) {
    for (const BandTable::Band& band : table.bands()) paint_band(band, frame, canvas);
}

/// Each stretch without a gap is a polygon: out along the low edge, back along the high one.
void BandPainter::paint_band(const BandTable::Band& band, const PlotFrame& frame, Canvas& canvas) {
    const Projection project = projection_of(frame);
    const double column = canvas.thins() ? canvas.device().pixel_size() : 0.0;
    const SeriesPoints low{band.x, band.low}, high{band.x, band.high};
    for (std::size_t i = 0; i < band.x.size(); ++i) {
        if (is_null(band.x[i])) continue;
        const std::size_t begin = i;
        i = collect_run(low, begin, project, column, outline_);
        collect_run(high, begin, project, column, edge_);
        outline_.insert(outline_.end(), edge_.rbegin(), edge_.rend());
        if (i - begin > 1) canvas.polygon(outline_, no_colour, band.fill, 1.0);
    }
}

}  // namespace anomalis::chart

#include "show/map_sheet.h"

#include <utility>

#include "core/failure.h"

namespace anomalis::show {

namespace {

constexpr double sheet_margin = 8 * chart::units_per_screen_pixel;
constexpr double caption_line = 16 * chart::units_per_screen_pixel;
const chart::Font caption_font{.name = "Sans Serif", .size = 9, .bold = false};

}  // namespace

MapSheet::MapSheet(std::string caption, chart::SurfaceSize size, double beside,
                   const MakeSurface& make_surface)
    : caption_(std::move(caption)), width_(size.width) {
    const double below = sheet_margin + caption_line;
    const double height = size.height - below - sheet_margin;
    map_place_ = {sheet_margin, below, {size.width - 2 * sheet_margin - beside, height}};
    side_place_ = {size.width - sheet_margin - beside, below, {beside, height}};
    if (map_place_.size.width <= 0 || height <= 0) throw Fault("the picture is too small for a map");
    map_surface_ = make_surface(map_place_.size);
    map_.SetSurface(map_surface_.get());
    if (beside <= 0) return;
    side_surface_ = make_surface(side_place_.size);
    side_.SetSurface(side_surface_.get());
}

void MapSheet::draw_chart(chart::AX_Grapher& chart, const Place& place, chart::DrawingDevice& device,
                          chart::OutputTarget kind, const chart::SurfaceMapping& whole) {
    chart::SurfaceMapping mapping = whole;
    mapping.device_offset_x += whole.device_scale * place.left;
    mapping.device_offset_y -= whole.device_scale * place.bottom;
    if (chart.DrawTo(device, kind, mapping, place.size) != 0)
        throw Fault("the picture is too small for a map");
}

void MapSheet::draw(chart::DrawingDevice& device, chart::OutputTarget kind,
                    const chart::SurfaceMapping& whole) {
    draw_chart(map_, map_place_, device, kind, whole);
    if (side_surface_) draw_chart(side_, side_place_, device, kind, whole);
    draw_caption(device, whole);
}

/// A line that is wider than the page has smaller letters.
void MapSheet::draw_caption(chart::DrawingDevice& device, const chart::SurfaceMapping& whole) const {
    chart::SurfaceMapping mapping = whole;
    mapping.device_offset_x += whole.device_scale * sheet_margin;
    device.set_mapping(mapping);
    chart::Font font = caption_font;
    const double room = width_ - 2 * sheet_margin;
    const double wide = device.measure(caption_, font).width;
    if (wide > room) font.size *= room / wide;
    device.text({0, sheet_margin}, 0, caption_, font, chart::black);
}

}  // namespace anomalis::show

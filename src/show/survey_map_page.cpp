#include "show/survey_map_page.h"

#include "core/failure.h"
#include "core/paths.h"
#include "intake/survey/survey_index.h"

namespace anomalis::show {

namespace {

constexpr double margin = 8 * chart::units_per_screen_pixel;
constexpr double bar_width = 92 * chart::units_per_screen_pixel;
constexpr double caption_line = 16 * chart::units_per_screen_pixel;
const chart::Font caption_font{.name = "Sans Serif", .size = 9, .bold = false};

}  // namespace

std::string map_caption(const intake::SurveyIndex& index, std::optional<std::size_t> chosen) {
    long stations = 0;
    for (const intake::SurveyLineInfo& line : index.lines) stations += line.stations;
    std::string text = file_name(index.layout.path) + ": " + std::to_string(index.lines.size()) +
                       (index.lines.size() == 1 ? " line, " : " lines, ") + std::to_string(stations) +
                       (stations == 1 ? " station" : " stations");
    if (!index.coordinate_system.empty()) text += ", " + index.coordinate_system;
    if (chosen && *chosen < index.lines.size()) text += "; line " + index.lines[*chosen].name;
    return text;
}

SurveyMapPage::SurveyMapPage(const intake::SurveyIndex& index, std::optional<std::size_t> chosen,
                             chart::SurfaceSize size, const MakeSurface& make_surface)
    : caption_(map_caption(index, chosen)), width_(size.width) {
    const double below = margin + caption_line;
    const double height = size.height - below - margin;
    const bool coloured = !map_colours(index).unit.empty();
    const double beside = coloured ? bar_width : 0;
    map_place_ = {margin, below, {size.width - 2 * margin - beside, height}};
    bar_place_ = {size.width - margin - bar_width, below, {bar_width, height}};
    if (map_place_.size.width <= 0 || height <= 0) throw Fault("the picture is too small for a map");
    map_surface_ = make_surface(map_place_.size);
    bar_surface_ = make_surface(bar_place_.size);
    map_.SetSurface(map_surface_.get());
    bar_.SetSurface(bar_surface_.get());
    set_up_survey_map(map_, bar_);
    survey_.show(&index, chosen);
}

void SurveyMapPage::draw_chart(chart::AX_Grapher& chart, const Place& place, chart::DrawingDevice& device,
                               chart::OutputTarget kind, const chart::SurfaceMapping& whole) {
    chart::SurfaceMapping mapping = whole;
    mapping.device_offset_x += whole.device_scale * place.left;
    mapping.device_offset_y -= whole.device_scale * place.bottom;
    if (chart.DrawTo(device, kind, mapping, place.size) != 0)
        throw Fault("the picture is too small for a map");
}

void SurveyMapPage::draw(chart::DrawingDevice& device, chart::OutputTarget kind,
                         const chart::SurfaceMapping& whole) {
    draw_chart(map_, map_place_, device, kind, whole);
    if (!survey_.colours().unit.empty()) draw_chart(bar_, bar_place_, device, kind, whole);
    draw_caption(device, whole);
}

/// A line that is wider than the page has smaller letters.
void SurveyMapPage::draw_caption(chart::DrawingDevice& device, const chart::SurfaceMapping& whole) const {
    chart::SurfaceMapping mapping = whole;
    mapping.device_offset_x += whole.device_scale * margin;
    device.set_mapping(mapping);
    chart::Font font = caption_font;
    const double room = width_ - 2 * margin;
    const double wide = device.measure(caption_, font).width;
    if (wide > room) font.size *= room / wide;
    device.text({0, margin}, 0, caption_, font, chart::black);
}

}  // namespace anomalis::show

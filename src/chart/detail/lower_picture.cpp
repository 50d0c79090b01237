#include "chart/detail/lower_picture.h"

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

bool LowerPicture::is_of(const GrapherState& state) const {
    const int lowest = state.series.lowest();
    return lowest > 0 && surface_ == state.surface && revision_ == state.series.series(lowest).revision &&
           bands_ == state.bands.revision() && tracks_ == state.tracks.revision() &&
           dots_ == state.dots.revision() && layout_ == state.layout && x_ == state.x && y_ == state.y &&
           options_ == state.series.options(lowest) && properties_ == state.properties &&
           palette_ == state.palette && face_ == resolved_colour(state, button_face) &&
           text_ == resolved_colour(state, button_text);
}

void LowerPicture::keep(const GrapherState& state) {
    const int lowest = state.series.lowest();
    surface_ = nullptr;
    if (lowest < 1 || !state.notes.empty()) return;
    revision_ = state.series.series(lowest).revision;
    bands_ = state.bands.revision();
    tracks_ = state.tracks.revision();
    dots_ = state.dots.revision();
    layout_ = state.layout;
    x_ = state.x;
    y_ = state.y;
    options_ = state.series.options(lowest);
    properties_ = state.properties;
    palette_ = state.palette;
    face_ = resolved_colour(state, button_face);
    text_ = resolved_colour(state, button_text);
    state.surface->keep_lower();
    surface_ = state.surface;
}

}  // namespace anomalis::chart

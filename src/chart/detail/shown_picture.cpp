#include "chart/detail/shown_picture.h"

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

bool ShownPicture::is_of(const GrapherState& state) const {
    if (!kept_ || !state.displayed || !state.layout.valid || state.selected || !state.notes.empty())
        return false;
    if (!state.surface->is_as_presented() || suspended_ != state.gesture.overlay_suspended) return false;
    const SeriesTable& series = state.series;
    if (revisions_.size() != static_cast<std::size_t>(series.series_count())) return false;
    for (int number = 1; number <= series.series_count(); ++number) {
        const auto at = static_cast<std::size_t>(number - 1);
        if (revisions_[at] != series.series(number).revision || options_[at] != series.options(number))
            return false;
    }
    return state.lower.is_of(state) && colour_key_ == state.colour_key && overlay_ == state.overlay.items();
}

void ShownPicture::keep(const GrapherState& state) {
    kept_ = state.notes.empty() && !state.selected && !state.series.empty();
    if (!kept_) return;
    suspended_ = state.gesture.overlay_suspended;
    revisions_.clear();
    options_.clear();
    for (int number = 1; number <= state.series.series_count(); ++number) {
        revisions_.push_back(state.series.series(number).revision);
        options_.push_back(state.series.options(number));
    }
    overlay_ = state.overlay.items();
    colour_key_ = state.colour_key;
}

}  // namespace anomalis::chart

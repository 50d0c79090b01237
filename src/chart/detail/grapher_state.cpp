#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

void tell_failures(GrapherState& state) {
    if (state.busy_refresh) return;
    for (const std::string& text : state.notes.take()) tell_failure(state, text);
}

void tell_failure(GrapherState& state, const std::string& text) {
    if (state.events != nullptr) state.events->Failed(text);
}

Colour resolved_colour(const GrapherState& state, Colour colour) {
    if (colour >= no_colour) return colour;
    const int entry = colour & 0xFF;
    if (state.surface != nullptr) return state.surface->system_colour(entry);
    return entry == 0x0F ? white : black;
}

}  // namespace anomalis::chart

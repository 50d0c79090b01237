#include "chart/ax_grapher.h"
#include "chart/detail/display.h"
#include "chart/detail/grapher_state.h"
#include "chart/detail/zoom.h"

// Zoom, selection and the crosshair as a host sets them.
namespace anomalis::chart {

std::optional<SelectedPoint> AX_Grapher::SelectPoint() const {
    return state_->selection_valid() ? state_->selected : std::nullopt;
}

void AX_Grapher::SelectPoint(int group, int series, int point, bool show) {
    GrapherState& state = *state_;
    if (const char* wrong = state.series.check(group, series)) {
        tell_failure(state, wrong);
        return;
    }
    if (!state.series.has_point(group, series, point)) return;
    if (!state.series.options(state.series.group(group).first + series - 1).visible) return;
    state.selected.reset();
    if (show && state.series.position(group, series, point))
        state.selected = SelectedPoint{group, series, point};
    if (state.surface != nullptr) state.surface->present();
}

/// Resets nothing on purpose: a host that wants the whole chart back calls clear_zoom_values first
/// (ChartZoom.reset_zoom_repaints_and_tells_but_keeps_the_zoom).
void AX_Grapher::ResetZoom() {
    refresh_graph(*state_, 0);
    if (state_->events != nullptr) state_->events->ChartReset();
}

void AX_Grapher::clear_zoom_values() {
    clear_zoom(*state_);
}

void AX_Grapher::save_zoom_values() {
    state_->saved_zoom = current_zoom(*state_);
    state_->zoom_saved = true;
}

void AX_Grapher::restore_zoom_values() {
    const ZoomValues saved = state_->saved_zoom;
    if (state_->zoom_saved) SetZoomValues(saved.zoom_x, saved.centre_x, saved.zoom_y, saved.centre_y);
}

int AX_Grapher::SetZoomValues(double zx, double cx, double zy, double cy) {
    if (!state_->displayed) return 0;
    if (apply_zoom(*state_, {zx, cx, zy, cy}) != 0) return -1;
    return refresh_graph(*state_, 0);
}

ZoomValues AX_Grapher::CurrentZoom() const {
    return current_zoom(*state_);
}
bool AX_Grapher::ZoomLock(int axis) const {
    return axis == 0 ? state_->lock_x : axis == 1 && state_->lock_y;
}
void AX_Grapher::ZoomLock(int axis, bool locked) {
    if (axis == 0) state_->lock_x = locked;
    if (axis == 1) state_->lock_y = locked;
}

bool AX_Grapher::EqualScales() const {
    return state_->equal_scales;
}
void AX_Grapher::EqualScales(bool value) {
    state_->equal_scales = value;
}

void AX_Grapher::LinkCrosshair(std::optional<LinkedCrosshair> linked) {
    if (linked == state_->linked) return;
    state_->linked = std::move(linked);
    if (state_->crosshair && state_->surface != nullptr) state_->surface->present();
}
void AX_Grapher::ReadOutUnits(const std::string& x, const std::string& y) {
    state_->x_unit = x;
    state_->y_unit = y;
}
bool AX_Grapher::Crosshair() const {
    return state_->crosshair;
}
void AX_Grapher::Crosshair(bool value) {
    state_->crosshair = value;
    if (state_->surface != nullptr) state_->surface->present();
}

}  // namespace anomalis::chart

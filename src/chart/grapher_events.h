#pragma once

#include <string>

namespace anomalis::chart {

/// What a chart tells its host. Buttons: 1 left, 2 right, 4 middle. Shift: 1 Shift, 2 Control, 4 Alt.
/// X and Y are surface units from the left and top edge of the control. Every guard but the one against
/// nested events is free while a handler runs, so a handler may register data and redraw.
class GrapherEvents {
  public:
    virtual ~GrapherEvents() = default;

    virtual void Click() {}
    /// Declared for hosts that bind it; no path of the chart raises it.
    virtual void DblClick() {}
    /// A host that sets `KeyCode` to 0 keeps the key from the chart.
    virtual void KeyDown(int& /*KeyCode*/, int /*Shift*/) {}
    virtual void KeyPress(int& /*KeyAscii*/) {}
    virtual void KeyUp(int& /*KeyCode*/, int /*Shift*/) {}
    /// A double click has cleared the zoom.
    virtual void ZoomCleared() {}
    virtual void MouseDown(int /*Button*/, int /*Shift*/, float /*X*/, float /*Y*/) {}
    /// `Outside` is not 0 outside the plot; then the world position is in transformed units. The deltas are
    /// -1E32 but during a box gesture.
    virtual void MouseMove(int /*Button*/, int /*Shift*/, float /*X*/, float /*Y*/, int /*Outside*/,
                           double /*WorldX*/, double /*WorldY*/, double /*DeltaX*/, double /*DeltaY*/) {}
    virtual void MouseUp(int /*Button*/, int /*Shift*/, float /*X*/, float /*Y*/) {}
    virtual void MouseWheel(int /*Keys*/, int /*Delta*/, int /*X*/, int /*Y*/) {}
    /// A data point was hit; `Series` counts within the group. Comes before MouseDown.
    virtual void PointSelected(int /*Button*/, int /*Group*/, int /*Series*/, int /*Point*/) {}
    /// A retained polygon was hit; `Index` counts polygons from 1 in recording order. Comes before MouseDown.
    virtual void GraphicSelected(int /*Button*/, int /*Index*/, double /*WorldX*/, double /*WorldY*/) {}
    virtual void ChartReset() {}

    // -- Of the view and of the drawing as a whole.

    /// The user has changed the view by a gesture, the wheel or a key; not raised by the host's own calls.
    virtual void ViewChanged() {}
    /// A right button that was pressed and released within 4 pixels, or the menu key: open the menu here.
    virtual void MenuRequested(float /*X*/, float /*Y*/) {}
    /// Something could not be drawn or was asked for wrongly; told once a redraw, after it.
    virtual void Failed(const std::string& /*text*/) {}
};

}  // namespace anomalis::chart

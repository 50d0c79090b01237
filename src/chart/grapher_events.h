#pragma once

#include <string>

namespace anomalis::chart {

/// Marks of the argument `Shift`.
inline constexpr int shift_mark = 1;
inline constexpr int control_mark = 2;
inline constexpr int finger_mark = 8;

/// What a chart tells its host. Buttons: 1 left, 2 right, 4 middle. Shift: 1 Shift, 2 Control, 4 Alt, 8 for a
/// press or move of a finger.
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

    // -- A press that the host keeps.

    /// Asked of every press, the second one of a double click included, before the chart does anything with
    /// it. A host that returns true holds it: nothing is selected, no gesture begins, and what the pointer
    /// does is told below until it ends.
    virtual bool HoldPress(int /*Button*/, int /*Shift*/, float /*X*/, float /*Y*/) { return false; }
    virtual void HeldMoved(int /*Shift*/, float /*X*/, float /*Y*/) {}
    /// The button was let go, or the press is given up: by Esc, or by another button.
    virtual void HeldEnded(bool /*GivenUp*/) {}
    /// The pointer has left the control.
    virtual void PointerLeft() {}

    // -- Of the view and of the drawing as a whole.

    /// The user has changed the view by a gesture, the wheel or a key; not raised by the host's own calls.
    virtual void ViewChanged() {}
    /// A right button that was pressed and released within 4 pixels, or the menu key: open the menu here.
    virtual void MenuRequested(float /*X*/, float /*Y*/) {}
    /// Something could not be drawn or was asked for wrongly; told once a redraw, after it.
    virtual void Failed(const std::string& /*text*/) {}
};

}  // namespace anomalis::chart

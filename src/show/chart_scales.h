#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// Limits of an axis and the interval of its numbers.
struct AxisScale {
    double low = 0;
    double high = 0;
    double interval = 1;
};

/// The vertical axis of a profile chart for values from `low` to `high`: padded by a twentieth on each side,
/// at round numbers, never cutting the data.
AxisScale profile_scale(double low, double high);

/// The vertical axis of the section, in m. It starts a little above the sensors and goes down so that one
/// metre is as long in depth as along the profile, where the bodies leave room for that. `aspect` is height
/// over width of the plot in pixels; `span` the distances it shows.
AxisScale section_scale(const Workspace& workspace, double aspect, double span);

/// The interval for a window on an axis, about 8 of them.
double window_interval(double span);

}  // namespace anomalis::show

#pragma once

#include "chart/ax_grapher.h"

namespace anomalis::chart {

/// The charts of the gallery are numbered from 1.
int gallery_chart_count();
/// Sets up one of them; nothing is displayed yet. Other numbers leave the chart as it is.
void fill_gallery_chart(int number, AX_Grapher& chart);

/// One page with every axis type, labelling, series style and marker of the chart, for the guide and for
/// comparing devices. It fills the surface of `page`; the caller opens and closes the page. Returns 0 or -1.
int draw_gallery(DrawingDevice& page, OutputTarget kind, const SurfaceMapping& mapping);

}  // namespace anomalis::chart

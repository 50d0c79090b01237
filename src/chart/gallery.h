#pragma once

#include "chart/ax_grapher.h"

namespace anomalis {

/// One page with every axis type, labelling, series style and marker of the chart, for the guide and for
/// comparing devices. It fills the surface of `page`; the caller opens and closes the page. Returns 0 or -1.
int draw_gallery(DrawingDevice& page, OutputTarget kind, const SurfaceMapping& mapping);

}  // namespace anomalis

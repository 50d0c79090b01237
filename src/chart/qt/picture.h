#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include <QImage>

#include "chart/ax_grapher.h"

class QPagedPaintDevice;

namespace anomalis::chart {

enum class PictureFormat { png, svg, pdf, emf };

/// The format that a file name's ending asks for. Raises Fault for an ending that is none of
/// png, svg, pdf, emf.
PictureFormat picture_format(std::string_view path);

/// Draws a page: its device, what kind of target it is, and the mapping of the whole page onto it.
using DrawPage = std::function<void(DrawingDevice&, OutputTarget, const SurfaceMapping&)>;

/// A page of `size` (surface units) as the bytes of a file. `scale` is pixels a logical pixel, for PNG.
/// Throws when it cannot be drawn.
std::string page_bytes(PictureFormat format, SurfaceSize size, const DrawPage& draw, double scale = 1.0);

/// Sheets of one size, drawn one after the other, as the bytes of a PDF, or of a picture of the first one. A
/// PNG has 300 dots an inch.
std::string sheets_bytes(PictureFormat format, SurfaceSize size, std::span<const DrawPage> sheets);
inline constexpr double sheet_dots_per_inch = 300.0;

/// Draws sheets on whatever has pages: each as large as fits on its paper. Throws when it cannot be drawn.
void paint_sheets(QPagedPaintDevice& paper, SurfaceSize size, std::span<const DrawPage> sheets);

/// One page as an image.
QImage page_image(SurfaceSize size, const DrawPage& draw, double scale = 1.0);

/// One chart that fills its page, at the size of its surface on screen.
std::string chart_bytes(PictureFormat format, AX_Grapher& chart, double scale = 1.0);

}  // namespace anomalis::chart

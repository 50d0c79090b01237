#pragma once

#include <functional>
#include <string>
#include <string_view>

class QPagedPaintDevice;
class QPrinter;

namespace anomalis::chart {

class AX_Grapher;

/// Draws a chart on one page, as large as fits, in the paper's orientation. Throws when the paper cannot be
/// drawn on or the chart cannot be drawn; the screen is not touched.
void paint_chart(AX_Grapher& chart, QPagedPaintDevice& paper);

/// Prints what `draw` paints. A print into a file is drawn in memory and given whole to `write`, which may
/// throw, so that a failure leaves an old file as it was. Throws when the printer does not take it.
void print_safely(QPrinter& printer, const std::function<void(QPagedPaintDevice&)>& draw,
                  const std::function<void(const std::string& path, std::string_view contents)>& write);

}  // namespace anomalis::chart

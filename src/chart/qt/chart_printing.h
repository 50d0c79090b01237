#pragma once

class QPrinter;

namespace anomalis::chart {

class AX_Grapher;

/// Prints a chart on one page, as large as fits, in the printer's orientation. Throws when the printer
/// cannot be opened or the chart cannot be drawn; the screen is not touched.
void print_chart(AX_Grapher& chart, QPrinter& printer);

}  // namespace anomalis::chart

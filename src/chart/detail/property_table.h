#pragma once

#include "chart/detail/chart_properties.h"
#include "chart/property_bag.h"

namespace anomalis::chart {

/// Reads every persisted property in the order of the table; what the bag has not gets its default, a font
/// the one that the chart has. A base that cannot serve becomes 10.
void read_chart_properties(ChartProperties& properties, const PropertyBag& bag);
void write_chart_properties(const ChartProperties& properties, PropertyBag& bag);

}  // namespace anomalis::chart

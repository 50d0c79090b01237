#pragma once

class QMenu;

namespace anomalis::chart {

class GrapherWidget;

/// The pop-up menu of a chart: zoom locks, copy, save, print preview, print. Owned by the widget.
QMenu* make_chart_menu(GrapherWidget& widget);

}  // namespace anomalis::chart

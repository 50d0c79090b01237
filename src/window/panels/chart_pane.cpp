#include "window/panels/chart_pane.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int least_chart_height = 56;
constexpr int gap = 2;

}  // namespace

ChartPane::ChartPane(int index, QWidget* parent) : QWidget(parent), widget_(new chart::GrapherWidget) {
    const QString number = QString::number(index);
    widget_->setObjectName("vsgraph_model_" + number);
    widget_->setMinimumHeight(least_chart_height);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addWidget(widget_, 1);
    auto* bars = new QVBoxLayout;
    bars->setSpacing(3);
    auto* zoom =
        new StepperBar("VScroll_zoom_" + number, {"+", tr("Zoom into the vertical axis (8 steps)"), 1},
                       {"−", tr("Show more of the vertical axis"), -1});
    auto* pan =
        new StepperBar("VScroll_pan_" + number, {"▴", tr("Move the vertical window up by a quarter"), -1},
                       {"▾", tr("Move the vertical window down by a quarter"), 1});
    connect(zoom, &StepperBar::stepped, this, &ChartPane::zoom_stepped);
    connect(pan, &StepperBar::stepped, this, &ChartPane::pan_stepped);
    bars->addStretch();
    bars->addWidget(zoom);
    bars->addWidget(pan);
    bars->addStretch();
    row->addLayout(bars);
    room_beside_ = gap + bars->sizeHint().width();
}

}  // namespace anomalis::window

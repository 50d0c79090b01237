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
    zoom_ = new StepperBar("VScroll_zoom_" + number, {"+", tr("Zoom into the vertical axis (8 steps)"), 1},
                           {"−", tr("Show more of the vertical axis"), -1});
    pan_ = new StepperBar("VScroll_pan_" + number, {"▴", tr("Move the vertical window up by a quarter"), -1},
                          {"▾", tr("Move the vertical window down by a quarter"), 1});
    connect(zoom_, &StepperBar::stepped, this, &ChartPane::zoom_stepped);
    connect(pan_, &StepperBar::stepped, this, &ChartPane::pan_stepped);
    bars->addStretch();
    bars->addWidget(zoom_);
    bars->addWidget(pan_);
    bars->addStretch();
    row->addLayout(bars);
    room_beside_ = gap + bars->sizeHint().width();
}

void ChartPane::set_plain(bool plain) {
    for (StepperBar* bar : {zoom_, pan_}) {
        QSizePolicy policy = bar->sizePolicy();
        policy.setRetainSizeWhenHidden(plain);
        bar->setSizePolicy(policy);
        bar->setVisible(!plain);
    }
    widget_->show_top_layer(!plain);
}

}  // namespace anomalis::window

#include "window/panels/model_page.h"

#include <QHBoxLayout>

#include "window/panels/welcome_panel.h"

namespace anomalis::window {

ModelPage::ModelPage(QWidget* charts, QWidget* side, const std::vector<flow::ExampleFile>& examples)
    : hint_(new WelcomePanel("Frame_hint", examples)), model_(new QWidget), sides_(new QStackedWidget) {
    auto* row = new QHBoxLayout(model_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(charts, 1);
    sides_->addWidget(side);
    sides_->setFixedWidth(side->minimumWidth());
    row->addWidget(sides_);
    addWidget(hint_);
    addWidget(model_);
}

void ModelPage::add_side(QWidget* panel) {
    sides_->addWidget(panel);
}

void ModelPage::show_side(QWidget* panel) {
    sides_->setCurrentWidget(panel ? panel : sides_->widget(0));
}

}  // namespace anomalis::window

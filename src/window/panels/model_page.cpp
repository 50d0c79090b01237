#include "window/panels/model_page.h"

#include <QHBoxLayout>

#include "window/panels/welcome_panel.h"

namespace anomalis::window {

ModelPage::ModelPage(QWidget* charts, QWidget* side, const std::vector<flow::ExampleFile>& examples)
    : hint_(new WelcomePanel("Frame_hint", examples)), model_(new QWidget) {
    auto* row = new QHBoxLayout(model_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(charts, 1);
    row->addWidget(side);
    addWidget(hint_);
    addWidget(model_);
}

}  // namespace anomalis::window

#pragma once

#include <vector>

#include <QStackedWidget>

#include "flow/examples.h"

namespace anomalis::window {

/// The second tab: charts and right column, or, without a line, what to do first.
class ModelPage : public QStackedWidget {
    Q_OBJECT

  public:
    ModelPage(QWidget* charts, QWidget* side, const std::vector<flow::ExampleFile>& examples);

    void show_model(bool line_loaded) { setCurrentWidget(line_loaded ? model_ : hint_); }

  private:
    QWidget* hint_;
    QWidget* model_;
};

}  // namespace anomalis::window

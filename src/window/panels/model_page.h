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

    /// Another panel for the right column; it is not on show.
    void add_side(QWidget* panel);
    /// What stands in the right column; null: the bodies.
    void show_side(QWidget* panel);

    void show_model(bool line_loaded) { setCurrentWidget(line_loaded ? model_ : hint_); }

  private:
    QWidget* hint_;
    QWidget* model_;
    QStackedWidget* sides_;
};

}  // namespace anomalis::window

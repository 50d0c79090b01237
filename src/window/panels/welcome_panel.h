#pragma once

#include <vector>

#include <QWidget>

#include "flow/examples.h"

namespace anomalis::window {

/// What a newcomer does first, in three steps, and the examples, each one click away.
class WelcomePanel : public QWidget {
    Q_OBJECT

  public:
    WelcomePanel(const char* object_name, const std::vector<flow::ExampleFile>& examples,
                 QWidget* parent = nullptr);

  signals:
    void example_chosen(const QString& path);
    void import_wanted();
};

}  // namespace anomalis::window

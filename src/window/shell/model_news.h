#pragma once

#include <QFlags>
#include <QObject>

namespace anomalis::window {

/// What of the model, or of what is on show, is no longer as it was.
enum class News : unsigned {
    parameters = 1U << 0,    ///< values, marks, name or colour of the current body
    bodies = 1U << 1,        ///< number, order or types of the bodies, or values of several
    current_body = 1U << 2,  ///< another body is the current one
    settings = 1U << 3,      ///< a value that the whole model depends on, or its drawing
    definition = 1U << 4,    ///< how the data file is read, or which one
    boxes = 1U << 5,         ///< a read or a step back: no box shows what is stored
    line = 1U << 6,          ///< stations came or went
    form_reset = 1U << 7,    ///< a model begins anew: the controls go back to where a session starts
    view = 1U << 8,          ///< axes, highlight, section or plan: already drawn, the controls follow
    calculated = 1U << 9,    ///< curves and misfit were found
    file = 1U << 10,         ///< the model's file, or whether it holds the model
    recent_files = 1U << 11,
    preferences = 1U << 13,  ///< how things are shown, by the choice of the person
    step_taken = 1U << 12    ///< with boxes: also those that a read leaves as they are
};
Q_DECLARE_FLAGS(WhatChanged, News)
Q_DECLARE_OPERATORS_FOR_FLAGS(WhatChanged)

/// The one way in which the parts of the window hear that something changed. Who changes tells; who shows
/// listens, and does only what the news calls for.
class ModelNews : public QObject {
    Q_OBJECT

  public:
    /// What is told while others are still being told goes out after that, so that all hear it in one order.
    void tell(WhatChanged what);

  signals:
    void model_changed(anomalis::window::WhatChanged what);

  private:
    WhatChanged pending_;
    bool telling_ = false;
};

}  // namespace anomalis::window

#pragma once

#include <QObject>

namespace anomalis {

class Form_anomalis;

/// The part of the window that edits bodies: the right column and the commands on the list of bodies.
class FormBodies : public QObject {
    Q_OBJECT

  public:
    explicit FormBodies(Form_anomalis& form);

  private:
    Form_anomalis& form_;
};

}  // namespace anomalis

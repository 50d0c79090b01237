#pragma once

#include <functional>

#include <QObject>

#include "edit/add_bodies.h"
#include "edit/body_flags.h"

class QAction;
class QMenu;

namespace anomalis::window {

class Form_anomalis;

/// The part of the window that edits bodies: the right column and the commands on the list of bodies.
class FormBodies : public QObject {
    Q_OBJECT

  public:
    explicit FormBodies(Form_anomalis& form);

    /// A new body with its top at a point of the section.
    void add_body_here(double distance, double elevation);

  private:
    /// A command returns true when it changed the model.
    using Command = std::function<bool()>;

    void wire_side();
    void fill_bodies_menu();
    void fill_model_menu();
    void add_flag_menu(const char* name, const QString& text, edit::BodyFlag flag,
                       const std::array<const char*, 3>& tips);
    QAction* add_entry(QMenu& menu, const QString& name, const QString& text, const QString& tip,
                       Command command);
    void run(const Command& command);
    bool add_body(edit::AddMode mode);
    bool end_add(bool added);
    bool end_delete(bool deleted);
    void show_tie();

    Form_anomalis& form_;
    QAction* tie_ = nullptr;
};

}  // namespace anomalis::window

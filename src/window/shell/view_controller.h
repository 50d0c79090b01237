#pragma once

#include <optional>

#include <QObject>

#include "chart/drawing_types.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class BodiesController;
class ChartsPanel;
struct FormGuards;
class ModelNews;

/// How the model is looked at: axes, section or plan, highlight, and the menus of section and plan.
class ViewController : public QObject {
    Q_OBJECT

  public:
    ViewController(QObject* parent, edit::Workbench& workbench, Actions& actions, const FormGuards& guards,
                   ModelNews& news, ChartsPanel& charts, BodiesController& bodies);

  private:
    void add_chart_entries();
    bool curves_have_focus() const;
    void step_body(int by);
    void toggle_axes();
    void toggle_regional();
    void toggle_highlight();
    void section_menu_opens(float x, float y);

    edit::Workbench& workbench_;
    Actions& actions_;
    const FormGuards& guards_;
    ModelNews& news_;
    ChartsPanel& charts_;
    std::optional<chart::Point> menu_place_;  ///< of the pointer when the section's menu opened
};

}  // namespace anomalis::window

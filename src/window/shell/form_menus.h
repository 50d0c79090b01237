#pragma once

#include <array>
#include <vector>

#include <QObject>

#include "flow/examples.h"

class QAction;
class QMainWindow;
class QMenu;

namespace anomalis::window {

/// The menu tree of the main window. What an entry does is the window's business.
class FormMenus : public QObject {
    Q_OBJECT

  public:
    FormMenus(QMainWindow& window, const std::vector<flow::ExampleFile>& examples);

    /// The menus in their order on the bar. Others add their entries to them.
    QMenu& file_menu() { return *file_menu_; }
    QMenu& view_menu() { return *view_menu_; }
    QMenu& bodies_menu() { return *bodies_menu_; }
    QMenu& model_menu() { return *model_menu_; }
    QMenu& help_menu() { return *help_menu_; }
    /// A menu below another one; an entry of a menu. The name is how tests and tools find it.
    QMenu* add_menu(QMenu& parent, const char* name, const QString& text);
    QAction* add_action(QMenu& menu, const char* name, const QString& text, const QString& tip);

    /// Menus that speak of a loaded line are there exactly while there is one.
    void show_line_menus(bool shown);
    bool display_axes() const;
    /// Sets the check mark without telling.
    void set_display_axes(bool on);
    /// Checks "Section" or "Plan".
    void set_plan(bool plan);

  signals:
    void read_all_wanted();
    void read_bodies_wanted();
    void example_chosen(const QString& path);
    void exit_wanted();
    void display_axes_toggled(bool on);
    void plan_wanted(bool plan);
    void recalc_wanted();
    void about_wanted();

  private:
    void make_file_menu(const std::vector<flow::ExampleFile>& examples);
    void make_view_menu();
    void make_model_menu();
    void make_help_menu();
    QMenu* add_bar_menu(const char* name, const QString& text);

    QMainWindow& window_;
    QMenu* file_menu_ = nullptr;
    QMenu* view_menu_ = nullptr;
    QMenu* bodies_menu_ = nullptr;
    QMenu* model_menu_ = nullptr;
    QMenu* help_menu_ = nullptr;
    QAction* display_axes_ = nullptr;
    QAction* recalc_ = nullptr;
    std::array<QAction*, 2> view_modes_{};
};

}  // namespace anomalis::window
